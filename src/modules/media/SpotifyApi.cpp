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
    , m_backOff(0)
{
    m_base.setPath(m_base.path() + "/v1"_L1);
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
                                    completion({.status = m_auth.isRefreshRefused() ? 401 : 0, .body = {}});
                                else if (!waitOrFail(request, context, completion))
                                    dispatch(request, *token, false, context, completion);
                            });
}

void SpotifyApi::send(Moved moved, const SpotifyRequest &request, const SpotifyRequest &successor,
                      QObject *context, const Completion &completion)
{
    const int key = static_cast<int>(moved);
    if (m_moved.contains(key)) {
        send(successor, context, completion);
        return;
    }
    send(request, context,
         [this, self = QPointer(this), key, successor, context, completion](const auto &reply) {
             if (!self || !isNotThereForUs(reply.status)) {
                 completion(reply);
                 return;
             }
             send(successor, context, [this, self, key, completion](const auto &second) {
                 if (self && second.isSuccess())
                     m_moved.insert(key);
                 completion(second);
             });
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
            const auto pause = backOffOf(reply.retryAfter);
            m_backOff = std::max(m_backOff, QDeadlineTimer(pause));
            qCInfo(lcSpotify, "Spotify bittet um %lld s Pause", static_cast<long long>(pause.count()));
            // The same answer, now from here, for those who do not wait.
            waitOrFail(request, context, completion);
            return;
        }
        if (reply.status != 401 || isRepeated) {
            completion({.status = reply.status, .body = reply.body});
            return;
        }
        m_auth.replaceAccessToken(token, context,
                                  [this, self, request, context, completion](const auto &fresh) {
                                      if (!self)
                                          return;
                                      if (fresh)
                                          dispatch(request, *fresh, true, context, completion);
                                      else
                                          completion({.status = 401, .body = {}});
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
        // A little later, so that the timer cannot be early.
        QTimer::singleShot(remaining + 20ms, context,
                           [this, self = QPointer(this), request, context, completion] {
                               if (self)
                                   send(request, context, completion);
                           });
    } else {
        completion({.status = 429, .body = {}});
    }
    return true;
}

} // namespace randblatt
