#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVariant>
#include <QDBusVirtualObject>
#include <QStringList>

namespace randblatt {

/// A media player on a bus, with a connection of its own, as another process has.
class FakePlayer : public QDBusVirtualObject
{
    Q_OBJECT

public:
    FakePlayer(const QString &address, const QString &name, const QString &status)
        : m_name(name)
        , m_status(status)
        , m_bus(QDBusConnection::connectToBus(address, name))
    {
        m_bus.registerVirtualObject(QStringLiteral("/org/mpris/MediaPlayer2"), this);
        m_bus.registerService(QStringLiteral("org.mpris.MediaPlayer2.") + name);
    }
    ~FakePlayer() override
    {
        m_bus.unregisterService(QStringLiteral("org.mpris.MediaPlayer2.") + m_name);
        QDBusConnection::disconnectFromBus(m_name);
    }

    /// The player's methods that were called.
    QStringList calls;
    /// Whether it takes calls without ever answering, as one that hangs: it will act on them when it wakes.
    bool isMute = false;

    /// Some players own a name for each instance besides their own.
    void addName(const QString &name)
    {
        m_bus.registerService(QStringLiteral("org.mpris.MediaPlayer2.") + name);
    }

    void setStatus(const QString &status)
    {
        m_status = status;
        QDBusMessage signal = QDBusMessage::createSignal(QStringLiteral("/org/mpris/MediaPlayer2"),
                                                         QStringLiteral("org.freedesktop.DBus.Properties"),
                                                         QStringLiteral("PropertiesChanged"));
        signal << QStringLiteral("org.mpris.MediaPlayer2.Player")
               << QVariantMap{{QStringLiteral("PlaybackStatus"), status}} << QStringList();
        m_bus.send(signal);
    }

    [[nodiscard]] QString introspect(const QString &) const override { return {}; }
    bool handleMessage(const QDBusMessage &message, const QDBusConnection &connection) override
    {
        if (isMute) {
            if (message.interface() == QStringLiteral("org.mpris.MediaPlayer2.Player"))
                calls.append(message.member());
            message.setDelayedReply(true);
            return true;
        }
        if (message.interface() == QStringLiteral("org.mpris.MediaPlayer2.Player")) {
            calls.append(message.member());
            return connection.send(message.createReply());
        }
        if (message.member() == QStringLiteral("Get"))
            return connection.send(message.createReply(QVariant::fromValue(QDBusVariant(m_status))));
        return false;
    }

private:
    QString m_name;
    QString m_status;
    QDBusConnection m_bus;
};

} // namespace randblatt
