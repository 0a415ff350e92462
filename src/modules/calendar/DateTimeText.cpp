#include "modules/calendar/DateTimeText.h"

#include "platform/LocalTime.h"

#include <algorithm>
#include <array>

namespace randblatt {

using namespace Qt::StringLiterals;

namespace {

struct Section
{
    int begin;
    int end;
    QDateTime (*step)(const QDateTime &, int);
};

// The places of the numbers in "dd.MM.yyyy, HH:mm".
constexpr std::array sections{
    Section{0, 2, [](const QDateTime &time, int steps) { return time.addDays(steps); }},
    Section{3, 5, [](const QDateTime &time, int steps) { return time.addMonths(steps); }},
    Section{6, 10, [](const QDateTime &time, int steps) { return time.addYears(steps); }},
    Section{12, 14, [](const QDateTime &time, int steps) { return time.addSecs(steps * 3600LL); }},
    Section{15, 17, [](const QDateTime &time, int steps) { return time.addSecs(steps * 60LL); }},
};

// Beyond it the text has another number of digits.
constexpr int firstYear = 1000;
constexpr int lastYear = 9999;

const Section &sectionAt(int cursor)
{
    const auto it = std::find_if(sections.begin(), sections.end() - 1,
                                 [cursor](const Section &section) { return cursor <= section.end; });
    return *it;
}

} // namespace

QString DateTimeText::text(const QDateTime &time)
{
    return time.toString(u"dd.MM.yyyy, HH:mm");
}

QString DateTimeText::dateText(const QDateTime &time)
{
    return time.toString(u"dd.MM.yyyy");
}

TypedTime DateTimeText::read(const QString &text, const QDateTime &present, const QDateTime &now)
{
    if (text.trimmed() == DateTimeText::text(present))
        return {present, {}};
    return DateTimeParser(present, now).parse(text);
}

bool DateTimeText::isWritable(const QDateTime &time)
{
    return time.isValid() && time.date().year() >= firstYear && time.date().year() <= lastYear;
}

QDateTime DateTimeText::stepped(const QDateTime &time, int cursor, int steps)
{
    const QDateTime stepped = sectionAt(cursor).step(time, steps);
    return isWritable(stepped) ? stepped : time;
}

QPoint DateTimeText::section(int cursor)
{
    const Section &section = sectionAt(cursor);
    return {section.begin, section.end};
}

QDateTime DateTimeText::onDay(const QDateTime &time, int year, int month, int day)
{
    return localTime(QDate(year, month + 1, day), time.time());
}

} // namespace randblatt
