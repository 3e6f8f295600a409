#pragma once

#include <string>
#include <string_view>

#include "assembler/OpcodeTable.h"
#include "assembler/SourceText.h"

namespace tavinor {

/// What is wrong with a statement; it may be both.
struct SplitErrors {
    bool nullLabel = false;
    std::string_view message;  ///< The error of the part behind the label; empty when there is none.
};

/// Splits statements into label, code and operand.
///
/// The text without its blanks is looked up first, before the word in front of the first blank. So MOV A , B
/// may hold blanks, but CM A is CMA, JP E is a JPE without operand, and CP U is the directive CPU: see
/// behaviour.md, Assembler: lines.
class StatementSplitter {
  public:
    StatementSplitter(const OpcodeTable& table, SourceText& source) : table_(table), source_(source) {}

    /// Fills in label, code and operand.
    SplitErrors split(SourceStatement& statement);

  private:
    struct Parts {
        std::int16_t code = noCode;
        std::string_view operand;
    };

    [[nodiscard]] Parts splitAtBlank(std::string_view text, std::size_t blank);
    [[nodiscard]] Parts splitWithComma(std::string_view text, std::size_t blank);

    const OpcodeTable& table_;
    SourceText& source_;
    std::string compact_;  // the text without blanks; here so that it keeps its space
};

}  // namespace tavinor
