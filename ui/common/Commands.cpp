#include "ui/common/Commands.h"

#include <QMouseEvent>
#include <QShortcutEvent>

#include "ui/common/HexBox.h"
#include "ui/common/Naming.h"

namespace tavinor {

CommandButton::CommandButton(const QString& name, const QString& accessibleName, const QString& caption,
                             QWidget* parent)
    : QPushButton(caption, parent) {
    named(this, name, accessibleName);
    setFocusPolicy(Qt::StrongFocus);
    setAutoDefault(false);
    connect(this, &QPushButton::clicked, this, [this] {
        if (allowed_) emit command();
    });
}

/// Called for every press, whoever makes it, just before `clicked`.
void CommandButton::nextCheckState() {
    allowed_ = leaveFocusedBox(window(), this);
    QPushButton::nextCheckState();
}

bool CommandButton::event(QEvent* event) {
    // An access key acts at once; the toolkit would show the button pressed for a tenth of a second first.
    if (event->type() == QEvent::Shortcut && !static_cast<QShortcutEvent*>(event)->isAmbiguous()) {
        click();
        return true;
    }
    return QPushButton::event(event);
}

CommandCheckBox::CommandCheckBox(const QString& name, const QString& accessibleName, const QString& caption,
                                 QWidget* parent)
    : QCheckBox(caption, parent) {
    named(this, name, accessibleName);
    setFocusPolicy(Qt::StrongFocus);
    connect(this, &QCheckBox::clicked, this, [this](bool checked) {
        if (allowed_) emit changedByUser(checked);
    });
}

void CommandCheckBox::showChecked(bool checked) {
    setChecked(checked);  // `clicked`, the only signal listened to, follows presses alone
}

void CommandCheckBox::nextCheckState() {
    allowed_ = leaveFocusedBox(window(), this);
    if (allowed_) QCheckBox::nextCheckState();
}

DisplayCheckBox::DisplayCheckBox(const QString& name, const QString& accessibleName, const QString& caption,
                                 QWidget* parent)
    : QCheckBox(caption, parent) {
    named(this, name, accessibleName);
}

void DisplayCheckBox::mousePressEvent(QMouseEvent* event) {
    event->ignore();
}
void DisplayCheckBox::mouseReleaseEvent(QMouseEvent* event) {
    event->ignore();
}

}  // namespace tavinor
