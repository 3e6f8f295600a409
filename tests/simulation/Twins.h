#pragma once

#include <cstdint>
#include <deque>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "simulation/Simulation.h"
#include "tests/simulation/PlainSimulation.h"
#include "tests/support/TemporaryFolder.h"
#include "trace/TraceReader.h"

namespace tavinor::test {

/// A simulation and the plain one beside it, which get the same commands and answers.
class Twins final : private HaltHandler {
  public:
    /// Where chance comes from: any number.
    using Chance = std::function<std::uint32_t()>;

    explicit Twins(Chance chance);

    /// Fills the memory with random bytes or, now and then, with a program that goes round.
    void fillMemory();
    /// Executes at most `most` instructions, as many with both.
    void run(std::int64_t most);
    /// Called before each instruction of the plain one, with how many of `run` there have been.
    std::function<void(std::uint64_t)> beforePlainStep;
    /// Something that the user may do between two instructions.
    void disturb();
    /// Types into a box: the next instruction sees it.
    void type();
    void toggleBreakpoint() { simulation.toggleBreakpoint(any(memorySize)); }
    void clearTrace();
    /// Goes back to what `copy` is, which was taken when the history ended at `target`; of its rows `rows`.
    void goBack(const Position& target, const PlainSimulation& copy, std::size_t rows);

    /// Everything in which the two differ, the rows apart; empty when nothing does.
    [[nodiscard]] std::string differences();
    /// The first of these rows that differs; empty when none does.
    [[nodiscard]] std::string rowDifferences(std::uint64_t first, std::uint64_t count);

    Simulation simulation;
    PlainSimulation plain;
    /// Rows of both; they differ where one has more.
    [[nodiscard]] std::uint64_t rows() const { return simulation.trace().size(); }
    std::int32_t any(std::uint32_t below) { return static_cast<std::int32_t>(chance_() % below); }

  private:
    enum class WayOut : std::uint8_t { reset, trap, rst55, rst65, rst75, intr };
    struct Answer {
        WayOut wayOut;
        std::string vectorText;
        bool clears;
    };

    void haltComes() override {}
    void halt() override;
    void answer(PlainSimulation& plain);
    template <typename Target>
    static void carryOut(Target& target, const Answer& answer);
    template <typename Command>
    void both(const Command& command);
    void request();
    void editRegister();
    void loadSomething();
    std::filesystem::path hexFile();
    std::uint8_t byte() { return static_cast<std::uint8_t>(any(256)); }
    std::string vectorText();

    Chance chance_;
    TemporaryFolder folder_;
    std::deque<Answer> answers_;
    std::optional<RegisterTexts> typed_;
    std::vector<std::uint8_t> grid_ = std::vector<std::uint8_t>(memorySize);
    TraceReader reader_;
};

}  // namespace tavinor::test
