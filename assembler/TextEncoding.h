#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

/// The text files of the program: sources may be UTF-8 or Windows-1252, and are written back as they came.
/// Inside the program every text is UTF-8.
namespace tavinor {

enum class TextEncoding : std::uint8_t { utf8, windows1252 };

struct DecodedText {
    std::string text;  ///< UTF-8, without a byte-order mark; line ends as they were.
    TextEncoding encoding = TextEncoding::utf8;
};

/// Whether `bytes` are well-formed UTF-8 (no overlong forms, no surrogates, nothing past 10FFFF).
bool isUtf8(std::string_view bytes);

/// The text of a file's bytes: UTF-8 (plain ASCII is), or Windows-1252 when they are no valid UTF-8. A UTF-8
/// byte-order mark is skipped in both cases. The five bytes that Windows-1252 leaves undefined become the
/// control characters of the same number, so decoding never loses anything.
DecodedText decode(std::string bytes);

/// Whether every character of `text` exists in `encoding`.
bool canEncode(std::string_view text, TextEncoding encoding);

/// The bytes of UTF-8 `text` in `encoding`, without a byte-order mark. A character that Windows-1252 does not
/// have becomes "?"; `canEncode` tells beforehand.
std::string encode(std::string_view text, TextEncoding encoding);

/// The lines of `text` without their ends: CR LF, LF or CR. The last line needs no end, and an end at the
/// very end begins no further line. The views point into `text`.
std::vector<std::string_view> splitLines(std::string_view text);

}  // namespace tavinor
