#pragma once

#include <QByteArray>
#include <QHash>
#include <QTcpServer>
#include <QUrl>

class QTcpSocket;

namespace tavinor {

/// A web server on this computer that answers every request with the same bytes.
class HttpServer : public QTcpServer {
  public:
    enum class Afterwards {
        close,
        keepOpen,  ///< The answer never ends.
        flood,     ///< More bytes follow for as long as they are taken.
    };

    /// Headers and body of an ordinary answer.
    static QByteArray answer(const QByteArray& body, const QByteArray& status = "200 OK");

    HttpServer();

    void serve(const QByteArray& response, Afterwards afterwards = Afterwards::close);

    [[nodiscard]] QUrl address() const;
    [[nodiscard]] int requests() const { return requests_; }
    [[nodiscard]] const QByteArray& lastRequest() const { return lastRequest_; }
    /// Requests whose connection is still there.
    [[nodiscard]] int connections() const { return connections_; }

  private:
    void accept();
    void read(QTcpSocket* socket);

    QByteArray response_;
    Afterwards afterwards_ = Afterwards::close;
    QHash<QTcpSocket*, QByteArray> received_;
    QByteArray lastRequest_;
    int requests_ = 0;
    int connections_ = 0;
};

}  // namespace tavinor
