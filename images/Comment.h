#pragma once

#include <cstdint>
#include <string>

#include "machine/MachineState.h"

namespace tavinor {

/// A short comment in Spanish for the instruction at `dir` (0..65535); empty for most of them.
///
/// Operands are read behind PC, not behind `dir`, so the comment is right only where the two are equal: see
/// behaviour.md, Images: comments.
/// `shownFlags` is the flag byte as the panel shows it.
/// @throws RuntimeError subscript when `dir` or PC is outside 0..65535.
std::string comenta(const MachineState& m, std::uint8_t shownFlags, std::int32_t dir);

}  // namespace tavinor
