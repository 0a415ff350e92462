#pragma once

#include "platform/CalendarStore.h"
#include "platform/calendar/CalendarBackend.h"
#include "platform/calendar/server/EvolutionClient.h"
#include "platform/calendar/server/Glib.h"

#include <QByteArray>

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace randblatt {

/// The calendars of Evolution Data Server that are enabled, and ticked in the desktop's own calendar program.
/// Each operation waits for the server; to be used on the thread whose GLib main context hears of changes.
class EvolutionServer
{
public:
    /// `serverName` is the name under which the server's registry is on the session bus; cancelling
    /// `shutdown` ends all waiting.
    EvolutionServer(QByteArray serverName, GlibPointer<GCancellable> shutdown);
    ~EvolutionServer();
    EvolutionServer(const EvolutionServer &) = delete;
    EvolutionServer &operator=(const EvolutionServer &) = delete;

    /// To be set before open().
    void setChangeHandler(std::function<void()> handler) { m_changed = std::move(handler); }
    /// Connects to the server, if that is to be done.
    [[nodiscard]] CalendarOpening open();
    void close();
    [[nodiscard]] CalendarStore::Events events(const QDateTime &start, const QDateTime &end);
    [[nodiscard]] CalendarStore::Calendars calendars();
    [[nodiscard]] CalendarStore::Saved save(const NewCalendarEvent &event);
    [[nodiscard]] CalendarStore::Removed remove(const SavedEvent &event);

private:
    using Sources = std::vector<GlibPointer<ESource>>;

    [[nodiscard]] Sources shownSources() const;
    [[nodiscard]] Sources writableSources() const;
    [[nodiscard]] bool isDefault(ESource *source) const;
    [[nodiscard]] CalendarAnswer<EvolutionClient *> clientFor(const NewCalendarEvent &event);
    [[nodiscard]] EvolutionClient *client(ESource *source, GCancellable *cancellable);

    const QByteArray m_serverName;
    GlibPointer<GCancellable> m_shutdown;
    std::function<void()> m_changed;
    /// The connection that all in the process share, as long as somebody has it.
    GlibPointer<GDBusConnection> m_bus;
    GlibPointer<ESourceRegistry> m_registry;
    guint m_serverWatch = 0;
    bool m_serverDied = false;
    std::map<std::string, std::unique_ptr<EvolutionClient>> m_clients;
};

} // namespace randblatt
