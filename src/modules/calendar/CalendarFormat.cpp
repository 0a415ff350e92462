#include "modules/calendar/CalendarFormat.h"

#include "platform/CalendarStore.h"

#include <QLocale>

namespace randblatt {

using namespace Qt::StringLiterals;

namespace {

const QLocale &german()
{
    static const QLocale locale(QLocale::German, QLocale::Germany);
    return locale;
}

} // namespace

QString CalendarFormat::dayHeading(const QDate &day)
{
    return german().toString(day, u"dddd, d. MMMM");
}

QString CalendarFormat::dayHeading(const QString &isoDay)
{
    return dayHeading(QDate::fromString(isoDay, Qt::ISODate));
}

QString CalendarFormat::timeLine(const CalendarEvent &event)
{
    if (event.allDay)
        return u"Ganztägig"_s;
    return german().toString(event.start.time(), u"HH:mm") + u" – "_s +
           german().toString(event.end.time(), u"HH:mm");
}

QString CalendarFormat::when(const CalendarEvent &event)
{
    const QDate first = event.start.date();
    // The end is the midnight after the last day.
    const QDate last = event.allDay ? event.end.date().addDays(-1) : event.end.date();
    if (event.allDay) {
        const QString end = last > first ? u" – "_s + dayHeading(last) : u", ganztägig"_s;
        return dayHeading(first) + end;
    }
    const QString time = german().toString(event.start.time(), u"HH:mm");
    if (last == first)
        return dayHeading(first) + u", "_s + timeLine(event);
    return dayHeading(first) + u", "_s + time + u" – "_s + dayHeading(last) + u", "_s +
           german().toString(event.end.time(), u"HH:mm");
}

QColor CalendarFormat::barColor(const QColor &color)
{
    static constexpr QColor systemBlue(0x35, 0x84, 0xe4);
    return color.isValid() ? color : systemBlue;
}

QString CalendarFormat::durationLabel(int minutes)
{
    if (minutes < 60)
        return QString::number(minutes) + u" Min"_s;
    const QString hours = QString::number(minutes / 60) + u" Std"_s;
    return minutes % 60 == 0 ? hours : hours + u' ' + QString::number(minutes % 60);
}

QString CalendarFormat::monthTitle(int month, int year)
{
    return german().toString(QDate(year, month + 1, 1), u"MMMM yyyy");
}

QString CalendarFormat::longDate(int year, int month, int day)
{
    return german().toString(QDate(year, month + 1, day), u"dddd, d. MMMM yyyy");
}

void CalendarFormat::useGerman(QObject *control)
{
    if (control != nullptr)
        control->setProperty("locale", german());
}

} // namespace randblatt
