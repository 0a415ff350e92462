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

} // namespace

ServerCalendar::ServerCalendar(QString pluginPath, const QDBusConnection &bus)
    : m_pluginPath(std::move(pluginPath))
    , m_bus(bus)
{
    m_queue.setMaxThreadCount(1);
}

ServerCalendar::~ServerCalendar()
{
    m_queue.waitForDone();
}

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
    // Asking the bus and loading the libraries takes too long for the main thread.
    m_queue.start([this, completion = std::move(completion)] {
        if (!m_backend)
            m_backend = load();
        if (m_backend)
            m_backend->open(completion);
        else
            completion(false);
    });
}

void ServerCalendar::fetchEvents(const QDateTime &start, const QDateTime &end,
                                 std::function<void(const CalendarStore::Events &)> completion)
{
    m_backend->fetchEvents(start, end, std::move(completion));
}

void ServerCalendar::saveEvent(const NewCalendarEvent &event, std::function<void(bool)> completion)
{
    m_backend->saveEvent(event, std::move(completion));
}

QString ServerCalendar::serverName() const
{
    // The server's client library does not tell a missing server from one without calendars.
    const auto question =
        QDBusMessage::createMethodCall(u"org.freedesktop.DBus"_s, u"/org/freedesktop/DBus"_s,
                                       u"org.freedesktop.DBus"_s, u"ListActivatableNames"_s);
    const QDBusReply<QStringList> reply = m_bus.call(question, QDBus::Block, busTimeout);
    const QStringList names = reply.value();
    const auto it = std::find_if(names.cbegin(), names.cend(),
                                 [](const QString &name) { return name.startsWith(serverPrefix); });
    return it == names.cend() ? QString() : *it;
}

std::unique_ptr<CalendarBackend> ServerCalendar::load() const
{
    if (!QFile::exists(m_pluginPath))
        return nullptr;
    const QString server = serverName();
    if (server.isEmpty())
        return nullptr;
    QPluginLoader loader(m_pluginPath);
    auto *factory = qobject_cast<CalendarBackendFactory *>(loader.instance());
    if (factory == nullptr) {
        qCWarning(lcCalendar, "Kalender-Erweiterung: %ls", qUtf16Printable(loader.errorString()));
        return nullptr;
    }
    auto backend = factory->makeBackend(server);
    backend->setChangeHandler(m_changeHandler);
    return backend;
}

} // namespace randblatt
