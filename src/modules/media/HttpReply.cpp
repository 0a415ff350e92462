#include "modules/media/HttpReply.h"

#include <QNetworkReply>

namespace randblatt {

namespace {

constexpr int timeOut = 60'000;

/// Whether the answer came in whole. Qt reports the statuses of complete answers as content errors (201…299),
/// server errors (401…499) and, for 400, as an invalid operation.
bool isComplete(QNetworkReply::NetworkError error)
{
    return error == QNetworkReply::NoError || error == QNetworkReply::ProtocolInvalidOperationError ||
           (error > 200 && error < 300) || (error > 400 && error < 500);
}

} // namespace

void sendHttp(QNetworkAccessManager &network, const QByteArray &method, QNetworkRequest request,
              const QByteArray &body, qint64 limit, QObject *context, const HttpCompletion &completion)
{
    request.setAttribute(QNetworkRequest::RedirectPolicyAttribute, QNetworkRequest::ManualRedirectPolicy);
    request.setAttribute(QNetworkRequest::CookieSaveControlAttribute, QNetworkRequest::Manual);
    request.setAttribute(QNetworkRequest::CookieLoadControlAttribute, QNetworkRequest::Manual);
    request.setTransferTimeout(timeOut);
    QNetworkReply *reply = network.sendCustomRequest(request, method, body);
    // The request ends with whoever waits for it.
    reply->setParent(context);
    QObject::connect(reply, &QNetworkReply::downloadProgress, context, [reply, limit](qint64 received) {
        if (received > limit)
            reply->abort();
    });
    QObject::connect(reply, &QNetworkReply::finished, context, [reply, limit, completion] {
        reply->deleteLater();
        HttpReply answer;
        if (isComplete(reply->error()) && reply->bytesAvailable() <= limit) {
            answer.status = reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
            answer.body = reply->readAll();
            answer.retryAfter = reply->rawHeader("Retry-After");
        }
        completion(answer);
    });
}

} // namespace randblatt
