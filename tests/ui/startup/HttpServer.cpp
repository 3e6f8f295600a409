#include "tests/ui/startup/HttpServer.h"

#include <QTcpSocket>

namespace tavinor {

QByteArray HttpServer::answer(const QByteArray& body, const QByteArray& status) {
    return "HTTP/1.1 " + status +
           "\r\nContent-Type: text/plain\r\nContent-Length: " + QByteArray::number(body.size()) +
           "\r\nConnection: close\r\n\r\n" + body;
}

HttpServer::HttpServer() {
    if (!listen(QHostAddress::LocalHost)) qFatal("cannot listen: %s", qPrintable(errorString()));
    connect(this, &QTcpServer::newConnection, this, &HttpServer::accept);
}

void HttpServer::serve(const QByteArray& response, Afterwards afterwards) {
    response_ = response;
    afterwards_ = afterwards;
}

QUrl HttpServer::address() const {
    return QUrl(QStringLiteral("http://127.0.0.1:%1/Tavinor.upd").arg(serverPort()));
}

void HttpServer::accept() {
    QTcpSocket* socket = nextPendingConnection();
    ++connections_;
    connect(socket, &QTcpSocket::readyRead, this, [this, socket] { read(socket); });
    connect(socket, &QTcpSocket::disconnected, this, [this, socket] {
        --connections_;
        socket->deleteLater();
    });
}

void HttpServer::read(QTcpSocket* socket) {
    QByteArray& request = received_[socket];
    request += socket->readAll();
    if (!request.endsWith("\r\n\r\n")) return;
    lastRequest_ = received_.take(socket);
    ++requests_;
    socket->write(response_);
    if (afterwards_ == Afterwards::close) socket->disconnectFromHost();
    if (afterwards_ == Afterwards::flood) {
        connect(socket, &QTcpSocket::bytesWritten, socket,
                [socket] { socket->write(QByteArray(4096, '.')); });
    }
}

}  // namespace tavinor
