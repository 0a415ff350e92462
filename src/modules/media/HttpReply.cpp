#include "modules/media/HttpReply.h"

#include <QNetworkReply>

#include <algorithm>
#include <cstring>
#include <memory>

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

/// Whether there was no connection over which the request could have been sent.
bool isUnconnected(QNetworkReply::NetworkError error)
{
    switch (error) {
    case QNetworkReply::ConnectionRefusedError:
    case QNetworkReply::HostNotFoundError:
    case QNetworkReply::SslHandshakeFailedError:
    case QNetworkReply::TemporaryNetworkFailureError:
    case QNetworkReply::NetworkSessionFailedError:
    case QNetworkReply::UnknownNetworkError:
        return true;
    default:
        return error >= QNetworkReply::ProxyConnectionRefusedError &&
               error <= QNetworkReply::UnknownProxyError;
    }
}

/// A request's body that can be read once. Where a connection ends before its answer, Qt rewinds the body and
/// sends the request again, whatever its method; here it finds that it cannot, and gives up. Of a body that
/// was not begun nothing can have been done.
class OneTimeBody : public QIODevice
{
public:
    explicit OneTimeBody(QByteArray body)
        : m_body(std::move(body))
    {
        open(QIODevice::ReadOnly | QIODevice::Unbuffered);
    }

    [[nodiscard]] bool isSequential() const override { return true; }
    [[nodiscard]] qint64 bytesAvailable() const override { return m_body.size() - m_read; }
    bool reset() override { return m_read == 0; }

protected:
    qint64 readData(char *data, qint64 size) override
    {
        const qint64 count = std::min<qint64>(size, m_body.size() - m_read);
        std::memcpy(data, m_body.constData() + m_read, static_cast<size_t>(count));
        m_read += count;
        return count;
    }
    qint64 writeData(const char *, qint64) override { return -1; }

private:
    QByteArray m_body;
    qint64 m_read = 0;
};

QNetworkReply *sendOnce(QNetworkAccessManager &network, const QByteArray &method, QNetworkRequest request,
                        const QByteArray &body)
{
    // Both keep Qt from reading the body into a buffer of its own, which could be rewound.
    request.setAttribute(QNetworkRequest::DoNotBufferUploadDataAttribute, true);
    request.setHeader(QNetworkRequest::ContentLengthHeader, body.size());
    // There requests move from one connection to the next by themselves.
    request.setAttribute(QNetworkRequest::Http2AllowedAttribute, false);
    auto device = std::make_unique<OneTimeBody>(body);
    QNetworkReply *reply = network.sendCustomRequest(request, method, device.get());
    device.release()->setParent(reply);
    return reply;
}

} // namespace

void sendHttp(QNetworkAccessManager &network, const QByteArray &method, QNetworkRequest request,
              const QByteArray &body, qint64 limit, QObject *context, const HttpCompletion &completion)
{
    request.setAttribute(QNetworkRequest::RedirectPolicyAttribute, QNetworkRequest::ManualRedirectPolicy);
    request.setAttribute(QNetworkRequest::CookieSaveControlAttribute, QNetworkRequest::Manual);
    request.setAttribute(QNetworkRequest::CookieLoadControlAttribute, QNetworkRequest::Manual);
    request.setTransferTimeout(timeOut);
    QNetworkReply *reply = method == "POST" ? sendOnce(network, method, request, body)
                                            : network.sendCustomRequest(request, method, body);
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
        answer.mayHaveArrived = !isUnconnected(reply->error());
        completion(answer);
    });
}

} // namespace randblatt
