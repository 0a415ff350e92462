#include "support/HttpServer.h"

#include <QPointer>
#include <QTcpSocket>
#include <QTimer>

namespace randblatt {

using namespace Qt::StringLiterals;

HttpServer::HttpServer(Handler handler)
    : m_handler(std::move(handler))
{
    connect(&m_server, &QTcpServer::newConnection, this, [this] {
        while (QTcpSocket *socket = m_server.nextPendingConnection()) {
            connect(socket, &QTcpSocket::readyRead, this, [this, socket] { read(socket); });
            connect(socket, &QTcpSocket::disconnected, this, [this, socket] {
                m_received.remove(socket);
                socket->deleteLater();
            });
        }
    });
    if (!m_server.listen(QHostAddress::LocalHost))
        qFatal("Der Server kann nicht lauschen.");
}

QUrl HttpServer::url(const QString &path) const
{
    return QUrl(u"http://127.0.0.1:%1%2"_s.arg(m_server.serverPort()).arg(path));
}

void HttpServer::close()
{
    m_server.close();
    const auto sockets = m_received.keys();
    for (QTcpSocket *socket : sockets)
        socket->abort();
}

void HttpServer::read(QTcpSocket *socket)
{
    QByteArray &received = m_received[socket];
    received += socket->readAll();
    const qsizetype headEnd = received.indexOf("\r\n\r\n");
    if (headEnd < 0)
        return;
    const QList<QByteArray> head = received.first(headEnd).split('\n');
    HttpRequest request;
    const QList<QByteArray> first = head.first().trimmed().split(' ');
    request.method = first.at(0);
    const QUrl target = QUrl::fromEncoded(first.at(1));
    request.path = target.path();
    request.query = QUrlQuery(target);
    for (const QByteArray &line : head.sliced(1)) {
        const qsizetype colon = line.indexOf(':');
        request.headers.insert(line.first(colon).toLower(), line.sliced(colon + 1).trimmed());
    }
    const qsizetype length = request.headers.value("content-length").toLongLong();
    if (received.size() < headEnd + 4 + length)
        return;
    request.body = received.sliced(headEnd + 4, length);
    received.remove(0, headEnd + 4 + length);
    const HttpResponse response = m_handler(request);
    QTimer::singleShot(response.delayMilliseconds, socket, [socket, response] { write(socket, response); });
}

void HttpServer::write(QTcpSocket *socket, const HttpResponse &response)
{
    if (response.isDropped) {
        socket->disconnectFromHost();
        return;
    }
    QByteArray head = "HTTP/1.1 " + QByteArray::number(response.status) + " Status\r\n";
    for (const auto &[name, value] : response.headers)
        head += name + ": " + value + "\r\n";
    if (response.status != 204) {
        head += "Content-Type: " + response.contentType + "\r\n";
        head += "Content-Length: " + QByteArray::number(response.body.size()) + "\r\n";
    }
    const qsizetype size = response.cutOff ? response.body.size() / 2 : response.body.size();
    socket->write(head + "\r\n" + response.body.first(size));
    if (response.cutOff)
        socket->disconnectFromHost();
}

} // namespace randblatt
