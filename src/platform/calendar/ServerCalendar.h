#pragma once

#include "platform/calendar/CalendarBackend.h"
#include "platform/calendar/CalendarWorker.h"

#include <QDBusConnection>
#include <QDBusServiceWatcher>

#include <atomic>
#include <memory>

namespace randblatt {

/// The desktop's calendar server (Evolution Data Server), through a plugin. The plugin, with all the
/// libraries that come with it, is loaded only when the server can be started on the bus; it may be missing.
/// To be made on the main thread. That a process of the server has come to the bus by itself counts as a
/// change: what failed without it may succeed now.
class ServerCalendar : public CalendarBackend
{
public:
    /// `bus` is the session bus.
    ServerCalendar(QString pluginPath, const QDBusConnection &bus);
    ~ServerCalendar() override;

    /// Where the application's plugin is, seen from its executable.
    [[nodiscard]] static QString defaultPluginPath();

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
    template <typename Answer>
    [[nodiscard]] std::function<void(const Answer &)>
    counted(std::function<void(const Answer &)> completion) const;
    void watchNames();

    QString m_pluginPath;
    QDBusConnection m_bus;
    std::function<void()> m_changeHandler;
    /// What open() loads; used by the others after it has answered. Shared with a task that may hang.
    struct Plugin
    {
        std::unique_ptr<CalendarBackend> backend;
    };
    std::shared_ptr<Plugin> m_plugin;
    /// How many operations are under way; they start the server themselves.
    std::shared_ptr<std::atomic<int>> m_underWay;
    std::unique_ptr<QDBusServiceWatcher> m_names;
    CalendarWorker m_worker;
};

} // namespace randblatt
