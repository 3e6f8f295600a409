#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "files/WorkObserver.h"

/// The text files of the program: sources may be UTF-8, UTF-16 or Windows-1252, and are written back as they
/// came. Inside the program every text is UTF-8.
namespace tavinor {

enum class TextEncoding : std::uint8_t {
    utf8,
    markedUtf8,         ///< With a byte-order mark in front, as the next two.
    utf16LittleEndian,  ///< There is no UTF-16 without a mark.
    utf16BigEndian,
    windows1252,
};

struct DecodedText {
    std::string text;  ///< UTF-8, without a byte-order mark; line ends as they were.
    TextEncoding encoding = TextEncoding::utf8;
};

/// Whether `bytes` begin with the byte-order mark of UTF-16. They need not be well-formed.
bool hasUtf16Mark(std::string_view bytes);

/// The text of a file's bytes: UTF-16 when they begin with its byte-order mark, otherwise UTF-8 (plain ASCII
/// is), and Windows-1252 when they are neither. A UTF-8 byte-order mark is skipped there too. The five bytes
/// that Windows-1252 leaves undefined become the control characters of the same number, so decoding never
/// loses anything.
/// @throws Cancelled by `observer`
DecodedText decode(std::string bytes, WorkObserver& observer);

/// Whether every character of `text` exists in `encoding`.
bool canEncode(std::string_view text, TextEncoding encoding);

/// The bytes of UTF-8 `text` in `encoding`, with the byte-order mark that belongs to it. A character that
/// Windows-1252 does not have becomes "?"; `canEncode` tells beforehand.
std::string encode(std::string text, TextEncoding encoding);

}  // namespace tavinor
