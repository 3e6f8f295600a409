#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

#include "assembler/OpcodeSources.h"

namespace tavinor {

/// What a directive word looks up to, where an instruction looks up to its row.
enum DirectiveCode : std::int16_t {
    directiveCpu = -2,
    directiveHof = -3,
    directiveOrg = -4,
    directiveEqu = -5,
    directiveDfb = -6,
    directiveDfw = -7,
    directiveEnd = -8,
};

/// Neither an instruction nor a directive; also the code of a statement that is only a label.
inline constexpr std::int16_t noCode = -1;

/// One row of the table: a source text taken apart.
struct OpcodeEntry {
    std::string_view key;
    std::string_view operandMark;  ///< "{1}", "{2}" or empty; the size comes from the template.
    std::string_view hexTemplate;  ///< The code, two digits a byte, 00 for operand bytes.

    /// The instruction's size in bytes: 1, 2 or 3.
    [[nodiscard]] std::size_t size() const { return hexTemplate.size() / 2; }
    /// The two digits of the opcode, all of the template that is ever emitted.
    [[nodiscard]] std::string_view opcode() const { return hexTemplate.substr(0, 2); }
};

/// The instructions by key. Views into the source texts, which must outlive it.
class OpcodeTable {
  public:
    /// The code of a key (upper case, no blanks): a `DirectiveCode`, the row of an instruction, or -1.
    [[nodiscard]] std::int16_t busca(std::string_view key) const;

    [[nodiscard]] const OpcodeEntry& row(std::int16_t code) const {
        return entries_[static_cast<std::size_t>(code)];
    }
    [[nodiscard]] std::size_t size() const { return entries_.size(); }
    /// How many rows have a greater key right before them; lookups may miss keys unless it is 0.
    [[nodiscard]] int rowsOutOfOrder() const { return rowsOutOfOrder_; }

  private:
    friend OpcodeTable creatabla(std::span<const std::string_view> sources);

    std::vector<OpcodeEntry> entries_;
    int rowsOutOfOrder_ = 0;
};

/// Builds the table. Equal neighbours are accepted; a row out of order is counted and building goes on.
OpcodeTable creatabla(std::span<const std::string_view> sources = opcodeSources);

}  // namespace tavinor
