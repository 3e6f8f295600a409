#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "assembler/NumberLiteral.h"
#include "assembler/SymbolTable.h"

namespace tavinor {

/// The value of an operand of an instruction or of data: a number, a label, or a sum of these. Results as
/// those of `cmpnum`. Blanks are taken out of `text`, also inside a number (1 0 is 10).
///
/// A number comes before a label: a label that reads as a number (10H) is never found, nor one that holds a
/// blank or a sign.
std::int32_t sacaoperando(std::string& text, NumberContext context, const SymbolTable& symbols);

/// The value of numbers and labels joined by "+" and "-", by the rules of `separa`.
std::int32_t sepoperando(std::string_view text, NumberContext context, const SymbolTable& symbols);

}  // namespace tavinor
