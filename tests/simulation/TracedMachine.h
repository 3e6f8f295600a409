#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "simulation/Simulation.h"
#include "tests/simulation/PlainSimulation.h"

namespace tavinor::test {

/// A simulation whose steps a test drives, and the plain one beside it, which keeps every row of the trace as
/// text.
class TracedMachine final : private HaltHandler {
  public:
    explicit TracedMachine(std::size_t historyBytes = History::usualBytes);

    [[nodiscard]] Simulation& simulation() { return simulation_; }
    [[nodiscard]] const Trace& trace() const { return simulation_.trace(); }
    [[nodiscard]] const NaiveTrace& naive() const { return plain_.trace; }
    [[nodiscard]] const MachineState& machine() const { return simulation_.machine(); }
    /// What a HLT does, to one after the other.
    std::function<void()> onHalt;

    /// The same command for both; what was being typed is gone.
    template <typename Command>
    void both(const Command& command) {
        typed_.reset();
        if (halted_ != Halted::plain) command(simulation_);
        if (halted_ != Halted::simulation && !plainLeftOut_) command(plain_);
    }
    void load(const std::vector<std::uint8_t>& program, std::int32_t address = 0);
    /// Changes the registers as edits do, and refreshes.
    void edit(const std::function<void(Registers&)>& change);
    void write(std::int32_t address, int byte);
    /// Types `text` into the box with this index in `RegisterTexts`.
    void type(std::size_t box, const std::string& text);
    /// One instruction, with its rows. False when it failed.
    bool step();
    void steps(std::int64_t count);
    void clear();
    /// From now on the plain one, which takes its time and memory, is left out.
    void recordOnlyCompact() { plainLeftOut_ = true; }

  private:
    enum class Halted : std::uint8_t { none, simulation, plain };

    void haltComes() override {}
    void halt() override { answer(Halted::simulation); }
    void answer(Halted halted);

    Simulation simulation_;
    PlainSimulation plain_;
    bool plainLeftOut_ = false;
    Halted halted_ = Halted::none;
    std::optional<RegisterTexts> typed_;
};

}  // namespace tavinor::test
