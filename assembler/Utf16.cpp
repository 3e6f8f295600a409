#include "assembler/Utf16.h"

#include <algorithm>
#include <cstddef>

#include "assembler/Utf8.h"

namespace tavinor {

namespace {

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

std::optional<std::string> utf16ToUtf8(std::string_view bytes, ByteOrder order) {
    if (bytes.size() % unitSize != 0) return std::nullopt;
    std::string text;
    text.reserve(bytes.size() / unitSize + bytes.size() / (4 * unitSize));
    for (std::size_t i = 0; i < bytes.size(); i += unitSize) {
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
