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
/// for one of them. What our own process has started is no player to be followed.
class MprisPlayers : public QObject
{
    Q_OBJECT

public:
    explicit MprisPlayers(const QDBusConnection &bus, QObject *parent = nullptr);

    /// Calls a method of the current player's interface org.mpris.MediaPlayer2.Player. While nothing is known
    /// to play and a player still owes its state, the call waits for that. A player that does not answer
    /// within 300 ms does not get the call, not even later: it no longer counts as playing, and the next one
    /// is the current one. A call that fails is logged.
    void command(const QString &method);

Q_SIGNALS:
    /// Commands go to another player, or to one at last.
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
    /// Follows the player that has this connection, unless it is of our own process.
    void admit(const QString &service, const QString &owner);
    void askState(const QString &service);
    /// Lets the commands go to the current player once it answers.
    void probe();
    void sendCommands();
    void setHung(const QString &service, bool isHung);
    void setPlaying(const QString &service, bool isPlaying);
    void settle();
    void runCommands();

    QDBusConnection m_bus;
    QList<PlayerState> m_players;
    /// The connection behind each player's name; some players have two names.
    QHash<QString, QString> m_owners;
    /// The bus name of the current player; empty without players.
    QString m_current;
    QStringList m_commands;
    /// The player that is being asked whether it answers; empty where none is.
    QString m_probed;
    /// The players that did not, since the first of the commands.
    QStringList m_silent;
    std::uint64_t m_clock = 0;
    /// Replies to come that may change which player is current.
    int m_owed = 0;
};

} // namespace randblatt
