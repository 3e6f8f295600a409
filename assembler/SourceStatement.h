#pragma once

#include <cstdint>
#include <string_view>

#include "assembler/OpcodeTable.h"

namespace tavinor {

/// One statement of a source: what is left of a line without comment and outer blanks. The texts point into
/// the `SourceText` that holds it.
struct SourceStatement {
    std::string_view text;  ///< Upper case, label included.
    std::string_view label;
    std::string_view operand;
    std::int32_t line = 0;     ///< Its raw line, from 0.
    std::int32_t address = 0;  ///< Set by the placing pass.
    std::int32_t size = 0;     ///< In bytes, set by the placing pass.
    std::int16_t code = noCode;
};

}  // namespace tavinor
