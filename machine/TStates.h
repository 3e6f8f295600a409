#pragma once

#include <array>
#include <cstdint>

namespace tavinor {

/// The T-states of every opcode, 00 to FF, as the processor's manual gives them: of a conditional jump, call
/// or return those of the one that is not taken. A HLT counts until the processor stands still. The manual
/// says nothing of the undefined codes; they do nothing, and count as NOP does. See behaviour.md, Machine:
/// T-states.
// Sixteen opcodes a line, as on the processor's chart.
// clang-format off
inline constexpr std::array<std::uint8_t, 256> tStates{
    //0   1   2   3   4   5   6   7   8   9   A   B   C   D   E   F
      4, 10,  7,  6,  4,  4,  7,  4,  4, 10,  7,  6,  4,  4,  7,  4,  // 0
      4, 10,  7,  6,  4,  4,  7,  4,  4, 10,  7,  6,  4,  4,  7,  4,  // 1
      4, 10, 16,  6,  4,  4,  7,  4,  4, 10, 16,  6,  4,  4,  7,  4,  // 2
      4, 10, 13,  6, 10, 10, 10,  4,  4, 10, 13,  6,  4,  4,  7,  4,  // 3
      4,  4,  4,  4,  4,  4,  7,  4,  4,  4,  4,  4,  4,  4,  7,  4,  // 4
      4,  4,  4,  4,  4,  4,  7,  4,  4,  4,  4,  4,  4,  4,  7,  4,  // 5
      4,  4,  4,  4,  4,  4,  7,  4,  4,  4,  4,  4,  4,  4,  7,  4,  // 6
      7,  7,  7,  7,  7,  7,  5,  7,  4,  4,  4,  4,  4,  4,  7,  4,  // 7
      4,  4,  4,  4,  4,  4,  7,  4,  4,  4,  4,  4,  4,  4,  7,  4,  // 8
      4,  4,  4,  4,  4,  4,  7,  4,  4,  4,  4,  4,  4,  4,  7,  4,  // 9
      4,  4,  4,  4,  4,  4,  7,  4,  4,  4,  4,  4,  4,  4,  7,  4,  // A
      4,  4,  4,  4,  4,  4,  7,  4,  4,  4,  4,  4,  4,  4,  7,  4,  // B
      6, 10,  7, 10,  9, 12,  7, 12,  6, 10,  7,  4,  9, 18,  7, 12,  // C
      6, 10,  7, 10,  9, 12,  7, 12,  6,  4,  7, 10,  9,  4,  7, 12,  // D
      6, 10,  7, 16,  9, 12,  7, 12,  6,  6,  7,  4,  9,  4,  7, 12,  // E
      6, 10,  7,  4,  9, 12,  7, 12,  6,  6,  7,  4,  9,  4,  7, 12,  // F
};
// clang-format on

/// What a conditional instruction takes besides when its condition holds.
namespace taken {
constexpr int jump = 3;
constexpr int call = 9;
constexpr int ret = 6;
}  // namespace taken

/// The acceptance of TRAP or of an RST line: the processor executes a RST of its own making.
constexpr int acceptanceTStates = 12;

}  // namespace tavinor
