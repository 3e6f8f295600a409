#include "ui/main/HistoryMenu.h"

namespace tavinor {

HistoryMenu::HistoryMenu(QWidget* parent) : QMenu(QStringLiteral("&Historial"), parent) {
    setObjectName(QStringLiteral("historial"));
    pasoAtras = add("pasoAtras", "Paso &atrás", Qt::Key_F7);
    atrasPunto = add("atrasPunto", "Atrás hasta el &punto de ruptura", Qt::SHIFT | Qt::Key_F5);
    atrasCasilla =
        add("atrasCasilla", "Atrás hasta la última escritura de la &casilla", Qt::SHIFT | Qt::Key_F7);
    alPrincipio = add("alPrincipio", "Al pr&incipio", {});
    allow(false);
}

QAction* HistoryMenu::add(const char* name, const char* text, const QKeySequence& key) {
    QAction* action = addAction(QString::fromUtf8(text));
    action->setObjectName(QString::fromLatin1(name));
    action->setShortcut(key);
    return action;
}

void HistoryMenu::allow(bool back) {
    for (QAction* action : actions()) action->setEnabled(back);
}

}  // namespace tavinor
