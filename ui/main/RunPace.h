#pragma once

#include <chrono>

namespace tavinor {

/// Paces a run: tells after which instructions the operating system's events are to be fetched and the screen
/// is to be painted. Reading the clock costs as much as several instructions, so it is read once in a while
/// only.
class RunPace {
  public:
    enum class Due { nothing, events, frame };

    /// Called once an instruction.
    Due next() {
        if (++instructions_ % instructionsPerLook != 0) return Due::nothing;
        return look(Clock::now());
    }

  private:
    using Clock = std::chrono::steady_clock;
    static constexpr unsigned instructionsPerLook = 64;
    static constexpr std::chrono::microseconds eventPeriod{250};
    static constexpr std::chrono::microseconds framePeriod{16'000};

    Due look(Clock::time_point now) {
        if (now - lastFrame_ >= framePeriod) {
            lastFrame_ = lastEvents_ = now;
            return Due::frame;
        }
        if (now - lastEvents_ >= eventPeriod) {
            lastEvents_ = now;
            return Due::events;
        }
        return Due::nothing;
    }

    unsigned instructions_ = 0;
    Clock::time_point lastEvents_{};
    Clock::time_point lastFrame_{};
};

}  // namespace tavinor
