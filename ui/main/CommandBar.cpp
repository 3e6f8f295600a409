#include "ui/main/CommandBar.h"

#include <QHBoxLayout>

namespace tavinor {

namespace {

const QString& stoppedCaption() {
    static const QString caption = QStringLiteral("E&jecutar");
    return caption;
}

const QString& runningCaption() {
    static const QString caption = QStringLiteral("&Parar");
    return caption;
}

}  // namespace

CommandBar::CommandBar(QWidget* parent) : QWidget(parent) {
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    const auto add = [this, layout](const char* name, const char* spoken, const QString& caption) {
        auto* button = new CommandButton(QString::fromLatin1(name), QString::fromUtf8(spoken), caption, this);
        layout->addWidget(button);
        return button;
    };
    Ejecutar = add("Ejecutar", "Ejecutar", stoppedCaption());
    Eje_paso = add("Eje_paso", "Ejecutar un paso", QStringLiteral("&Paso"));
    layout->addSpacing(16);
    CargarHEX = add("CargarHEX", "Cargar fichero HEX", QStringLiteral("&Cargar"));
    Ensamblar = add("Ensamblar", "Ensamblar fichero", QStringLiteral("E&nsam"));
    Editar = add("Editar", "Editar fichero", QStringLiteral("&Editar"));
    layout->addSpacing(16);
    about = add("about", "Acerca de Tavinor", QStringLiteral("&Acerca"));
    layout->addStretch();
    Reset = add("Reset", "RESET: reiniciar el procesador", QStringLiteral("&RESET"));
}

bool CommandBar::running() const {
    return Ejecutar->text() != stoppedCaption();
}

void CommandBar::showRunning(bool running) {
    Ejecutar->setText(running ? runningCaption() : stoppedCaption());
    Ejecutar->setAccessibleName(running ? QStringLiteral("Parar") : QStringLiteral("Ejecutar"));
    Eje_paso->setEnabled(!running);
}

}  // namespace tavinor
