#include "ui/common/Translations.h"

#include <QCoreApplication>
#include <QLocale>
#include <QTranslator>

namespace tavinor {

void installSpanish(QCoreApplication& application) {
    QLocale::setDefault(QLocale(QLocale::Spanish, QLocale::Spain));
    for (const char* catalogue : {":/translations/qtbase_es.qm", ":/translations/qt_es.qm"}) {
        auto* translator = new QTranslator(&application);
        if (translator->load(QString::fromLatin1(catalogue))) QCoreApplication::installTranslator(translator);
    }
}

}  // namespace tavinor
