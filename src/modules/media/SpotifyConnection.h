#pragma once

#include "modules/media/RepeatedLoad.h"
#include "modules/media/SpotifyApi.h"

#include <QtQml/qqmlregistration.h>

#include <vector>

namespace randblatt {

/// The account's line to the service: sends its calls, knows its user, and says what stands in the way. To be
/// used on the main thread.
class SpotifyConnection : public QObject
{
    Q_OBJECT
    QML_ANONYMOUS
    Q_PROPERTY(QString statusMessage READ statusMessage NOTIFY statusMessageChanged FINAL)
    Q_PROPERTY(bool needsReauth READ needsReauth NOTIFY needsReauthChanged FINAL)
    Q_PROPERTY(bool canSend READ canSend NOTIFY canSendChanged FINAL)

public:
    using Answered = std::function<void(const SpotifyReply &)>;

    /// Sends for the account of now: answers that come after its end are dropped.
    void send(const SpotifyRequest &request, const Answered &answered);
    /// The same for a path with a successor.
    void send(const SpotifyRequest &request, const SpotifyRequest &successor, const Answered &answered);
    void loadUserID();
    /// Calls `then` with the user's id known, which it may have to ask for, or with the reply that did not
    /// tell it. Dropped with the account.
    void withUserID(const std::function<void(const SpotifyReply *failed)> &then);
    /// Why a call came to nothing, in German.
    [[nodiscard]] QString reason(const SpotifyReply &reply) const;
    /// Shows a message that what is playing may replace only after a while.
    void showFailure(const QString &message);
    /// Forgets everything that belongs to the user's account.
    virtual void reset();

    /// One line in German; empty where there is nothing to say.
    [[nodiscard]] QString statusMessage() const { return m_statusMessage; }
    /// Whether the user has to sign in again: the tokens have ended, or lack what the playlists need.
    [[nodiscard]] bool needsReauth() const { return m_needsReauth; }
    /// Whether the service takes anything at all now: it has not asked for a pause, and the tokens hold.
    [[nodiscard]] bool canSend() const;
    /// The signed-in user's id; empty while it is not known.
    [[nodiscard]] QString userID() const { return m_userID; }
    /// When the service takes calls again; no valid time where nothing stands in the way.
    [[nodiscard]] QDateTime pausedUntil() const { return m_api.pausedUntil(); }

Q_SIGNALS:
    void statusMessageChanged();
    void needsReauthChanged();
    void canSendChanged();
    void userIDChanged();

protected:
    /// Borrows the authorisation and the network, which must outlive the object; `host` is the API's base
    /// URL.
    SpotifyConnection(SpotifyAuth &auth, QNetworkAccessManager &network, const QUrl &host, QObject *parent);

    void setNeedsReauth(bool needsReauth);
    void setStatusMessage(const QString &message);
    [[nodiscard]] bool mayReplaceMessage() const { return m_messageHold.hasExpired(); }
    /// The service answers: what failed is to be tried again, if it is due.
    virtual void repeatFailedLoads();

private:
    void setUserID(const QString &id);
    [[nodiscard]] Answered forThisAccount(const Answered &answered);

    SpotifyAuth &m_auth;
    SpotifyApi m_api;
    QString m_statusMessage;
    /// How long a failure's message stays before what is playing may replace it.
    QDeadlineTimer m_messageHold{0};
    QString m_userID;
    RepeatedLoad m_userLoad;
    /// Who waits for the user's id.
    std::vector<std::function<void(const SpotifyReply *)>> m_waitingForUser;
    bool m_needsReauth = false;
    /// Changes with the account.
    int m_account = 0;
};

} // namespace randblatt
