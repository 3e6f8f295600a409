#pragma once

#include <cstdint>
#include <limits>
#include <memory>

#include "history/History.h"

namespace tavinor {

/// A machine of its own that executes a history again, to any position of it. It goes on from where it was
/// when that is the shortest way. Each reader of a history has one.
class Replay {
  public:
    explicit Replay(History& history);

    /// Goes to `target`, which is a position of the history, but executes at most about `most` instructions
    /// for it. True when it has arrived; else the next call goes on.
    bool seek(const Position& target, std::int64_t most = std::numeric_limits<std::int64_t>::max());

    [[nodiscard]] Position at() const { return at_; }
    [[nodiscard]] const MachineState& machine() const { return moment_->machine; }
    [[nodiscard]] const Moment& moment() const { return *moment_; }

    /// Executes the instruction at which it stands: there is one in the history, and no change before it that
    /// has not been made. The way out of a HLT is made with it. False when the instruction failed.
    bool step();

    /// All the instructions that it has executed.
    [[nodiscard]] std::uint64_t executed() const { return executed_; }

  private:
    void restore(const Position& target);
    [[nodiscard]] bool changeIsNext(const Position& target) const;
    void makeChange();
    void runTowards(const Position& target);
    bool stepAlone();
    void leaveCheckpoint(const Position& target);

    History& history_;
    std::unique_ptr<Moment> moment_ = std::make_unique<Moment>();
    std::unique_ptr<Breakpoints> noBreakpoints_ = std::make_unique<Breakpoints>();
    Written written_;  // what a batch tells, and is of no use here
    Position at_;
    std::uint64_t revision_;
    std::uint64_t executed_ = 0;
};

}  // namespace tavinor
