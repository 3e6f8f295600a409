#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <string_view>

#include "assembler/NumberLiteral.h"
#include "text/Characters.h"

namespace tavinor::detail {

/// Where `c` stands in `text` behind its first `from` characters, counted from 1; 0 when it does not.
inline std::size_t position(std::string_view text, char c, std::size_t from) {
    const std::size_t found = text.find(c, from);
    return found == std::string_view::npos ? 0 : found + 1;
}

/// A total against the limit of its context, as a 32-bit value however long the expression was.
inline std::int32_t limited(std::int64_t total, NumberContext context) {
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
    std::size_t plus = position(text, '+', 0);
    std::size_t minus = position(text, '-', 0);
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
            plus = position(text, '+', begin);
        } else {
            minus = position(text, '-', begin);
        }
    }
}

}  // namespace tavinor::detail
