#include "platform/mpris/MprisPlayers.h"

#include "platform/mpris/ProcessTree.h"

#include <QCoreApplication>
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
// A player that takes longer to say whether it plays hangs.
constexpr int stateTimeout = 300;

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

bool isTimeout(const QDBusPendingCall &call)
{
    const QDBusError::ErrorType type = call.error().type();
    return type == QDBusError::NoReply || type == QDBusError::Timeout || type == QDBusError::TimedOut;
}

QDBusMessage stateCall(const QString &service)
{
    QDBusMessage message = QDBusMessage::createMethodCall(service, objectPath, propertiesInterface, u"Get"_s);
    message << playerInterface << u"PlaybackStatus"_s;
    // Asking must not start a player that has just ended.
    message.setAutoStartService(false);
    return message;
}

/// Calls without waiting; `done` is called with the watcher unless `context` is gone by then.
template <typename Done>
void call(QDBusConnection bus, const QDBusMessage &message, QObject *context, Done done,
          int timeout = callTimeout)
{
    auto *watcher = new QDBusPendingCallWatcher(bus.asyncCall(message, timeout), context);
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
    if (!m_probed.isEmpty() || (m_owed > 0 && !plays))
        return;
    if (m_current.isEmpty() || m_silent.contains(m_current)) {
        if (!m_current.isEmpty())
            qCWarning(lcMpris, "MPRIS: kein Player antwortet");
        m_commands.clear();
        m_silent.clear();
        return;
    }
    probe();
}

void MprisPlayers::probe()
{
    m_probed = m_current;
    const auto answered = [this, service = m_probed](const QDBusPendingCall &probed) {
        const QDBusPendingReply<QDBusVariant> reply = probed;
        if (isTimeout(reply)) {
            qCInfo(lcMpris, "MPRIS: %ls antwortet nicht", qUtf16Printable(service));
            m_probed.clear();
            m_silent.append(service);
            setHung(service, true);
            return;
        }
        if (!reply.isError())
            setPlaying(service, reply.value().variant().toString() == "Playing"_L1);
        m_probed.clear();
        // Another one may play by now.
        if (m_current == service)
            sendCommands();
        else
            runCommands();
    };
    call(m_bus, stateCall(m_probed), this, answered, stateTimeout);
}

void MprisPlayers::sendCommands()
{
    // Those that hang may be asked again the next time.
    const QStringList silent = std::exchange(m_silent, {});
    const QStringList commands = std::exchange(m_commands, {});
    for (const QString &service : silent)
        askState(service);
    for (const QString &method : commands) {
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
            if (isPlayer(name))
                askOwner(name);
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
    if (!oldOwner.isEmpty())
        setPlaying(service, false);
    admit(service, newOwner);
}

void MprisPlayers::admit(const QString &service, const QString &owner)
{
    m_owners.insert(service, owner);
    QDBusMessage message = busCall(u"GetConnectionUnixProcessID"_s);
    message << owner;
    ++m_owed;
    call(m_bus, message, this, [this, service, owner](const QDBusPendingCall &call) {
        const QDBusPendingReply<uint> reply = call;
        // It may have gone meanwhile, or have become another's.
        if (m_owners.value(service) == owner) {
            if (!reply.isError() && isDescendant(reply.value(), QCoreApplication::applicationPid())) {
                remove(service);
            } else {
                add(service);
                askState(service);
            }
        }
        --m_owed;
        settle();
    });
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
            admit(service, reply.value());
        }
        --m_owed;
        settle();
    });
}

void MprisPlayers::askState(const QString &service)
{
    ++m_owed;
    const auto answered = [this, service](const QDBusPendingCall &state) {
        const QDBusPendingReply<QDBusVariant> reply = state;
        --m_owed;
        if (!reply.isError())
            setPlaying(service, reply.value().variant().toString() == "Playing"_L1);
        else
            setHung(service, isTimeout(reply));
    };
    call(m_bus, stateCall(service), this, answered, stateTimeout);
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

void MprisPlayers::setHung(const QString &service, bool isHung)
{
    for (PlayerState &player : m_players) {
        if (player.service != service)
            continue;
        player.isHung = isHung;
        if (isHung)
            player.isPlaying = false;
    }
    settle();
}

void MprisPlayers::setPlaying(const QString &service, bool isPlaying)
{
    for (PlayerState &player : m_players) {
        if (player.service != service)
            continue;
        player.isHung = false;
        if (player.isPlaying == isPlaying)
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
