#include "assembler/Evaluation.h"

#include <algorithm>
#include <limits>

#include "text/Characters.h"

namespace tavinor {

namespace {

/// Where `c` stands in `text` behind its first `from` characters, counted from 1; 0 when it does not.
std::size_t signAt(std::string_view text, char c, std::size_t from) {
    const std::size_t found = text.find(c, from);
    return found == std::string_view::npos ? 0 : found + 1;
}

/// A total against the limit of its context, as a 32-bit value however long the expression was.
std::int32_t limited(std::int64_t total, NumberContext context) {
    if (total > static_cast<std::int32_t>(context)) return numberOutOfRange;
    return static_cast<std::int32_t>(std::max<std::int64_t>(total, std::numeric_limits<std::int32_t>::min()));
}

/// Adds up the terms of `text`, each the word that `evaluate` makes of it. Looks for each sign once, so the
/// time is linear in the length.
template <class Evaluate>
std::int32_t sumTerms(std::string_view text, NumberContext context, Evaluate evaluate) {
    std::int64_t total = 0;
    std::int64_t sign = 1;
    std::size_t begin = 0;
    std::size_t plus = signAt(text, '+', 0);
    std::size_t minus = signAt(text, '-', 0);
    for (;;) {
        const std::size_t next = min(plus, minus);
        const std::size_t end = next == 0 ? text.size() : next - 1;
        const std::int32_t term = evaluate(trimmed(text.substr(begin, end - begin)));
        if (term < 0) return invalidNumber;
        total += sign * term;
        if (next == 0) return limited(total, context);
        sign = next == minus ? -1 : 1;
        begin = next;
        if (next == plus) {
            plus = signAt(text, '+', begin);
        } else {
            minus = signAt(text, '-', begin);
        }
    }
}

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
    return limited(literalValue(text), context);
}

std::int32_t separa(std::string_view text, NumberContext context) {
    return sumTerms(text, context, [](std::string_view term) { return cmpnum(term, NumberContext::word); });
}

std::size_t min(std::size_t first, std::size_t second) {
    if (first == 0) return second;
    if (second == 0) return first;
    return first < second ? first : second;
}

std::int32_t sacaoperando(std::string& text, NumberContext context, const SymbolTable& symbols) {
    removeBlanks(text);
    if (text.find_first_of("+-") != std::string::npos) return sepoperando(text, context, symbols);
    const std::int32_t number = cmpnum(text, context);
    if (number >= 0 || number == numberOutOfRange) return number;
    const std::optional<std::int32_t> value = symbols.find(text);
    if (!value) return invalidNumber;
    // A word takes a label as it is: one at the very end of memory is worth 65536.
    return context == NumberContext::byte ? limited(*value, context) : *value;
}

std::int32_t sepoperando(std::string_view text, NumberContext context, const SymbolTable& symbols) {
    std::string term;
    return sumTerms(text, context, [&](std::string_view part) {
        term = part;
        return sacaoperando(term, NumberContext::word, symbols);
    });
}

}  // namespace tavinor
