#pragma once

#include <array>
#include <cstdint>

#include "machine/MachineState.h"
#include "machine/MnemonicTable.h"

/// The one to three bytes of an instruction in one number, the opcode lowest and 0 beyond the length: one
/// comparison tells whether two instructions are the same.
namespace tavinor {

namespace detail {
/// The bits of the bytes that belong to the instruction, by length.
inline constexpr std::array<std::uint32_t, 4> significantBits{0, 0xFF, 0xFFFF, 0xFFFFFF};
}  // namespace detail

/// The instruction at `address` (0..65535). Its operands go on at 0000.
inline std::uint32_t instructionCode(const MachineState& m, std::int32_t address) {
    const std::uint8_t opcode = m.at(address);
    const std::uint32_t code =
        opcode | std::uint32_t{m.wrapped(address + 1)} << 8 | std::uint32_t{m.wrapped(address + 2)} << 16;
    return code & detail::significantBits[static_cast<std::size_t>(instructionLength(opcode))];
}

/// Byte 0 (the opcode), 1 or 2 of an instruction.
constexpr std::uint8_t codeByte(std::uint32_t code, int index) {
    return static_cast<std::uint8_t>(code >> (8 * index) & 255);
}
constexpr std::uint8_t opcodeOf(std::uint32_t code) {
    return codeByte(code, 0);
}
constexpr std::int32_t wordOperandOf(std::uint32_t code) {
    return static_cast<std::int32_t>(code >> 8 & 0xFFFF);
}

}  // namespace tavinor
