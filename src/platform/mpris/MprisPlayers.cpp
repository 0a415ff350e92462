#include "platform/mpris/MprisPlayers.h"

#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusServiceWatcher>
#include <QLoggingCategory>

#include <algorithm>
#include <utility>

namespace randblatt {

using namespace Qt::StringLiterals;

namespace {

Q_LOGGING_CATEGORY(lcMpris, "quillbar.mpris")

constexpr auto prefix = "org.mpris.MediaPlayer2."_L1;
// A proxy for the other players, which would be found twice.
constexpr auto proxy = "org.mpris.MediaPlayer2.playerctld"_L1;
constexpr int callTimeout = 1000;

const QString objectPath = u"/org/mpris/MediaPlayer2"_s;
const QString playerInterface = u"org.mpris.MediaPlayer2.Player"_s;
const QString propertiesInterface = u"org.freedesktop.DBus.Properties"_s;

bool isPlayer(const QString &service)
{
    return service.startsWith(prefix) && service != proxy;
}

QDBusMessage busCall(const QString &method)
{
    return QDBusMessage::createMethodCall(u"org.freedesktop.DBus"_s, u"/org/freedesktop/DBus"_s,
                                          u"org.freedesktop.DBus"_s, method);
}

/// Calls without waiting; `done` is called with the watcher unless `context` is gone by then.
template <typename Done>
void call(QDBusConnection bus, const QDBusMessage &message, QObject *context, Done done)
{
    auto *watcher = new QDBusPendingCallWatcher(bus.asyncCall(message, callTimeout), context);
    QObject::connect(watcher, &QDBusPendingCallWatcher::finished, context,
                     [done](QDBusPendingCallWatcher *finished) {
                         finished->deleteLater();
                         done(*finished);
                     });
}

} // namespace

MprisPlayers::MprisPlayers(const QDBusConnection &bus, QObject *parent)
    : QObject(parent)
    , m_bus(bus)
{
    if (!m_bus.isConnected())
        return;
    auto *watcher = new QDBusServiceWatcher(u"org.mpris.MediaPlayer2*"_s, m_bus,
                                            QDBusServiceWatcher::WatchForOwnerChange, this);
    connect(watcher, &QDBusServiceWatcher::serviceOwnerChanged, this, &MprisPlayers::ownerChanged);
    m_bus.connect(QString(), objectPath, propertiesInterface, u"PropertiesChanged"_s, this,
                  SLOT(propertiesChanged(QString, QVariantMap, QStringList, QDBusMessage)));
    listPlayers();
}

void MprisPlayers::command(const QString &method)
{
    m_commands.append(method);
    runCommands();
}

void MprisPlayers::runCommands()
{
    const bool plays =
        std::any_of(m_players.begin(), m_players.end(), [](const auto &player) { return player.isPlaying; });
    if (m_owed > 0 && !plays)
        return;
    const QStringList commands = std::exchange(m_commands, {});
    for (const QString &method : commands) {
        if (m_current.isEmpty())
            return;
        call(m_bus, QDBusMessage::createMethodCall(m_current, objectPath, playerInterface, method), this,
             [player = m_current](const QDBusPendingCall &reply) {
                 if (reply.isError())
                     qCWarning(lcMpris, "MPRIS-Fehler: %ls: %ls", qUtf16Printable(player),
                               qUtf16Printable(reply.error().message()));
             });
    }
}

void MprisPlayers::listPlayers()
{
    ++m_owed;
    call(m_bus, busCall(u"ListNames"_s), this, [this](const QDBusPendingCall &call) {
        const QDBusPendingReply<QStringList> reply = call;
        const QStringList names = reply.isError() ? QStringList() : reply.value();
        for (const QString &name : names) {
            if (isPlayer(name)) {
                add(name);
                askOwner(name);
            }
        }
        --m_owed;
        settle();
    });
}

void MprisPlayers::ownerChanged(const QString &service, const QString &oldOwner, const QString &newOwner)
{
    if (!isPlayer(service))
        return;
    if (newOwner.isEmpty()) {
        remove(service);
        return;
    }
    m_owners.insert(service, newOwner);
    if (oldOwner.isEmpty())
        add(service);
    else
        setPlaying(service, false);
    askState(service);
}

void MprisPlayers::add(const QString &service)
{
    const bool known = std::any_of(m_players.begin(), m_players.end(),
                                   [&](const auto &player) { return player.service == service; });
    if (!known)
        m_players.append({.service = service});
}

void MprisPlayers::remove(const QString &service)
{
    m_owners.remove(service);
    m_players.removeIf([&](const auto &player) { return player.service == service; });
    settle();
}

void MprisPlayers::askOwner(const QString &service)
{
    QDBusMessage message = busCall(u"GetNameOwner"_s);
    message << service;
    ++m_owed;
    call(m_bus, message, this, [this, service](const QDBusPendingCall &call) {
        const QDBusPendingReply<QString> reply = call;
        if (reply.isError()) {
            remove(service);
        } else {
            m_owners.insert(service, reply.value());
            askState(service);
        }
        --m_owed;
        settle();
    });
}

void MprisPlayers::askState(const QString &service)
{
    QDBusMessage message = QDBusMessage::createMethodCall(service, objectPath, propertiesInterface, u"Get"_s);
    message << playerInterface << u"PlaybackStatus"_s;
    // Asking must not start a player that has just ended.
    message.setAutoStartService(false);
    ++m_owed;
    call(m_bus, message, this, [this, service](const QDBusPendingCall &call) {
        const QDBusPendingReply<QDBusVariant> reply = call;
        if (!reply.isError())
            setPlaying(service, reply.value().variant().toString() == "Playing"_L1);
        --m_owed;
        settle();
    });
}

void MprisPlayers::propertiesChanged(const QString &interface, const QVariantMap &changed,
                                     const QStringList &invalidated, const QDBusMessage &message)
{
    if (interface != playerInterface)
        return;
    const QStringList services = m_owners.keys(message.service());
    for (const QString &service : services) {
        if (const auto status = changed.constFind(u"PlaybackStatus"_s); status != changed.cend())
            setPlaying(service, status->toString() == "Playing"_L1);
        else if (invalidated.contains("PlaybackStatus"_L1))
            askState(service);
    }
}

void MprisPlayers::setPlaying(const QString &service, bool isPlaying)
{
    for (PlayerState &player : m_players) {
        if (player.service != service || player.isPlaying == isPlaying)
            continue;
        player.isPlaying = isPlaying;
        player.lastPlayed = ++m_clock;
    }
    settle();
}

void MprisPlayers::settle()
{
    const auto chosen = choosePlayer(m_players, m_current);
    const QString current = chosen ? m_players.at(*chosen).service : QString();
    if (m_current != current) {
        m_current = current;
        Q_EMIT currentChanged();
    }
    if (!m_commands.isEmpty())
        runCommands();
}

} // namespace randblatt
