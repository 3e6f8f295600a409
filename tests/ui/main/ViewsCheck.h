#pragma once

#include <QString>
#include <vector>

#include "tests/ui/main/Simulator.h"

namespace tavinor {

/// Compares everything that the main window shows with the machine, right after a refresh: boxes, flags,
/// grids, listing, stack, interrupts, and what can be pressed.
class ViewsCheck {
  public:
    explicit ViewsCheck(const Simulator& simulator) : simulator_(simulator) {}

    /// The first difference, in words; empty when there is none.
    [[nodiscard]] QString difference() const;

    /// As `difference`, but looks only at the memory cells that have changed since the last call.
    [[nodiscard]] QString quickDifference();

  private:
    [[nodiscard]] QString allButMemory() const;
    [[nodiscard]] QString registers() const;
    [[nodiscard]] QString flags() const;
    [[nodiscard]] QString grids(const std::vector<int>& addresses) const;
    [[nodiscard]] QString listing() const;
    [[nodiscard]] QString stack() const;
    [[nodiscard]] QString interrupts() const;
    [[nodiscard]] QString runState() const;

    const Simulator& simulator_;
    std::vector<std::uint8_t> seen_;
};

}  // namespace tavinor
