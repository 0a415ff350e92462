#pragma once

#include "platform/CalendarEvent.h"

#include <QObject>

#include <functional>
#include <optional>
#include <utility>

namespace randblatt {

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

/// The user's leave to use the calendars.
struct CalendarAccess
{
};

/// The user's calendars. No operation waits for its outcome: the completion is called later on the main
/// thread, once, and not at all when `context` or the store is gone by then.
class CalendarStore : public QObject
{
    Q_OBJECT

public:
    using Access = CalendarAnswer<CalendarAccess>;
    /// The events of a range; none where no calendar could be read.
    using Events = CalendarAnswer<QList<CalendarEvent>>;
    /// The one for new events comes first.
    using Calendars = CalendarAnswer<QList<WritableCalendar>>;
    using Saved = CalendarAnswer<SavedEvent>;
    using Removed = CalendarAnswer<Removal>;

    using QObject::QObject;

    /// Opens the calendars; to be granted before the other operations are used. Can be asked again.
    virtual void requestAccess(QObject *context, std::function<void(const Access &access)> completion) = 0;
    /// The events of all calendars that overlap the time from `start` to before `end`, recurrences expanded.
    virtual void fetchEvents(const QDateTime &start, const QDateTime &end, QObject *context,
                             std::function<void(const Events &events)> completion) = 0;
    /// The calendars that are shown and can be written; of one alone the name and id may be empty.
    virtual void fetchCalendars(QObject *context,
                                std::function<void(const Calendars &calendars)> completion) = 0;
    /// Saves an event in its calendar, or in the default one for new events; in one that is shown.
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
