#include "ui/editor/Busqueda.h"

#include <QAction>
#include <QCheckBox>
#include <QDialogButtonBox>
#include <QEvent>
#include <QGridLayout>
#include <QLabel>
#include <QVBoxLayout>

#include "ui/common/Commands.h"
#include "ui/common/MemoryGuard.h"
#include "ui/common/MessageBoxes.h"
#include "ui/common/Naming.h"
#include "ui/editor/PatternBox.h"
#include "ui/editor/Search.h"
#include "ui/editor/SourceEdit.h"

namespace tavinor {

Busqueda::Busqueda(SourceEdit* texto, QAction* Buscarsiguiente, QWidget* parent)
    : QDialog(parent),
      texto_(texto),
      Buscarsiguiente_(Buscarsiguiente),
      cadena(new PatternBox(QStringLiteral("cadena"), QStringLiteral("Texto a buscar"), this)),
      may(named(new QCheckBox(QStringLiteral("Coincidir mayúsculas y minúsculas"), this),
                QStringLiteral("may"), QStringLiteral("Coincidir mayúsculas y minúsculas"))),
      Buscar(new CommandButton(QStringLiteral("Buscar"), QStringLiteral("Buscar"), QStringLiteral("&Buscar"),
                               this)),
      cancel(new CommandButton(QStringLiteral("cancel"), QStringLiteral("Cancelar"),
                               QStringLiteral("&Cancelar"), this)),
      dirini(new QLabel(this)) {
    setObjectName(QStringLiteral("Busqueda"));
    setWindowTitle(applicationTitle() + QStringLiteral(" - Buscar"));
    dirini->setObjectName(QStringLiteral("dirini"));
    dirini->hide();
    layOut();
    cadena_Change();
    connect(cadena, &QLineEdit::textChanged, this, &Busqueda::cadena_Change);
    connect(cadena, &PatternBox::entered, this, &Busqueda::Buscar_Click);
    connect(Buscar, &CommandButton::command, this, &Busqueda::Buscar_Click);
    connect(cancel, &CommandButton::command, this, &QWidget::hide);
}

void Busqueda::layOut() {
    constexpr int patternColumns = 40;
    cadena->setMinimumWidth(cadena->fontMetrics().averageCharWidth() * patternColumns);
    Buscar->setAutoDefault(true);
    Buscar->setDefault(true);
    cancel->setAutoDefault(true);
    auto* buttons = new QVBoxLayout;
    buttons->addWidget(Buscar);
    buttons->addWidget(cancel);
    auto* layout = new QGridLayout(this);
    layout->addWidget(cadena, 0, 0);
    layout->addWidget(may, 1, 0);
    layout->addLayout(buttons, 0, 1, 2, 1);
    setTabOrder(cadena, may);
    setTabOrder(may, Buscar);
    setTabOrder(Buscar, cancel);
    layout->setSizeConstraint(QLayout::SetFixedSize);
}

void Busqueda::showForTyping() {
    // Before it is shown: the button that had the focus the last time would get it for a moment, and stay the
    // one that Enter presses.
    cadena->setFocus(Qt::ActiveWindowFocusReason);
    show();
    raise();
    activateWindow();
}

bool Busqueda::event(QEvent* event) {
    const bool handled = QDialog::event(event);
    if (event->type() == QEvent::WindowActivate) cadena->setFocus(Qt::ActiveWindowFocusReason);
    return handled;
}

void Busqueda::cadena_Change() {
    dirini->clear();
    Buscar->setEnabled(!cadena->text().isEmpty());
}

void Busqueda::Buscar_Click() {
    guardMemory(parentWidget(), [this] { search(); });
}

void Busqueda::search() {
    hide();
    parentWidget()->activateWindow();
    Buscarsiguiente_->setEnabled(false);
    const bool anew = dirini->text().isEmpty();
    const qsizetype start = anew ? texto_->selectionStart() + 1 : dirini->text().toLongLong() + 1;
    if (anew) dirini->setText(QString::number(start));
    if (selectFrom(start)) return;

    const QString notFound = cadena->text() + QStringLiteral(" no encontrada");
    if (start != 1) {
        const QString question =
            notFound + QStringLiteral("\r\n¿Desea buscar desde el principio del documento?");
        if (!askYesNo(parentWidget(), question) || selectFrom(1)) return;
    }
    showMessage(parentWidget(), notFound);
}

bool Busqueda::selectFrom(qsizetype start) {
    const auto match = findText(texto_->source(), cadena->text(), start, may->isChecked());
    if (!match) return false;
    texto_->select(*match - 1, cadena->text().size());
    Buscarsiguiente_->setEnabled(true);
    dirini->setText(QString::number(*match));
    return true;
}

}  // namespace tavinor
