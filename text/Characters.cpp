#include "text/Characters.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <iterator>

#include "text/Utf.h"

namespace tavinor {

namespace {

enum class Step : std::uint8_t { every, odd, even };  ///< Which characters of the range are small letters.

/// A run of small letters that lie equally far from their capitals.
struct SmallLetters {
    char32_t first;
    char32_t last;
    Step step;
    std::int32_t toCapital;
};

// In ascending order. Left out: letters without a capital, and those whose capital takes another number of
// bytes or lies outside Windows-1252 where the letter does not (micro sign, florin sign).
constexpr auto smallLetters = std::to_array<SmallLetters>({
    {U'a', U'z', Step::every, -32},
    {0x00E0, 0x00F6, Step::every, -32},  // Latin-1, up to the division sign
    {0x00F8, 0x00FE, Step::every, -32},
    {0x00FF, 0x00FF, Step::every, 0x0178 - 0x00FF},
    {0x0101, 0x012F, Step::odd, -1},  // Latin Extended-A, without the dotless i
    {0x0133, 0x0137, Step::odd, -1},
    {0x013A, 0x0148, Step::even, -1},
    {0x014B, 0x0177, Step::odd, -1},
    {0x017A, 0x017E, Step::even, -1},
    {0x01A1, 0x01A1, Step::every, -1},  // accented letters of Latin Extended-B
    {0x01B0, 0x01B0, Step::every, -1},
    {0x01CE, 0x01DC, Step::even, -1},
    {0x01DF, 0x01EF, Step::odd, -1},
    {0x01F5, 0x01F5, Step::every, -1},
    {0x01F9, 0x021F, Step::odd, -1},
    {0x0223, 0x0233, Step::odd, -1},
    {0x03AC, 0x03AC, Step::every, -38},  // Greek
    {0x03AD, 0x03AF, Step::every, -37},
    {0x03B1, 0x03C1, Step::every, -32},
    {0x03C2, 0x03C2, Step::every, -31},
    {0x03C3, 0x03CB, Step::every, -32},
    {0x03CC, 0x03CC, Step::every, -64},
    {0x03CD, 0x03CE, Step::every, -63},
    {0x0430, 0x044F, Step::every, -32},  // Cyrillic
    {0x0450, 0x045F, Step::every, -80},
    {0x1E01, 0x1E95, Step::odd, -1},  // Latin Extended Additional
    {0x1EA1, 0x1EFF, Step::odd, -1},
});

bool contains(const SmallLetters& letters, char32_t c) {
    if (c < letters.first || c > letters.last) return false;
    return letters.step == Step::every || (letters.step == Step::odd) == (c % 2 == 1);
}

char upperCaseAscii(char c) {
    return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
}

}  // namespace

char32_t upperCase(char32_t c) {
    const auto* const letters =
        std::lower_bound(smallLetters.begin(), smallLetters.end(), c,
                         [](const SmallLetters& range, char32_t value) { return range.last < value; });
    if (letters == smallLetters.end() || !contains(*letters, c)) return c;
    return static_cast<char32_t>(static_cast<std::int32_t>(c) + letters->toCapital);
}

void upperCase(std::string& text, std::size_t from) {
    std::string capital;
    for (std::size_t i = from; i < text.size();) {
        const auto begin = text.begin() + static_cast<std::ptrdiff_t>(i);
        i = skipAscii(text, i);
        std::transform(begin, text.begin() + static_cast<std::ptrdiff_t>(i), begin, upperCaseAscii);
        if (i == text.size()) break;
        const Utf8Character c = utf8At(text, i);
        capital.clear();
        appendUtf8(capital, upperCase(c.character));
        std::copy_n(capital.begin(), c.length, text.begin() + static_cast<std::ptrdiff_t>(i));
        i += std::max<std::size_t>(c.length, 1);
    }
}

std::string_view trimmed(std::string_view text) {
    const std::size_t first = text.find_first_not_of(' ');
    if (first == std::string_view::npos) return {};
    return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

void removeBlanks(std::string& text) {
    std::erase(text, ' ');
}

}  // namespace tavinor
