#pragma once

#include <cstdint>

#include "machine/MachineState.h"

/// What the panels show of the machine where that is not the machine itself.
namespace tavinor {

/// What the views show: the registers at the last refresh or edit, and the byte in `txtM`, which may lag
/// behind memory until the next refresh. The window notes the values; the panels only read them, and their
/// widgets follow when they are brought up to date.
struct ShownValues {
    Registers registers;
    std::uint8_t M = 0;
};

/// Which interrupt requests the user can make. TRAP and reset always can.
struct RequestsAllowed {
    bool rst55 = false, rst65 = false, rst75 = false;
    bool intr = false;
};

/// INTR while interrupts are enabled; an RST line while, besides, it is not masked.
inline RequestsAllowed requestsAllowed(const InterruptState& state) {
    return {.rst55 = state.IE && !state.M55,
            .rst65 = state.IE && !state.M65,
            .rst75 = state.IE && !state.M75,
            .intr = state.IE};
}

}  // namespace tavinor
