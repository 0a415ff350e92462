#pragma once

#include "platform/CalendarStore.h"

#include <functional>

namespace randblatt {

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
    /// Makes sure that calendars can be read; to be answered with true before the operations below are used.
    virtual void open(std::function<void(bool opened)> completion) = 0;
    /// See CalendarStore::fetchEvents().
    virtual void fetchEvents(const QDateTime &start, const QDateTime &end,
                             std::function<void(const CalendarStore::Events &events)> completion) = 0;
    /// See CalendarStore::saveEvent().
    virtual void saveEvent(const NewCalendarEvent &event,
                           std::function<void(const CalendarStore::Saved &saved)> completion) = 0;
    /// See CalendarStore::removeEvent().
    virtual void removeEvent(const SavedEvent &event,
                             std::function<void(const CalendarStore::Removed &removed)> completion) = 0;
};

} // namespace randblatt
