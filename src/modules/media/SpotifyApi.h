#pragma once

#include <QDateTime>
#include <QDeadlineTimer>
#include <QJsonObject>
#include <QObject>
#include <QString>
#include <QTimer>
#include <QUrl>

#include <chrono>
#include <functional>
#include <optional>
#include <utility>

class QNetworkAccessManager;

namespace randblatt {

struct HttpReply;
class SpotifyAuth;

/// One call of the Web API.
struct SpotifyRequest
{
    QByteArray method = "GET";
    /// Below the base path.
    QString path;
    QList<std::pair<QString, QString>> query = {};
    std::optional<QJsonObject> body = {};
    /// Whether the call may wait for a short back-off to pass; others fail at once.
    bool isPatient = false;
};

/// What a call came to.
struct SpotifyReply
{
    /// The HTTP status; 0 where nothing was sent or nothing complete came back.
    int status = 0;
    QByteArray body = {};
    /// Without a status: whether the call may have been carried out all the same.
    bool mayHaveArrived = false;
    /// Whether the answer is that of a path's successor.
    bool isFromSuccessor = false;

    [[nodiscard]] bool isSuccess() const { return status >= 200 && status < 300; }
};

/// Calls the Web API with the user's access token. A token that is rejected is replaced once. After an answer
/// 429 nothing at all is sent before the time that the service asked for has passed.
class SpotifyApi : public QObject
{
    Q_OBJECT

public:
    using Completion = std::function<void(const SpotifyReply &)>;

    /// Everything is borrowed and must outlive the object; `host` is the API's base URL.
    SpotifyApi(SpotifyAuth &auth, QNetworkAccessManager &network, const QUrl &host,
               QObject *parent = nullptr);

    /// Calls `completion` once, unless `context` is gone by then.
    void send(const SpotifyRequest &request, QObject *context, const Completion &completion);
    /// The same for a path with a successor: where the service answers that the old one is not there for us,
    /// the successor is tried. From the first success of one on, successors alone are used.
    void send(const SpotifyRequest &request, const SpotifyRequest &successor, QObject *context,
              const Completion &completion);

    /// Until when nothing is sent; no valid time where nothing stands in the way.
    [[nodiscard]] QDateTime pausedUntil() const;
    [[nodiscard]] bool isPaused() const { return !m_backOff.hasExpired(); }

Q_SIGNALS:
    /// A call has succeeded; its completion is called next.
    void succeeded();
    /// A pause that the service asked for has begun, ended or become longer.
    void pauseChanged();

private:
    void dispatch(const SpotifyRequest &request, const QString &token, bool isRepeated, QObject *context,
                  const Completion &completion);
    void pause(std::chrono::seconds duration);
    bool waitOrFail(const SpotifyRequest &request, QObject *context, const Completion &completion);

    SpotifyAuth &m_auth;
    QNetworkAccessManager &m_network;
    QUrl m_base;
    QDeadlineTimer m_backOff{0};
    QTimer m_backOffEnd;
    bool m_hasMoved = false;
};

} // namespace randblatt
