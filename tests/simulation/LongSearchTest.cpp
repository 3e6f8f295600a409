// The ways back over several hundred thousand instructions, which lie between more than one pair of kept
// machines, against a plain list of them.

#include <gtest/gtest.h>

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "simulation/WayBack.h"
#include "tests/simulation/LongPlay.h"
#include "trace/TraceReader.h"
#include "trace/TraceText.h"

namespace tavinor::test {
namespace {

/// Counts how often a search says how far it is, and can end it.
class Watching final : public WorkObserver {
  public:
    explicit Watching(int most = 1'000'000) : most_(most) {}

    bool goesOn(double done) override {
        EXPECT_GT(done, last_);
        EXPECT_LE(done, 1.0);
        last_ = done;
        return ++reports < most_;
    }
    int reports = 0;

  private:
    int most_;
    double last_ = 0;
};

class LongSearchTest : public testing::TestWithParam<unsigned> {
  protected:
    static constexpr std::uint64_t distance = Checkpoints::densest;
    static constexpr std::int32_t rareCell = 0x5000;
    static constexpr std::int32_t rarePlace = 0x0050;
    static constexpr std::int32_t byHand = 0x6000;
    static constexpr std::int32_t ownStack = 0x7000;

    /// Past several kept machines. One lies between a HLT and its way out, one before and one behind a group.
    LongSearchTest() {
        play.runTo(distance - 1);
        play.haltNow(byHand, ownStack);
        play.runTo(2 * distance);
        play.edit([](Registers& r) { r.B = 0x12; }, byHand + 1, 0x34);
        play.runTo(3 * distance - 1);
        play.edit([](Registers& r) { r.C = 0x56; }, byHand + 2, 0x78);
        play.runTo(4 * distance + 1 + static_cast<std::uint64_t>(play.any(30'000)));
    }

    const History& history() { return play.simulation.history(); }
    /// The latest entry that `fits`, by its index.
    template <typename Fits>
    std::optional<std::size_t> latest(const Fits& fits) {
        for (std::size_t index = play.entries.size(); index > 0; --index) {
            if (fits(index - 1)) return index - 1;
        }
        return std::nullopt;
    }
    std::optional<std::size_t> latestAt(std::int32_t PC) {
        return latest([&](std::size_t index) { return play.entries[index].processor.PC == PC; });
    }
    std::optional<std::size_t> latestWrite(std::int32_t address) {
        return latest([&](std::size_t index) { return play.stored(index, address); });
    }
    /// The places of kept machines behind `position`: a search that finds it looks no further than that.
    int keptBehind(const Position& position) {
        return static_cast<int>(history().end().instructions / distance - position.instructions / distance);
    }
    void expectAt(std::size_t index) {
        play.goBackTo(index);
        ASSERT_EQ(play.differences(), "");
    }
    void searchBreakpoint(std::int32_t address) {
        const std::size_t expected = latestAt(address).value_or(0);
        play.simulation.toggleBreakpoint(address);
        Watching watching;
        ASSERT_EQ(WayBack(play.simulation).toBreakpoint(watching), play.entries[expected].position);
        EXPECT_LE(watching.reports, keptBehind(play.entries[expected].position) + 1);
        play.simulation.toggleBreakpoint(address);
        ASSERT_NO_FATAL_FAILURE(expectAt(expected));
    }
    void searchWrite(std::int32_t address) {
        const std::optional<std::size_t> expected = latestWrite(address);
        Watching watching;
        const std::optional<Position> found = WayBack(play.simulation).toLastWrite(address, watching);
        ASSERT_EQ(found.has_value(), expected.has_value());
        if (!expected) return;
        ASSERT_EQ(*found, play.entries[*expected].position);
        EXPECT_LE(watching.reports, keptBehind(*found));
        ASSERT_NO_FATAL_FAILURE(expectAt(*expected));
    }
    std::vector<std::string> rows(std::uint64_t first, std::uint64_t count) {
        std::vector<std::string> lines;
        TraceReader(play.simulation.trace())
            .read(first, count, [&](const TraceRow& row, const RowTexts* texts) {
                appendLine(lines.emplace_back(), row, texts);
            });
        return lines;
    }

    LongPlay play{GetParam()};
};

TEST_P(LongSearchTest, LeadsToTheLatestBreakpoint) {
    for (const std::int32_t place : {0x0006, 0x0040, 0x0050, 0x0054, 0x0050, LongPlay::haltCell, 0x0050}) {
        ASSERT_NO_FATAL_FAILURE(searchBreakpoint(place)) << place;
        if (play.entries.empty()) return;
    }
    ASSERT_NO_FATAL_FAILURE(searchBreakpoint(0x7777));  // none: to the beginning
    EXPECT_TRUE(play.entries.empty());
}

TEST_P(LongSearchTest, LeadsToBeforeTheLastWriteOfACell) {
    for (const std::int32_t cell : {0x7777, byHand + 2, byHand + 1, byHand}) {
        ASSERT_NO_FATAL_FAILURE(searchWrite(cell)) << cell;
    }
    for (int times = 0; times < 6 && !play.entries.empty(); ++times) {
        ASSERT_NO_FATAL_FAILURE(searchWrite(times % 2 == 0 ? play.anyStored() : rareCell)) << times;
    }
}

TEST_P(LongSearchTest, UndoesWhatTheWayOutOfAHaltWroteAtAKeptMachine) {
    const std::optional<std::size_t> halt = latestWrite(ownStack - 1);
    ASSERT_TRUE(halt);
    ASSERT_EQ(play.entries[*halt].position.instructions, distance - 1);
    ASSERT_EQ(play.entries[*halt].processor.PC, LongPlay::haltCell);
    ASSERT_NO_FATAL_FAILURE(searchWrite(ownStack - 1));
}

TEST_P(LongSearchTest, StepsBackOneByOnePastKeptMachines) {
    for (const std::uint64_t multiple : {3U, 2U, 1U}) {
        const auto past = latest([&](std::size_t index) {
            return play.entries[index].position.instructions == multiple * distance + 3;
        });
        ASSERT_TRUE(past);
        ASSERT_NO_FATAL_FAILURE(expectAt(*past));
        for (int step = 0; step < 12; ++step) {
            ASSERT_TRUE(play.simulation.canGoBack());
            ASSERT_EQ(WayBack(play.simulation).oneStep(), play.entries.back().position);
            ASSERT_NO_FATAL_FAILURE(expectAt(play.entries.size() - 1));
        }
    }
}

TEST_P(LongSearchTest, GoesOnFromThereAsBefore) {
    ASSERT_NO_FATAL_FAILURE(searchBreakpoint(rarePlace));
    ASSERT_NO_FATAL_FAILURE(searchWrite(byHand));
    play.edit([](Registers& r) { r.D = 0x9A; }, byHand, 0xBC);
    play.runTo(3 * distance);
    ASSERT_EQ(play.differences(), "");
    ASSERT_NO_FATAL_FAILURE(searchWrite(byHand));
    EXPECT_NE(play.simulation.machine().D, 0x9A);
}

/// In the middle as well as at once.
TEST_P(LongSearchTest, CancelledItChangesNothing) {
    const Position end = history().end();
    const std::uint64_t revision = play.simulation.trace().revision();
    const std::uint64_t size = play.simulation.trace().size();
    const std::vector<std::string> first = rows(0, 50);
    const std::vector<std::string> last = rows(size - 50, 50);
    play.simulation.toggleBreakpoint(0x7777);
    for (const int reports : {1, 2, 3}) {
        Watching breakpoint(reports);
        Watching write(reports);
        EXPECT_THROW(static_cast<void>(WayBack(play.simulation).toBreakpoint(breakpoint)), Cancelled);
        EXPECT_THROW(static_cast<void>(WayBack(play.simulation).toLastWrite(0x7777, write)), Cancelled);
        EXPECT_EQ(breakpoint.reports, reports);
        EXPECT_EQ(write.reports, reports);
        EXPECT_EQ(history().end(), end);
        EXPECT_EQ(play.simulation.trace().revision(), revision);
        EXPECT_EQ(play.simulation.trace().size(), size);
        EXPECT_EQ(play.differences(), "");
        EXPECT_EQ(rows(0, 50), first);
        EXPECT_EQ(rows(size - 50, 50), last);
    }
    play.runTo(end.instructions + 1000);
    EXPECT_EQ(play.differences(), "");
}

INSTANTIATE_TEST_SUITE_P(Seeds, LongSearchTest, testing::Range(1U, 5U));

}  // namespace
}  // namespace tavinor::test
