#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace tavinor {

/// `text` without the blanks around it. Only blanks: a source's TABs are blanks by the time it is taken
/// apart.
inline std::string_view trimmed(std::string_view text) {
    const std::size_t first = text.find_first_not_of(' ');
    if (first == std::string_view::npos) return {};
    return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

/// Takes every blank out of `text`.
inline void removeBlanks(std::string& text) {
    std::erase(text, ' ');
}

}  // namespace tavinor
