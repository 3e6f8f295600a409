#include <QApplication>
#include <QTimer>
#include <cstdlib>

#include "ui/common/Application.h"
#include "ui/common/ReadableStyle.h"
#include "ui/program/EndSignals.h"
#include "ui/program/LastResort.h"
#include "ui/program/Program.h"
#include "ui/startup/Ending.h"

namespace {

/// Work in hand sees its event loop end, but may go on for long before it looks.
void end() {
    constexpr int patience = 500;  // milliseconds
    QTimer::singleShot(patience, qApp, [] { std::_Exit(EXIT_SUCCESS); });
    QApplication::exit();
}

}  // namespace

int main(int argc, char* argv[]) {
    int exitCode = 0;
    QApplication application(argc, argv);
    tavinor::endWithoutWaiting(application, exitCode);
    QApplication::setApplicationName(QStringLiteral("tavinor"));
    QApplication::setDesktopFileName(QStringLiteral("tavinor"));  // packaging/tavinor.desktop: name and icon
    QApplication::setWindowIcon(tavinor::applicationIcon());
    // The program ends by its farewell screen or its updater, not when one of its windows happens to be the
    // last.
    QApplication::setQuitOnLastWindowClosed(false);
    tavinor::installSpanish(application);
    QApplication::setStyle(new tavinor::ReadableStyle);

    tavinor::Program program;
    QObject::connect(&program, &tavinor::Program::ended, &application, end);
    const tavinor::LastResort lastResort([&program] { program.rescue(); });
    const tavinor::EndSignals endSignals;
    QObject::connect(&endSignals, &tavinor::EndSignals::received, &program, &tavinor::Program::requestEnd);
    program.start();
    exitCode = QApplication::exec();
    return exitCode;
}
