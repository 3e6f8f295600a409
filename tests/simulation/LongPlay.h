#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>
#include <random>
#include <string>
#include <vector>

#include "simulation/Simulation.h"
#include "tests/simulation/PlainSimulation.h"

namespace tavinor::test {

/// A simulation that plays for longer than from one kept machine of its history to the next, and a plain list
/// of what each instruction and each group of changes did: enough to take all of it back.
class LongPlay final : private HaltHandler {
  public:
    /// An instruction, or all that the user changed between two of them: what was before it.
    struct Entry {
        Position position;
        Processor processor;
        Counters counters;
        std::uint8_t shownM;
        std::size_t stores;  ///< How many there had been.
    };

    explicit LongPlay(unsigned seed);

    /// Executes until the history has that many instructions. There are HLTs among them.
    void runTo(std::uint64_t instructions);
    /// Changes registers by hand, and a byte of memory.
    void edit(const std::function<void(Registers&)>& change, std::int32_t address, int byte);
    /// Executes a HLT, whichever instruction would be next, whose way out is a call that stores below `SP`;
    /// then the program goes on. A byte is written before and after that.
    void haltNow(std::int32_t address, std::int32_t SP);
    /// Goes back to before `entries[index]`.
    void goBackTo(std::size_t index);

    /// Everything in which the simulation and the list differ; empty when nothing does.
    [[nodiscard]] std::string differences() const;
    /// Whether `entries[index]` stored to this cell.
    [[nodiscard]] bool stored(std::size_t index, std::int32_t address) const;
    /// A cell that something was stored to.
    [[nodiscard]] std::int32_t anyStored();
    std::int32_t any(std::uint32_t below) { return static_cast<std::int32_t>(random_() % below); }

    Simulation simulation{*this};
    std::vector<Entry> entries;

    static constexpr std::int32_t haltCell = 0x0060;

  private:
    struct Store {
        std::int32_t address;
        std::uint8_t before;
    };

    void haltComes() override {}
    void halt() override;
    void answer(PlainSimulation& plain);
    template <typename Target>
    static void carryOut(Target& target, int wayOut);
    template <typename Command>
    void both(const Command& command);
    void note(const Position& position);

    std::mt19937 random_;
    PlainSimulation plain_;
    std::vector<Store> stores_;
    std::deque<int> answers_;
    bool callsNext_ = false;
};

}  // namespace tavinor::test
