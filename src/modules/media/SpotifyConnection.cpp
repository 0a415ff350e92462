#include "modules/media/SpotifyConnection.h"

#include "modules/media/SpotifyAuth.h"
#include "modules/media/SpotifyMessages.h"
#include "modules/media/SpotifyParsing.h"

#include <utility>

namespace randblatt {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

// Long enough to be read.
constexpr auto messageHold = 4s;

} // namespace

SpotifyConnection::SpotifyConnection(SpotifyAuth &auth, QNetworkAccessManager &network, const QUrl &host,
                                     QObject *parent)
    : QObject(parent)
    , m_auth(auth)
    , m_api(auth, network, host)
    , m_needsReauth(auth.isRefreshRefused())
{
    connect(&m_api, &SpotifyApi::succeeded, this, [this] { repeatFailedLoads(); });
    connect(&m_api, &SpotifyApi::pauseChanged, this, &SpotifyConnection::canSendChanged);
    connect(&auth, &SpotifyAuth::isRefreshRefusedChanged, this, [this] {
        if (m_auth.isRefreshRefused())
            setNeedsReauth(true);
        Q_EMIT canSendChanged();
    });
}

SpotifyConnection::Answered SpotifyConnection::forThisAccount(const Answered &answered)
{
    return [this, answered, account = m_account](const SpotifyReply &reply) {
        if (account != m_account)
            return;
        if (reply.status == 401)
            setNeedsReauth(true);
        answered(reply);
    };
}

void SpotifyConnection::send(const SpotifyRequest &request, const Answered &answered)
{
    m_api.send(request, this, forThisAccount(answered));
}

void SpotifyConnection::send(const SpotifyRequest &request, const SpotifyRequest &successor,
                             const Answered &answered)
{
    m_api.send(request, successor, this, forThisAccount(answered));
}

void SpotifyConnection::loadUserID()
{
    setUserID({});
    withUserID([](const SpotifyReply *) {});
}

void SpotifyConnection::withUserID(const std::function<void(const SpotifyReply *failed)> &then)
{
    if (!m_userID.isEmpty()) {
        then(nullptr);
        return;
    }
    m_waitingForUser.push_back(then);
    if (m_waitingForUser.size() > 1)
        return;
    m_userLoad.begin();
    send({.path = u"/me"_s, .isPatient = true}, [this](const SpotifyReply &reply) {
        const auto id = reply.isSuccess() ? parseUserID(reply.body) : std::nullopt;
        if (id) {
            m_userLoad.succeed();
            setUserID(*id);
        } else {
            m_userLoad.fail(reason(reply), true);
        }
        const auto waiting = std::exchange(m_waitingForUser, {});
        for (const auto &waits : waiting)
            waits(id ? nullptr : &reply);
    });
}

void SpotifyConnection::repeatFailedLoads()
{
    if (m_userLoad.isDue())
        withUserID([](const SpotifyReply *) {});
}

QString SpotifyConnection::reason(const SpotifyReply &reply) const
{
    return failureReason(reply, pausedUntil());
}

bool SpotifyConnection::canSend() const
{
    return !m_api.isPaused() && !m_auth.isRefreshRefused();
}

void SpotifyConnection::reset()
{
    ++m_account;
    m_userLoad.succeed();
    m_waitingForUser.clear();
    m_messageHold.setRemainingTime(0);
    setStatusMessage({});
    setUserID({});
    setNeedsReauth(false);
}

void SpotifyConnection::setUserID(const QString &id)
{
    if (m_userID == id)
        return;
    m_userID = id;
    Q_EMIT userIDChanged();
}

void SpotifyConnection::setNeedsReauth(bool needsReauth)
{
    if (m_needsReauth == needsReauth)
        return;
    m_needsReauth = needsReauth;
    Q_EMIT needsReauthChanged();
}

void SpotifyConnection::setStatusMessage(const QString &message)
{
    if (m_statusMessage == message)
        return;
    m_statusMessage = message;
    Q_EMIT statusMessageChanged();
}

void SpotifyConnection::showFailure(const QString &message)
{
    m_messageHold.setRemainingTime(messageHold);
    setStatusMessage(message);
}

} // namespace randblatt
