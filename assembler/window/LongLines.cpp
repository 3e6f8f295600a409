#include "assembler/window/LongLines.h"

#include <algorithm>

namespace tavinor {

namespace {

constexpr std::size_t shortLine = 4096;  // bytes

bool continuesCharacter(char byte) {
    return (static_cast<unsigned char>(byte) & 0xC0U) == 0x80U;
}

void append(QByteArray& text, std::string_view piece) {
    text.append(piece.data(), static_cast<qsizetype>(piece.size()));
}

void appendBroken(QByteArray& text, std::string_view line) {
    while (line.size() > shortLine) {
        std::size_t length = shortLine;
        while (length > 1 && continuesCharacter(line[length])) --length;
        append(text, line.substr(0, length));
        text.append('\n');
        line.remove_prefix(length);
    }
    append(text, line);
}

}  // namespace

QByteArray withoutLongLines(std::string_view lines) {
    QByteArray text;
    text.reserve(static_cast<qsizetype>(lines.size()) + static_cast<qsizetype>(lines.size() / shortLine));
    while (!lines.empty()) {
        const std::size_t length = std::min(lines.find('\n'), lines.size() - 1) + 1;
        const std::string_view line = lines.substr(0, length);
        if (length <= longestPaneLine) {
            append(text, line);
        } else {
            appendBroken(text, line);
        }
        lines.remove_prefix(length);
    }
    return text;
}

}  // namespace tavinor
