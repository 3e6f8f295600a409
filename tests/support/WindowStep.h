#pragma once

#include "machine/Host.h"
#include "machine/MachineState.h"
#include "machine/Stepper.h"
#include "tests/support/Errors.h"

namespace tavinor::test {

struct WindowStep {
    int states = 0;  ///< The T-states; 0 where it failed.
    int error = noError;
};

/// An instruction as the window executes it: the mirror cells, the instruction, the mirror cells, and PC in
/// four digits. What batches, history and simulation have to equal.
inline WindowStep stepAsTheWindow(MachineState& m, Host& host) {
    WindowStep step;
    m.synmem();
    step.error = errorOf([&] { step.states = EjecutaPASO(m, host); });
    m.synmem();
    m.PC &= memorySize - 1;
    return step;
}

}  // namespace tavinor::test
