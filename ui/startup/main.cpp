#include <QApplication>

#include "ui/common/ApplicationIcon.h"
#include "ui/common/Translations.h"
#include "ui/main/Principal.h"
#include "ui/startup/Cabecera.h"
#include "ui/startup/Ending.h"

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

    // Both are there and connected before the splash asks for updates, however soon the answer comes.
    tavinor::Cabecera cabecera;
    tavinor::Principal principal;
    QObject::connect(&cabecera, &tavinor::Cabecera::splashOver, &principal, &QWidget::show);
    QObject::connect(&principal, &tavinor::Principal::aboutRequested, &cabecera,
                     &tavinor::Cabecera::showAbout);
    QObject::connect(&principal, &tavinor::Principal::closed, &cabecera, &tavinor::Cabecera::showFarewell);
    QObject::connect(&cabecera, &tavinor::Cabecera::ended, &application, [] { QApplication::exit(); });
    cabecera.showSplash();
    exitCode = QApplication::exec();
    return exitCode;
}
