#pragma once

#include "platform/calendar/CalendarBackend.h"
#include "platform/calendar/CalendarWorker.h"

#include <QDBusConnection>

#include <memory>

namespace randblatt {

/// The desktop's calendar server (Evolution Data Server), through a plugin. The plugin, with all the
/// libraries that come with it, is loaded only when the server can be started on the bus; it may be missing.
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
    void open(std::function<void(bool opened)> completion) override;
    void fetchEvents(const QDateTime &start, const QDateTime &end,
                     std::function<void(const CalendarStore::Events &events)> completion) override;
    void saveEvent(const NewCalendarEvent &event,
                   std::function<void(const CalendarStore::Saved &saved)> completion) override;
    void removeEvent(const SavedEvent &event,
                     std::function<void(const CalendarStore::Removed &removed)> completion) override;

private:
    QString m_pluginPath;
    QDBusConnection m_bus;
    std::function<void()> m_changeHandler;
    /// What open() loads; used by the others after it has answered. Shared with a task that may hang.
    struct Plugin
    {
        std::unique_ptr<CalendarBackend> backend;
    };
    std::shared_ptr<Plugin> m_plugin;
    CalendarWorker m_worker;
};

} // namespace randblatt
