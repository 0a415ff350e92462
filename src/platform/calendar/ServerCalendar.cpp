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

/// The name of the server on the bus; empty where none can be started.
QString serverName(const QDBusConnection &bus)
{
    // The server's client library does not tell a missing server from one without calendars.
    const auto question =
        QDBusMessage::createMethodCall(u"org.freedesktop.DBus"_s, u"/org/freedesktop/DBus"_s,
                                       u"org.freedesktop.DBus"_s, u"ListActivatableNames"_s);
    const QDBusReply<QStringList> reply = bus.call(question, QDBus::Block, busTimeout);
    const QStringList names = reply.value();
    const auto it = std::find_if(names.cbegin(), names.cend(),
                                 [](const QString &name) { return name.startsWith(serverPrefix); });
    return it == names.cend() ? QString() : *it;
}

std::unique_ptr<CalendarBackend> load(const QString &pluginPath, const QDBusConnection &bus)
{
    if (!QFile::exists(pluginPath))
        return nullptr;
    const QString server = serverName(bus);
    if (server.isEmpty())
        return nullptr;
    QPluginLoader loader(pluginPath);
    auto *factory = qobject_cast<CalendarBackendFactory *>(loader.instance());
    if (factory == nullptr) {
        qCWarning(lcCalendar, "Kalender-Erweiterung: %ls", qUtf16Printable(loader.errorString()));
        return nullptr;
    }
    return factory->makeBackend(server);
}

} // namespace

ServerCalendar::ServerCalendar(QString pluginPath, const QDBusConnection &bus)
    : m_pluginPath(std::move(pluginPath))
    , m_bus(bus)
    , m_plugin(std::make_shared<Plugin>())
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

void ServerCalendar::open(std::function<void(bool)> completion)
{
    const auto answer = [gate = m_worker.gate(), completion = std::move(completion)](bool opened) {
        gate->pass([&] { completion(opened); });
    };
    const auto changed = [gate = m_worker.gate(), handler = m_changeHandler] {
        if (handler)
            gate->pass(handler);
    };
    // Asking the bus and loading the libraries takes too long for the main thread.
    m_worker.start([plugin = m_plugin, path = m_pluginPath, bus = m_bus, changed, answer] {
        if (!plugin->backend) {
            plugin->backend = guarded([&] { return load(path, bus); },
                                      [](const QString &) { return std::unique_ptr<CalendarBackend>(); });
            if (plugin->backend)
                plugin->backend->setChangeHandler(changed);
        }
        if (plugin->backend)
            plugin->backend->open(answer);
        else
            answer(false);
    });
}

void ServerCalendar::fetchEvents(const QDateTime &start, const QDateTime &end,
                                 std::function<void(const CalendarStore::Events &)> completion)
{
    m_plugin->backend->fetchEvents(start, end, std::move(completion));
}

void ServerCalendar::saveEvent(const NewCalendarEvent &event,
                               std::function<void(const CalendarStore::Saved &)> completion)
{
    m_plugin->backend->saveEvent(event, std::move(completion));
}

void ServerCalendar::removeEvent(const SavedEvent &event,
                                 std::function<void(const CalendarStore::Removed &)> completion)
{
    m_plugin->backend->removeEvent(event, std::move(completion));
}

} // namespace randblatt
