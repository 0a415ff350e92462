#include "modules/media/SpotifyAuth.h"

#include "modules/media/HttpReply.h"
#include "platform/WebAuthenticationSession.h"
#include "settings/AppSettings.h"
#include "settings/Preferences.h"

#include <QCryptographicHash>
#include <QDateTime>
#include <QJsonDocument>
#include <QPointer>
#include <QRandomGenerator>
#include <QUrlQuery>

#include <array>

namespace randblatt {

using namespace Qt::StringLiterals;

namespace {

const QString verifierKey = u"sp_verifier"_s;
const QString accessKey = u"sp_access"_s;
const QString refreshKey = u"sp_refresh"_s;
const QString expiryKey = u"sp_expiry"_s;

const QString builtInClientID = u"5d2c8e71a09f4b63b8e4c1f07a92d3e6"_s;
const QString redirectURI = u"randblatt://callback"_s;

constexpr std::array scopes{
    "streaming"_L1,
    "user-read-email"_L1,
    "user-read-private"_L1,
    "user-read-playback-state"_L1,
    "user-modify-playback-state"_L1,
    "user-read-currently-playing"_L1,
    "playlist-read-private"_L1,
    "playlist-read-collaborative"_L1,
    "playlist-modify-public"_L1,
    "playlist-modify-private"_L1,
    "user-library-read"_L1,
    "user-library-modify"_L1,
    "user-top-read"_L1,
};

// A token that ends sooner would end on its way to the service.
constexpr double expiryMargin = 30.0;
constexpr double defaultLifetime = 3600.0;
// The first of January of the year 1.
constexpr double distantPast = -62'135'769'600.0;
constexpr qint64 tokenReplyLimit = 1'000'000;

QString joinedScopes()
{
    QStringList list;
    for (const QLatin1StringView scope : scopes)
        list.append(scope);
    return list.join(u' ');
}

QUrl appended(QUrl base, const QString &path)
{
    base.setPath(base.path() + path);
    return base;
}

/// Whether the service said no for good (RFC 6749, section 5.2), rather than that it cannot now.
bool isRefusal(const HttpReply &reply)
{
    const QJsonValue error = QJsonDocument::fromJson(reply.body)["error"_L1];
    return (reply.status == 400 || reply.status == 401) && error.isString();
}

} // namespace

struct SpotifyAuth::Waiting
{
    QPointer<QObject> context;
    TokenCompletion completion;
};

SpotifyAuth::SpotifyAuth(Preferences &preferences, const AppSettings &settings,
                         WebAuthenticationSession &session, QNetworkAccessManager &network,
                         ServiceHosts hosts, Clock clock, QObject *parent)
    : QObject(parent)
    , m_preferences(preferences)
    , m_settings(settings)
    , m_session(session)
    , m_network(network)
    , m_hosts(std::move(hosts))
    , m_clock(clock ? std::move(clock)
                    : [] { return static_cast<double>(QDateTime::currentMSecsSinceEpoch()) / 1000.0; })
    , m_isAuthorized(preferences.get<QString>(refreshKey).has_value())
{
}

SpotifyAuth::~SpotifyAuth() = default;

QString SpotifyAuth::randomString(int length)
{
    static constexpr auto alphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-._~"_L1;
    Q_ASSERT(length >= 0);
    // The largest multiple of the alphabet's size that 32 bits hold: numbers from there on would favour the
    // alphabet's first characters.
    constexpr quint32 bound = 0xffffffffU - 0xffffffffU % alphabet.size();
    QString text;
    while (text.size() < length) {
        if (const quint32 number = QRandomGenerator::system()->generate(); number < bound)
            text.append(alphabet[static_cast<qsizetype>(number % alphabet.size())]);
    }
    return text;
}

QString SpotifyAuth::codeChallenge(const QString &verifier)
{
    const QByteArray digest = QCryptographicHash::hash(verifier.toUtf8(), QCryptographicHash::Sha256);
    return QString::fromLatin1(
        digest.toBase64(QByteArray::Base64UrlEncoding | QByteArray::OmitTrailingEquals));
}

QString SpotifyAuth::clientID() const
{
    const QString builtIn = builtInClientID.trimmed();
    return builtIn.isEmpty() ? m_settings.spotifyClientID().trimmed() : builtIn;
}

void SpotifyAuth::signIn()
{
    const QString client = clientID();
    if (client.isEmpty()) {
        setLastError(u"Bitte zuerst die Spotify-Client-ID in den Einstellungen eintragen."_s);
        return;
    }
    // With its own verifier: the page may be open in the browser, and be answered there.
    if (m_session.showAgain())
        return;
    const QString verifier = randomString(64);
    m_preferences.setValue(verifierKey, verifier);
    QUrlQuery query;
    query.setQueryItems({
        {u"client_id"_s, client},
        {u"response_type"_s, u"code"_s},
        {u"redirect_uri"_s, redirectURI},
        {u"scope"_s, joinedScopes()},
        {u"code_challenge_method"_s, u"S256"_s},
        {u"code_challenge"_s, codeChallenge(verifier)},
        {u"state"_s, randomString(16)},
    });
    QUrl url = appended(m_hosts.accounts, u"/authorize"_s);
    url.setQuery(query);
    if (!url.isValid())
        return;
    m_session.start(url, QUrl(redirectURI), [self = QPointer(this)](const WebAuthenticationResult &result) {
        if (self)
            self->sessionEnded(result);
    });
}

void SpotifyAuth::sessionEnded(const WebAuthenticationResult &result)
{
    if (!result.error.isEmpty()) {
        setLastError(result.error);
        return;
    }
    // One's own cancelling is no failure.
    if (result.callback.isEmpty())
        return;
    const QUrlQuery query(result.callback);
    if (!query.hasQueryItem(u"code"_s)) {
        setLastError(u"Keine Autorisierung erhalten."_s);
        return;
    }
    exchange(query.queryItemValue(u"code"_s, QUrl::FullyDecoded));
}

void SpotifyAuth::exchange(const QString &code)
{
    const QString verifier = m_preferences.get<QString>(verifierKey).value_or(QString());
    // What is still on its way belongs to the tokens that are about to be replaced.
    ++m_account;
    requestToken({{"grant_type", u"authorization_code"_s},
                  {"code", code},
                  {"redirect_uri", redirectURI},
                  {"client_id", clientID()},
                  {"code_verifier", verifier}},
                 [this](bool success, const HttpReply &) {
                     setRefreshRefused(false);
                     // A refresh that began meanwhile would put the replaced tokens back.
                     if (success)
                         ++m_account;
                     setLastError(success ? QString() : u"Anmeldung fehlgeschlagen."_s);
                     answerWaiting(success ? m_preferences.get<QString>(accessKey) : std::nullopt);
                     if (success)
                         Q_EMIT signedIn();
                     setAuthorized(success);
                 });
}

void SpotifyAuth::validAccessToken(QObject *context, TokenCompletion completion)
{
    const auto access = m_preferences.get<QString>(accessKey);
    const double expiry = m_preferences.get<double>(expiryKey).value_or(0.0);
    if (access && m_clock() < expiry - expiryMargin) {
        completion(access);
        return;
    }
    if (m_isRefreshRefused || !m_preferences.get<QString>(refreshKey)) {
        completion(std::nullopt);
        return;
    }
    m_waiting.push_back({context, std::move(completion)});
    if (m_waiting.size() == 1)
        refresh();
}

void SpotifyAuth::replaceAccessToken(const QString &rejected, QObject *context, TokenCompletion completion)
{
    // Another caller may have replaced it already.
    if (m_preferences.get<QString>(accessKey) == rejected)
        m_preferences.setValue(expiryKey, distantPast);
    validAccessToken(context, std::move(completion));
}

void SpotifyAuth::refresh()
{
    requestToken({{"grant_type", u"refresh_token"_s},
                  {"refresh_token", m_preferences.get<QString>(refreshKey).value_or(QString())},
                  {"client_id", clientID()}},
                 [this](bool success, const HttpReply &reply) {
                     if (!success)
                         setRefreshRefused(isRefusal(reply));
                     answerWaiting(success ? m_preferences.get<QString>(accessKey) : std::nullopt);
                 });
}

void SpotifyAuth::requestToken(const Fields &fields,
                               const std::function<void(bool, const HttpReply &)> &completion)
{
    QByteArray body;
    for (const auto &[key, value] : fields)
        body += (body.isEmpty() ? "" : "&") + key + '=' + QUrl::toPercentEncoding(value);
    QNetworkRequest request(appended(m_hosts.accounts, u"/api/token"_s));
    request.setHeader(QNetworkRequest::ContentTypeHeader, "application/x-www-form-urlencoded"_ba);
    sendHttp(m_network, "POST", request, body, tokenReplyLimit, this,
             [this, completion, account = m_account](const HttpReply &reply) {
                 if (account == m_account)
                     completion(storeTokens(reply.body), reply);
             });
}

bool SpotifyAuth::storeTokens(const QByteArray &body)
{
    const QJsonObject json = QJsonDocument::fromJson(body).object();
    const QJsonValue access = json.value("access_token"_L1);
    if (!access.isString())
        return false;
    m_preferences.setValue(accessKey, access.toString());
    if (const QJsonValue refresh = json.value("refresh_token"_L1); refresh.isString())
        m_preferences.setValue(refreshKey, refresh.toString());
    m_preferences.setValue(expiryKey, m_clock() + json.value("expires_in"_L1).toDouble(defaultLifetime));
    return true;
}

void SpotifyAuth::answerWaiting(const std::optional<QString> &token)
{
    const auto waiting = std::exchange(m_waiting, {});
    for (const Waiting &caller : waiting) {
        if (caller.context)
            caller.completion(token);
    }
}

void SpotifyAuth::signOut()
{
    ++m_account;
    m_preferences.remove(accessKey);
    m_preferences.remove(refreshKey);
    m_preferences.setValue(expiryKey, distantPast);
    m_session.cancel();
    setRefreshRefused(false);
    setAuthorized(false);
    answerWaiting(std::nullopt);
}

void SpotifyAuth::setRefreshRefused(bool refused)
{
    if (m_isRefreshRefused == refused)
        return;
    m_isRefreshRefused = refused;
    Q_EMIT isRefreshRefusedChanged();
}

void SpotifyAuth::setAuthorized(bool authorized)
{
    if (m_isAuthorized == authorized)
        return;
    m_isAuthorized = authorized;
    Q_EMIT isAuthorizedChanged();
}

void SpotifyAuth::setLastError(const QString &error)
{
    if (m_lastError == error)
        return;
    m_lastError = error;
    Q_EMIT lastErrorChanged();
}

} // namespace randblatt
