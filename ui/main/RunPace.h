#pragma once

#include <algorithm>
#include <chrono>
#include <cstdint>

namespace tavinor {

/// Paces a run: tells how many instructions are executed before the event queue may be looked at, and what is
/// due then.
class RunPace {
  public:
    enum class Due { nothing, events, frame };

    RunPace() = default;
    RunPace(const RunPace&) = delete;
    RunPace& operator=(const RunPace&) = delete;
    virtual ~RunPace() = default;

    /// How many instructions are executed until `due` is asked; at least 1.
    [[nodiscard]] virtual std::int64_t slice() = 0;
    /// What is due now: nothing, the events of the operating system, or those and then a frame on the screen.
    [[nodiscard]] virtual Due due() = 0;
};

/// The pace of the program: a look at the event queue every 250 µs, a frame every 16 ms. Frames count from
/// when they were due, so that a late one does not make the next one late as well; but of those that were
/// missed at most one is made up for.
class ClockPace final : public RunPace {
  public:
    using Clock = std::chrono::steady_clock;
    static constexpr std::chrono::microseconds eventPeriod{250};
    static constexpr std::chrono::microseconds framePeriod{16'000};

    [[nodiscard]] std::int64_t slice() override { return instructionsPerReading; }
    [[nodiscard]] Due due() override { return dueAt(Clock::now()); }

    /// What is due at `now`, which is never earlier than at the call before.
    [[nodiscard]] Due dueAt(Clock::time_point now) {
        const bool frame = now >= nextFrame_;
        if (!frame && now - lastLook_ < eventPeriod) return Due::nothing;
        lastLook_ = now;
        if (!frame) return Due::events;
        nextFrame_ = std::max(nextFrame_ + framePeriod, now);
        return Due::frame;
    }

  private:
    /// Some ten microseconds' worth: the next look is late by no more, but where instructions have to be
    /// executed one by one. A prime, so that a program's loop is seen, and stopped, at any place of it: with
    /// 4096 a loop of 256 instructions would always be at the same one.
    static constexpr std::int64_t instructionsPerReading = 4093;

    Clock::time_point lastLook_{};
    Clock::time_point nextFrame_{};
};

}  // namespace tavinor
