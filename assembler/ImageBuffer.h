#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace tavinor {

inline constexpr std::size_t imageSize = 65536;

/// An assembled program: a cell for each address, 0..255, or -1 where there is no byte.
using ImageBuffer = std::array<std::int16_t, imageSize>;

inline constexpr std::int16_t noByte = -1;

}  // namespace tavinor
