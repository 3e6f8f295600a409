#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace tavinor {

/// One character of a UTF-8 text and the bytes it takes; no bytes where the text is malformed.
struct Utf8Character {
    char32_t character = 0;
    std::size_t length = 0;
};

/// The character at `position` (inside `text`).
Utf8Character utf8At(std::string_view text, std::size_t position);

void appendUtf8(std::string& text, char32_t character);

/// Where the first byte outside ASCII stands at or after `position`, or the size of `text`.
std::size_t skipAscii(std::string_view text, std::size_t position);

}  // namespace tavinor
