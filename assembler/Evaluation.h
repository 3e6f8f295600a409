#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "assembler/SymbolTable.h"

/// Numbers of the source: 1010B, 0FFH, 10, 10D, labels, and sums and differences of them. Texts are upper
/// case.
namespace tavinor {

/// How large the value of an evaluation may be.
enum class NumberContext : std::int32_t { byte = 255, word = 65535 };

/// Results of an evaluation that are no value; any other negative result is a failure too.
inline constexpr std::int32_t invalidNumber = -1;
inline constexpr std::int32_t numberOutOfRange = -2;

/// The value of `digits` (valid ones only), or -1 when it does not fit 31 bits.
std::int32_t hextodec(std::string_view digits);
std::int32_t dectodec(std::string_view digits);
std::int32_t bintodec(std::string_view digits);

/// The value of a number or, when there is a sign in the text, of a sum of numbers; -1 for anything else, -2
/// when it is too large for the context.
///
/// The last character decides the base, in the order H, B, D, none: 1BH is hexadecimal, 11B is binary, and
/// 12B is nothing. A hexadecimal number begins with a decimal digit (0FFH): FFH is a label. See behaviour.md,
/// Assembler: numbers.
std::int32_t cmpnum(std::string_view text, NumberContext context);

/// The value of numbers joined by "+" and "-", blanks around each allowed.
///
/// Every number must fit a word; the total alone is held against the context's limit, so 300-100 is a byte.
/// A total may be negative. An empty term (a leading sign, two signs in a row) gives -1.
std::int32_t separa(std::string_view text, NumberContext context);

/// The smaller of two positions counted from 1, where 0 means that there is none.
std::size_t min(std::size_t first, std::size_t second);

/// The value of an operand of an instruction or of data: a number, a label, or a sum of these. Results as
/// those of `cmpnum`. Blanks are taken out of `text`, also inside a number (1 0 is 10).
///
/// A number comes before a label: a label that reads as a number (10H) is never found, nor one that holds a
/// blank or a sign.
std::int32_t sacaoperando(std::string& text, NumberContext context, const SymbolTable& symbols);

/// The value of numbers and labels joined by "+" and "-", by the rules of `separa`.
std::int32_t sepoperando(std::string_view text, NumberContext context, const SymbolTable& symbols);

}  // namespace tavinor
