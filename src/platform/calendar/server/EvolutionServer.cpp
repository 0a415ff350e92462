#include "platform/calendar/server/EvolutionServer.h"

#include <QLoggingCategory>

#include <algorithm>
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
// One that hangs is followed by others that do.
constexpr std::chrono::milliseconds timeForAll = 12s;

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

CalendarOpening EvolutionServer::open()
{
    using Outcome = CalendarOpening::Outcome;
    if (m_registry && !m_serverDied)
        return {Outcome::opened};
    close();
    const Deadline deadline(m_shutdown.get(), timeToOpen);
    GlibError error;
    m_bus.reset(g_bus_get_sync(G_BUS_TYPE_SESSION, deadline.cancellable(), error.out()));
    if (!m_bus) {
        qCWarning(lcCalendar, "Sitzungsbus nicht erreichbar: %s", error.message());
        return {Outcome::failed, unreachable()};
    }
    // Else the end of the session bus would end the process.
    g_dbus_connection_set_exit_on_close(m_bus.get(), FALSE);
    m_registry.reset(e_source_registry_new_sync(deadline.cancellable(), error.out()));
    if (!m_registry) {
        qCWarning(lcCalendar, "Kalenderdienst nicht erreichbar: %s", error.message());
        return {Outcome::failed, unreachable()};
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
    return {Outcome::opened};
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

EvolutionClient *EvolutionServer::client(ESource *source, GCancellable *cancellable)
{
    const std::string uid = e_source_get_uid(source);
    const auto known = m_clients.find(uid);
    if (known != m_clients.end() && !known->second->hasFailed())
        return known->second.get();
    // Only now: the failed one may still have told of its calendar's death.
    m_clients.erase(uid);
    const Deadline deadline(cancellable, timePerCalendar);
    auto connected = EvolutionClient::connect(source, &m_changed, deadline.cancellable());
    return connected ? (m_clients[uid] = std::move(connected)).get() : nullptr;
}

EvolutionServer::Sources EvolutionServer::shownSources() const
{
    Sources shown;
    GList *sources = e_source_registry_list_enabled(m_registry.get(), E_SOURCE_EXTENSION_CALENDAR);
    for (GList *link = sources; link != nullptr; link = link->next) {
        auto *source = static_cast<ESource *>(link->data);
        auto *choice =
            static_cast<ESourceSelectable *>(e_source_get_extension(source, E_SOURCE_EXTENSION_CALENDAR));
        if (e_source_selectable_get_selected(choice))
            shown.push_back(glibReference(source));
    }
    g_list_free_full(sources, g_object_unref);
    return shown;
}

CalendarStore::Events EvolutionServer::events(const QDateTime &start, const QDateTime &end)
{
    if (!m_registry || m_serverDied)
        return CalendarStore::Events::failure(unreachable());
    QList<CalendarEvent> events;
    std::set<std::string> shown;
    bool anyAnswered = false;
    bool anyFailed = false;
    const Deadline all(m_shutdown.get(), timeForAll);
    for (const auto &source : shownSources()) {
        EvolutionClient *calendar = client(source.get(), all.cancellable());
        const Deadline deadline(all.cancellable(), timePerCalendar);
        const auto found =
            calendar != nullptr ? calendar->events(start, end, deadline.cancellable()) : std::nullopt;
        shown.insert(e_source_get_uid(source.get()));
        (found ? anyAnswered : anyFailed) = true;
        if (found)
            events.append(*found);
    }
    std::erase_if(m_clients, [&](const auto &entry) { return !shown.contains(entry.first); });
    // Calendars that work are shown beside those that don't.
    if (anyFailed && !anyAnswered)
        return CalendarStore::Events::failure(unreachable());
    return events;
}

/// Those that events may be added to, the default one first, even while it does not answer: what is meant for
/// it must not go elsewhere.
EvolutionServer::Sources EvolutionServer::writableSources() const
{
    Sources shown = shownSources();
    std::stable_partition(shown.begin(), shown.end(),
                          [this](const GlibPointer<ESource> &source) { return isDefault(source.get()); });
    std::erase_if(shown, [this](const GlibPointer<ESource> &source) {
        const auto known = m_clients.find(e_source_get_uid(source.get()));
        return known != m_clients.end() && !known->second->isWritable();
    });
    return shown;
}

bool EvolutionServer::isDefault(ESource *source) const
{
    const GlibPointer<ESource> preferred(e_source_registry_ref_default_calendar(m_registry.get()));
    return preferred && e_source_equal(source, preferred.get());
}

CalendarStore::Calendars EvolutionServer::calendars()
{
    if (!m_registry || m_serverDied)
        return CalendarStore::Calendars::failure(unreachable());
    QList<WritableCalendar> calendars;
    for (const auto &source : writableSources()) {
        if (isDefault(source.get()) || m_clients.contains(e_source_get_uid(source.get())))
            calendars.append({QString::fromUtf8(e_source_get_uid(source.get())), calendarName(source.get()),
                              calendarColor(source.get())});
    }
    return calendars;
}

CalendarAnswer<EvolutionClient *> EvolutionServer::clientFor(const NewCalendarEvent &event)
{
    using Answer = CalendarAnswer<EvolutionClient *>;
    const bool isChosen = !event.calendar.isEmpty();
    // There alone the event is seen.
    for (const auto &source : isChosen ? shownSources() : writableSources()) {
        if (isChosen && QString::fromUtf8(e_source_get_uid(source.get())) != event.calendar)
            continue;
        EvolutionClient *calendar = client(source.get(), m_shutdown.get());
        if (calendar != nullptr && (isChosen || calendar->isWritable()))
            return calendar;
        if (isChosen || (calendar == nullptr && isDefault(source.get())))
            return Answer::failure(unreachable());
    }
    return Answer::failure(isChosen ? u"Der gewählte Kalender ist weg oder ausgeblendet."_s
                                    : u"Kein Kalender, der gezeigt wird, lässt sich ändern."_s);
}

CalendarStore::Saved EvolutionServer::save(const NewCalendarEvent &event)
{
    if (!m_registry || m_serverDied)
        return CalendarStore::Saved::failure(unreachable());
    const auto calendar = clientFor(event);
    if (!calendar)
        return CalendarStore::Saved::failure(calendar.reason());
    const Deadline deadline(m_shutdown.get(), timePerCalendar);
    return (*calendar)->save(event, deadline.cancellable());
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
    EvolutionClient *calendar = client(source.get(), m_shutdown.get());
    if (calendar == nullptr)
        return CalendarStore::Removed::failure(unreachable());
    const Deadline deadline(m_shutdown.get(), timePerCalendar);
    return calendar->remove(event, deadline.cancellable());
}

} // namespace randblatt
