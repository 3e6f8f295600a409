#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "machine/MachineState.h"
#include "machine/MnemonicTable.h"

/// What stands at an address as an instruction: its one to three bytes in one number, the opcode lowest and 0
/// beyond the length, so that one comparison tells whether two instructions are the same.
namespace tavinor {

/// The three bytes from `address` (0..65535) on, whether or not they belong to one instruction. What lies
/// beyond FFFF goes on at 0000.
inline std::uint32_t threeBytesAt(const MachineState& m, std::int32_t address) {
    return m.at(address) | std::uint32_t{m.wrapped(address + 1)} << 8 |
           std::uint32_t{m.wrapped(address + 2)} << 16;
}

/// Byte 0 (the opcode), 1 or 2 of an instruction.
constexpr std::uint8_t codeByte(std::uint32_t code, int index) {
    return static_cast<std::uint8_t>(code >> (8 * index) & 255);
}
constexpr std::uint8_t opcodeOf(std::uint32_t code) {
    return codeByte(code, 0);
}
constexpr std::uint8_t byteOperandOf(std::uint32_t code) {
    return codeByte(code, 1);
}
constexpr std::int32_t wordOperandOf(std::uint32_t code) {
    return static_cast<std::int32_t>(code >> 8 & 0xFFFF);
}
constexpr int lengthOf(std::uint32_t code) {
    return instructionLength(opcodeOf(code));
}

/// The instruction at `address` (0..65535).
inline std::uint32_t instructionCode(const MachineState& m, std::int32_t address) {
    constexpr std::array<std::uint32_t, 4> significantBits{0, 0xFF, 0xFFFF, 0xFFFFFF};
    const std::uint32_t code = threeBytesAt(m, address);
    return code & significantBits[static_cast<std::size_t>(lengthOf(code))];
}

}  // namespace tavinor
