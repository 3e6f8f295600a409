#include "text/Lines.h"

#include <algorithm>
#include <cstdint>

namespace tavinor {

namespace {

constexpr bool mayEndLine(char byte) {
    return byte == '\n' || byte == '\r' || byte == '\xC2' || byte == '\xE2';
}

/// Where the next byte stands, from `position` on, with which a line end may begin. A line may have many
/// megabytes: of a long one so many bytes at a time are looked at as the processor can compare.
std::size_t skipOrdinary(std::string_view text, std::size_t position) {
    constexpr std::size_t together = 64;
    const std::size_t near = std::min(text.size(), position + together);
    while (position < near && !mayEndLine(text[position])) ++position;
    if (position < near) return position;
    for (; text.size() - position >= together; position += together) {
        unsigned found = 0;
        for (std::size_t i = 0; i < together; ++i) {
            found |= static_cast<unsigned>(mayEndLine(text[position + i]));
        }
        if (found != 0) break;
    }
    while (position < text.size() && !mayEndLine(text[position])) ++position;
    return position;
}

/// Calls `line` with every line of `text`.
template <class Line>
void forEachLine(std::string_view text, WorkObserver& observer, Line line) {
    ByteCount count(observer);
    std::size_t start = 0;
    for (std::size_t i = skipOrdinary(text, 0); i < text.size(); i = skipOrdinary(text, i)) {
        count.at(i);
        const std::size_t end = lineEndAt(text, i);
        if (end > 0) line(text.substr(start, i - start));
        i += end > 0 ? end : 1;
        if (end > 0) start = i;
    }
    if (start < text.size()) line(text.substr(start));
}

}  // namespace

std::size_t lineEndAt(std::string_view text, std::size_t position) {
    switch (static_cast<std::uint8_t>(text[position])) {
        case '\n': return 1;
        case '\r': return text.substr(position, 2) == "\r\n" ? 2 : 1;
        case 0xC2: return text.substr(position, 2) == "\u0085" ? 2 : 0;
        case 0xE2: {
            const std::string_view three = text.substr(position, 3);
            return three == "\u2028" || three == "\u2029" ? 3 : 0;
        }
        default: return 0;
    }
}

std::vector<std::string_view> splitLines(std::string_view text, WorkObserver& observer) {
    std::vector<std::string_view> lines;
    lines.reserve(countLines(text, observer));
    forEachLine(text, observer, [&lines](std::string_view line) { lines.push_back(line); });
    return lines;
}

std::size_t countLines(std::string_view text, WorkObserver& observer) {
    std::size_t count = 0;
    forEachLine(text, observer, [&count](std::string_view /*line*/) { ++count; });
    return count;
}

}  // namespace tavinor
