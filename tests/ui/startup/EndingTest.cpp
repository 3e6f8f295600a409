#include "ui/startup/Ending.h"

#include <netdb.h>
#include <unistd.h>

#include <QApplication>
#include <QProcess>
#include <QTest>
#include <QTimer>
#include <string_view>

#include "ui/startup/Cabecera.h"

using namespace tavinor;

namespace {

constexpr int exitCode = 7;
constexpr std::string_view lookUpBegun = "looking up";

/// A program that ends as soon as its splash is over.
int runProgram(int argc, char* argv[]) {
    int code = 0;
    QApplication application(argc, argv);
    endWithoutWaiting(application, code);
    Cabecera cabecera(Version{1, 0, 0}, UpdateSource{QUrl("http://silent.test/Tavinor.upd"), {}});
    QObject::connect(&cabecera, &Cabecera::splashOver, &application, [] { QApplication::exit(exitCode); });
    cabecera.showSplash();
    code = QApplication::exec();
    return code;
}

}  // namespace

/// In place of the system's: a name server that never answers.
extern "C" int getaddrinfo(const char*, const char*, const addrinfo*, addrinfo**) {
    if (write(STDOUT_FILENO, lookUpBegun.data(), lookUpBegun.size()) < 0) return EAI_SYSTEM;
    while (true) pause();
}

class EndingTest : public QObject {
    Q_OBJECT

  private slots:
    void aNameServerThatIsSilentDelaysNothing() {
        QProcess program;
        program.start(QApplication::applicationFilePath(), {"program"});
        const bool finished = program.waitForFinished();
        if (!finished) program.kill();
        QVERIFY(finished);
        QCOMPARE(program.exitStatus(), QProcess::NormalExit);
        QCOMPARE(program.exitCode(), exitCode);
        QCOMPARE(program.readAllStandardOutput(), QByteArray(lookUpBegun.data()));
    }
};

int main(int argc, char* argv[]) {
    if (argc == 2 && std::string_view(argv[1]) == "program") return runProgram(argc, argv);
    const QApplication application(argc, argv);
    EndingTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "EndingTest.moc"
