#pragma once

#include <QFont>

namespace tavinor {

/// The fixed-width font of everything hexadecimal, in the size of the desktop's own font: one whose zero
/// cannot be taken for an O where the system has such a font, else the system's fixed-width font.
QFont fixedFont();

/// Arial, or what the system has in its place, `scale` times the size of the desktop's own font.
QFont arialFont(double scale, bool bold);

}  // namespace tavinor
