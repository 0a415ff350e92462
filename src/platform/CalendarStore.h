#pragma once

#include <QColor>
#include <QDateTime>
#include <QList>
#include <QObject>
#include <QString>

#include <functional>
#include <optional>

namespace randblatt {

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

    friend bool operator==(const CalendarEvent &, const CalendarEvent &) = default;
};

/// An event that is to be saved.
struct NewCalendarEvent
{
    QString title;
    QDateTime start;
    QDateTime end;
};

/// The user's calendars. No operation waits for its outcome: the completion is called later on the main
/// thread, once, and not at all when `context` or the store is gone by then.
class CalendarStore : public QObject
{
    Q_OBJECT

public:
    /// The events of a range; none where no calendar could be read.
    using Events = std::optional<QList<CalendarEvent>>;

    using QObject::QObject;

    /// Opens the calendars; to be granted before the other operations are used. Can be asked again.
    virtual void requestAccess(QObject *context, std::function<void(bool granted)> completion) = 0;
    /// The events of all calendars that overlap the time from `start` to before `end`, recurrences expanded.
    virtual void fetchEvents(const QDateTime &start, const QDateTime &end, QObject *context,
                             std::function<void(const Events &events)> completion) = 0;
    /// Saves an event in the default calendar for new events.
    virtual void saveEvent(const NewCalendarEvent &event, QObject *context,
                           std::function<void(bool saved)> completion) = 0;

Q_SIGNALS:
    /// What fetchEvents() answers may have changed; also sent for the store's own saves.
    void changed();
};

} // namespace randblatt
