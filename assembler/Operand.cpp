#include "assembler/Operand.h"

#include "assembler/TermSum.h"
#include "text/Characters.h"

namespace tavinor {

std::int32_t sacaoperando(std::string& text, NumberContext context, const SymbolTable& symbols) {
    removeBlanks(text);
    if (text.find_first_of("+-") != std::string::npos) return sepoperando(text, context, symbols);
    const std::int32_t number = cmpnum(text, context);
    if (number >= 0 || number == numberOutOfRange) return number;
    const std::optional<std::int32_t> value = symbols.find(text);
    if (!value) return invalidNumber;
    // A word takes a label as it is: one at the very end of memory is worth 65536.
    return context == NumberContext::byte ? detail::limited(*value, context) : *value;
}

std::int32_t sepoperando(std::string_view text, NumberContext context, const SymbolTable& symbols) {
    std::string term;
    return detail::sumTerms(text, context, [&](std::string_view part) {
        term = part;
        return sacaoperando(term, NumberContext::word, symbols);
    });
}

}  // namespace tavinor
