#include "ui/main/CommandBar.h"

#include <QEvent>
#include <QHBoxLayout>
#include <algorithm>

namespace tavinor {

namespace {

constexpr int betweenGroups = 16;

const QString& stoppedCaption() {
    static const QString caption = QStringLiteral("E&jecutar");
    return caption;
}

const QString& runningCaption() {
    static const QString caption = QStringLiteral("&Parar");
    return caption;
}

}  // namespace

CommandBar::CommandBar(QWidget* parent)
    : QWidget(parent), rows_(new QBoxLayout(QBoxLayout::LeftToRight, this)) {
    rows_->setContentsMargins(0, 0, 0, 0);
    QBoxLayout* row = addRow();
    const auto add = [this, &row](const char* name, const char* spoken, const QString& caption) {
        auto* button = new CommandButton(QString::fromLatin1(name), QString::fromUtf8(spoken), caption, this);
        row->addWidget(button);
        return button;
    };
    Ejecutar = add("Ejecutar", "Ejecutar", stoppedCaption());
    Eje_paso = add("Eje_paso", "Ejecutar un paso", QStringLiteral("&Paso"));
    row->addSpacing(betweenGroups);
    CargarHEX = add("CargarHEX", "Cargar fichero HEX", QStringLiteral("&Cargar"));
    Ensamblar = add("Ensamblar", "Ensamblar fichero", QStringLiteral("E&nsam"));
    row->addStretch();
    row = addRow();
    Editar = add("Editar", "Editar fichero", QStringLiteral("&Editar"));
    row->addSpacing(betweenGroups);
    about = add("about", "Acerca de Tavinor", QStringLiteral("&Acerca"));
    row->addStretch();
    Reset = add("Reset", "RESET: reiniciar el procesador", QStringLiteral("&RESET"));
}

QBoxLayout* CommandBar::addRow() {
    auto* row = new QHBoxLayout;
    rows_->addLayout(row, rows_->count());  // the rest of a single row lies before its last button
    return row;
}

/// The width of both rows beside each other.
int CommandBar::singleRowWidth() const {
    int width = rows_->spacing();
    for (int i = 0; i < rows_->count(); ++i) width += rows_->itemAt(i)->minimumSize().width();
    return width;
}

QSize CommandBar::minimumSizeHint() const {
    int width = 0;
    for (int i = 0; i < rows_->count(); ++i) {
        width = std::max(width, rows_->itemAt(i)->minimumSize().width());
    }
    return {width, rows_->minimumSize().height()};
}

void CommandBar::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    fold();
}

/// Larger letters make larger buttons.
bool CommandBar::event(QEvent* event) {
    if (event->type() == QEvent::LayoutRequest) fold();
    return QWidget::event(event);
}

void CommandBar::fold() {
    rows_->setDirection(width() < singleRowWidth() ? QBoxLayout::TopToBottom : QBoxLayout::LeftToRight);
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
