#include "platform/calendar/server/EvolutionCalendar.h"

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

} // namespace

EvolutionCalendar::EvolutionCalendar(const QString &serverName)
    : m_serverName(serverName.toUtf8())
    , m_context(g_main_context_new())
    , m_loop(g_main_loop_new(m_context.get(), FALSE))
    , m_shutdown(g_cancellable_new())
    , m_changed([] {})
    , m_thread([this] { run(); })
{
}

EvolutionCalendar::~EvolutionCalendar()
{
    g_cancellable_cancel(m_shutdown.get());
    post([this] { g_main_loop_quit(m_loop.get()); });
    m_thread.join();
}

QString EvolutionCalendar::name() const
{
    return QString::fromUtf8(m_serverName);
}

void EvolutionCalendar::setChangeHandler(std::function<void()> handler)
{
    m_changed = std::move(handler);
}

void EvolutionCalendar::open(std::function<void(bool)> completion)
{
    post([this, completion = std::move(completion)] { completion(openRegistry()); });
}

void EvolutionCalendar::fetchEvents(const QDateTime &start, const QDateTime &end,
                                    std::function<void(const CalendarStore::Events &)> completion)
{
    post([this, start, end, completion = std::move(completion)] { completion(query(start, end)); });
}

void EvolutionCalendar::saveEvent(const NewCalendarEvent &event, std::function<void(bool)> completion)
{
    post([this, event, completion = std::move(completion)] { completion(save(event)); });
}

void EvolutionCalendar::run()
{
    g_main_context_push_thread_default(m_context.get());
    g_main_loop_run(m_loop.get());
    closeRegistry();
    // What has been told off still wants to be heard of before its objects can go.
    while (g_main_context_iteration(m_context.get(), FALSE)) {
    }
    g_main_context_pop_thread_default(m_context.get());
}

void EvolutionCalendar::post(std::function<void()> task)
{
    // Not g_main_context_invoke(): before the thread runs its loop that would run the task right here.
    GSource *source = g_idle_source_new();
    g_source_set_priority(source, G_PRIORITY_DEFAULT);
    g_source_set_callback(
        source,
        [](gpointer data) -> gboolean {
            (*static_cast<std::function<void()> *>(data))();
            return G_SOURCE_REMOVE;
        },
        new std::function<void()>(std::move(task)),
        [](gpointer data) { delete static_cast<std::function<void()> *>(data); });
    g_source_attach(source, m_context.get());
    g_source_unref(source);
}

bool EvolutionCalendar::openRegistry()
{
    if (m_registry && !m_serverDied)
        return true;
    closeRegistry();
    const Deadline deadline(m_shutdown.get(), timeToOpen);
    GlibError error;
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
            auto *self = static_cast<EvolutionCalendar *>(data);
            self->m_serverDied = true;
            self->m_changed();
        },
        this, nullptr);
    return true;
}

void EvolutionCalendar::closeRegistry()
{
    if (m_serverWatch != 0)
        g_bus_unwatch_name(m_serverWatch);
    m_serverWatch = 0;
    m_clients.clear();
    // The library hands out one registry to all who ask for it: it may live on.
    if (m_registry)
        disconnectSignals(m_registry.get(), &m_changed);
    m_registry.reset();
}

EvolutionClient *EvolutionCalendar::client(ESource *source)
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

CalendarStore::Events EvolutionCalendar::query(const QDateTime &start, const QDateTime &end)
{
    if (m_serverDied)
        return std::nullopt;
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
    return anyFailed && !anyAnswered ? CalendarStore::Events() : events;
}

bool EvolutionCalendar::save(const NewCalendarEvent &event)
{
    const GlibPointer<ESource> source(
        m_serverDied ? nullptr : e_source_registry_ref_default_calendar(m_registry.get()));
    if (!source) {
        qCWarning(lcCalendar, "Kein Standardkalender");
        return false;
    }
    EvolutionClient *calendar = client(source.get());
    const Deadline deadline(m_shutdown.get(), timePerCalendar);
    return calendar != nullptr && calendar->save(event, deadline.cancellable());
}

} // namespace randblatt
