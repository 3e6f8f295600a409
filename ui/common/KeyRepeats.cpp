#include "ui/common/KeyRepeats.h"

#include <QCoreApplication>
#include <QKeyEvent>

namespace tavinor {

KeyRepeats::KeyRepeats(QObject* parent) : QObject(parent) {
    qApp->installEventFilter(this);
}

/// On X11 a repeat is a release and a press of one moment, and Qt does not always see that they belong
/// together.
bool KeyRepeats::isRepeat(const QKeyEvent& press) const {
    return press.isAutoRepeat() || (press.key() == releasedKey_ && press.timestamp() == releaseTime_);
}

/// Before a key becomes an access key's event, which no longer tells a repeat, Qt asks the focused widget
/// whether it wants the key for itself.
bool KeyRepeats::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::KeyRelease) {
        const auto* release = static_cast<QKeyEvent*>(event);
        releasedKey_ = release->key();
        releaseTime_ = release->timestamp();
    }
    if (event->type() == QEvent::ShortcutOverride) {
        repeating_ = isRepeat(*static_cast<QKeyEvent*>(event));
        if (!repeating_) pressedFor_ = nullptr;
    }
    if (event->type() != QEvent::Shortcut) return false;
    if (!repeating_) pressedFor_ = watched;
    return watched != pressedFor_;
}

}  // namespace tavinor
