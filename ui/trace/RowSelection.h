#pragma once

#include <algorithm>
#include <cstdint>
#include <optional>

namespace tavinor {

/// A cell of the trace's grid: a row of the trace, and a column.
struct TraceCell {
    std::uint64_t row = 0;
    int column = 0;
    friend bool operator==(const TraceCell&, const TraceCell&) = default;
};

/// The current cell, where the keyboard is, and the rows that are selected with it: whole ones, from where
/// the selection began to the current one.
class RowSelection {
  public:
    [[nodiscard]] const std::optional<TraceCell>& current() const { return current_; }

    /// Moves to a cell. The selection becomes its row, or reaches up to it.
    void move(const TraceCell& cell, bool extend) {
        if (!extend || !current_) anchor_ = cell.row;
        current_ = cell;
    }
    /// Selects the rows 0 to `last`.
    void selectAll(std::uint64_t last) {
        current_ = TraceCell{last, current_ ? current_->column : 0};
        anchor_ = 0;
    }
    /// Nothing is selected any more unless all of it is among the first `rows`.
    void keepWithin(std::uint64_t rows) {
        if (current_ && first() + count() > rows) current_.reset();
    }

    [[nodiscard]] bool contains(std::uint64_t row) const { return row - first() < count(); }
    [[nodiscard]] std::uint64_t first() const { return current_ ? std::min(anchor_, current_->row) : 0; }
    /// 0 where nothing is selected.
    [[nodiscard]] std::uint64_t count() const {
        return current_ ? std::max(anchor_, current_->row) - first() + 1 : 0;
    }

  private:
    std::optional<TraceCell> current_;
    std::uint64_t anchor_ = 0;  // where the selection began
};

}  // namespace tavinor
