#include "ui/common/Application.h"

#include <QCoreApplication>
#include <QLocale>
#include <QPainter>
#include <QPixmap>
#include <QSvgRenderer>
#include <QTranslator>

namespace tavinor {

QIcon applicationIcon() {
    QSvgRenderer picture(QStringLiteral(":/icons/tavinor.svg"));
    QIcon icon;
    for (const int size : {16, 24, 32, 48, 64, 128, 256, 512}) {
        QPixmap pixmap(size, size);
        pixmap.fill(Qt::transparent);
        QPainter painter(&pixmap);
        picture.render(&painter);
        painter.end();
        icon.addPixmap(pixmap);
    }
    return icon;
}

void installSpanish(QCoreApplication& application) {
    QLocale::setDefault(QLocale(QLocale::Spanish, QLocale::Spain));
    for (const char* catalogue : {":/translations/qtbase_es.qm", ":/translations/qt_es.qm"}) {
        auto* translator = new QTranslator(&application);
        if (translator->load(QString::fromLatin1(catalogue))) QCoreApplication::installTranslator(translator);
    }
}

}  // namespace tavinor
