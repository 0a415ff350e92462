#pragma once

#include <QByteArray>
#include <QColor>
#include <QDateTime>
#include <QList>
#include <QObject>
#include <QString>
#include <QUuid>

#include <functional>
#include <optional>
#include <utility>

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
    /// Names the event for good. Who tries again after a failure gives the same one: if the event did reach
    /// its calendar then, it is not saved twice.
    QString uid = QUuid::createUuid().toString(QUuid::WithoutBraces);
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

/// What an operation gave, or why it gave nothing.
template <typename T>
class CalendarAnswer
{
public:
    CalendarAnswer(T value)
        : m_value(std::move(value))
    {
    }
    /// `reason` is a German sentence for people; empty where nobody knows one.
    [[nodiscard]] static CalendarAnswer failure(const QString &reason = {})
    {
        CalendarAnswer answer;
        answer.m_reason = reason;
        return answer;
    }

    explicit operator bool() const { return m_value.has_value(); }
    [[nodiscard]] const T &operator*() const { return *m_value; }
    [[nodiscard]] const T *operator->() const { return &*m_value; }
    [[nodiscard]] QString reason() const { return m_reason; }

private:
    CalendarAnswer() = default;

    std::optional<T> m_value;
    QString m_reason;
};

/// The user's calendars. No operation waits for its outcome: the completion is called later on the main
/// thread, once, and not at all when `context` or the store is gone by then.
class CalendarStore : public QObject
{
    Q_OBJECT

public:
    /// The events of a range; none where no calendar could be read.
    using Events = CalendarAnswer<QList<CalendarEvent>>;
    using Saved = CalendarAnswer<SavedEvent>;
    using Removed = CalendarAnswer<Removal>;

    using QObject::QObject;

    /// Opens the calendars; to be granted before the other operations are used. Can be asked again.
    virtual void requestAccess(QObject *context, std::function<void(bool granted)> completion) = 0;
    /// The events of all calendars that overlap the time from `start` to before `end`, recurrences expanded.
    virtual void fetchEvents(const QDateTime &start, const QDateTime &end, QObject *context,
                             std::function<void(const Events &events)> completion) = 0;
    /// Saves an event in the default calendar for new events.
    virtual void saveEvent(const NewCalendarEvent &event, QObject *context,
                           std::function<void(const Saved &saved)> completion) = 0;
    /// Removes an event that saveEvent() has saved, if it is still as it was saved.
    virtual void removeEvent(const SavedEvent &event, QObject *context,
                             std::function<void(const Removed &removed)> completion) = 0;

Q_SIGNALS:
    /// What fetchEvents() answers may have changed; also sent for the store's own saves.
    void changed();
};

} // namespace randblatt
