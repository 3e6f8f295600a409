#include "machine/HexText.h"

#include <cmath>
#include <cstddef>
#include <limits>

#include "machine/RuntimeError.h"

namespace tavinor {

namespace {

constexpr std::string_view upperDigits = "0123456789ABCDEF";

std::string paddedHex(std::uint32_t bits, int width) {
    if (width <= 0) return {};
    std::string digits;
    do {
        digits.insert(digits.begin(), upperDigits[bits % 16]);
        bits /= 16;
    } while (bits != 0);
    digits.insert(0, "0000");
    const auto kept = static_cast<std::size_t>(width);
    return kept < digits.size() ? digits.substr(digits.size() - kept) : digits;
}

/// 0..15, or -1 for a character that is no hexadecimal digit.
int digitValue(char c) {
    if (c >= '0' && c <= '9') return c - '0';
    if (c >= 'A' && c <= 'F') return c - 'A' + 10;
    if (c >= 'a' && c <= 'f') return c - 'a' + 10;
    return -1;
}

}  // namespace

std::string hexa(std::int32_t value, int width) {
    return paddedHex(static_cast<std::uint32_t>(value), width);
}

std::string hexa(std::int16_t value, int width) {
    return paddedHex(static_cast<std::uint16_t>(value), width);
}

std::string hexa(double value, int width) {
    const double rounded = std::nearbyint(value);  // the default rounding mode takes halves to even
    constexpr double lowest = std::numeric_limits<std::int32_t>::min();
    constexpr double highest = std::numeric_limits<std::int32_t>::max();
    if (!(rounded >= lowest && rounded <= highest)) throw RuntimeError(RuntimeError::Number::overflow);
    return hexa(static_cast<std::int32_t>(rounded), width);
}

std::string ls(std::int32_t value) {
    return std::to_string(value);
}

std::int32_t dec(std::string_view text) {
    std::uint32_t bits = 0;
    int digits = 0;
    for (const char c : text) {
        if (c == ' ' || c == '\t' || c == '\n') continue;
        const int digit = digitValue(c);
        if (digit < 0) break;
        bits = bits << 4U | static_cast<std::uint32_t>(digit);  // the ninth digit pushes the first one out
        if (digits < 5) ++digits;
    }
    const std::int32_t value =
        digits <= 4 ? static_cast<std::int16_t>(bits) : static_cast<std::int32_t>(bits);
    return value < 0 ? value + 65536 : value;
}

}  // namespace tavinor
