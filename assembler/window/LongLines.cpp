#include "assembler/window/LongLines.h"

#include <algorithm>

#include "text/Utf.h"

namespace tavinor {

namespace {

constexpr std::size_t shortLine = 1024;  // bytes

/// What an ordinary letter costs, so many times, do those that Qt has to look for in other fonts.
constexpr std::size_t costOfAStrangeCharacter = 16;

/// A control character, or one beyond the Latin letters, by its first byte.
bool isStrange(char byte) {
    const auto code = static_cast<unsigned char>(byte);
    return (code < ' ' && byte != '\t' && byte != '\r' && byte != '\n') || code >= 0xC9;
}

std::size_t costOf(std::string_view line) {
    const auto strange = static_cast<std::size_t>(std::count_if(line.begin(), line.end(), isStrange));
    return line.size() + strange * costOfAStrangeCharacter;
}

void appendBytes(QByteArray& text, std::string_view bytes) {
    text.append(bytes.data(), static_cast<qsizetype>(bytes.size()));
}

}  // namespace

void LongLines::append(QByteArray& text, std::string_view lines) {
    while (!lines.empty()) {
        const std::size_t length = std::min(lines.find('\n'), lines.size() - 1) + 1;
        appendLine(text, lines.substr(0, length));
        lines.remove_prefix(length);
    }
}

void LongLines::appendLine(QByteArray& text, std::string_view line) {
    if (line.size() > shortLine) {
        const std::size_t cost = line.size() > left_ ? line.size() : costOf(line);
        if (cost <= left_) {
            left_ -= cost;
        } else {
            while (line.size() > shortLine) {
                const std::size_t length = beginningOfCharacter(line, shortLine);
                appendBytes(text, line.substr(0, length));
                text.append('\n');
                line.remove_prefix(length);
            }
        }
    }
    appendBytes(text, line);
}

}  // namespace tavinor
