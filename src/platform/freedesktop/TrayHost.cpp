#include "platform/freedesktop/TrayHost.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusVariant>

namespace randblatt {

using namespace Qt::StringLiterals;

namespace {

constexpr auto serviceName = "org.kde.StatusNotifierWatcher"_L1;
constexpr auto objectPath = "/StatusNotifierWatcher"_L1;

} // namespace

TrayHost::TrayHost(const QDBusConnection &bus, QObject *parent)
    : QObject(parent)
    , m_bus(bus)
    , m_watcher(serviceName, m_bus, QDBusServiceWatcher::WatchForOwnerChange)
{
    connect(&m_watcher, &QDBusServiceWatcher::serviceRegistered, this, &TrayHost::ask);
    connect(&m_watcher, &QDBusServiceWatcher::serviceUnregistered, this, [this] { set(m_hasHost, false); });
    m_bus.connect(serviceName, objectPath, serviceName, u"StatusNotifierHostRegistered"_s, this, SLOT(ask()));
    m_bus.connect(serviceName, objectPath, serviceName, u"StatusNotifierHostUnregistered"_s, this,
                  SLOT(ask()));
    ask();
}

std::optional<QColor> TrayHost::textColor() const
{
    // The newer kind is taken where there are both, and says nothing.
    return m_hasHost ? std::nullopt : m_classicColor;
}

void TrayHost::setClassicTray(bool present, const std::optional<QColor> &textColor)
{
    m_classicColor = textColor;
    set(m_hasClassicTray, present);
}

void TrayHost::ask()
{
    QDBusMessage call = QDBusMessage::createMethodCall(serviceName, objectPath,
                                                       u"org.freedesktop.DBus.Properties"_s, u"Get"_s);
    call << QString(serviceName) << u"IsStatusNotifierHostRegistered"_s;
    // A watcher that is not there must not be started for the question.
    call.setAutoStartService(false);
    auto *pending = new QDBusPendingCallWatcher(m_bus.asyncCall(call), this);
    connect(pending, &QDBusPendingCallWatcher::finished, this, [this, pending] {
        const QDBusPendingReply<QDBusVariant> reply = *pending;
        set(m_hasHost, reply.isValid() && reply.value().variant().toBool());
        pending->deleteLater();
    });
}

void TrayHost::set(bool &member, bool value)
{
    const bool before = isAvailable();
    member = value;
    if (isAvailable() != before)
        Q_EMIT availableChanged();
}

} // namespace randblatt
