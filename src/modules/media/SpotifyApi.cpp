#include "modules/media/SpotifyApi.h"

#include "modules/media/HttpReply.h"
#include "modules/media/SpotifyAuth.h"

#include <QJsonDocument>
#include <QLoggingCategory>
#include <QPointer>
#include <QTimer>
#include <QUrlQuery>

#include <algorithm>
#include <chrono>

namespace randblatt {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

Q_LOGGING_CATEGORY(lcSpotify, "quillbar.spotify")

// Where the service asks for a pause without saying how long.
constexpr auto defaultBackOff = 5s;
// A list that would come later than this is no longer waited for.
constexpr auto patience = 30s;
constexpr auto margin = 20ms;
constexpr qint64 replyLimit = 32'000'000;

std::chrono::seconds backOffOf(const QByteArray &retryAfter)
{
    bool isNumber = false;
    const qlonglong seconds = retryAfter.toLongLong(&isNumber);
    constexpr qlonglong longest = 7LL * 24 * 3600;
    return isNumber ? std::chrono::seconds(std::clamp(seconds, 1LL, longest)) : defaultBackOff;
}

bool isNotThereForUs(int status)
{
    return status == 403 || status == 404 || status == 410;
}

} // namespace

SpotifyApi::SpotifyApi(SpotifyAuth &auth, QNetworkAccessManager &network, const QUrl &host, QObject *parent)
    : QObject(parent)
    , m_auth(auth)
    , m_network(network)
    , m_base(host)
{
    m_base.setPath(m_base.path() + "/v1"_L1);
    m_backOffEnd.setSingleShot(true);
    connect(&m_backOffEnd, &QTimer::timeout, this, &SpotifyApi::pauseChanged);
}

QDateTime SpotifyApi::pausedUntil() const
{
    return isPaused() ? QDateTime::currentDateTime().addMSecs(m_backOff.remainingTime()) : QDateTime();
}

void SpotifyApi::pause(std::chrono::seconds duration)
{
    qCInfo(lcSpotify, "Spotify bittet um %lld s Pause", static_cast<long long>(duration.count()));
    m_backOff = std::max(m_backOff, QDeadlineTimer(duration));
    // A little later, so that the timer cannot be early.
    m_backOffEnd.start(std::chrono::ceil<std::chrono::milliseconds>(m_backOff.remainingTimeAsDuration()) +
                       margin);
    Q_EMIT pauseChanged();
}

void SpotifyApi::send(const SpotifyRequest &request, QObject *context, const Completion &completion)
{
    if (waitOrFail(request, context, completion))
        return;
    m_auth.validAccessToken(context,
                            [this, self = QPointer(this), request, context, completion](const auto &token) {
                                if (!self)
                                    return;
                                if (!token)
                                    completion({.status = m_auth.isRefreshRefused() ? 401 : 0});
                                else if (!waitOrFail(request, context, completion))
                                    dispatch(request, *token, false, context, completion);
                            });
}

void SpotifyApi::send(const SpotifyRequest &request, const SpotifyRequest &successor, QObject *context,
                      const Completion &completion)
{
    const auto fromSuccessor = [this, self = QPointer(this), completion](const SpotifyReply &reply) {
        if (self && reply.isSuccess())
            m_hasMoved = true;
        SpotifyReply marked = reply;
        marked.isFromSuccessor = true;
        completion(marked);
    };
    if (m_hasMoved) {
        send(successor, context, fromSuccessor);
        return;
    }
    send(request, context,
         [this, self = QPointer(this), successor, context, completion, fromSuccessor](const auto &reply) {
             if (self && isNotThereForUs(reply.status))
                 send(successor, context, fromSuccessor);
             else
                 completion(reply);
         });
}

void SpotifyApi::dispatch(const SpotifyRequest &request, const QString &token, bool isRepeated,
                          QObject *context, const Completion &completion)
{
    QUrl url = m_base;
    url.setPath(url.path() + request.path);
    if (!request.query.isEmpty()) {
        QUrlQuery query;
        query.setQueryItems(request.query);
        url.setQuery(query);
    }
    QNetworkRequest http(url);
    http.setRawHeader("Authorization", "Bearer " + token.toLatin1());
    QByteArray body;
    if (request.body)
        body = QJsonDocument(*request.body).toJson(QJsonDocument::Compact);
    else if (request.method == "PUT" || request.method == "POST")
        body = "{}";
    if (!body.isEmpty())
        http.setHeader(QNetworkRequest::ContentTypeHeader, "application/json"_ba);
    const auto answered = [this, self = QPointer(this), request, token, isRepeated, context,
                           completion](const HttpReply &reply) {
        if (!self)
            return;
        if (reply.status == 429) {
            pause(backOffOf(reply.retryAfter));
            // The same answer, now from here, for those who do not wait.
            waitOrFail(request, context, completion);
            return;
        }
        if (reply.status != 401 || isRepeated) {
            const SpotifyReply answer{
                .status = reply.status, .body = reply.body, .mayHaveArrived = reply.mayHaveArrived};
            if (answer.isSuccess())
                Q_EMIT succeeded();
            completion(answer);
            return;
        }
        m_auth.replaceAccessToken(token, context,
                                  [this, self, request, context, completion](const auto &fresh) {
                                      if (!self)
                                          return;
                                      if (fresh)
                                          dispatch(request, *fresh, true, context, completion);
                                      else
                                          completion({.status = m_auth.isRefreshRefused() ? 401 : 0});
                                  });
    };
    sendHttp(m_network, request.method, http, body, replyLimit, context, answered);
}

bool SpotifyApi::waitOrFail(const SpotifyRequest &request, QObject *context, const Completion &completion)
{
    const auto remaining = std::chrono::ceil<std::chrono::milliseconds>(m_backOff.remainingTimeAsDuration());
    if (remaining <= 0ms)
        return false;
    if (request.isPatient && remaining <= patience) {
        QTimer::singleShot(remaining + margin, context,
                           [this, self = QPointer(this), request, context, completion] {
                               if (self)
                                   send(request, context, completion);
                           });
    } else {
        completion({.status = 429});
    }
    return true;
}

} // namespace randblatt
