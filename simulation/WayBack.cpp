#include "simulation/WayBack.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "images/Disassembler.h"

namespace tavinor {

WayBack::WayBack(Simulation& simulation)
    : simulation_(simulation),
      breakpoints_(simulation.breakpoints()),
      history_(simulation.history()),
      replay_(history_) {}

Position WayBack::oneStep() {
    return simulation_.settledHistory().beforeNewest();
}

/// Executes the parts between two kept machines again, the newest one first, until `look` finds something.
template <typename Look>
std::optional<Position> WayBack::lookBack(WorkObserver& observer, const Look& look) {
    const Position end = simulation_.settledHistory().end();
    const auto all = static_cast<double>(end.instructions + 1);
    for (Position to = end; to != Position{};) {
        const Position from = history_.checkpoints().positionStrictlyBefore(to);
        if (const std::optional<Position> found = look(from, to)) return found;
        to = from;
        observer.report(1.0 - static_cast<double>(to.instructions) / all);
    }
    return std::nullopt;
}

Position WayBack::toBreakpoint(WorkObserver& observer) {
    const auto look = [this](const Position& from, const Position& to) { return lastBreakpointIn(from, to); };
    return lookBack(observer, look).value_or(Position{});
}

/// The present state does not count; the one at `to` otherwise does.
std::optional<Position> WayBack::lastBreakpointIn(const Position& from, const Position& to) {
    std::optional<Position> last;
    replay_.seek(from);
    while (replay_.at() != to) {
        replay_.runTo(to, breakpoints_);
        if (replay_.at() != history_.end() && replay_.atBreakpoint(breakpoints_)) last = replay_.at();
    }
    return last;
}

std::optional<Position> WayBack::toLastWrite(std::int32_t address, WorkObserver& observer) {
    return lookBack(observer, [this, address](const Position& from, const Position& to) {
        return lastWriteIn(from, to, address);
    });
}

/// In stretches that are executed as quickly as a run; only those that wrote to the page of the cell are gone
/// through once more, the newest one first.
std::optional<Position> WayBack::lastWriteIn(const Position& from, const Position& to, std::int32_t address) {
    constexpr std::uint64_t stretch = 1024;
    std::vector<std::pair<Position, Position>> writing;
    replay_.seek(from);
    while (replay_.at() < to) {
        const Position start = replay_.at();
        const std::uint64_t instructions = start.instructions + stretch;
        const Position end = std::min(to, {instructions, history_.changesUpTo(instructions)});
        if (mayWrite(end, address)) writing.emplace_back(start, end);
    }
    // clang 14 cannot compile the views of libstdc++. NOLINTNEXTLINE(modernize-loop-convert)
    for (auto part = writing.rbegin(); part != writing.rend(); ++part) {
        const auto& [start, end] = *part;
        if (std::optional<Position> found = lastWriteStepping(start, end, address)) return found;
    }
    return std::nullopt;
}

/// Whether the way to `to` may write the cell.
bool WayBack::mayWrite(const Position& to, std::int32_t address) {
    bool writes = false;
    for (std::uint64_t change = replay_.at().changes; change < to.changes; ++change) {
        writes = writes || history_.wrote(change, address);
    }
    replay_.seek(to);
    return replay_.takeWrittenPages()[static_cast<std::size_t>(address / pageSize)] || writes;
}

std::optional<Position> WayBack::lastWriteStepping(const Position& from, const Position& to,
                                                   std::int32_t address) {
    std::optional<Position> last;
    replay_.seek(from);
    while (replay_.at() < to) {
        const Position before = replay_.at();
        if (before.changes < to.changes &&
            history_.instructionsBefore(before.changes) == before.instructions) {
            replay_.seek({before.instructions, before.changes + 1});
            if (history_.wrote(before.changes, address)) last = history_.undoneBy(before.changes);
        } else {
            replay_.step();
            if (replay_.stored(address)) last = before;
        }
    }
    return last;
}

std::string WayBack::undoneInstruction(const Position& position) {
    if (position.instructions == history_.end().instructions) return {};
    replay_.seek(position);
    return desensambla(replay_.machine(), replay_.machine().PC).text;
}

}  // namespace tavinor
