#pragma once

#include <array>
#include <cstdint>
#include <limits>
#include <memory>

#include "history/History.h"
#include "machine/Host.h"

namespace tavinor {

/// A machine of its own that executes a history again, to any position of it. It goes on from where it was
/// when that is the shortest way. Each reader of a history has one.
class Replay final : private Host {
  public:
    explicit Replay(const History& history);

    /// Goes to `target`, which is a position of the history, but executes at most about `most` instructions
    /// for it. True when it has arrived; else the next call goes on.
    bool seek(const Position& target, std::int64_t most = std::numeric_limits<std::int64_t>::max());

    /// Goes on from where it stands to `target`, which lies behind, or to the first breakpoint before it,
    /// whichever comes first.
    void runTo(const Position& target, const Breakpoints& breakpoints);
    /// Whether PC has a breakpoint, and an instruction or all that was changed after it has led there: not
    /// within a HLT, and not between two changes.
    [[nodiscard]] bool atBreakpoint(const Breakpoints& breakpoints) const;

    [[nodiscard]] Position at() const { return at_; }
    [[nodiscard]] const MachineState& machine() const { return moment_->machine; }
    [[nodiscard]] const Moment& moment() const { return *moment_; }

    /// Executes the instruction at which it stands: there is one in the history, and no change before it that
    /// has not been made. The way out of a HLT is made with it. False when the instruction failed.
    bool step();
    /// Whether that stored to the memory cell `address`, the way out included.
    [[nodiscard]] bool stored(std::int32_t address) const;

    /// The pages that instructions have written since this was asked last.
    [[nodiscard]] std::array<bool, pageCount> takeWrittenPages();

  private:
    // What an instruction stores. The way out of a HLT is a change that follows it.
    void savmem(std::int32_t dir, std::int32_t dat) override;
    void savport(std::int32_t dir, std::int32_t dat) override { moment_->machine.storePort(dir, dat); }
    void halt() override {}

    void restore(const Position& target);
    void advance(const Position& target, const Breakpoints& breakpoints);
    [[nodiscard]] bool changeIsNext() const;
    [[nodiscard]] bool wayOutIsNext() const;
    void makeChange();
    void runTowards(const Position& target, const Breakpoints& breakpoints);
    bool stepAlone();
    void leaveCheckpoint(const Position& target);

    const History& history_;
    std::unique_ptr<Moment> moment_ = std::make_unique<Moment>();
    std::unique_ptr<Breakpoints> noBreakpoints_ = std::make_unique<Breakpoints>();
    Written written_;
    Position at_;
    std::uint64_t revision_;

    // Of the last instruction that was executed by itself: no instruction stores more than two bytes.
    std::array<std::int32_t, 2> stores_{};
    std::size_t storeCount_ = 0;
    bool withWayOut_ = false;
};

}  // namespace tavinor
