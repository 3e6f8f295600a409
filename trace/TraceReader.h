#pragma once

#include <cstdint>
#include <functional>
#include <limits>

#include "history/Replay.h"
#include "trace/Trace.h"

namespace tavinor {

/// Reads the rows of a trace, by executing again what lies between the machines that the history has kept. It
/// goes on where it was, so rows that follow each other cost an instruction each.
class TraceReader {
  public:
    /// Gets a row, and the texts that do not follow from it; null for nearly all.
    using Visitor = std::function<void(const TraceRow&, const RowTexts*)>;

    explicit TraceReader(const Trace& trace) : trace_(trace), replay_(trace.history()) {}

    /// Shows `count` rows from `first` on to `visitor`, or as many as there are, but executes at most about
    /// `most` instructions to get there. False when it has not got there: the next call goes on. The visitor
    /// must not change the trace.
    bool read(std::uint64_t first, std::uint64_t count, const Visitor& visitor,
              std::int64_t most = std::numeric_limits<std::int64_t>::max());

  private:
    [[nodiscard]] TraceRow stateRow() const;
    [[nodiscard]] Position beforeInstruction(std::uint64_t number) const;
    TraceRow instructionRow(std::uint64_t row, const Trace::TypedRow* typed);

    const Trace& trace_;
    Replay replay_;
};

}  // namespace tavinor
