#pragma once

#include <QString>

#include "machine/HexText.h"

namespace tavinor {

/// `value` in `digits` hexadecimal digits, for a widget.
inline QString hexString(int value, int digits) {
    return QString::fromStdString(hexa(value, digits));
}

}  // namespace tavinor
