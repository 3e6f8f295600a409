#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "machine/Host.h"
#include "machine/MachineState.h"
#include "tests/ui/trace/NaiveTrace.h"
#include "ui/trace/TraceRecorder.h"

namespace tavinor {

/// A machine whose steps are recorded as the main window records them, in the trace under test and, if asked,
/// in the naive one beside it.
class TracedMachine final : private Host {
  public:
    explicit TracedMachine(TraceRecorder& recorder, NaiveTrace* naive = nullptr)
        : recorder_(recorder), naive_(naive) {}

    MachineState& machine() { return *machine_; }
    Host& host() { return *this; }
    /// What a HLT does.
    std::function<void()> onHalt;

    void load(const std::vector<std::uint8_t>& program, std::int32_t address = 0);
    /// The boxes show the machine from now on; what was being typed is gone.
    void refresh();
    /// Types `text` into the box with this index in `RegisterTexts`.
    void type(std::size_t box, const std::string& text);
    /// One instruction, with its rows. False when it failed.
    bool step();
    void steps(int count);
    void clear();
    /// From now on the naive trace, which takes its time and memory, is left out.
    void recordOnlyCompact() { naive_ = nullptr; }

  private:
    void savmem(std::int32_t dir, std::int32_t dat) override { machine_->storeMemory(dir, dat); }
    void savport(std::int32_t dir, std::int32_t dat) override { machine_->storePort(dir, dat); }
    void halt() override {
        if (onHalt) onHalt();
    }
    [[nodiscard]] ShownBoxes shown() const;
    [[nodiscard]] BoxTexts boxTexts() const;

    std::unique_ptr<MachineState> machine_ = std::make_unique<MachineState>();
    TraceRecorder& recorder_;
    NaiveTrace* naive_;
    Registers shown_;
    std::uint8_t shownM_ = 0;
    std::optional<RegisterTexts> typed_;
};

}  // namespace tavinor
