#pragma once

#include <cstdint>
#include <string>

#include "machine/MachineState.h"

namespace tavinor {

/// A short comment in Spanish for the instruction at `dir` (0..65535); empty for most of them.
///
/// The operand bytes are those at PC, which is the same place when the comment is asked for the current
/// instruction. `shownFlags` is the flag byte as the panel shows it.
/// @throws RuntimeError subscript when `dir` or PC is outside 0..65535.
std::string comenta(const MachineState& m, int shownFlags, std::int32_t dir);

}  // namespace tavinor
