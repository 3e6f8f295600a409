#include "ui/startup/UpdateCheck.h"

#include <QNetworkReply>
#include <QSignalSpy>
#include <QTest>
#include <memory>

#include "tests/ui/startup/HttpServer.h"

using namespace tavinor;

namespace {

const QByteArray update = "9.8.7\r\nhttp://a.example/t.zip\r\n";
constexpr Version own{1, 5, 7};

}  // namespace

/// The request itself, against a real server that answers well, badly and not at all.
class UpdateCheckTest : public QObject {
    Q_OBJECT

  private slots:
    void answers_data() {
        using Afterwards = HttpServer::Afterwards;
        QTest::addColumn<QByteArray>("response");
        QTest::addColumn<int>("afterwards");
        QTest::addColumn<bool>("found");
        const auto row = [](const char* name, const QByteArray& response, bool found,
                            Afterwards afterwards = Afterwards::close) {
            QTest::newRow(name) << response << static_cast<int>(afterwards) << found;
        };
        const QByteArray ok = "HTTP/1.1 200 OK\r\n";
        row("newer", HttpServer::answer(update), true);
        row("newer, protocol 1.0", "HTTP/1.0 200 OK\r\n\r\n" + update, true);
        row("newer, in chunks",
            ok + "Transfer-Encoding: "
                 "chunked\r\n\r\n3\r\n9.8\r\n1b\r\n.7\r\nhttp://a.example/t.zip\r\n\r\n0\r\n\r\n",
            true);
        row("the same", HttpServer::answer("1.5.7 http://a.example/"), false);
        row("older", HttpServer::answer("1.5.6 http://a.example/"), false);
        row("malformed", HttpServer::answer("hello"), false);
        row("empty", HttpServer::answer(""), false);
        row("not found", HttpServer::answer(update, "404 Not Found"), false);
        row("server error", HttpServer::answer(update, "500 Oops"), false);
        row("another success", HttpServer::answer(update, "203 Changed"), false);
        row("wants a password",
            "HTTP/1.1 401 No\r\nWWW-Authenticate: Basic realm=\"x\"\r\nContent-Length: 0\r\n\r\n", false);
        row("no protocol", "hello\r\n\r\n", false);
        row("nothing at all", "", false);
        row("cut short", ok + "Content-Length: 1000\r\n\r\n" + update, false);
        row("packed", ok + "Content-Encoding: gzip\r\nContent-Length: 4\r\n\r\n\x1F\x8B\x08\x01", false);
        row("just not too long", HttpServer::answer(update + QByteArray(64 * 1024 - update.size(), '\n')),
            true);
        row("too long", HttpServer::answer(update + QByteArray(64 * 1024 - update.size() + 1, '\n')), false);
        row("without end", ok + "\r\n" + update, false, Afterwards::flood);
    }

    void answers() {
        QFETCH(QByteArray, response);
        QFETCH(int, afterwards);
        QFETCH(bool, found);
        HttpServer server;
        server.serve(response, static_cast<HttpServer::Afterwards>(afterwards));
        UpdateCheck check(server.address(), own, nullptr);
        QSignalSpy updates(&check, &UpdateCheck::updateFound);
        check.start();
        const auto* reply = check.findChild<QNetworkReply*>();
        QVERIFY(reply != nullptr);
        QTRY_VERIFY(reply->isFinished());
        QVERIFY(server.requests() >= 1);
        QVERIFY(server.lastRequest().startsWith("GET /Tavinor.upd HTTP/1.1\r\n"));
        QCOMPARE(updates.count(), found ? 1 : 0);
        QTRY_COMPARE(server.connections(), 0);
    }

    void redirectsAreNotFollowed() {
        HttpServer other;
        other.serve(HttpServer::answer(update));
        HttpServer server;
        server.serve("HTTP/1.1 302 Found\r\nLocation: " + other.address().toEncoded() +
                     "\r\nContent-Length: 0\r\n\r\n");
        UpdateCheck check(server.address(), own, nullptr);
        QSignalSpy updates(&check, &UpdateCheck::updateFound);
        check.start();
        const auto* reply = check.findChild<QNetworkReply*>();
        QTRY_VERIFY(reply->isFinished());
        QCOMPARE(server.requests(), 1);
        QCOMPARE(other.requests(), 0);
        QCOMPARE(updates.count(), 0);
    }

    void noServerThere() {
        QUrl address;
        {
            const HttpServer gone;
            address = gone.address();
        }
        UpdateCheck check(address, own, nullptr);
        QSignalSpy updates(&check, &UpdateCheck::updateFound);
        check.start();
        const auto* reply = check.findChild<QNetworkReply*>();
        QTRY_VERIFY(reply->isFinished());
        QCOMPARE(updates.count(), 0);
    }

    void noAddressAsksNothing() {
        UpdateCheck check(QUrl(), own, nullptr);
        check.start();
        QVERIFY(check.findChild<QNetworkReply*>() == nullptr);
    }

    void asksOnce() {
        HttpServer server;
        server.serve(HttpServer::answer(update));
        UpdateCheck check(server.address(), own, nullptr);
        QSignalSpy updates(&check, &UpdateCheck::updateFound);
        check.start();
        check.start();
        QVERIFY(updates.wait());
        check.start();
        QCOMPARE(check.findChildren<QNetworkReply*>().size(), 1);
        QCOMPARE(server.requests(), 1);
    }

    void theRequestEndsWithTheObject() {
        HttpServer server;
        server.serve("HTTP/1.1 200 OK\r\nContent-Length: 1000\r\n\r\n9.8.7",
                     HttpServer::Afterwards::keepOpen);
        auto check = std::make_unique<UpdateCheck>(server.address(), own, nullptr);
        check->start();
        QTRY_COMPARE(server.requests(), 1);
        QCOMPARE(server.connections(), 1);
        check.reset();
        QTRY_COMPARE(server.connections(), 0);
    }
};

QTEST_MAIN(UpdateCheckTest)
#include "UpdateCheckTest.moc"
