#include "simulation/WayBack.h"

#include "images/Disassembler.h"

namespace tavinor {

WayBack::WayBack(Simulation& simulation)
    : breakpoints_(simulation.breakpoints()), history_(simulation.history()), replay_(history_) {}

/// Executes the parts between two kept machines again, the newest one first, until `look` finds something.
template <typename Look>
std::optional<Position> WayBack::lookBack(WorkObserver& observer, const Look& look) {
    const auto all = static_cast<double>(history_.end().instructions + 1);
    for (Position to = history_.end(); to != Position{};) {
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

std::optional<Position> WayBack::lastWriteIn(const Position& from, const Position& to, std::int32_t address) {
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
