#pragma once

#include <QStringList>
#include <QWidget>

namespace tavinor {

/// What in a window has too little room for its text, or lies over something else; empty when all is well.
QStringList clippedOrCovered(const QWidget& window);

}  // namespace tavinor
