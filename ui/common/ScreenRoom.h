#pragma once

#include <QScreen>
#include <QSize>
#include <QWidget>

namespace tavinor {

/// The most that a window may take of its screen, so that its frame, title bar and menu bar stay on it.
inline QSize roomOnScreen(const QWidget& window) {
    constexpr QSize around(16, 56);
    return window.screen()->availableSize() - around;
}

}  // namespace tavinor
