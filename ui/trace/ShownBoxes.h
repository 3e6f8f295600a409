#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>

#include "machine/MachineState.h"

namespace tavinor {

/// The texts of the register boxes in the order A, B, C, D, E, F, H, L, M, PC, SP; they differ from the
/// values while the user is typing. UTF-8.
using RegisterTexts = std::array<std::string, 11>;
constexpr std::size_t pcText = 9;

/// What the register boxes show: values, and the boxes' texts when one of them has been edited.
struct ShownBoxes {
    const Registers& registers;
    std::uint8_t M;
    const RegisterTexts* texts = nullptr;
};

}  // namespace tavinor
