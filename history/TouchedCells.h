#pragma once

#include <array>
#include <bitset>
#include <cstddef>
#include <cstdint>

#include "history/Moment.h"

namespace tavinor {

/// The cells of memory and the ports that were written, whether or not their bytes have changed by it.
class TouchedCells {
  public:
    /// `address` is 0..65535; another one is nowhere.
    void markMemory(std::int32_t address) {
        if (address >= 0 && address < memorySize) mark(static_cast<std::size_t>(address));
    }
    /// `number` is 0..255.
    void markPort(std::int32_t number) { mark(static_cast<std::size_t>(memorySize + number)); }
    void clear() {
        if (!any_) return;
        cells_.reset();
        pages_.fill(false);
        any_ = false;
    }

    [[nodiscard]] bool page(std::size_t page) const { return pages_[page]; }
    /// The cell at `offset` of a page; the page of the ports lies behind those of memory.
    [[nodiscard]] bool cell(std::size_t page, std::size_t offset) const {
        return cells_[page * pageSize + offset];
    }

  private:
    void mark(std::size_t cell) {
        cells_[cell] = true;
        pages_[cell / pageSize] = true;
        any_ = true;
    }

    std::bitset<cellPages * pageSize> cells_;
    std::array<bool, cellPages> pages_{};
    bool any_ = false;
};

}  // namespace tavinor
