#include "platform/calendar/server/EvolutionServer.h"

#include <QLoggingCategory>

#include <chrono>
#include <set>
#include <utility>

namespace randblatt {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

Q_LOGGING_CATEGORY(lcCalendar, "quillbar.calendar")

// The server's first start reads all accounts; a calendar that takes longer than its share is left out.
constexpr auto timeToOpen = 20s;
constexpr auto timePerCalendar = 8s;

QString unreachable()
{
    return u"Der Kalenderdienst antwortet nicht."_s;
}

} // namespace

EvolutionServer::EvolutionServer(QByteArray serverName, GlibPointer<GCancellable> shutdown)
    : m_serverName(std::move(serverName))
    , m_shutdown(std::move(shutdown))
    , m_changed([] {})
{
}

EvolutionServer::~EvolutionServer()
{
    close();
}

bool EvolutionServer::open()
{
    if (m_registry && !m_serverDied)
        return true;
    close();
    const Deadline deadline(m_shutdown.get(), timeToOpen);
    GlibError error;
    m_bus.reset(g_bus_get_sync(G_BUS_TYPE_SESSION, deadline.cancellable(), error.out()));
    if (!m_bus) {
        qCWarning(lcCalendar, "Sitzungsbus nicht erreichbar: %s", error.message());
        return false;
    }
    // Else the end of the session bus would end the process.
    g_dbus_connection_set_exit_on_close(m_bus.get(), FALSE);
    m_registry.reset(e_source_registry_new_sync(deadline.cancellable(), error.out()));
    if (!m_registry) {
        qCWarning(lcCalendar, "Kalenderdienst nicht erreichbar: %s", error.message());
        return false;
    }
    m_serverDied = false;
    for (const char *signal :
         {"source-added", "source-removed", "source-changed", "source-enabled", "source-disabled"})
        connectSignal(m_registry.get(), signal, &m_changed);
    m_serverWatch = g_bus_watch_name(
        G_BUS_TYPE_SESSION, m_serverName.constData(), G_BUS_NAME_WATCHER_FLAGS_NONE, nullptr,
        [](GDBusConnection *, const char *, gpointer data) {
            auto *self = static_cast<EvolutionServer *>(data);
            self->m_serverDied = true;
            self->m_changed();
        },
        this, nullptr);
    return true;
}

void EvolutionServer::close()
{
    if (m_serverWatch != 0)
        g_bus_unwatch_name(m_serverWatch);
    m_serverWatch = 0;
    m_clients.clear();
    // The library hands out one registry to all who ask for it: it may live on.
    if (m_registry)
        disconnectSignals(m_registry.get(), &m_changed);
    m_registry.reset();
    m_bus.reset();
}

EvolutionClient *EvolutionServer::client(ESource *source)
{
    const std::string uid = e_source_get_uid(source);
    const auto known = m_clients.find(uid);
    if (known != m_clients.end() && !known->second->hasFailed())
        return known->second.get();
    // Only now: the failed one may still have told of its calendar's death.
    m_clients.erase(uid);
    const Deadline deadline(m_shutdown.get(), timePerCalendar);
    auto connected = EvolutionClient::connect(source, &m_changed, deadline.cancellable());
    return connected ? (m_clients[uid] = std::move(connected)).get() : nullptr;
}

CalendarStore::Events EvolutionServer::events(const QDateTime &start, const QDateTime &end)
{
    if (!m_registry || m_serverDied)
        return CalendarStore::Events::failure(unreachable());
    QList<CalendarEvent> events;
    std::set<std::string> enabled;
    bool anyAnswered = false;
    bool anyFailed = false;
    GList *sources = e_source_registry_list_enabled(m_registry.get(), E_SOURCE_EXTENSION_CALENDAR);
    for (GList *link = sources; link != nullptr; link = link->next) {
        auto *source = static_cast<ESource *>(link->data);
        EvolutionClient *calendar = client(source);
        const Deadline deadline(m_shutdown.get(), timePerCalendar);
        const auto found =
            calendar != nullptr ? calendar->events(start, end, deadline.cancellable()) : std::nullopt;
        enabled.insert(e_source_get_uid(source));
        (found ? anyAnswered : anyFailed) = true;
        if (found)
            events.append(*found);
    }
    g_list_free_full(sources, g_object_unref);
    std::erase_if(m_clients, [&](const auto &entry) { return !enabled.contains(entry.first); });
    // Calendars that work are shown beside those that don't.
    if (anyFailed && !anyAnswered)
        return CalendarStore::Events::failure(unreachable());
    return events;
}

CalendarStore::Saved EvolutionServer::save(const NewCalendarEvent &event)
{
    if (!m_registry || m_serverDied)
        return CalendarStore::Saved::failure(unreachable());
    const GlibPointer<ESource> source(e_source_registry_ref_default_calendar(m_registry.get()));
    if (!source) {
        qCWarning(lcCalendar, "Kein Standardkalender");
        return CalendarStore::Saved::failure(u"Es gibt keinen Standardkalender."_s);
    }
    EvolutionClient *calendar = client(source.get());
    if (calendar == nullptr)
        return CalendarStore::Saved::failure(unreachable());
    const Deadline deadline(m_shutdown.get(), timePerCalendar);
    return calendar->save(event, deadline.cancellable());
}

CalendarStore::Removed EvolutionServer::remove(const SavedEvent &event)
{
    if (!m_registry || m_serverDied)
        return CalendarStore::Removed::failure(unreachable());
    const GlibPointer<ESource> source(
        e_source_registry_ref_source(m_registry.get(), event.calendar.toUtf8().constData()));
    // A calendar that is gone has taken its events with it.
    if (!source)
        return Removal::gone;
    EvolutionClient *calendar = client(source.get());
    if (calendar == nullptr)
        return CalendarStore::Removed::failure(unreachable());
    const Deadline deadline(m_shutdown.get(), timePerCalendar);
    return calendar->remove(event, deadline.cancellable());
}

} // namespace randblatt
