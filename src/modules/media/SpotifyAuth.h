#pragma once

#include "platform/ServiceHosts.h"

#include <QObject>
#include <QtQml/qqmlregistration.h>

#include <functional>
#include <optional>
#include <utility>
#include <vector>

class QNetworkAccessManager;

namespace randblatt {

class AppSettings;
struct HttpReply;
class Preferences;
class WebAuthenticationSession;
struct WebAuthenticationResult;

/// Signs the user in to the music service (OAuth 2.0 authorisation code with PKCE, RFC 7636, method S256),
/// keeps the tokens in the preferences, and gives out access tokens that are valid. To be used on the main
/// thread.
class SpotifyAuth : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The media module has the authorisation.")
    Q_PROPERTY(bool isAuthorized READ isAuthorized NOTIFY isAuthorizedChanged FINAL)
    Q_PROPERTY(QString lastError READ lastError NOTIFY lastErrorChanged FINAL)

public:
    /// Gets a usable access token, or none.
    using TokenCompletion = std::function<void(const std::optional<QString> &)>;
    /// Seconds since 1970-01-01 UTC.
    using Clock = std::function<double()>;

    /// Everything is borrowed and must outlive the object; `clock` is for tests.
    SpotifyAuth(Preferences &preferences, const AppSettings &settings, WebAuthenticationSession &session,
                QNetworkAccessManager &network, ServiceHosts hosts, Clock clock = {},
                QObject *parent = nullptr);
    ~SpotifyAuth() override;

    /// Starts the sign-in in the browser, or shows the page of the one that is waiting once more.
    Q_INVOKABLE void signIn();
    /// Forgets the tokens, and cancels a sign-in that is waiting.
    Q_INVOKABLE void signOut();
    /// Calls `completion` with the stored token at once while that is valid for another 30 seconds, else with
    /// the outcome of a refresh, which callers share. It is not called once `context` is gone.
    void validAccessToken(QObject *context, TokenCompletion completion);
    /// The same for a caller whose token the service has rejected although it seemed valid.
    void replaceAccessToken(const QString &rejected, QObject *context, TokenCompletion completion);
    /// The tokens' owner has to sign in again: the service has refused the refresh token for good. It is not
    /// asked again.
    [[nodiscard]] bool isRefreshRefused() const { return m_isRefreshRefused; }

    /// Whether a refresh token is believed to be held.
    [[nodiscard]] bool isAuthorized() const { return m_isAuthorized; }
    /// Why the last sign-in failed, in German; empty where none has.
    [[nodiscard]] QString lastError() const { return m_lastError; }

    /// `length` characters of the alphabet that RFC 7636 allows for verifiers, each drawn uniformly.
    [[nodiscard]] static QString randomString(int length);
    [[nodiscard]] static QString codeChallenge(const QString &verifier);

Q_SIGNALS:
    void isAuthorizedChanged();
    void lastErrorChanged();
    void isRefreshRefusedChanged();
    /// A sign-in succeeded, also where isAuthorized() was true before; sent before isAuthorizedChanged().
    void signedIn();

private:
    using Fields = std::vector<std::pair<QByteArray, QString>>;
    struct Waiting;

    [[nodiscard]] QString clientID() const;
    void sessionEnded(const WebAuthenticationResult &result);
    void exchange(const QString &code);
    void refresh();
    /// Calls `completion` with whether there are new tokens now, and with the answer.
    void requestToken(const Fields &fields, const std::function<void(bool, const HttpReply &)> &completion);
    [[nodiscard]] bool storeTokens(const QByteArray &body);
    void setRefreshRefused(bool refused);
    void answerWaiting(const std::optional<QString> &token);
    void setAuthorized(bool authorized);
    void setLastError(const QString &error);

    Preferences &m_preferences;
    const AppSettings &m_settings;
    WebAuthenticationSession &m_session;
    QNetworkAccessManager &m_network;
    ServiceHosts m_hosts;
    Clock m_clock;
    bool m_isAuthorized = false;
    bool m_isRefreshRefused = false;
    QString m_lastError;
    std::vector<Waiting> m_waiting;
    /// Changes with the account: replies to requests of an earlier one are dropped.
    int m_account = 0;
};

} // namespace randblatt
