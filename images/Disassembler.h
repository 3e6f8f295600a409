#pragma once

#include <cstdint>
#include <string>

#include "machine/MachineState.h"

namespace tavinor {

/// An instruction as text, with its operands filled in ("MVI A,05", "JMP 2000"), and its length.
struct Instruction {
    std::string text;
    int length = 1;  ///< 1, 2 or 3 bytes
};

/// The instruction at `cp` (0..65535). Operands of an instruction at the top of memory come from 0000 and
/// 0001.
/// @throws RuntimeError subscript when `cp` is outside.
Instruction desensambla(const MachineState& m, std::int32_t cp);

/// One row of a listing: four digits of address, "*" or a blank for the breakpoint, the bytes in eight
/// columns, two blanks, the instruction's text; and the instruction's length.
/// @throws RuntimeError subscript when `cp` is outside 0..65535.
Instruction linea(const MachineState& m, const Breakpoints& breakpoints, std::int32_t cp);

}  // namespace tavinor
