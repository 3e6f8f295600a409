#pragma once

#include <cstdint>
#include <limits>
#include <string>
#include <vector>

#include "trace/TraceReader.h"
#include "trace/TraceText.h"

namespace tavinor {

/// The texts of the rows of a trace that the user looks at. They are kept until others are read or the trace
/// changes.
class ShownRows {
  public:
    explicit ShownRows(const Trace& trace) : trace_(trace), reader_(trace) {}

    /// Reads `count` rows from `first` on, or as many as there are, but executes at most about `most`
    /// instructions again to get there. False when it has not got there: the next call goes on.
    /// @throws std::bad_alloc, and then no row is known
    bool read(std::uint64_t first, std::uint64_t count,
              std::int64_t most = std::numeric_limits<std::int64_t>::max());

    [[nodiscard]] bool knows(std::uint64_t row) const {
        return revision_ == trace_.revision() && row >= first_ && row - first_ < cells_.size();
    }
    /// The cells of a row, without text where it is not known.
    [[nodiscard]] const RowCells& cells(std::uint64_t row) const;
    /// `count` rows from `first` on as lines, whether or not they are known. @throws std::bad_alloc
    [[nodiscard]] std::string text(std::uint64_t first, std::uint64_t count) const;

  private:
    const Trace& trace_;
    TraceReader reader_;
    std::vector<RowCells> cells_;
    std::uint64_t first_ = 0;
    std::uint64_t revision_ = 0;
};

}  // namespace tavinor
