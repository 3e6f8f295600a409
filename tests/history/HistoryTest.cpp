// A history executed again against whole copies taken while it was recorded.

#include "history/History.h"

#include <gtest/gtest.h>

#include "history/Replay.h"
#include "tests/history/RecordedMachine.h"
#include "tests/support/Differences.h"
#include "tests/support/Machines.h"
#include "tests/support/TestHost.h"
#include "tests/support/WindowStep.h"

namespace tavinor::test {
namespace {

void expectEqual(const Moment& actual, const Moment& expected, const Position& at) {
    ASSERT_EQ(differences(actual.machine, expected.machine), "") << at.instructions << ", " << at.changes;
    ASSERT_EQ(actual.counters, expected.counters) << at.instructions << ", " << at.changes;
    ASSERT_EQ(actual.shownM, expected.shownM) << at.instructions << ", " << at.changes;
}

/// Goes to every copy, in random order.
void expectAllCopies(RecordedMachine& recorded, Replay& replay) {
    std::vector<const RecordedMachine::Copy*> copies;
    for (const RecordedMachine::Copy& copy : recorded.copies()) copies.push_back(&copy);
    std::shuffle(copies.begin(), copies.end(), recorded.random());
    for (const RecordedMachine::Copy* copy : copies) {
        ASSERT_TRUE(replay.seek(copy->at));
        ASSERT_NO_FATAL_FAILURE(expectEqual(replay.moment(), *copy->moment, copy->at));
    }
}

TEST(HistoryTest, EveryPositionIsReachedAgain) {
    for (unsigned seed = 1; seed <= 12; ++seed) {
        RecordedMachine recorded(seed);
        for (int turn = 0; turn < 25; ++turn) {
            recorded.run(5000);
            recorded.changeSomething();
        }
        Replay replay(recorded.history());
        ASSERT_NO_FATAL_FAILURE(expectAllCopies(recorded, replay)) << "seed " << seed;
    }
}

TEST(HistoryTest, EveryPositionIsReachedWhenCheckpointsHaveThinnedOut) {
    constexpr std::size_t little = 200'000;  // room for two or three machines without a page in common
    RecordedMachine recorded(77, little);
    for (int turn = 0; turn < 60; ++turn) {
        recorded.run(100'000);
        recorded.changeSomething();
    }
    ASSERT_LT(recorded.history().checkpoints().count(), 80U) << "nothing has thinned out";
    Replay replay(recorded.history());
    ASSERT_NO_FATAL_FAILURE(expectAllCopies(recorded, replay));
}

TEST(HistoryTest, AfterGoingBackItGoesOnOtherwise) {
    RecordedMachine recorded(5);
    Replay replay(recorded.history());
    for (int turn = 0; turn < 40; ++turn) {
        recorded.run(30'000);
        recorded.changeSomething();
        if (turn % 3 != 2) continue;
        const auto& copies = recorded.copies();
        const RecordedMachine::Copy& chosen = copies[recorded.random()() % copies.size()];
        ASSERT_TRUE(replay.seek(chosen.at));
        ASSERT_NO_FATAL_FAILURE(expectEqual(replay.moment(), *chosen.moment, chosen.at));
        recorded.goBackTo(Position(chosen.at), replay.moment());
        ASSERT_NO_FATAL_FAILURE(expectAllCopies(recorded, replay)) << "turn " << turn;
    }
}

TEST(HistoryTest, ClearedItBeginsAnew) {
    RecordedMachine recorded(6);
    recorded.run(100'000);
    recorded.changeSomething();
    Replay replay(recorded.history());
    ASSERT_TRUE(replay.seek(recorded.history().end()));
    recorded.clear();
    EXPECT_EQ(recorded.history().end(), Position{});
    recorded.run(70'000);
    ASSERT_NO_FATAL_FAILURE(expectAllCopies(recorded, replay));
}

TEST(HistoryTest, ASeekGoesOnWhereItWasInterrupted) {
    RecordedMachine recorded(8);
    recorded.run(60'000);
    Replay replay(recorded.history());
    const Position end = recorded.history().end();
    int calls = 1;
    while (!replay.seek(end, 1000)) {
        ++calls;
        ASSERT_LE(recorded.history().executedAgain(),
                  static_cast<std::uint64_t>(calls) * Checkpoints::densest);
    }
    ASSERT_NO_FATAL_FAILURE(expectEqual(replay.moment(), recorded.now(), end));
}

class ShortHistoryTest : public ::testing::Test {
  protected:
    void step() {
        const BatchResult result = runBatch(now.machine, *breakpoints, {1}, written);
        ASSERT_EQ(result.instructions, 1);
        history.executed(1, now);
    }
    /// As the window does what a batch leaves to it.
    void stepAlone() {
        TestHost host(now.machine);
        const WindowStep step = stepAsTheWindow(now.machine, host);
        if (step.error == noError) now.count(step.states);
        now.showM();
        history.executed(1, now);
    }
    void edit(std::uint8_t a, History::Kind kind = History::Kind::outside) {
        const auto before = std::make_unique<Moment>(now);
        now.machine.A = a;
        now.machine.recomputePairs();
        history.changed(*before, now, {}, kind);
    }

    std::unique_ptr<Moment> owned = std::make_unique<Moment>();
    Moment& now = *owned;
    std::unique_ptr<Breakpoints> breakpoints = std::make_unique<Breakpoints>();
    Written written;
    History history{now};
};

TEST_F(ShortHistoryTest, OneStepBackUndoesAnInstructionOrAGroupOfChanges) {
    step();   // NOP
    edit(1);  // between
    step();
    edit(2);
    EXPECT_EQ(history.end(), (Position{2, 2}));
    std::vector<Position> way;
    while (history.end() != Position{}) {
        history.cutBehind(history.beforeNewest());
        way.push_back(history.end());
    }
    EXPECT_EQ(way, (std::vector<Position>{{2, 1}, {1, 1}, {1, 0}, {0, 0}}));
}

TEST_F(ShortHistoryTest, TheWayOutOfAHaltIsUndoneWithIt) {
    step();
    edit(1, History::Kind::wayOut);
    EXPECT_EQ(history.beforeNewest(), (Position{0, 0}));
    edit(2);
    EXPECT_EQ(history.beforeNewest(), (Position{1, 1}));
}

TEST_F(ShortHistoryTest, AnotherWayOnAfterGoingBackIsNotTakenForTheOldOne) {
    const auto start = std::make_unique<Moment>(now);
    for (const std::uint8_t a : {std::uint8_t{1}, std::uint8_t{2}}) {
        now = *start;
        history.cutBehind({});
        edit(a);
        for (int slice = 0; slice < 2; ++slice) {  // NOPs, past a checkpoint
            runBatch(now.machine, *breakpoints, {history.untilCheckpoint()}, written);
            history.executed(history.untilCheckpoint(), now);
        }
    }
    Replay replay(history);
    ASSERT_TRUE(replay.seek(history.end()));
    EXPECT_EQ(replay.machine().A, 2);
}

TEST_F(ShortHistoryTest, AReplayFollowsToAnotherWayOnOfTheSameLength) {
    const auto start = std::make_unique<Moment>(now);
    Replay replay(history);
    for (const std::uint8_t a : {std::uint8_t{1}, std::uint8_t{2}}) {
        now = *start;
        history.cutBehind({});
        edit(a);
        step();
        ASSERT_TRUE(replay.seek(history.end()));
        EXPECT_EQ(replay.machine().A, a);
    }
}

TEST_F(ShortHistoryTest, WhatABatchLeavesAtTheTopOfMemoryIsReplayed) {
    for (const int opcode : {0x76, 0xFF}) {  // HLT, and RST 7, which fails there
        now = Moment{};
        place(now.machine, 0xFFFF, {opcode});
        now.machine.PC = 0xFFFF;
        now.machine.SP = 0x2000;
        history.begin(now);
        stepAlone();
        Replay replay(history);
        ASSERT_TRUE(replay.seek(history.end()));
        ASSERT_NO_FATAL_FAILURE(expectEqual(replay.moment(), now, history.end())) << opcode;
    }
}

TEST_F(ShortHistoryTest, AStepTakesTheWayOutOfAHaltAndNoOtherChange) {
    place(now.machine, 0, {0x76, 0x76});  // HLT; HLT
    now.machine.synmem();
    history.begin(now);
    stepAlone();
    edit(1, History::Kind::wayOut);
    stepAlone();
    edit(2);
    Replay replay(history);
    EXPECT_TRUE(replay.step());
    EXPECT_EQ(replay.at(), (Position{1, 1}));
    EXPECT_EQ(replay.machine().A, 1);
    EXPECT_TRUE(replay.step());
    EXPECT_EQ(replay.at(), (Position{2, 1}));
    EXPECT_EQ(replay.machine().A, 1);
}

TEST_F(ShortHistoryTest, NothingChangedIsNoChange) {
    TouchedCells touched;
    touched.markMemory(0x2000);
    history.changed(now, now, touched, History::Kind::outside);
    EXPECT_EQ(history.end(), Position{});
    EXPECT_EQ(history.bytesOfChanges(), 0U);
}

/// An interrupt writes two cells; its state row in the trace takes twelve bytes more.
TEST_F(ShortHistoryTest, AChangeTakesNoMoreThan64Bytes) {
    constexpr int count = 1000;
    constexpr std::size_t bytesOfAStateRow = 12;
    for (int i = 0; i < count; ++i) {
        const auto before = std::make_unique<Moment>(now);
        TouchedCells touched;
        for (const std::int32_t address : {0x2000 + i, 0x3000 + i}) {
            now.machine.storeMemory(address, 1 + i % 255);
            touched.markMemory(address);
        }
        history.changed(*before, now, touched, History::Kind::outside);
    }
    EXPECT_EQ(history.end().changes, count);
    EXPECT_LE(history.bytesOfChanges(), (64 - bytesOfAStateRow) * count);
}

/// A loop that writes to all of memory, so that no two checkpoints share many pages.
void placeFillingLoop(MachineState& m) {
    place(m, 0,
          {0x21, 0x20, 0x00,    // LXI H,0020
           0x34,                // INR M
           0x23,                // INX H
           0x7C,                // MOV A,H
           0xB5,                // ORA L
           0xC2, 0x03, 0x00,    // JNZ 0003
           0xC3, 0x00, 0x00});  // JMP 0000
    m.synmem();
}

/// A history with little room, so long that its checkpoints have to thin out.
class HistoryMemoryTest : public ::testing::Test {
  protected:
    static constexpr std::size_t bound = std::size_t{4} * 1024 * 1024;

    HistoryMemoryTest() { placeFillingLoop(now->machine); }

    void runLong() {
        const auto breakpoints = std::make_unique<Breakpoints>();
        Written written;
        history.begin(*now);
        for (int i = 0; i < 600; ++i) {
            const BatchResult result =
                runBatch(now->machine, *breakpoints, {history.untilCheckpoint()}, written);
            now->add(result);
            history.executed(result.instructions, *now);
            ASSERT_LE(history.checkpoints().bytes(), bound);
        }
    }

    std::unique_ptr<Moment> now = std::make_unique<Moment>();
    History history{*now, bound};
};

TEST_F(HistoryMemoryTest, StaysWithinItsBoundHoweverLongItIs) {
    ASSERT_NO_FATAL_FAILURE(runLong());
    Replay replay(history);
    ASSERT_TRUE(replay.seek(history.end()));
    EXPECT_EQ(differences(replay.machine(), now->machine), "");
    // No gap of the old ones is much wider than it has to be.
    replay.seek({});
    for (std::uint64_t n = 0; n < history.end().instructions; n += 999'999) {
        const std::uint64_t gap = n - history.checkpoints().positionBefore({n, 0}).instructions;
        EXPECT_LE(gap, 64 * Checkpoints::densest) << n;
    }
}

TEST_F(HistoryMemoryTest, ExecutedAgainAThinPlaceIsDense) {
    ASSERT_NO_FATAL_FAILURE(runLong());
    Replay replay(history);
    const Position old{10'000'000, 0};
    ASSERT_TRUE(replay.seek(old));
    const std::uint64_t executed = history.executedAgain();
    history.cutBehind(old);
    for (std::uint64_t back = 1; back <= 20; ++back) {
        ASSERT_TRUE(replay.seek({old.instructions - back, 0}));
        history.cutBehind(replay.at());
    }
    EXPECT_LE(history.executedAgain() - executed, 20 * Checkpoints::densest);
}

}  // namespace
}  // namespace tavinor::test
