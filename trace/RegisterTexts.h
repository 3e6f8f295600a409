#pragma once

#include <array>
#include <cstddef>
#include <string>

namespace tavinor {

/// The texts of the register boxes in the order A, B, C, D, E, F, H, L, M, PC, SP; they differ from the
/// values while the user is typing. UTF-8.
using RegisterTexts = std::array<std::string, 11>;
constexpr std::size_t pcText = 9;

}  // namespace tavinor
