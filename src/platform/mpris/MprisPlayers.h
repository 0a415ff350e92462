#pragma once

#include "platform/mpris/PlayerChoice.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QHash>
#include <QObject>
#include <QStringList>
#include <QVariantMap>

namespace randblatt {

/// Follows the media players on a session bus (MPRIS D-Bus Interface Specification 2.2) without ever waiting
/// for one of them.
class MprisPlayers : public QObject
{
    Q_OBJECT

public:
    explicit MprisPlayers(const QDBusConnection &bus, QObject *parent = nullptr);

    /// Calls a method of the current player's interface org.mpris.MediaPlayer2.Player. While nothing is known
    /// to play and a player still owes its state, the call waits for it, about a second at most. A call that
    /// fails is logged.
    void command(const QString &method);
    /// The bus name of the current player; empty without players.
    [[nodiscard]] QString current() const { return m_current; }

Q_SIGNALS:
    void currentChanged();

private Q_SLOTS:
    void propertiesChanged(const QString &interface, const QVariantMap &changed,
                           const QStringList &invalidated, const QDBusMessage &message);

private:
    void listPlayers();
    void ownerChanged(const QString &service, const QString &oldOwner, const QString &newOwner);
    void add(const QString &service);
    void remove(const QString &service);
    void askOwner(const QString &service);
    void askState(const QString &service);
    void setPlaying(const QString &service, bool isPlaying);
    void settle();
    void runCommands();

    QDBusConnection m_bus;
    QList<PlayerState> m_players;
    /// The connection behind each player's name; some players have two names.
    QHash<QString, QString> m_owners;
    QString m_current;
    QStringList m_commands;
    std::uint64_t m_clock = 0;
    /// Replies to come that may change which player is current.
    int m_owed = 0;
};

} // namespace randblatt
