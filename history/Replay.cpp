#include "history/Replay.h"

#include <algorithm>
#include <utility>

#include "machine/RuntimeError.h"
#include "machine/Stepper.h"

namespace tavinor {

Replay::Replay(const History& history) : history_(history), revision_(history.revision()) {
    restore({});
}

void Replay::restore(const Position& target) {
    history_.checkpoints().restoreBefore(target, *moment_);
    at_ = history_.checkpoints().positionBefore(target);
    revision_ = history_.revision();
}

bool Replay::seek(const Position& target, std::int64_t most) {
    const bool gone = revision_ != history_.revision() || at_ > target;
    if (gone || at_ < history_.checkpoints().positionBefore(target)) restore(target);
    const std::uint64_t stopAt = history_.executedAgain() + static_cast<std::uint64_t>(most);
    while (at_ != target && history_.executedAgain() < stopAt) advance(target, *noBreakpoints_);
    return at_ == target;
}

void Replay::runTo(const Position& target, const Breakpoints& breakpoints) {
    while (at_ != target) {
        advance(target, breakpoints);
        if (atBreakpoint(breakpoints)) return;
    }
}

bool Replay::atBreakpoint(const Breakpoints& breakpoints) const {
    if (breakpoints[static_cast<std::size_t>(moment_->machine.PC)] == 0) return false;
    return !wayOutIsNext() && !(history_.endsGroup(at_) && changeIsNext());
}

/// One change, or instructions up to the next one.
void Replay::advance(const Position& target, const Breakpoints& breakpoints) {
    if (at_.changes < target.changes && changeIsNext()) {
        makeChange();
    } else {
        runTowards(target, breakpoints);
    }
}

bool Replay::changeIsNext() const {
    return at_.changes < history_.end().changes &&
           history_.instructionsBefore(at_.changes) == at_.instructions;
}

bool Replay::wayOutIsNext() const {
    return changeIsNext() && history_.kindOf(at_.changes) == History::Kind::wayOut;
}

void Replay::makeChange() {
    history_.apply(at_.changes, *moment_);
    ++at_.changes;
}

/// As far as the next change, the next place for a checkpoint or the target.
void Replay::runTowards(const Position& target, const Breakpoints& breakpoints) {
    std::uint64_t end = target.instructions;
    if (at_.changes < target.changes) end = std::min(end, history_.instructionsBefore(at_.changes));
    end = std::min(end, (at_.instructions / Checkpoints::densest + 1) * Checkpoints::densest);
    const BatchLimit limit{static_cast<std::int64_t>(end - at_.instructions)};
    const BatchResult result = runBatch(moment_->machine, breakpoints, limit, written_);
    moment_->add(result);
    at_.instructions += static_cast<std::uint64_t>(result.instructions);
    history_.noteExecutedAgain(static_cast<std::uint64_t>(result.instructions));
    if (result.end == BatchResult::End::singleStep) stepAlone();
    leaveCheckpoint(target);
}

/// As the window does it: an instruction that fails has moved PC, counts nothing and ends there.
bool Replay::stepAlone() {
    storeCount_ = 0;
    bool succeeded = true;
    try {
        moment_->count(EjecutaPASO(moment_->machine, *this));
    } catch (const RuntimeError&) {
        succeeded = false;
    }
    moment_->bringUpToDate();
    ++at_.instructions;
    history_.noteExecutedAgain(1);
    return succeeded;
}

bool Replay::step() {
    const bool succeeded = stepAlone();
    withWayOut_ = wayOutIsNext();
    if (withWayOut_) makeChange();
    return succeeded;
}

std::array<bool, pageCount> Replay::takeWrittenPages() {
    return std::exchange(written_, {}).pages;
}

void Replay::savmem(std::int32_t dir, std::int32_t dat) {
    moment_->machine.storeMemory(dir, dat);
    written_.pages[static_cast<std::size_t>(dir & (memorySize - 1)) / pageSize] = true;
    stores_[storeCount_++] = dir;
}

bool Replay::stored(std::int32_t address) const {
    const auto end = stores_.begin() + static_cast<std::ptrdiff_t>(storeCount_);
    if (std::find(stores_.begin(), end, address) != end) return true;
    return withWayOut_ && history_.wrote(at_.changes - 1, address);
}

/// Where the history was thinned out, what lies not far before the target is kept dense again: steps back
/// from there are cheap.
void Replay::leaveCheckpoint(const Position& target) {
    constexpr std::uint64_t near = 32 * Checkpoints::densest;
    if (at_.instructions % Checkpoints::densest != 0 || at_.instructions + near < target.instructions) return;
    history_.keep(at_, *moment_);
}

}  // namespace tavinor
