#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>

namespace tavinor {

/// The flags at their places in the flag byte `F`. Bits 5, 3 and 1 are set by no operation; they hold what a
/// `POP PSW` or an edit put there until an operation assigns F outright: see behaviour.md, Machine: flags.
namespace flag {
constexpr int S = 128;
constexpr int Z = 64;
constexpr int AC = 16;
constexpr int P = 4;
constexpr int CY = 1;
}  // namespace flag

/// The five flags of `f` as "1" and "0", in the order S, Z, AC, P, CY; the unused bits never appear.
constexpr std::array<char, 5> flagDigits(int f) {
    constexpr std::array<int, 5> bits{flag::S, flag::Z, flag::AC, flag::P, flag::CY};
    std::array<char, 5> digits{};
    for (std::size_t i = 0; i < bits.size(); ++i) digits[i] = (f & bits[i]) != 0 ? '1' : '0';
    return digits;
}

/// The same as text: the flag column of the trace.
inline std::string txtflags(int f) {
    const std::array<char, 5> digits = flagDigits(f);
    return {digits.begin(), digits.end()};
}

/// 1 when the number of one bits of `n` (0..255) is even, else 0.
constexpr int Paridad(int n) {
    int count = 0;
    for (int weight = 128; weight >= 1; weight /= 2) {
        if (n >= weight) {
            ++count;
            n -= weight;
        }
    }
    return count % 2 == 0 ? 1 : 0;
}

namespace detail {
constexpr std::array<std::uint8_t, 256> makeResultFlags() {
    std::array<std::uint8_t, 256> table{};
    for (int value = 0; value < 256; ++value) {
        int bits = 0;
        if (value == 0) bits |= flag::Z;
        if ((value & 128) != 0) bits |= flag::S;
        if (Paridad(value) != 0) bits |= flag::P;
        table[static_cast<std::size_t>(value)] = static_cast<std::uint8_t>(bits);
    }
    return table;
}
inline constexpr std::array<std::uint8_t, 256> resultFlags = makeResultFlags();
}  // namespace detail

/// The S, Z and P bits that the result `value` (0..255) gives; never AC or CY.
constexpr int flags(int value) {
    return detail::resultFlags[static_cast<std::size_t>(value)];
}

}  // namespace tavinor
