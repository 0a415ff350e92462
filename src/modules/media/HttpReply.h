#pragma once

#include <QByteArray>
#include <QNetworkAccessManager>
#include <QNetworkRequest>

#include <functional>

class QObject;

namespace randblatt {

/// What came back from a server.
struct HttpReply
{
    /// The HTTP status; 0 where there was no complete answer, as without a network or after a cut.
    int status = 0;
    QByteArray body;
    /// The value of Retry-After; empty where there was none.
    QByteArray retryAfter;
    /// Without a status: whether the request may have reached the server all the same.
    bool mayHaveArrived = true;
};

using HttpCompletion = std::function<void(const HttpReply &)>;

/// Sends `request` with `method`, without following redirects, and gives up after 60 seconds without
/// progress. An answer of more than `limit` bytes counts as none. A request whose method is not idempotent is
/// never sent twice (RFC 9110, section 9.2.2). `completion` is called once, unless `context` is gone by then.
void sendHttp(QNetworkAccessManager &network, const QByteArray &method, QNetworkRequest request,
              const QByteArray &body, qint64 limit, QObject *context, const HttpCompletion &completion);

} // namespace randblatt
