#include "platform/calendar/ServerCalendar.h"

#include "platform/calendar/CalendarBackendFactory.h"

#include <QCoreApplication>
#include <QDBusMessage>
#include <QDBusReply>
#include <QDir>
#include <QFile>
#include <QLoggingCategory>
#include <QPluginLoader>

#include <algorithm>

namespace randblatt {

using namespace Qt::StringLiterals;

namespace {

Q_LOGGING_CATEGORY(lcCalendar, "quillbar.calendar")

constexpr auto serverPrefix = "org.gnome.evolution.dataserver.Sources"_L1;
constexpr int busTimeout = 2000; // milliseconds

constexpr auto serverNames = "org.gnome.evolution.dataserver*"_L1;

using Outcome = CalendarOpening::Outcome;

CalendarOpening unreachable()
{
    return {Outcome::failed, u"Der Kalenderdienst antwortet nicht."_s};
}

struct Loaded
{
    std::unique_ptr<CalendarBackend> backend;
    /// Why there is none.
    CalendarOpening opening;
};

Loaded load(const QString &pluginPath, const QDBusConnection &bus)
{
    if (!QFile::exists(pluginPath) || !bus.isConnected())
        return {};
    // The server's client library does not tell a missing server from one without calendars.
    const auto question =
        QDBusMessage::createMethodCall(u"org.freedesktop.DBus"_s, u"/org/freedesktop/DBus"_s,
                                       u"org.freedesktop.DBus"_s, u"ListActivatableNames"_s);
    const QDBusReply<QStringList> reply = bus.call(question, QDBus::Block, busTimeout);
    if (!reply.isValid())
        return {nullptr, unreachable()};
    const QStringList names = reply.value();
    const auto server = std::find_if(names.cbegin(), names.cend(),
                                     [](const QString &name) { return name.startsWith(serverPrefix); });
    if (server == names.cend())
        return {};
    QPluginLoader loader(pluginPath);
    auto *factory = qobject_cast<CalendarBackendFactory *>(loader.instance());
    if (factory == nullptr) {
        qCWarning(lcCalendar, "Kalender-Erweiterung: %ls", qUtf16Printable(loader.errorString()));
        return {nullptr, {Outcome::failed, u"Die Erweiterung für den Kalenderdienst fehlt."_s}};
    }
    return {factory->makeBackend(*server), {}};
}

} // namespace

ServerCalendar::ServerCalendar(QString pluginPath, const QDBusConnection &bus)
    : m_pluginPath(std::move(pluginPath))
    , m_bus(bus)
    , m_plugin(std::make_shared<Plugin>())
    , m_underWay(std::make_shared<std::atomic<int>>(0))
{
}

ServerCalendar::~ServerCalendar() = default;

QString ServerCalendar::defaultPluginPath()
{
    return QDir::cleanPath(QCoreApplication::applicationDirPath() + "/" QUILLBAR_PLUGIN_FOLDER
                                                                    "/quillbar-calendar-server.so"_L1);
}

QString ServerCalendar::name() const
{
    return u"Kalenderdienst des Desktops"_s;
}

void ServerCalendar::setChangeHandler(std::function<void()> handler)
{
    m_changeHandler = std::move(handler);
}

void ServerCalendar::open(std::function<void(const CalendarOpening &)> completion)
{
    watchNames();
    const auto answer = [gate = m_worker.gate(), completion = counted(std::move(completion))](
                            const CalendarOpening &opening) { gate->pass([&] { completion(opening); }); };
    const auto changed = [gate = m_worker.gate(), handler = m_changeHandler] {
        if (handler)
            gate->pass(handler);
    };
    // Asking the bus and loading the libraries takes too long for the main thread.
    m_worker.start([plugin = m_plugin, path = m_pluginPath, bus = m_bus, changed, answer] {
        CalendarOpening opening;
        if (!plugin->backend) {
            Loaded loaded = guarded([&] { return load(path, bus); },
                                    [](const QString &reason) {
                                        return Loaded{nullptr, {Outcome::failed, reason}};
                                    });
            plugin->backend = std::move(loaded.backend);
            opening = loaded.opening;
            if (plugin->backend)
                plugin->backend->setChangeHandler(changed);
        }
        if (plugin->backend)
            plugin->backend->open(answer);
        else
            answer(opening);
    });
}

template <typename Answer>
std::function<void(const Answer &)>
ServerCalendar::counted(std::function<void(const Answer &)> completion) const
{
    ++*m_underWay;
    return [underWay = m_underWay, completion = std::move(completion)](const Answer &answer) {
        --*underWay;
        completion(answer);
    };
}

void ServerCalendar::watchNames()
{
    if (m_names || !m_bus.isConnected())
        return;
    m_names =
        std::make_unique<QDBusServiceWatcher>(serverNames, m_bus, QDBusServiceWatcher::WatchForRegistration);
    QObject::connect(m_names.get(), &QDBusServiceWatcher::serviceRegistered, m_names.get(), [this] {
        if (*m_underWay == 0 && m_changeHandler)
            m_changeHandler();
    });
}

void ServerCalendar::fetchEvents(const QDateTime &start, const QDateTime &end,
                                 std::function<void(const CalendarStore::Events &)> completion)
{
    m_plugin->backend->fetchEvents(start, end, counted(std::move(completion)));
}

void ServerCalendar::fetchCalendars(std::function<void(const CalendarStore::Calendars &)> completion)
{
    m_plugin->backend->fetchCalendars(counted(std::move(completion)));
}

void ServerCalendar::saveEvent(const NewCalendarEvent &event,
                               std::function<void(const CalendarStore::Saved &)> completion)
{
    m_plugin->backend->saveEvent(event, counted(std::move(completion)));
}

void ServerCalendar::removeEvent(const SavedEvent &event,
                                 std::function<void(const CalendarStore::Removed &)> completion)
{
    m_plugin->backend->removeEvent(event, counted(std::move(completion)));
}

} // namespace randblatt
