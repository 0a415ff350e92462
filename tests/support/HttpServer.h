#pragma once

#include <QByteArray>
#include <QHash>
#include <QList>
#include <QString>
#include <QTcpServer>
#include <QUrl>
#include <QUrlQuery>

#include <functional>
#include <utility>

class QTcpSocket;

namespace randblatt {

struct HttpRequest
{
    QByteArray method;
    QString path;
    QUrlQuery query;
    /// By names in lower case.
    QHash<QByteArray, QByteArray> headers;
    QByteArray body;

    /// Method and path, as "GET /v1/me".
    [[nodiscard]] QString line() const { return QString::fromLatin1(method) + QChar(u' ') + path; }
};

struct HttpResponse
{
    int status = 200;
    QByteArray body = {};
    QByteArray contentType = "application/json";
    QList<std::pair<QByteArray, QByteArray>> headers = {};
    int delayMilliseconds = 0;
    /// Whether the connection ends in the middle of the body.
    bool cutOff = false;
    /// Whether the connection ends before the answer.
    bool isDropped = false;
};

/// A small HTTP/1.1 server on the loopback interface.
class HttpServer : public QObject
{
    Q_OBJECT

public:
    using Handler = std::function<HttpResponse(const HttpRequest &)>;

    /// Listens at once, on a free port.
    explicit HttpServer(Handler handler);

    [[nodiscard]] QUrl url(const QString &path = {}) const;
    /// Ends every connection and takes no more, as a network that is gone.
    void close();

private:
    void read(QTcpSocket *socket);
    static void write(QTcpSocket *socket, const HttpResponse &response);

    Handler m_handler;
    QHash<QTcpSocket *, QByteArray> m_received;
    // Destroyed first: its connections end by taking themselves out of the above.
    QTcpServer m_server;
};

} // namespace randblatt
