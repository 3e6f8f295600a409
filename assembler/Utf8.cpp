#include "assembler/Utf8.h"

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

}  // namespace

Utf8Character utf8At(std::string_view text, std::size_t position) {
    for (const Form& form : forms) {
        if ((byteAt(text, position) & form.mask) == form.mark) return inForm(text, position, form);
    }
    return {};
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

}  // namespace tavinor
