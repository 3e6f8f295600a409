#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "files/WorkObserver.h"

/// The forms of Unicode that files have. Inside the program every text is UTF-8.
namespace tavinor {

/// One character of a UTF-8 text and the bytes it takes; no bytes where the text is malformed.
struct Utf8Character {
    char32_t character = 0;
    std::size_t length = 0;
};

/// The character at `position` (inside `text`).
Utf8Character utf8At(std::string_view text, std::size_t position);

/// Where the character begins that `position` (up to the size of the well-formed `text`) lies in.
std::size_t beginningOfCharacter(std::string_view text, std::size_t position);

void appendUtf8(std::string& text, char32_t character);

/// Where the first byte outside ASCII stands at or after `position`, or the size of `text`.
std::size_t skipAscii(std::string_view text, std::size_t position);

/// Whether `bytes` are well-formed UTF-8 (no overlong forms, no surrogates, nothing past 10FFFF).
/// @throws Cancelled by `observer`
bool isUtf8(std::string_view bytes, WorkObserver& observer);

enum class ByteOrder : std::uint8_t { littleEndian, bigEndian };

/// The UTF-8 text of UTF-16 bytes; nothing where they are malformed (half a unit, half a surrogate pair).
/// @throws Cancelled by `observer`
std::optional<std::string> utf16ToUtf8(std::string_view bytes, ByteOrder order, WorkObserver& observer);

/// The UTF-16 bytes of UTF-8 `text`. What is malformed in it becomes U+FFFD.
std::string utf8ToUtf16(std::string_view text, ByteOrder order);

}  // namespace tavinor
