#pragma once

#include "platform/calendar/CalendarBackend.h"
#include "platform/calendar/server/EvolutionClient.h"
#include "platform/calendar/server/Glib.h"

#include <map>
#include <string>
#include <thread>

namespace randblatt {

/// All enabled calendars of Evolution Data Server, on a thread with a GLib main context of its own.
class EvolutionCalendar : public CalendarBackend
{
public:
    /// `serverName` is the name under which the server's registry is on the session bus.
    explicit EvolutionCalendar(const QString &serverName);
    ~EvolutionCalendar() override;

    [[nodiscard]] QString name() const override;
    void setChangeHandler(std::function<void()> handler) override;
    void open(std::function<void(bool opened)> completion) override;
    void fetchEvents(const QDateTime &start, const QDateTime &end,
                     std::function<void(const CalendarStore::Events &events)> completion) override;
    void saveEvent(const NewCalendarEvent &event, std::function<void(bool saved)> completion) override;

private:
    void run();
    void post(std::function<void()> task);
    bool openRegistry();
    void closeRegistry();
    [[nodiscard]] CalendarStore::Events query(const QDateTime &start, const QDateTime &end);
    [[nodiscard]] bool save(const NewCalendarEvent &event);
    [[nodiscard]] EvolutionClient *client(ESource *source);

    const QByteArray m_serverName;
    GlibPointer<GMainContext> m_context;
    GlibPointer<GMainLoop> m_loop;
    GlibPointer<GCancellable> m_shutdown;
    std::function<void()> m_changed;

    // Used on the thread alone.
    GlibPointer<ESourceRegistry> m_registry;
    guint m_serverWatch = 0;
    bool m_serverDied = false;
    std::map<std::string, std::unique_ptr<EvolutionClient>> m_clients;

    std::thread m_thread;
};

} // namespace randblatt
