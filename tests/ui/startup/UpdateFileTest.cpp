#include "ui/startup/Update.h"

#include <QTest>

using namespace tavinor;

class UpdateFileTest : public QObject {
    Q_OBJECT

  private slots:
    void reads_data() {
        QTest::addColumn<QByteArray>("body");
        QTest::addColumn<QString>("version");
        QTest::addColumn<QString>("address");
        const auto row = [](const char* name, const QByteArray& body, const char* version,
                            const char* address) {
            QTest::newRow(name) << body << QString(version) << QString(address);
        };
        row("plain", "1.2.3\r\nhttp://a.example/t.zip", "1.2.3", "http://a.example/t.zip");
        row("line ends after it", "1.2.3\nhttp://a.example/t.zip \t\r\n\r\n", "1.2.3",
            "http://a.example/t.zip");
        row("on one line", "1.2.3http://a.example/", "1.2.3", "http://a.example/");
        row("blanks before it", " 1. 2 .3 http://a.example/", "1.2.3", "http://a.example/");
        row("letters in the numbers", "x1.2y.z http://a.example/", "0.2.0", "http://a.example/");
        row("no number", "..http://a.example/", "0.0.0", "http://a.example/");
        row("more numbers", "1.2.3.4 http://a.example/", "1.2.3", "http://a.example/");
        row("negative", "-1.2.3 http://a.example/", "0.2.3", "http://a.example/");
        row("huge", "99999999999999999999.1.2 http://a.example/", "1000000000.1.2", "http://a.example/");
        row("a port and a query", "1.2.3 http://a:8080/x?y=1&z=%20", "1.2.3", "http://a:8080/x?y=1&z=%20");
        row("shell characters", "1.2.3 http://a.example/$(x);'y'&z", "1.2.3", "http://a.example/$(x);'y'&z");
        row("a second address inside", "1.2.3 http://a.example/http://b", "1.2.3",
            "http://a.example/http://b");
    }

    void reads() {
        QFETCH(QByteArray, body);
        const auto update = parseUpdateFile(body);
        QVERIFY(update);
        QTEST(update->version.text(), "version");
        QTEST(update->address, "address");
    }

    void refuses_data() {
        QTest::addColumn<QByteArray>("body");
        QTest::newRow("nothing") << QByteArray();
        QTest::newRow("no address") << QByteArray("1.2.3\r\n");
        QTest::newRow("no dot") << QByteArray("123 http://localhost/");
        QTest::newRow("one dot") << QByteArray("1.2 http://localhost/");
        QTest::newRow("second dot in the address") << QByteArray("1.2 http://a.example/");
        QTest::newRow("dots in the address alone") << QByteArray("http://a.b.example/");
        QTest::newRow("address first") << QByteArray("http://a.example/ 1.2.3");
        QTest::newRow("https") << QByteArray("1.2.3 https://a.example/");
        QTest::newRow("a file") << QByteArray("1.2.3 file:///bin/sh");
        QTest::newRow("no host") << QByteArray("1.2.3 http://");
        QTest::newRow("no host but a path") << QByteArray("1.2.3 http:///x");
        QTest::newRow("a blank inside") << QByteArray("1.2.3 http://a.example/ --option");
        QTest::newRow("a line end inside") << QByteArray("1.2.3 http://a.example/\nhttp://b/");
        QTest::newRow("a NUL inside") << QByteArrayLiteral("1.2.3 http://a.example/\0x");
        QTest::newRow("a NUL at the end") << QByteArrayLiteral("1.2.3 http://a.example/\0");
        QTest::newRow("an escape inside") << QByteArray("1.2.3 http://a.example/\x1B[2J");
        // NOLINTNEXTLINE(misc-misleading-bidirectional): that is what the address must not get away with
        QTest::newRow("not ASCII") << QByteArray("1.2.3 http://a.example/\xE2\x80\xAEgpj.exe");
        QTest::newRow("a quote") << QByteArray("1.2.3 http://a.example/\"x");
        QTest::newRow("a backslash") << QByteArray("1.2.3 http://a.example\\x");
        QTest::newRow("broken escapes") << QByteArray("1.2.3 http://a.example/%zz");
        QTest::newRow("a broken host") << QByteArray("1.2.3 http://[::1/");
        QTest::newRow("a web page") << QByteArray("<html><a href=\"http://x.y.z/\">moved. here.</a></html>");
    }

    void refuses() {
        QFETCH(QByteArray, body);
        QVERIFY(!parseUpdateFile(body));
    }

    void versionsAreWeighted() {
        const auto value = [](int major, int minor, int revision) {
            return Version{major, minor, revision}.value();
        };
        QCOMPARE(value(1, 5, 7), 1'005'007);
        QVERIFY(value(1, 2, 3) > value(1, 1, 99));
        QVERIFY(value(2, 0, 0) > value(1, 999, 999));
        QCOMPARE(value(1, 1, 1000), value(1, 2, 0));  // weights, not places
    }
};

QTEST_MAIN(UpdateFileTest)
#include "UpdateFileTest.moc"
