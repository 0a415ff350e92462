#pragma once

#include <QByteArray>
#include <QColor>
#include <QDateTime>
#include <QList>
#include <QString>
#include <QStringList>
#include <QUrl>
#include <QUuid>

#include <memory>

namespace randblatt {

/// What else is known of an event, for who looks at it alone.
struct EventDetails
{
    QString place;
    /// Plain text, with its line breaks.
    QString description;
    /// One line for each person, with the answer if there is one.
    QStringList attendees;
    /// Pages of the web that the event names, those to meet on first.
    QList<QUrl> links;
    /// How many of the links are to meet on.
    int meetings = 0;

    friend bool operator==(const EventDetails &, const EventDetails &) = default;
};

/// One event, or one occurrence of a recurring event, in local time.
struct CalendarEvent
{
    /// Names the occurrence for as long as it exists, also after a change of its title or time; unique within
    /// one answer of the store.
    QString id;
    QString title;
    QDateTime start;
    /// Never before the start. The end of an all-day event is the midnight after its last day.
    QDateTime end;
    bool allDay = false;
    /// Invalid for a calendar without a colour.
    QColor calendarColor;
    QString calendarName;
    /// Null where there is nothing more to know.
    std::shared_ptr<const EventDetails> details = {};

    friend bool operator==(const CalendarEvent &a, const CalendarEvent &b)
    {
        const bool sameDetails =
            a.details == b.details || (a.details && b.details && *a.details == *b.details);
        return sameDetails && a.id == b.id && a.title == b.title && a.start == b.start && a.end == b.end &&
               a.allDay == b.allDay && a.calendarColor == b.calendarColor && a.calendarName == b.calendarName;
    }
};

/// An event that is to be saved.
struct NewCalendarEvent
{
    QString title;
    QDateTime start;
    /// Of an all-day event, the midnight after its last day.
    QDateTime end;
    /// Names the event for good. Who tries again after a failure gives the same one: if the event did reach
    /// its calendar then, it is not saved twice.
    QString uid = QUuid::createUuid().toString(QUuid::WithoutBraces);
    bool allDay = false;
    /// The id of a writable calendar; empty for the default one.
    QString calendar = {};
};

/// An event that was saved: what it takes to find it again, and to see whether it is still as it was saved.
struct SavedEvent
{
    /// The calendar's own name; empty where there is but one.
    QString calendar;
    QString uid;
    QByteArray fingerprint;
};

/// What became of an event that was to be removed.
enum class Removal {
    removed,
    gone,    ///< it was not there any more
    changed, ///< somebody has changed it, so it stays
};

/// A calendar that events can be added to.
struct WritableCalendar
{
    QString id;
    QString name;
    /// Invalid for a calendar without a colour.
    QColor color;

    friend bool operator==(const WritableCalendar &, const WritableCalendar &) = default;
};

} // namespace randblatt
