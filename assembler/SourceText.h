#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <string>
#include <string_view>
#include <vector>

#include "assembler/OpcodeTable.h"
#include "files/WorkObserver.h"

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

/// The text of a source file, its raw lines and its statements.
class SourceText {
  public:
    /// `text` is UTF-8. There is always a raw line and a statement: a source without any gets an empty one.
    /// @throws Cancelled by `observer`
    SourceText(std::string text, WorkObserver& observer);
    SourceText(const SourceText&) = delete;  // the lines and statements point into the text
    SourceText& operator=(const SourceText&) = delete;

    /// The lines exactly as read, but for the empty ones at the top of the file: these vanish, and every line
    /// number counts from the first line with something in it, be it a blank: see behaviour.md, Assembler:
    /// lines.
    [[nodiscard]] const std::vector<std::string_view>& rawLines() const { return rawLines_; }
    [[nodiscard]] std::string_view rawLine(const SourceStatement& statement) const {
        return rawLines_[static_cast<std::size_t>(statement.line)];
    }

    [[nodiscard]] std::vector<SourceStatement>& statements() { return statements_; }
    [[nodiscard]] const std::vector<SourceStatement>& statements() const { return statements_; }

    /// Keeps a text that a statement points to as long as the source.
    std::string_view keep(std::string text) { return kept_.emplace_back(std::move(text)); }

  private:
    void readLines(WorkObserver& observer);
    std::string_view clean(std::string_view line);

    std::string text_;
    std::vector<std::string_view> rawLines_;
    std::string cleaned_;  // the statements one after the other; reserved once, so views stay valid
    std::vector<SourceStatement> statements_;
    std::string plain_;  // of one line; here to keep its space
    std::deque<std::string> kept_;
};

}  // namespace tavinor
