#pragma once

#include "platform/CalendarStore.h"

#include <functional>

namespace randblatt {

/// How opening a provider of calendars has ended.
struct CalendarOpening
{
    enum class Outcome {
        opened,
        failed, ///< for now: it may open later
        absent, ///< this machine has no such provider
    };

    Outcome outcome = Outcome::absent;
    /// Why it failed: a German sentence for people, empty where nobody knows.
    QString reason = {};
};

/// One provider of calendars, working on a thread of its own. Operations return at once; completions and the
/// change handler are called on whatever thread. No completion is called once the destructor has returned.
class CalendarBackend
{
public:
    CalendarBackend() = default;
    virtual ~CalendarBackend() = default;
    CalendarBackend(const CalendarBackend &) = delete;
    CalendarBackend &operator=(const CalendarBackend &) = delete;

    /// For the log.
    [[nodiscard]] virtual QString name() const = 0;
    /// To be called once, before open().
    virtual void setChangeHandler(std::function<void()> handler) = 0;
    /// Makes sure that calendars can be read; to be answered with `opened` before the operations below are
    /// used. Can be asked again.
    virtual void open(std::function<void(const CalendarOpening &opening)> completion) = 0;
    /// See CalendarStore::fetchEvents().
    virtual void fetchEvents(const QDateTime &start, const QDateTime &end,
                             std::function<void(const CalendarStore::Events &events)> completion) = 0;
    /// See CalendarStore::fetchCalendars().
    virtual void
    fetchCalendars(std::function<void(const CalendarStore::Calendars &calendars)> completion) = 0;
    /// See CalendarStore::saveEvent().
    virtual void saveEvent(const NewCalendarEvent &event,
                           std::function<void(const CalendarStore::Saved &saved)> completion) = 0;
    /// See CalendarStore::removeEvent().
    virtual void removeEvent(const SavedEvent &event,
                             std::function<void(const CalendarStore::Removed &removed)> completion) = 0;
};

} // namespace randblatt
