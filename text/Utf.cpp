#include "text/Utf.h"

#include <algorithm>
#include <array>
#include <cstring>

namespace tavinor {

namespace {

/// A form of UTF-8: how its first byte looks and the least character that may be written in it.
struct Form {
    std::uint8_t mask;
    std::uint8_t mark;
    std::size_t length;
    char32_t least;
};

constexpr std::array<Form, 4> forms{{
    {0x80, 0x00, 1, 0x0},
    {0xE0, 0xC0, 2, 0x80},
    {0xF0, 0xE0, 3, 0x800},
    {0xF8, 0xF0, 4, 0x10000},
}};

constexpr char32_t greatest = 0x10FFFF;

std::uint8_t byteAt(std::string_view text, std::size_t position) {
    return static_cast<std::uint8_t>(text[position]);
}

bool isSurrogate(char32_t c) {
    return c >= 0xD800 && c <= 0xDFFF;
}

Utf8Character inForm(std::string_view text, std::size_t position, const Form& form) {
    if (text.size() - position < form.length) return {};
    char32_t c = byteAt(text, position) & static_cast<std::uint8_t>(~form.mask);
    for (std::size_t i = 1; i < form.length; ++i) {
        const std::uint8_t next = byteAt(text, position + i);
        if ((next & 0xC0) != 0x80) return {};
        c = c << 6U | (next & 0x3FU);
    }
    if (c < form.least || c > greatest || isSurrogate(c)) return {};
    return {c, form.length};
}

// UTF-16.

constexpr std::size_t unitSize = 2;
constexpr char32_t firstHigh = 0xD800;
constexpr char32_t firstLow = 0xDC00;
constexpr char32_t lastLow = 0xDFFF;
constexpr char32_t firstPair = 0x10000;
constexpr char32_t replacement = 0xFFFD;
constexpr unsigned halfBits = 10;

bool isHigh(char32_t unit) {
    return unit >= firstHigh && unit < firstLow;
}

bool isLow(char32_t unit) {
    return unit >= firstLow && unit <= lastLow;
}

char32_t unitAt(std::string_view bytes, std::size_t position, ByteOrder order) {
    const char32_t first = static_cast<std::uint8_t>(bytes[position]);
    const char32_t second = static_cast<std::uint8_t>(bytes[position + 1]);
    return order == ByteOrder::bigEndian ? first << 8U | second : second << 8U | first;
}

void appendUnit(std::string& bytes, char32_t unit, ByteOrder order) {
    const auto high = static_cast<char>(unit >> 8U);
    const auto low = static_cast<char>(unit & 0xFFU);
    bytes += order == ByteOrder::bigEndian ? high : low;
    bytes += order == ByteOrder::bigEndian ? low : high;
}

}  // namespace

Utf8Character utf8At(std::string_view text, std::size_t position) {
    for (const Form& form : forms) {
        if ((byteAt(text, position) & form.mask) == form.mark) return inForm(text, position, form);
    }
    return {};
}

std::size_t beginningOfCharacter(std::string_view text, std::size_t position) {
    while (position > 0 && position < text.size() && (byteAt(text, position) & 0xC0U) == 0x80U) --position;
    return position;
}

void appendUtf8(std::string& text, char32_t character) {
    std::size_t length = forms.size();
    while (length > 1 && character < forms[length - 1].least) --length;
    const auto shifted = [character](std::size_t bytes) { return character >> (6 * bytes); };
    text += static_cast<char>(forms[length - 1].mark | shifted(length - 1));
    for (std::size_t left = length - 1; left > 0; --left) {
        text += static_cast<char>(0x80U | (shifted(left - 1) & 0x3FU));
    }
}

std::size_t skipAscii(std::string_view text, std::size_t position) {
    constexpr std::uint64_t highBits = 0x8080808080808080U;
    for (std::uint64_t eight = 0; text.size() - position >= sizeof eight; position += sizeof eight) {
        std::memcpy(&eight, text.data() + position, sizeof eight);
        if ((eight & highBits) != 0) break;
    }
    while (position < text.size() && byteAt(text, position) < 0x80) ++position;
    return position;
}

bool isUtf8(std::string_view bytes, WorkObserver& observer) {
    ByteCount count(observer);
    for (std::size_t i = skipAscii(bytes, 0); i < bytes.size(); i = skipAscii(bytes, i)) {
        count.at(i);
        const std::size_t length = utf8At(bytes, i).length;
        if (length == 0) return false;
        i += length;
    }
    return true;
}

std::optional<std::string> utf16ToUtf8(std::string_view bytes, ByteOrder order, WorkObserver& observer) {
    if (bytes.size() % unitSize != 0) return std::nullopt;
    std::string text;
    text.reserve(bytes.size() / unitSize + bytes.size() / (4 * unitSize));
    ByteCount count(observer);
    for (std::size_t i = 0; i < bytes.size(); i += unitSize) {
        count.at(i);
        char32_t c = unitAt(bytes, i, order);
        if (isHigh(c)) {
            i += unitSize;
            const char32_t low = i < bytes.size() ? unitAt(bytes, i, order) : 0;
            if (!isLow(low)) return std::nullopt;
            c = firstPair + ((c - firstHigh) << halfBits) + (low - firstLow);
        } else if (isLow(c)) {
            return std::nullopt;
        }
        appendUtf8(text, c);
    }
    return text;
}

std::string utf8ToUtf16(std::string_view text, ByteOrder order) {
    std::string bytes;
    bytes.reserve(unitSize * text.size());
    for (std::size_t i = 0; i < text.size();) {
        const Utf8Character c = utf8At(text, i);
        i += std::max<std::size_t>(c.length, 1);
        const char32_t character = c.length == 0 ? replacement : c.character;
        if (character < firstPair) {
            appendUnit(bytes, character, order);
        } else {
            appendUnit(bytes, firstHigh + ((character - firstPair) >> halfBits), order);
            appendUnit(bytes, firstLow + ((character - firstPair) & ((1U << halfBits) - 1)), order);
        }
    }
    return bytes;
}

}  // namespace tavinor
