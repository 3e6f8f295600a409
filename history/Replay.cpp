#include "history/Replay.h"

#include <algorithm>

#include "machine/RuntimeError.h"
#include "machine/Stepper.h"

namespace tavinor {

namespace {

/// Stores what an instruction stores. The way out of a HLT is a change that follows it.
class ReplayHost final : public Host {
  public:
    explicit ReplayHost(MachineState& machine) : m_(machine) {}

    void savmem(std::int32_t dir, std::int32_t dat) override { m_.storeMemory(dir, dat); }
    void savport(std::int32_t dir, std::int32_t dat) override { m_.storePort(dir, dat); }
    void halt() override {}

  private:
    MachineState& m_;
};

}  // namespace

Replay::Replay(History& history) : history_(history), revision_(history.revision()) {
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
    const std::uint64_t stopAt = executed_ + static_cast<std::uint64_t>(most);
    while (at_ != target && executed_ < stopAt) {
        if (changeIsNext(target)) {
            makeChange();
        } else {
            runTowards(target);
        }
    }
    return at_ == target;
}

bool Replay::changeIsNext(const Position& target) const {
    return at_.changes < target.changes && history_.instructionsBefore(at_.changes) == at_.instructions;
}

void Replay::makeChange() {
    history_.apply(at_.changes, *moment_);
    ++at_.changes;
}

/// As far as the next change, the next place for a checkpoint or the target.
void Replay::runTowards(const Position& target) {
    std::uint64_t end = target.instructions;
    if (at_.changes < target.changes) end = std::min(end, history_.instructionsBefore(at_.changes));
    end = std::min(end, (at_.instructions / Checkpoints::densest + 1) * Checkpoints::densest);
    const BatchLimit limit{static_cast<std::int64_t>(end - at_.instructions)};
    const BatchResult result = runBatch(moment_->machine, *noBreakpoints_, limit, written_);
    moment_->counters.instructions += result.instructions;
    moment_->counters.tStates += result.tStates;
    at_.instructions += static_cast<std::uint64_t>(result.instructions);
    executed_ += static_cast<std::uint64_t>(result.instructions);
    if (result.end == BatchResult::End::singleStep) stepAlone();
    leaveCheckpoint(target);
}

/// As the window does it: an instruction that fails has moved PC, counts nothing and ends there.
bool Replay::stepAlone() {
    MachineState& m = moment_->machine;
    ReplayHost host(m);
    bool succeeded = true;
    try {
        moment_->counters.tStates += EjecutaPASO(m, host);
        ++moment_->counters.instructions;
    } catch (const RuntimeError&) {
        succeeded = false;
    }
    m.synmem();
    m.PC &= memorySize - 1;
    ++at_.instructions;
    ++executed_;
    return succeeded;
}

bool Replay::step() {
    const bool succeeded = stepAlone();
    const bool wayOut = at_.changes < history_.end().changes &&
                        history_.instructionsBefore(at_.changes) == at_.instructions &&
                        history_.kindOf(at_.changes) == History::Kind::wayOut;
    if (wayOut) makeChange();
    return succeeded;
}

/// Where the history was thinned out, what lies not far before the target is kept dense again: steps back
/// from there are cheap.
void Replay::leaveCheckpoint(const Position& target) {
    constexpr std::uint64_t near = 32 * Checkpoints::densest;
    if (at_.instructions % Checkpoints::densest != 0 || at_.instructions + near < target.instructions) return;
    history_.keep(at_, *moment_);
}

}  // namespace tavinor
