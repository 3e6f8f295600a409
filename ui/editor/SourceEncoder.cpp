#include "ui/editor/SourceEncoder.h"

#include <algorithm>
#include <cstddef>
#include <utility>

namespace tavinor {

namespace {

/// One pass: replacing in place moves the rest of the text again and again.
std::string withLineEndPairs(const std::string& text) {
    std::string pairs;
    pairs.reserve(text.size() + static_cast<std::size_t>(std::count(text.begin(), text.end(), '\n')));
    for (const char c : text) {
        if (c == '\n') pairs += '\r';
        pairs += c;
    }
    return pairs;
}

}  // namespace

std::string SourceEncoder::encode(const QString& piece) {
    std::string bytes = tavinor::encode(withLineEndPairs(piece.toStdString()), encoding_);
    if (!std::exchange(first_, false)) bytes.erase(0, tavinor::encode({}, encoding_).size());
    return bytes;
}

}  // namespace tavinor
