#pragma once

#include <string>

#include "machine/MachineState.h"

namespace tavinor::test {

/// Everything in which two machines differ, one line each ("A: 05, not 04"); empty when nothing does.
std::string differences(const MachineState& actual, const MachineState& expected);

/// The same for registers, pairs, PC and SP alone.
std::string registerDifferences(const Registers& actual, const Registers& expected);

}  // namespace tavinor::test
