#pragma once

#include <cstddef>
#include <string>

namespace tavinor {

/// The capital of a letter; any other character, and a letter without a capital of its own, as it is.
char32_t upperCase(char32_t c);

/// Makes capitals of the letters of UTF-8 `text` from byte `from` on, letter by letter, accented ones too. No
/// character takes more or fewer bytes than before, so neither lengths nor positions change; and a text that
/// exists in Windows-1252 still does.
void upperCase(std::string& text, std::size_t from = 0);

}  // namespace tavinor
