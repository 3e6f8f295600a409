#include "ui/common/Commands.h"

#include <QMouseEvent>
#include <QScopedValueRollback>
#include <QShortcutEvent>

#include "ui/common/FocusGate.h"
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

/// Called for every press, by whatever way, just before `clicked`.
void CommandButton::nextCheckState() {
    allowed_ = isEnabled() && FocusGate::of(this).pass(this);
    QPushButton::nextCheckState();
}

bool CommandButton::event(QEvent* event) {
    // An access key acts at once; Qt would show the button pressed for a tenth of a second first.
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
    connect(this, &QCheckBox::toggled, this, &CommandCheckBox::noteToggle);
}

void CommandCheckBox::showChecked(bool checked) {
    const QScopedValueRollback<bool> silent(showing_, true);
    setChecked(checked);
}

/// An assistive tool changes the state without a click, so the change itself is what counts. It is taken back
/// until the box with the focus has let go of it.
void CommandCheckBox::noteToggle(bool checked) {
    if (showing_) return;
    showChecked(!checked);
    if (!FocusGate::of(this).pass(this)) return;
    showChecked(checked);
    emit changedByUser(checked);
}

DisplayCheckBox::DisplayCheckBox(const QString& name, const QString& accessibleName, const QString& caption,
                                 QWidget* parent)
    : QCheckBox(caption, parent) {
    named(this, name, accessibleName);
    // An assistive tool changes the state without asking.
    connect(this, &QCheckBox::toggled, this, [this] { setChecked(shown_); });
}

void DisplayCheckBox::showChecked(bool checked) {
    shown_ = checked;
    setChecked(checked);
}

void DisplayCheckBox::mousePressEvent(QMouseEvent* event) {
    event->ignore();
}
void DisplayCheckBox::mouseReleaseEvent(QMouseEvent* event) {
    event->ignore();
}

}  // namespace tavinor
