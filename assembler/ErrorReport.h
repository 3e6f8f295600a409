#pragma once

#include <cstddef>
#include <string_view>

#include "assembler/PaneText.h"
#include "assembler/SourceText.h"

namespace tavinor {

/// Ends a pass: there were too many errors to report them all.
struct TooManyErrors {};

/// Reports the errors of a run in both panes, and remembers that there were any.
class ErrorReport {
  public:
    /// One more error than this ends the pass: a source of one label over and over has as many errors as
    /// pairs of its lines.
    static constexpr std::size_t maximumErrors = 10000;
    /// Nor may the report grow longer than this: each error repeats its line, and one line may be most of a
    /// source.
    static constexpr std::size_t maximumBytes = std::size_t{16} * 1024 * 1024;

    ErrorReport(const SourceText& source, PaneText& listing, PaneText& report)
        : source_(source), listing_(listing), report_(report) {}

    /// Reports an error of statement `i`. @throws TooManyErrors instead, after a last line in both panes.
    void msgerr(std::size_t i, std::string_view message);

    [[nodiscard]] bool any() const { return any_; }

  private:
    const SourceText& source_;
    PaneText& listing_;
    PaneText& report_;
    bool any_ = false;
    std::size_t count_ = 0;
    std::size_t bytes_ = 0;  // of the report
};

/// The line "==> ERROR: " with a message.
void errorLine(PaneText& pane, std::string_view message);

}  // namespace tavinor
