#pragma once

#include "machine/MachineState.h"

namespace tavinor {

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
