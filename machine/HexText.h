#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace tavinor {

/// The upper-case hexadecimal digits of `value`, padded with up to four zeros and cut to the rightmost
/// `width` characters: hexa(10, 2) = "0A", hexa(256, 2) = "00". A value wider than `width` loses its high
/// digits (see behaviour.md, Machine: hexadecimal text). Negative values show their two's complement: four
/// digits of a 16-bit value, eight of a 32-bit one. `width` is 2 for a byte, 4 for an address; wider than the
/// padded text returns all of it, 0 or less nothing.
std::string hexa(std::int32_t value, int width);
std::string hexa(std::int16_t value, int width);
/// A fraction is rounded to the nearest integer first, halves to even.
/// @throws RuntimeError overflow when the rounded value is no 32-bit integer.
std::string hexa(double value, int width);

/// The decimal digits of `value`, with "-" in front of a negative one and no blanks.
std::string ls(std::int32_t value);

/// The value of hexadecimal text in either case: -2147418112 .. 2147483647.
///
/// Blanks, TABs and line feeds are skipped wherever they stand; any other character that is no digit ends the
/// number; no digit at all is 0; of more than eight digits the last eight count. Up to four digits read as a
/// signed 16-bit value, more as a signed 32-bit value, and a negative result is corrected by adding 65536: so
/// "FFFF" and "FFFFFFFF" are both 65535, and "80000000" stays negative. Nothing cuts a value to 16 bits.
/// Never fails: see behaviour.md, Machine: hexadecimal text.
std::int32_t dec(std::string_view text);

}  // namespace tavinor
