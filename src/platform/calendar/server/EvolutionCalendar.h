#pragma once

#include "platform/calendar/CalendarBackend.h"
#include "platform/calendar/server/Glib.h"

#include <future>
#include <memory>
#include <thread>

namespace randblatt {

/// All enabled calendars of Evolution Data Server, on a thread with a GLib main context of its own. A server
/// that hangs does not keep the destructor for more than a moment.
class EvolutionCalendar : public CalendarBackend
{
public:
    /// `serverName` is the name under which the server's registry is on the session bus.
    explicit EvolutionCalendar(const QString &serverName);
    ~EvolutionCalendar() override;

    [[nodiscard]] QString name() const override;
    void setChangeHandler(std::function<void()> handler) override;
    void open(std::function<void(const CalendarOpening &opening)> completion) override;
    void fetchEvents(const QDateTime &start, const QDateTime &end,
                     std::function<void(const CalendarStore::Events &events)> completion) override;
    void fetchCalendars(std::function<void(const CalendarStore::Calendars &calendars)> completion) override;
    void saveEvent(const NewCalendarEvent &event,
                   std::function<void(const CalendarStore::Saved &saved)> completion) override;
    void removeEvent(const SavedEvent &event,
                     std::function<void(const CalendarStore::Removed &removed)> completion) override;

private:
    struct Worker;

    template <typename Answer, typename Task>
    void post(const Task &task, std::function<void(const Answer &)> completion);

    const QString m_serverName;
    /// Shared with the thread, which may outlive the object.
    std::shared_ptr<Worker> m_worker;
    std::future<void> m_end;
    std::thread m_thread;
};

} // namespace randblatt
