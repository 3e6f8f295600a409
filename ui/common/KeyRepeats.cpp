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
/// whether it wants the key for itself. What no access key takes goes to the window.
bool KeyRepeats::eventFilter(QObject* watched, QEvent* event) {
    switch (event->type()) {
        case QEvent::KeyRelease: {
            const auto* release = static_cast<QKeyEvent*>(event);
            releasedKey_ = release->key();
            releaseTime_ = release->timestamp();
            return false;
        }
        case QEvent::ShortcutOverride:
            repeating_ = isRepeat(*static_cast<QKeyEvent*>(event));
            if (!repeating_) pressedFor_ = nullptr;
            return false;
        case QEvent::Hide:
            // Shown again, it is the next window.
            if (watched == pressedFor_) pressedFor_ = nullptr;
            return false;
        case QEvent::KeyPress:
            if (!watched->isWindowType()) return false;
            [[fallthrough]];
        case QEvent::Shortcut:
            if (!repeating_) pressedFor_ = watched;
            return watched != pressedFor_;
        default: return false;
    }
}

}  // namespace tavinor
