#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "machine/MachineState.h"

namespace tavinor {

/// Where a listing begins that shows `cp` (0..65535) below some of what precedes it: the earliest start, 12
/// bytes before `cp` at most, whose instructions lead exactly to `cp`; it may be `cp` itself.
std::int32_t inidisp(const MachineState& m, std::int32_t cp);

/// The rows of the program listing: at most 29 instructions that follow each other, and the selected row.
/// Holds no addresses: a row's address is read back from its first four characters.
class Listing {
  public:
    static constexpr int maximumRows = 29;
    static constexpr std::int32_t noAddress = -1;
    static constexpr int noRow = -1;

    Listing(const MachineState& machine, const Breakpoints& breakpoints)
        : machine_(machine), breakpoints_(breakpoints) {}

    /// Rebuilds the rows from `cp` (0..65535) and returns the row whose address is `sel`, or -1. There are 29
    /// rows, fewer where the memory ends. Leaves the selection alone.
    int dispmem(std::int32_t cp, std::int32_t sel = noAddress);

    /// Rebuilds the rows so that `address` (0..65535) shows with up to 12 bytes before it, and selects it.
    void position(std::int32_t address);

    /// Rebuilds the rows from the first one and keeps the selected address selected. A row that is not there,
    /// in an empty list or without a selection, counts as 0000.
    void rebuildInPlace();

    /// Up arrow on the first row: one byte back, whatever instruction boundary that falls on; unlike the
    /// scroll bar: see behaviour.md, Images: listing.
    void stepBackOneByte();
    /// Scroll bar on the first row: back to the nearest address that holds a one-byte instruction, at most to
    /// 0000.
    void scrollBack();
    /// Down arrow or scroll bar on the last row: the first row goes, the next instruction comes, unless FFFF
    /// is reached.
    void scrollForward();

    [[nodiscard]] const std::vector<std::string>& rows() const { return rows_; }
    [[nodiscard]] int selected() const { return selected_; }
    /// Selects a row; outside 0..rows-1 means none.
    void select(int row);
    [[nodiscard]] bool firstSelected() const { return selected_ == 0; }
    [[nodiscard]] bool lastSelected() const {
        return selected_ != noRow && selected_ == static_cast<int>(rows_.size()) - 1;
    }
    /// The address of a row. @throws RuntimeError subscript when there is no such row.
    [[nodiscard]] std::int32_t address(int row) const;

  private:
    [[nodiscard]] std::int32_t addressOrZero(int row) const;
    void rebuildFrom(std::int32_t start);

    const MachineState& machine_;
    const Breakpoints& breakpoints_;
    std::vector<std::string> rows_;
    int selected_ = noRow;
};

}  // namespace tavinor
