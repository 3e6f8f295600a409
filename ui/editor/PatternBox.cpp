#include "ui/editor/PatternBox.h"

#include <QDragEnterEvent>
#include <QFocusEvent>
#include <QKeyEvent>

#include "ui/common/FileDrops.h"
#include "ui/common/FocusGate.h"
#include "ui/common/Naming.h"
#include "ui/editor/EditKeys.h"

namespace tavinor {

PatternBox::PatternBox(const QString& name, const QString& accessibleName, QWidget* parent)
    : QLineEdit(parent) {
    named(this, name, accessibleName);
    connect(this, &QLineEdit::textChanged, this, &PatternBox::noteEdit);
}

/// An assistive tool can write behind a modal window.
void PatternBox::noteEdit() {
    if (FocusGate::isInReach(this)) {
        noted_ = text();
    } else if (text() != noted_) {
        setText(noted_);
    }
}

void PatternBox::focusInEvent(QFocusEvent* event) {
    QLineEdit::focusInEvent(event);
    selectOnPress_ = event->reason() == Qt::MouseFocusReason;
    selectAll();
}

void PatternBox::mousePressEvent(QMouseEvent* event) {
    if (selectOnPress_) {
        selectOnPress_ = false;
        return;
    }
    QLineEdit::mousePressEvent(event);
}

/// Enter ends here: passed on, it would press the dialog's button as well.
void PatternBox::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
        emit entered();
        return;
    }
    if (event->keyCombination() == redoKey) {
        redo();
        return;
    }
    QLineEdit::keyPressEvent(event);
}

/// The box would take the address of a file for a text.
void PatternBox::dragEnterEvent(QDragEnterEvent* event) {
    if (carriesFiles(*event->mimeData())) {
        event->ignore();
    } else {
        QLineEdit::dragEnterEvent(event);
    }
}

}  // namespace tavinor
