#include <QApplication>

#include "ui/common/Translations.h"
#include "ui/main/Principal.h"

int main(int argc, char* argv[]) {
    QApplication application(argc, argv);
    QApplication::setApplicationName(QStringLiteral("tavinor"));
    tavinor::installSpanish(application);
    tavinor::Principal principal;
    principal.show();
    return QApplication::exec();
}
