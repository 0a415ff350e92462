#include "platform/freedesktop/TrayHost.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusVariant>

namespace randblatt {

using namespace Qt::StringLiterals;

namespace {

const QString watcherService = u"org.kde.StatusNotifierWatcher"_s;
const QString watcherPath = u"/StatusNotifierWatcher"_s;

} // namespace

TrayHost::TrayHost(const QDBusConnection &sessionBus, QObject *parent)
    : QObject(parent)
    , m_bus(sessionBus)
    , m_watcher(watcherService, sessionBus)
{
    if (!m_bus.isConnected())
        return;
    connect(&m_watcher, &QDBusServiceWatcher::serviceRegistered, this, &TrayHost::ask);
    connect(&m_watcher, &QDBusServiceWatcher::serviceUnregistered, this, [this] { setNotifierHost(false); });
    for (const auto &signal : {u"StatusNotifierHostRegistered"_s, u"StatusNotifierHostUnregistered"_s})
        m_bus.connect(watcherService, watcherPath, watcherService, signal, this, SLOT(ask()));
    ask();
}

void TrayHost::setEmbeddingTray(bool exists)
{
    update(m_hasEmbeddingTray, exists);
}

void TrayHost::ask()
{
    QDBusMessage call = QDBusMessage::createMethodCall(watcherService, watcherPath,
                                                       u"org.freedesktop.DBus.Properties"_s, u"Get"_s);
    call.setArguments({watcherService, u"IsStatusNotifierHostRegistered"_s});
    call.setAutoStartService(false);
    auto *pending = new QDBusPendingCallWatcher(m_bus.asyncCall(call), this);
    connect(pending, &QDBusPendingCallWatcher::finished, this, [this, pending] {
        pending->deleteLater();
        const QDBusPendingReply<QDBusVariant> reply = *pending;
        setNotifierHost(reply.isValid() && reply.value().variant().toBool());
    });
}

void TrayHost::setNotifierHost(bool exists)
{
    update(m_hasNotifierHost, exists);
}

void TrayHost::update(bool &kind, bool exists)
{
    const bool wasAvailable = isAvailable();
    kind = exists;
    if (isAvailable() != wasAvailable)
        Q_EMIT availableChanged();
}

} // namespace randblatt
