#include "ui/startup/Cabecera.h"

#include <QApplication>
#include <QDesktopServices>
#include <QFile>
#include <QLabel>
#include <QPushButton>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

#include "tests/support/DialogAnswerer.h"
#include "tests/support/RealInput.h"
#include "tests/ui/startup/HttpServer.h"

using namespace tavinor;

namespace {

constexpr auto yesNo = QMessageBox::Yes | QMessageBox::No;
const QByteArray update = "1.2.3\r\nhttp://a.example/t.zip?a=1&b='$(x)'\r\n";
const QString address = "http://a.example/t.zip?a=1&b='$(x)'";
const QString question =
    "Hay actualizaciones disponibles\r\n(Versión actual: 1.1.99 - Versión nueva: 1.2.3)\r\n"
    "¿Desea descargarla ahora?";

struct Fixture {
    HttpServer server;
    QTemporaryDir folder;
    Cabecera cabecera{Version{1, 1, 99}, UpdateSource{server.address(), folder.filePath("updater")}};
    QSignalSpy splashOver{&cabecera, &Cabecera::splashOver};
    QSignalSpy ended{&cabecera, &Cabecera::ended};

    QPushButton* OK() { return cabecera.findChild<QPushButton*>("OK"); }
    QTimer* Timer1() { return cabecera.findChild<QTimer*>("Timer1"); }
    QString text(const char* name) { return cabecera.findChild<QLabel*>(name)->text(); }

    /// An updater that writes down how many arguments it got, and the arguments.
    void installUpdater() {
        QFile file(folder.filePath("updater"));
        if (!file.open(QIODevice::WriteOnly)) qFatal("cannot write the updater");
        file.write("#!/bin/sh\nprintf '%s\\n' \"$#\" \"$@\" > written && mv written arguments\n");
        file.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    }

    QString updaterArguments() {
        QFile file(folder.filePath("arguments"));
        return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
    }
};

}  // namespace

class CabeceraTest : public QObject {
    Q_OBJECT

  private:
    QList<QUrl> opened_;  // in the user's browser

  public slots:
    void openInBrowser(const QUrl& url) { opened_.append(url); }

  private slots:
    void init() {
        opened_.clear();
        QDesktopServices::setUrlHandler("http", this, "openInBrowser");
    }
    void cleanup() { QDesktopServices::unsetUrlHandler("http"); }

    void texts() {
        Fixture f;
        QCOMPARE(f.text("lblVersion"), QString("vers. 1.1.99"));
        QCOMPARE(f.text("Label3"), QString("Tavinor - Simulador didáctico del 8085"));
        QCOMPARE(f.OK()->text(), QString("OK"));
        const Cabecera ofTheBuild;
        QCOMPARE(ofTheBuild.findChild<QLabel*>("lblVersion")->text(), QString("vers. 1.5.7"));
    }

    void theBuildsOptions() {
        const UpdateSource source = builtInUpdateSource();
        QVERIFY(source.address.isValid());
        QVERIFY(source.address.path().endsWith(".upd"));
        QVERIFY(source.updaterPath.startsWith(QApplication::applicationDirPath() + '/'));
    }

    void splashEndsByItsTimer() {
        Fixture f;
        f.server.serve(HttpServer::answer("1.1.99 http://a.example/"));
        const DialogAnswerer noDialog;
        f.cabecera.showSplash();
        QVERIFY(f.cabecera.isVisible());
        QVERIFY(!f.cabecera.isModal());
        QVERIFY(!f.OK()->isVisible());
        QVERIFY(f.OK()->isEnabled());
        QVERIFY(f.Timer1()->isActive());
        QVERIFY(f.Timer1()->interval() <= 2000);
        bool shownBehind = false;
        connect(&f.cabecera, &Cabecera::splashOver, &f.cabecera,
                [&] { shownBehind = f.cabecera.isVisible(); });
        QVERIFY(f.splashOver.wait());
        QVERIFY(shownBehind);
        QVERIFY(!f.cabecera.isVisible());
        QVERIFY(!f.Timer1()->isActive());
        QCOMPARE(f.server.requests(), 1);
        QCOMPARE(f.ended.count(), 0);
    }

    void nothingElseEndsSplashAndFarewell_data() {
        QTest::addColumn<bool>("farewell");
        QTest::newRow("splash") << false;
        QTest::newRow("farewell") << true;
    }

    void nothingElseEndsSplashAndFarewell() {
        QFETCH(bool, farewell);
        Fixture f;
        farewell ? f.cabecera.showFarewell() : f.cabecera.showSplash();
        QVERIFY(!f.cabecera.close());
        QTest::keyClick(f.cabecera.windowHandle(), Qt::Key_Escape);
        QTest::keyClick(f.cabecera.windowHandle(), Qt::Key_Return);
        QVERIFY(f.cabecera.isVisible());
        QVERIFY(f.Timer1()->isActive());
    }

    void farewellEndsTheProgram() {
        Fixture f;
        f.cabecera.showFarewell();
        QVERIFY(f.cabecera.isVisible());
        QVERIFY(!f.cabecera.isModal());
        QVERIFY(!f.OK()->isVisible());
        QVERIFY(!f.OK()->isEnabled());
        QVERIFY(f.ended.wait());
        QCOMPARE(f.splashOver.count(), 0);
        QCOMPARE(f.server.requests(), 0);
    }

