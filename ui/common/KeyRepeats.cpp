#include "ui/common/KeyRepeats.h"

#include <QCoreApplication>
#include <QKeyEvent>

namespace tavinor {

KeyRepeats::KeyRepeats(QObject* parent) : QObject(parent) {
    qApp->installEventFilter(this);
}

/// Before a key becomes an access key's event, which no longer tells a repeat, Qt asks the focused widget
/// whether it wants the key for itself.
bool KeyRepeats::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::ShortcutOverride) {
        repeating_ = static_cast<QKeyEvent*>(event)->isAutoRepeat();
        if (!repeating_) pressedFor_ = nullptr;
    }
    if (event->type() != QEvent::Shortcut) return false;
    if (!repeating_) pressedFor_ = watched;
    return watched != pressedFor_;
}

}  // namespace tavinor
