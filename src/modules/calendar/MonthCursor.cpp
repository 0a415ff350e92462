#include "modules/calendar/MonthCursor.h"

namespace randblatt {

void MonthCursor::start(const QDateTime &time)
{
    moveTo(time.date());
    m_chosenKey = currentKey();
    Q_EMIT started();
}

void MonthCursor::moveDays(int days)
{
    moveTo(m_current.addDays(days));
}

void MonthCursor::moveMonths(int months)
{
    moveTo(m_current.addMonths(months));
}

int MonthCursor::key(int year, int month, int day)
{
    return (year * 12 + month) * 31 + day - 1;
}

void MonthCursor::moveTo(const QDate &day)
{
    if (!day.isValid() || day == m_current)
        return;
    m_current = day;
    Q_EMIT moved();
}

} // namespace randblatt
