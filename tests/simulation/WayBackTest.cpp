// The ways back against whole copies kept aside after each instruction and each group of changes.

#include "simulation/WayBack.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <optional>
#include <random>
#include <vector>

#include "tests/simulation/KeptCopies.h"

namespace tavinor::test {
namespace {

class WayBackTest : public testing::TestWithParam<unsigned> {
  protected:
    using Entry = KeptCopies::Entry;

    void play(int times) {
        for (int i = 0; i < times; ++i) ASSERT_EQ(kept.play(), "");
    }
    Entry& anyEntry() {
        return kept.entries[static_cast<std::size_t>(any(static_cast<std::uint32_t>(kept.entries.size())))];
    }
    /// The latest of the entries that `fits`.
    template <typename Fits>
    std::optional<std::size_t> latest(const Fits& fits) {
        const auto found = std::find_if(kept.entries.rbegin(), kept.entries.rend(), fits);
        if (found == kept.entries.rend()) return std::nullopt;
        return static_cast<std::size_t>(kept.entries.rend() - found - 1);
    }
    std::int32_t any(std::uint32_t below) { return kept.twins.any(below); }
    Simulation& simulation() { return kept.twins.simulation; }

    KeptCopies kept{[random = std::mt19937(GetParam())]() mutable { return random(); }};
    WorkObserver unobserved;
};

TEST_P(WayBackTest, LeadsToEveryCopyAndOnAgain) {
    for (int turn = 0; turn < 25; ++turn) {
        ASSERT_NO_FATAL_FAILURE(play(1 + any(20)));
        for (int steps = any(12); steps > 0 && !kept.entries.empty(); --steps) {
            ASSERT_EQ(kept.oneStepBack(), "") << "turn " << turn;
        }
    }
    while (!kept.entries.empty()) ASSERT_EQ(kept.oneStepBack(), "");
    EXPECT_FALSE(simulation().canGoBack());
    EXPECT_EQ(kept.twins.rows(), 0U);
}

TEST_P(WayBackTest, LeadsToTheLatestBreakpoint) {
    ASSERT_NO_FATAL_FAILURE(play(120));
    for (int i = 0; i < 8 && !kept.entries.empty(); ++i) {
        simulation().toggleBreakpoint(anyEntry().copy.moment.machine.PC);
        const std::size_t expected = latest([this](const Entry& entry) {
                                         const auto pc =
                                             static_cast<std::size_t>(entry.copy.moment.machine.PC);
                                         return simulation().breakpoints()[pc] != 0;
                                     }).value_or(0);
        ASSERT_TRUE(simulation().canGoBack());
        ASSERT_EQ(WayBack(simulation()).toBreakpoint(unobserved), kept.entries[expected].position);
        ASSERT_EQ(kept.goBackTo(expected), "");
    }
}

TEST_P(WayBackTest, LeadsToBeforeTheLastWriteOfACell) {
    ASSERT_NO_FATAL_FAILURE(play(120));
    for (int i = 0; i < 8 && !kept.entries.empty(); ++i) {
        const std::vector<std::int32_t>& stores = anyEntry().stores;
        const std::int32_t address = stores.empty() ? any(0x10000) : stores.front();
        const std::optional<std::size_t> expected = latest([address](const Entry& entry) {
            return std::find(entry.stores.begin(), entry.stores.end(), address) != entry.stores.end();
        });
        ASSERT_TRUE(simulation().canGoBack());
        const std::optional<Position> position = WayBack(simulation()).toLastWrite(address, unobserved);
        ASSERT_EQ(position.has_value(), expected.has_value());
        if (!expected) continue;
        ASSERT_EQ(*position, kept.entries[*expected].position);
        ASSERT_EQ(kept.goBackTo(*expected), "");
    }
}

TEST_P(WayBackTest, LeadsBackThroughBatches) {
    for (int turn = 0; turn < 120; ++turn) {
        const int choice = any(8);
        std::string text;
        if (choice >= 4 || kept.entries.empty()) {
            text = kept.play(kept.twins.rows() < 6'000 ? 1 + any(5'000) : 1);
        } else if (choice == 0) {
            text = kept.oneStepBack();
        } else if (choice == 1) {
            text = kept.goBackTo(kept.entries.size() - 1 - kept.entries.size() / 4);
        } else {
            text = choice == 2 ? kept.backToBreakpoint() : kept.backToLastWrite();
        }
        ASSERT_EQ(text, "") << "turn " << turn << ", choice " << choice;
    }
}

class Cancelling final : public WorkObserver {
  public:
    bool goesOn(double /*done*/) override { return false; }
};

TEST_P(WayBackTest, CancelledItChangesNothing) {
    ASSERT_NO_FATAL_FAILURE(play(40));
    ASSERT_TRUE(simulation().canGoBack());
    const Position end = simulation().history().end();
    Cancelling cancelling;
    EXPECT_THROW(static_cast<void>(WayBack(simulation()).toBreakpoint(cancelling)), Cancelled);
    EXPECT_EQ(simulation().history().end(), end);
    EXPECT_EQ(kept.twins.differences(), "");
    EXPECT_EQ(kept.twins.rowDifferences(0, kept.twins.rows()), "");
}

INSTANTIATE_TEST_SUITE_P(Seeds, WayBackTest, testing::Range(1U, 13U));

}  // namespace
}  // namespace tavinor::test
