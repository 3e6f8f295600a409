#include "ui/common/Translations.h"

#include <QCoreApplication>
#include <QLocale>
#include <QTranslator>

namespace tavinor {

void installSpanish(QCoreApplication& application) {
    QLocale::setDefault(QLocale(QLocale::Spanish, QLocale::Spain));
    auto* toolkit = new QTranslator(&application);
    if (toolkit->load(QStringLiteral(":/translations/qtbase_es.qm"))) {
        QCoreApplication::installTranslator(toolkit);
    }
}

}  // namespace tavinor
