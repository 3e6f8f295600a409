#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "trace/RegisterColumns.h"

namespace tavinor {

/// One row of the trace as values.
struct TraceRow {
    RegisterImage registers;
    std::uint16_t address = 0;
    std::uint32_t code = 0;  ///< The instruction's bytes, the opcode lowest; 0 beyond its length.
    bool hasInstruction = false;
    bool hasRegisters = false;  ///< An instruction that failed has none.

    friend bool operator==(const TraceRow&, const TraceRow&) = default;
};

/// The cells of a row that do not follow from its values, because the user was typing.
struct RowTexts {
    std::optional<std::string> address;
    std::optional<RegisterTexts> registers;
};

}  // namespace tavinor
