// Commands one at a time: what each leaves in counters, memory and history.

#include <gtest/gtest.h>

#include <functional>

#include "simulation/WayBack.h"

namespace tavinor::test {
namespace {

class CommandsTest : public testing::Test, protected HaltHandler {
  protected:
    void haltComes() override {}
    void halt() override { onHalt(); }

    void setA(std::uint8_t a) {
        Registers registers = simulation.machine().registers();
        registers.A = a;
        simulation.setRegisters(registers);
    }
    void stepBack() { simulation.goBack(WayBack(simulation).oneStep()); }

    std::function<void()> onHalt;
    Simulation simulation{*this};
};

TEST_F(CommandsTest, AResetOutOfAHaltLeavesNothingCounted) {
    simulation.writeMemory(0, 0x76);  // HLT
    onHalt = [this] { simulation.reset(); };
    simulation.step(nullptr);
    EXPECT_EQ(simulation.counters(), Counters{});
    simulation.intr("76");  // the same HLT, brought by a device
    EXPECT_EQ(simulation.counters(), Counters{});
}

TEST_F(CommandsTest, AHaltBroughtByADeviceCounts) {
    onHalt = [] {};
    simulation.intr("76");
    EXPECT_EQ(simulation.counters(), (Counters{.instructions = 1, .tStates = 5}));
}

TEST_F(CommandsTest, WhatEndsWhereItBeganIsNoChange) {
    setA(0x77);
    EXPECT_TRUE(simulation.canGoBack());
    setA(0);
    EXPECT_FALSE(simulation.canGoBack());
    EXPECT_EQ(simulation.settledHistory().end(), Position{});
}

TEST_F(CommandsTest, AllThatTheUserDoesBetweenTwoInstructionsIsOneChange) {
    setA(0x77);
    EXPECT_TRUE(simulation.canGoBack());
    simulation.writeMemory(0x2000, 1);
    EXPECT_TRUE(simulation.canGoBack());
    EXPECT_EQ(simulation.settledHistory().end(), (Position{0, 1}));
}

TEST_F(CommandsTest, TheFirstStateRowLeavesWithTheFirstInstruction) {
    setA(0x77);
    simulation.step(nullptr);
    EXPECT_EQ(simulation.trace().size(), 2U);
    stepBack();
    EXPECT_TRUE(simulation.trace().empty());
    EXPECT_EQ(simulation.machine().A, 0x77);
}

TEST_F(CommandsTest, AnotherStateRowStaysWithTheChangeThatItShows) {
    simulation.step(nullptr);
    setA(0x77);
    simulation.step(nullptr);
    EXPECT_EQ(simulation.trace().size(), 4U);
    stepBack();
    EXPECT_EQ(simulation.trace().size(), 3U);
    stepBack();
    EXPECT_EQ(simulation.trace().size(), 2U);
}

TEST_F(CommandsTest, AHistoryThatBeginsInABorrowedHaltHasTheCellsOwnByte) {
    simulation.writeMemory(0, 0x3E);
    onHalt = [this] {
        simulation.clearTrace();
        setA(0x77);
    };
    simulation.intr("76");
    EXPECT_EQ(simulation.machine().mem[0], 0x3E);
    ASSERT_TRUE(simulation.canGoBack());
    stepBack();
    EXPECT_EQ(simulation.machine().A, 0);
    EXPECT_EQ(simulation.machine().mem[0], 0x3E);
}

TEST_F(CommandsTest, AStepBackShowsCellsAsTheyAre) {
    setA(0x12);
    simulation.intr("77");  // MOV M,A: to 0000, where it is executed
    ASSERT_EQ(simulation.shownCells().size(), 1U);
    EXPECT_EQ(simulation.shownCells().front().byte, 0x12);
    stepBack();
    EXPECT_TRUE(simulation.shownCells().empty());
}

}  // namespace
}  // namespace tavinor::test
