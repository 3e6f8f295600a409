#include "assembler/NumberLiteral.h"

#include <limits>

#include "assembler/TermSum.h"

namespace tavinor {

namespace {

constexpr std::string_view decimalDigits = "0123456789";
constexpr std::string_view hexDigits = "0123456789ABCDEF";
constexpr std::string_view binaryDigits = "01";

std::int32_t valueInBase(std::string_view digits, std::int64_t base) {
    std::int64_t value = 0;
    for (const char c : digits) {
        value = value * base + static_cast<std::int64_t>(hexDigits.find(c));
        if (value > std::numeric_limits<std::int32_t>::max()) return invalidNumber;
    }
    return static_cast<std::int32_t>(value);
}

bool areAll(std::string_view text, std::string_view allowed) {
    return !text.empty() && text.find_first_not_of(allowed) == std::string_view::npos;
}

/// The value of a number without signs, however large; -1 when it is none.
std::int32_t literalValue(std::string_view text) {
    if (text.empty()) return invalidNumber;
    const std::string_view digits = text.substr(0, text.size() - 1);
    switch (text.back()) {
        case 'H':
            if (!areAll(digits.substr(0, 1), decimalDigits) || !areAll(digits, hexDigits)) break;
            return hextodec(digits);
        case 'B': return areAll(digits, binaryDigits) ? bintodec(digits) : invalidNumber;
        case 'D': return areAll(digits, decimalDigits) ? dectodec(digits) : invalidNumber;
        default: return areAll(text, decimalDigits) ? dectodec(text) : invalidNumber;
    }
    return invalidNumber;
}

}  // namespace

std::int32_t hextodec(std::string_view digits) {
    return valueInBase(digits, 16);
}

std::int32_t dectodec(std::string_view digits) {
    return valueInBase(digits, 10);
}

std::int32_t bintodec(std::string_view digits) {
    return valueInBase(digits, 2);
}

std::int32_t cmpnum(std::string_view text, NumberContext context) {
    if (text.find_first_of("+-") != std::string_view::npos) return separa(text, context);
    return detail::limited(literalValue(text), context);
}

std::int32_t separa(std::string_view text, NumberContext context) {
    return detail::sumTerms(text, context,
                            [](std::string_view term) { return cmpnum(term, NumberContext::word); });
}

std::size_t min(std::size_t first, std::size_t second) {
    if (first == 0) return second;
    if (second == 0) return first;
    return first < second ? first : second;
}

}  // namespace tavinor
