#include "text/TextEncoding.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <optional>
#include <utility>

#include "text/Utf.h"

namespace tavinor {

namespace {

constexpr std::string_view utf8Mark = "\xEF\xBB\xBF";
constexpr std::string_view littleEndianMark = "\xFF\xFE";
constexpr std::string_view bigEndianMark = "\xFE\xFF";
constexpr std::size_t firstSpecial = 0x80;

/// Windows-1252 where it is not Latin-1: bytes 80 to 9F. The undefined ones stand for themselves.
constexpr std::array<char32_t, 32> specials{
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,  //
    0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0x008D, 0x017D, 0x008F,  //
    0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,  //
    0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178,
};

bool isSpecial(std::size_t code) {
    return code >= firstSpecial && code < firstSpecial + specials.size();
}

char32_t fromWindows1252(std::uint8_t byte) {
    return isSpecial(byte) ? specials[byte - firstSpecial] : byte;
}

std::optional<char> toWindows1252(char32_t c) {
    if (c <= 0xFF && !isSpecial(c)) return static_cast<char>(c);
    const auto* const found = std::find(specials.begin(), specials.end(), c);
    if (found == specials.end()) return std::nullopt;
    return static_cast<char>(firstSpecial + static_cast<std::size_t>(found - specials.begin()));
}

std::string windows1252ToUtf8(std::string_view bytes, WorkObserver& observer) {
    ByteCount count(observer);
    std::string text;
    text.reserve(bytes.size() + bytes.size() / 8);
    for (std::size_t i = 0; i < bytes.size();) {
        count.at(i);
        const std::size_t ascii = skipAscii(bytes, i);
        text.append(bytes, i, ascii - i);
        if (ascii < bytes.size()) appendUtf8(text, fromWindows1252(static_cast<std::uint8_t>(bytes[ascii])));
        i = ascii + 1;
    }
    return text;
}

std::string utf8ToWindows1252(std::string_view text) {
    std::string bytes;
    bytes.reserve(text.size());
    for (std::size_t i = 0; i < text.size();) {
        const std::size_t ascii = skipAscii(text, i);
        bytes.append(text, i, ascii - i);
        if (ascii == text.size()) break;
        const Utf8Character c = utf8At(text, ascii);
        bytes += c.length == 0 ? '?' : toWindows1252(c.character).value_or('?');
        i = ascii + std::max<std::size_t>(c.length, 1);
    }
    return bytes;
}

/// Nothing when there is no mark, or what follows it is malformed.
std::optional<DecodedText> decodeUtf16(std::string_view bytes, WorkObserver& observer) {
    if (!hasUtf16Mark(bytes)) return std::nullopt;
    const bool little = bytes.starts_with(littleEndianMark);
    bytes.remove_prefix(littleEndianMark.size());
    std::optional<std::string> text =
        utf16ToUtf8(bytes, little ? ByteOrder::littleEndian : ByteOrder::bigEndian, observer);
    if (!text) return std::nullopt;
    return DecodedText{std::move(*text),
                       little ? TextEncoding::utf16LittleEndian : TextEncoding::utf16BigEndian};
}

}  // namespace

bool hasUtf16Mark(std::string_view bytes) {
    return bytes.starts_with(littleEndianMark) || bytes.starts_with(bigEndianMark);
}

DecodedText decode(std::string bytes, WorkObserver& observer) {
    if (std::optional<DecodedText> decoded = decodeUtf16(bytes, observer)) return std::move(*decoded);
    const bool marked = bytes.starts_with(utf8Mark);
    if (marked) bytes.erase(0, utf8Mark.size());
    if (!isUtf8(bytes, observer)) return {windows1252ToUtf8(bytes, observer), TextEncoding::windows1252};
    return {std::move(bytes), marked ? TextEncoding::markedUtf8 : TextEncoding::utf8};
}

bool canEncode(std::string_view text, TextEncoding encoding) {
    if (encoding != TextEncoding::windows1252) return true;
    for (std::size_t i = skipAscii(text, 0); i < text.size(); i = skipAscii(text, i)) {
        const Utf8Character c = utf8At(text, i);
        if (c.length == 0 || !toWindows1252(c.character)) return false;
        i += c.length;
    }
    return true;
}

std::string encode(std::string text, TextEncoding encoding) {
    switch (encoding) {
        case TextEncoding::utf8: return text;
        case TextEncoding::markedUtf8: return text.insert(0, utf8Mark);
        case TextEncoding::utf16LittleEndian:
            return utf8ToUtf16(text, ByteOrder::littleEndian).insert(0, littleEndianMark);
        case TextEncoding::utf16BigEndian:
            return utf8ToUtf16(text, ByteOrder::bigEndian).insert(0, bigEndianMark);
        case TextEncoding::windows1252: break;
    }
    return utf8ToWindows1252(text);
}

}  // namespace tavinor
