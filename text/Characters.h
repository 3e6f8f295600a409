#pragma once

#include <cstddef>
#include <string>
#include <string_view>

/// Capitals and blanks.
namespace tavinor {

/// The capital of a letter; any other character, and a letter without a capital of its own, as it is.
char32_t upperCase(char32_t c);

/// Makes capitals of the letters of UTF-8 `text` from byte `from` on, letter by letter, accented ones too. No
/// character takes more or fewer bytes than before, so neither lengths nor positions change; and a text that
/// exists in Windows-1252 still does.
void upperCase(std::string& text, std::size_t from = 0);

/// `text` without the blanks around it. Only blanks: a source's TABs are blanks by the time it is taken
/// apart.
std::string_view trimmed(std::string_view text);

/// Takes every blank out of `text`.
void removeBlanks(std::string& text);

}  // namespace tavinor
