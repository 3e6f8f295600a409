#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "files/WorkObserver.h"
#include "simulation/Simulation.h"

namespace tavinor {

/// Finds the positions that the ways back of a simulation lead to. Nothing changes by looking. Only where one
/// can go back.
class WayBack {
  public:
    explicit WayBack(Simulation& simulation);

    /// Before the newest instruction, or before all that the user has changed after it.
    [[nodiscard]] Position oneStep();
    /// The latest state before the present one whose PC has a breakpoint, else the beginning.
    /// @throws Cancelled when `observer` says so.
    [[nodiscard]] Position toBreakpoint(WorkObserver& observer);
    /// Just before whatever wrote the memory cell `address` (0..65535) last: an instruction, also with the
    /// same byte, or changes of the user, which are none where all of them together change nothing. Nothing
    /// where nothing wrote it. @throws Cancelled when `observer` says so.
    [[nodiscard]] std::optional<Position> toLastWrite(std::int32_t address, WorkObserver& observer);

    /// The instruction that is undone by going back to `position`; empty when that undoes changes of the
    /// user.
    [[nodiscard]] std::string undoneInstruction(const Position& position);

  private:
    std::optional<Position> lastBreakpointIn(const Position& from, const Position& to);
    std::optional<Position> lastWriteIn(const Position& from, const Position& to, std::int32_t address);
    bool mayWrite(const Position& to, std::int32_t address);
    std::optional<Position> lastWriteStepping(const Position& from, const Position& to, std::int32_t address);
    template <typename Look>
    std::optional<Position> lookBack(WorkObserver& observer, const Look& look);

    Simulation& simulation_;
    const Breakpoints& breakpoints_;
    const History& history_;
    Replay replay_;
};

}  // namespace tavinor
