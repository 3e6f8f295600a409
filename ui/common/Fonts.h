#pragma once

#include <QFont>
#include <functional>

class QWidget;

namespace tavinor {

/// The fixed-width font of everything hexadecimal, in the size of the desktop's own font: one whose zero
/// cannot be taken for an O where the system has such a font, else the system's fixed-width font.
QFont fixedFont();

/// Arial, or what the system has in its place, `scale` times the size of the desktop's own font.
QFont arialFont(double scale, bool bold);

/// The desktop's own font, `scale` times its size.
QFont desktopFont(double scale, bool bold);

/// Gives `widget` the font that `font` makes, and makes it anew whenever the desktop's font changes. `fit`
/// follows each time: what depends on the size of letters. The widget has its parent already.
void useFont(QWidget* widget, const std::function<QFont()>& font, const std::function<void()>& fit = {});

}  // namespace tavinor
