#pragma once

#include <QColor>

namespace tavinor {

/// What a text, and a mark that carries meaning, must have against what lies behind it.
constexpr double textContrast = 4.5;
constexpr double markContrast = 3;

/// How well two colours are told apart, 1 to 21: the ratio of their luminances.
double contrast(const QColor& one, const QColor& other);

/// `wanted` where it stands out from `background` by `ratio`; else as little of `towards` is mixed in as
/// makes it do so.
QColor standingOut(const QColor& wanted, const QColor& background, const QColor& towards, double ratio);

/// `share` (0 to 1) of `other` in `one`.
QColor mixed(const QColor& one, const QColor& other, double share);

}  // namespace tavinor
