#include "ui/startup/Ending.h"

#include <netdb.h>
#include <unistd.h>

#include <QApplication>
#include <QProcess>
#include <QTest>
#include <QTimer>
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "ui/startup/Cabecera.h"

using namespace tavinor;

namespace {

constexpr int exitCode = 7;
constexpr std::string_view lookUpBegun = "looking up";

volatile std::uintptr_t mixed = 0;

/// Several blocks: the address of the last one may still lie about on the stack, where it counts as known.
void leak() {
    constexpr int blocks = 16;
    for (int i = 0; i < blocks; ++i) mixed = mixed ^ reinterpret_cast<std::uintptr_t>(std::malloc(12345));
}

#if defined(__SANITIZE_ADDRESS__)
constexpr bool leaksAreFound = true;
#else
constexpr bool leaksAreFound = false;
#endif

/// A program that ends as soon as its splash is over.
int runProgram(int argc, char* argv[], bool leaking) {
    int code = 0;
    if (leaking) leak();
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

    /// The short way out does not lead past the search for leaks.
    void aLeakIsReportedAtTheEnd() {
        if (!leaksAreFound) QSKIP("a build without the sanitizers");
        QProcess program;
        program.start(QApplication::applicationFilePath(), {"leaking program"});
        const bool finished = program.waitForFinished();
        if (!finished) program.kill();
        QVERIFY(finished);
        QVERIFY(program.exitCode() != exitCode);
        const QByteArray report = program.readAllStandardError();
        QVERIFY2(report.contains("detected memory leaks") && report.contains("EndingTest.cpp"), report);
    }
};

int main(int argc, char* argv[]) {
    const std::string_view role = argc == 2 ? argv[1] : "";
    if (role == "program" || role == "leaking program") return runProgram(argc, argv, role != "program");
    const QApplication application(argc, argv);
    EndingTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "EndingTest.moc"