    void aboutBoxWaitsForTheUser_data() {
        QTest::addColumn<QString>("way");
        for (const char* way : {"button", "enter", "esc", "close"}) QTest::newRow(way) << way;
    }

    void aboutBoxWaitsForTheUser() {
        QFETCH(QString, way);
        Fixture f;
        f.Timer1()->setInterval(1);
        DialogAnswerer dialogs;
        dialogs.expectWindow("Cabecera", [&](QWidget* window) {
            QVERIFY(f.OK()->isVisible());
            QVERIFY(f.OK()->isEnabled());
            QCOMPARE(window->windowTitle(), QString("Tavinor"));
            QTRY_VERIFY(!f.Timer1()->isActive());  // the timer has come and done nothing
            QVERIFY(window->isVisible());
            if (way == "button") clickIn(f.OK());
            if (way == "enter") pressKey(window, Qt::Key_Return);
            if (way == "esc") pressKey(window, Qt::Key_Escape);
            if (way == "close") window->close();
            QVERIFY(!window->isVisible());
        });
        f.cabecera.showAbout();
        QCOMPARE(f.splashOver.count() + f.ended.count(), 0);
        QCOMPARE(f.server.requests(), 0);
    }

    void aboutBoxCanBeShownAgain() {
        Fixture f;
        for (int i = 0; i < 2; ++i) {
            DialogAnswerer dialogs;
            dialogs.expectWindow("Cabecera", [&](QWidget*) { clickIn(f.OK()); });
            f.cabecera.showAbout();
        }
    }

    void noGoesOn_data() {
        QTest::addColumn<int>("answer");
        QTest::newRow("no") << int(QMessageBox::No);
        QTest::newRow("esc") << int(QMessageBox::NoButton);
    }

    void noGoesOn() {
        QFETCH(int, answer);
        Fixture f;
        f.installUpdater();
        f.server.serve(HttpServer::answer(update));
        DialogAnswerer dialogs;
        dialogs.expectQuestion(question, yesNo, static_cast<QMessageBox::StandardButton>(answer));
        f.cabecera.showSplash();
        QVERIFY(f.splashOver.wait());
        QVERIFY(dialogs.allCame());
        QCOMPARE(f.ended.count(), 0);
        QCOMPARE(f.updaterArguments(), QString());
    }

    void theTimerWaitsForTheAnswer() {
        Fixture f;
        f.server.serve(HttpServer::answer(update));
        bool timerWaited = false;
        DialogAnswerer dialogs;
        dialogs.expectWindow("messageBox", [&](QWidget* window) {
            timerWaited = !f.Timer1()->isActive() && f.splashOver.count() == 0;
            pressKey(window, Qt::Key_Escape);
        });
        f.cabecera.showSplash();
        QTRY_VERIFY(dialogs.allCame());
        QVERIFY(timerWaited);
        QVERIFY(f.Timer1()->isActive());
    }

    void yesStartsTheUpdater() {
        Fixture f;
        f.installUpdater();
        f.server.serve(HttpServer::answer(update));
        DialogAnswerer dialogs;
        dialogs.expectQuestion(question, yesNo, QMessageBox::Yes);
        f.cabecera.showSplash();
        QVERIFY(f.ended.wait());
        QTRY_COMPARE(f.updaterArguments(), "1\n" + address + '\n');
        QVERIFY(opened_.isEmpty());
        QCOMPARE(f.splashOver.count(), 0);
        QVERIFY(!f.Timer1()->isActive());
    }

    void yesOpensTheBrowserWhereThereIsNoUpdater() {
        Fixture f;
        f.server.serve(HttpServer::answer(update));
        DialogAnswerer dialogs;
        dialogs.expectQuestion(question, yesNo, QMessageBox::Yes);
        f.cabecera.showSplash();
        QVERIFY(f.ended.wait());
        QCOMPARE(opened_, QList<QUrl>{QUrl(address)});
    }

    /// Without a screen there is no browser that could be opened.
    void yesTellsTheAddressThatCannotBeOpened() {
        QDesktopServices::unsetUrlHandler("http");
        Fixture f;
        f.server.serve(HttpServer::answer(update));
        DialogAnswerer dialogs;
        dialogs.expectQuestion(question, yesNo, QMessageBox::Yes);
        bool endedBefore = true;
        dialogs.expectWindow("messageBox", [&](QWidget* window) {
            endedBefore = f.ended.count() != 0;
            const auto& box = dynamic_cast<QMessageBox&>(*window);
            QCOMPARE(box.text(), "No se ha podido abrir la descarga:\n" + address);
            QCOMPARE(box.standardButtons(), QMessageBox::Ok);
            pressKey(window, Qt::Key_Return);
        });
        f.cabecera.showSplash();
        QTRY_COMPARE(f.ended.count(), 1);
        QVERIFY(dialogs.allCame());
        QVERIFY(!endedBefore);
    }

    void aSlowServerDelaysNothing() {
        Fixture f;
        f.server.serve("HTTP/1.1 200 OK\r\nContent-Length: 100\r\n\r\n", HttpServer::Afterwards::keepOpen);
        const DialogAnswerer noDialog;
        f.cabecera.showSplash();
        QTRY_COMPARE(f.server.requests(), 1);
        QVERIFY(f.splashOver.wait());
        QTRY_COMPARE(f.server.connections(), 0);  // nothing is left running
    }
};

QTEST_MAIN(CabeceraTest)
#include "CabeceraTest.moc"
