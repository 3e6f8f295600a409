#pragma once

#include <cstdint>

#include "machine/MachineState.h"

namespace tavinor {

/// What the views show: the registers at the last refresh or edit, and the byte in `txtM`, which may lag
/// behind memory until the next refresh. The window notes the values; the panels only read them, and their
/// widgets follow when they are brought up to date.
struct ShownValues {
    Registers registers;
    std::uint8_t M = 0;
};

}  // namespace tavinor
