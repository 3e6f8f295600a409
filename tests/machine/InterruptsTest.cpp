#include "machine/Interrupts.h"

#include <gtest/gtest.h>

#include <memory>
#include <vector>

#include "machine/HexText.h"
#include "machine/Stepper.h"
#include "tests/support/Differences.h"
#include "tests/support/Errors.h"
#include "tests/support/Machines.h"
#include "tests/support/TestHost.h"

namespace tavinor::test {
namespace {

class InterruptsTest : public ::testing::Test {
  protected:
    int rim() {
        OPRIM(m);
        return m.A;
    }
    void sim(int a) {
        m.A = static_cast<std::uint8_t>(a);
        OPSIM(m);
    }

    std::unique_ptr<MachineState> machine = std::make_unique<MachineState>();
    MachineState& m = *machine;
    TestHost host{m};
};

// --- RIM ---

TEST_F(InterruptsTest, RimAfterResetGives7AndWithSid135) {
    reset(m);
    EXPECT_EQ(rim(), 7);
    m.SID = true;
    EXPECT_EQ(rim(), 135);
}

TEST_F(InterruptsTest, RimReportsEachLineInItsBit) {
    m.intState = {.M55 = true};
    EXPECT_EQ(rim(), 1);
    m.intState = {.M65 = true};
    EXPECT_EQ(rim(), 2);
    m.intState = {.M75 = true};
    EXPECT_EQ(rim(), 4);
    m.intState = {.IE = true};
    EXPECT_EQ(rim(), 8);
    m.intState = {.R75 = true};
    EXPECT_EQ(rim(), 16);
    m.intState = {};
    EXPECT_EQ(rim(), 0);
    m.SID = true;
    EXPECT_EQ(rim(), 128);
}

TEST_F(InterruptsTest, RimNeverReportsSodAndChangesNoFlag) {
    m.SOD = true;
    m.F = 0xFF;
    EXPECT_EQ(rim(), 0);
    EXPECT_EQ(m.F, 0xFF);
}

TEST_F(InterruptsTest, RimGivesTheSumOfItsBitsForEveryState) {
    for (int bits = 0; bits < 64; ++bits) {
        const auto bit = [bits](int number) { return (bits >> number & 1) != 0; };
        m.intState = {.IE = bit(3), .M55 = bit(0), .M65 = bit(1), .M75 = bit(2), .R75 = bit(4)};
        m.SID = bit(5);
        EXPECT_EQ(rim(), (bits & 31) + (bit(5) ? 128 : 0));
    }
}

// --- SIM ---

TEST_F(InterruptsTest, SimWith8ClearsAllMasksAndWith15SetsThem) {
    reset(m);
    sim(8);
    EXPECT_EQ(m.intState, InterruptState{});
    sim(15);
    EXPECT_EQ(m.intState, (InterruptState{.M55 = true, .M65 = true, .M75 = true}));
}

TEST_F(InterruptsTest, SimWith16ClearsTheLatchAlone) {
    m.intState = {.IE = true, .M55 = true, .M65 = true, .M75 = true, .R75 = true};
    m.SOD = true;
    sim(16);
    EXPECT_EQ(m.intState, (InterruptState{.IE = true, .M55 = true, .M65 = true, .M75 = true}));
    EXPECT_TRUE(m.SOD);
}

TEST_F(InterruptsTest, SimWith192SetsSodAndLeavesTheMasks) {
    reset(m);
    sim(192);
    EXPECT_TRUE(m.SOD);
    EXPECT_EQ(rim(), 7);
    sim(64);
    EXPECT_FALSE(m.SOD);
}

TEST_F(InterruptsTest, SimWith128LeavesSod) {
    sim(128);
    EXPECT_FALSE(m.SOD);
    m.SOD = true;
    sim(0);
    EXPECT_TRUE(m.SOD);
}

TEST_F(InterruptsTest, SimWithoutBit3LeavesTheMasks) {
    m.intState = {.M65 = true};
    sim(7);
    EXPECT_EQ(m.intState, (InterruptState{.M65 = true}));
}

TEST_F(InterruptsTest, SimOfEveryByteFromEveryState) {
    for (int a = 0; a < 256; ++a) {
        for (int state = 0; state < 64; ++state) {
            const auto was = [state](int number) { return (state >> number & 1) != 0; };
            const auto bit = [a](int number) { return (a >> number & 1) != 0; };
            m.intState = {.IE = was(0), .M55 = was(1), .M65 = was(2), .M75 = was(3), .R75 = was(4)};
            m.SOD = was(5);
            sim(a);
            const InterruptState expected{.IE = was(0),
                                          .M55 = bit(3) ? bit(0) : was(1),
                                          .M65 = bit(3) ? bit(1) : was(2),
                                          .M75 = bit(3) ? bit(2) : was(3),
                                          .R75 = !bit(4) && was(4)};
            ASSERT_EQ(m.intState, expected) << a << ' ' << state;
            ASSERT_EQ(m.SOD, bit(6) ? bit(7) : was(5)) << a << ' ' << state;
            ASSERT_EQ(m.A, a);
        }
    }
}

// --- reset ---

TEST_F(InterruptsTest, ResetClearsRegistersAndInterruptsAndNothingElse) {
    std::mt19937 random(85);
    randomise(m, random);
    m.SID = m.SOD = true;
    m.PC = 65538;
    const auto expected = std::make_unique<MachineState>(m);
    static_cast<Registers&>(*expected) = Registers{};
    expected->intState = {.IE = false, .M55 = true, .M65 = true, .M75 = true, .R75 = false};
    reset(m);
    EXPECT_EQ(differences(m, *expected), "");
}

TEST_F(InterruptsTest, TheFirstPushAfterAResetWritesAt65535And65534) {
    place(m, 0, {0xE5});  // PUSH H
    m.SP = 0x1234;
    reset(m);
    EjecutaPASO(m, host);
    EXPECT_EQ(host.memoryWrites, (std::vector<Write>{{65535, 0}, {65534, 0}}));
}

// --- TRAP and the RST lines ---

TEST_F(InterruptsTest, TrapAndTheRstLinesHaveTheirVectors) {
    EXPECT_EQ(vector::trap, 36);
    EXPECT_EQ(vector::rst55, 44);
    EXPECT_EQ(vector::rst65, 52);
    EXPECT_EQ(vector::rst75, 60);
}

TEST_F(InterruptsTest, AcceptanceDisablesAndCallsAndLeavesMasksAndLatch) {
    for (const std::int32_t address : {vector::trap, vector::rst55, vector::rst65}) {
        std::mt19937 random(static_cast<unsigned>(address));
        randomise(m, random);
        m.PC = 0x1234;
        m.SP = 0x2000;
        m.intState = {.IE = true, .M55 = true, .M65 = true, .M75 = true, .R75 = false};
        const auto expected = std::make_unique<MachineState>(m);
        expected->intState.IE = false;
        expected->PC = address;
        expected->SP = 0x1FFE;
        expected->mem[0x1FFF] = 0x12;
        expected->mem[0x1FFE] = 0x34;
        acceptInterrupt(m, host, address);
        EXPECT_EQ(differences(m, *expected), "");
    }
}

TEST_F(InterruptsTest, Rst75SetsItsLatchAndRimShowsItUntilASimWithBit4) {
    m.PC = 0x1234;
    m.SP = 0x2000;
    m.intState = {.IE = true};
    acceptRst75(m, host);
    EXPECT_EQ(m.PC, 60);
    EXPECT_EQ(host.memoryWrites, (std::vector<Write>{{0x1FFF, 0x12}, {0x1FFE, 0x34}}));
    EXPECT_EQ(m.intState, (InterruptState{.R75 = true}));
    EXPECT_EQ(rim(), 16);
    sim(8);
    EXPECT_EQ(rim(), 16);
    sim(16);
    EXPECT_EQ(rim(), 0);
}

TEST_F(InterruptsTest, Rst75PushesAgainWhileItsLatchIsSet) {
    m.SP = 0x2000;
    m.PC = 0x1234;
    acceptRst75(m, host);
    acceptRst75(m, host);
    EXPECT_EQ(m.SP, 0x1FFC);
    EXPECT_EQ(m.mem[0x1FFC], 60);
    EXPECT_TRUE(m.intState.R75);
}

TEST_F(InterruptsTest, ALineAboveTheTopFailsWithError6AfterItsStateHasChanged) {
    m.PC = 65536;
    m.SP = 0x2000;
    m.intState = {.IE = true};
    EXPECT_EQ(errorOf([this] { acceptRst75(m, host); }), overflowError);
    EXPECT_EQ(m.intState, (InterruptState{.R75 = true}));
    EXPECT_EQ(m.SP, 0x1FFF);
    EXPECT_TRUE(host.memoryWrites.empty());
}

// --- INTR ---

TEST_F(InterruptsTest, IntrWithRst7PushesThePcItselfAndJumpsTo56) {
    place(m, 0x1234, {0x3E});
    m.PC = 0x1234;
    m.SP = 0x2000;
    m.intState.IE = true;
    requestIntr(m, host, "FF");
    EXPECT_EQ(m.PC, 56);
    EXPECT_EQ(host.memoryWrites, (std::vector<Write>{{0x1FFF, 0x12}, {0x1FFE, 0x34}}));
    EXPECT_EQ(m.mem[0x1234], 0x3E);
    EXPECT_FALSE(m.intState.IE);
}

TEST_F(InterruptsTest, IntrWithEveryRstPushesAndJumps) {
    for (int n = 0; n < 8; ++n) {
        m.PC = 0x1234;
        m.SP = 0x2000;
        requestIntr(m, host, hexa(0xC7 + n * 8, 2));
        EXPECT_EQ(m.PC, n * 8);
        EXPECT_EQ(m.mem[0x1FFF] * 256 + m.mem[0x1FFE], 0x1234);
    }
}

TEST_F(InterruptsTest, IntrWithInrAIncrementsAAndLeavesPc) {
    place(m, 0x1234, {0x76});
    m.PC = 0x1234;
    m.A = 0x41;
    requestIntr(m, host, "3c");
    EXPECT_EQ(m.A, 0x42);
    EXPECT_EQ(m.PC, 0x1234);
    EXPECT_EQ(m.mem[0x1234], 0x76);
    EXPECT_EQ(host.halts, 0);
    EXPECT_TRUE(host.memoryWrites.empty()) << "the borrowed cell is not shown";
}

TEST_F(InterruptsTest, IntrTakesOperandsFromBehindPcAsTheyStand) {
    place(m, 0x1234, {0x00, 0x78, 0x56});
    m.PC = 0x1234;
    m.SP = 0x2000;
    requestIntr(m, host, "CD");  // CALL
    EXPECT_EQ(m.PC, 0x5678);
    EXPECT_EQ(m.mem[0x1FFF] * 256 + m.mem[0x1FFE], 0x1234);
}

TEST_F(InterruptsTest, IntrPutsTheBorrowedByteBackEvenIfTheInstructionWroteIt) {
    place(m, 0x1234, {0x3E});
    m.PC = 0x1234;
    m.H = 0x12;
    m.L = 0x34;
    m.recomputePairs();
    m.A = 0x55;
    requestIntr(m, host, "77");  // MOV M,A, into the borrowed cell
    EXPECT_EQ(host.memoryWrites, (std::vector<Write>{{0x1234, 0x55}})) << "the grid is shown the write";
    EXPECT_EQ(m.mem[0x1234], 0x3E);
}

TEST_F(InterruptsTest, IntrPutsTheBorrowedByteBackEvenIfThePushWroteIt) {
    place(m, 0x1FFE, {0x3E});
    m.PC = 0x1FFE;
    m.SP = 0x2000;
    requestIntr(m, host, "FF");
    EXPECT_EQ(host.memoryWrites, (std::vector<Write>{{0x1FFF, 0x1F}, {0x1FFE, 0xFE}}));
    EXPECT_EQ(m.mem[0x1FFE], 0x3E);
}

TEST_F(InterruptsTest, IntrPutsTheByteBackWhereItWasTakenWhenTheInstructionJumps) {
    place(m, 0x1234, {0x3E, 0x00, 0x40});
    m.PC = 0x1234;
    requestIntr(m, host, "C3");  // JMP 4000
    EXPECT_EQ(m.PC, 0x4000);
    EXPECT_EQ(m.mem[0x1234], 0x3E);
    EXPECT_EQ(m.mem[0x4000], 0x00);
}

TEST_F(InterruptsTest, IntrWithEiLeavesInterruptsEnabled) {
    requestIntr(m, host, "FB");
    EXPECT_TRUE(m.intState.IE);
}

TEST_F(InterruptsTest, IntrIsServedWhateverIeSays) {
    m.intState.IE = false;
    m.A = 1;
    requestIntr(m, host, "3C");
    EXPECT_EQ(m.A, 2);
}

TEST_F(InterruptsTest, IntrWithHltHaltsInPlace) {
    place(m, 0x1234, {0x3E});
    m.PC = 0x1234;
    m.SP = 0x2000;
    host.onHalt = [this] {
        EXPECT_EQ(m.PC, 0x1234);
        EXPECT_EQ(m.mem[0x1234], 0x76);
        acceptInterrupt(m, host, vector::trap);
    };
    requestIntr(m, host, "76");
    EXPECT_EQ(host.halts, 1);
    EXPECT_EQ(m.PC, 36);
    EXPECT_EQ(m.mem[0x1FFF] * 256 + m.mem[0x1FFE], 0x1234);
    EXPECT_EQ(m.mem[0x1234], 0x3E);
}

TEST_F(InterruptsTest, IntrChosenInTheHaltDialogThatAnIntrOpenedPutsEveryByteBack) {
    place(m, 0x1234, {0x3E});
    m.PC = 0x1234;
    m.SP = 0x2000;
    host.onHalt = [this] {
        host.onHalt = nullptr;
        requestIntr(m, host, "CF");  // RST 1
        EXPECT_EQ(m.mem[0x1234], 0x76);
    };
    requestIntr(m, host, "76");
    EXPECT_EQ(m.PC, 8);
    EXPECT_EQ(m.mem[0x1234], 0x3E);
}

TEST_F(InterruptsTest, IntrAfterAHaltPushesTheAddressBehindIt) {
    place(m, 0x1234, {0x76, 0x3E});
    m.PC = 0x1234;
    m.SP = 0x2000;
    host.onHalt = [this] { requestIntr(m, host, "FF"); };
    EjecutaPASO(m, host);
    EXPECT_EQ(m.PC, 56);
    EXPECT_EQ(m.mem[0x1FFF] * 256 + m.mem[0x1FFE], 0x1235);
    EXPECT_EQ(m.mem[0x1235], 0x3E);
}

TEST_F(InterruptsTest, IntrWithAVectorAbove255FailsWithError6BeforeAnythingIsExecuted) {
    for (const char* vectorText : {"100", "FFF", "FFFF", "12345"}) {
        place(m, 0x1234, {0x3C});
        m.PC = 0x1234;
        m.intState.IE = true;
        const auto expected = std::make_unique<MachineState>(m);
        expected->intState.IE = false;
        EXPECT_EQ(errorOf([&] { requestIntr(m, host, vectorText); }), overflowError) << vectorText;
        EXPECT_EQ(differences(m, *expected), "") << vectorText;
    }
}

TEST_F(InterruptsTest, IntrReadsTheVectorAsHexadecimalText) {
    m.PC = 0x1234;
    requestIntr(m, host, " 3 C ");
    EXPECT_EQ(m.A, 1);
    const auto expected = std::make_unique<MachineState>(m);
    requestIntr(m, host, "");  // NOP
    EXPECT_EQ(differences(m, *expected), "");
}

TEST_F(InterruptsTest, IntrAtTheTopPushes65535) {
    m.PC = 0xFFFF;
    m.SP = 0x2000;
    requestIntr(m, host, "FF");
    EXPECT_EQ(m.PC, 56);
    EXPECT_EQ(m.mem[0x1FFF] * 256 + m.mem[0x1FFE], 0xFFFF);
}

TEST_F(InterruptsTest, IntrAbove65535FailsWithError9) {
    for (const std::int32_t pc : {65536, 65537, 65538}) {
        m.PC = pc;
        EXPECT_EQ(errorOf([this] { requestIntr(m, host, "00"); }), subscriptError) << pc;
        EXPECT_EQ(m.PC, pc);
    }
}

TEST_F(InterruptsTest, IntrAt0000LeavesTheVectorInTheMirrorUntilTheNextRefresh) {
    m.mem[0] = 0x3E;
    requestIntr(m, host, "3C");
    EXPECT_EQ(m.mem[0], 0x3E);
    EXPECT_EQ(m.mem[0x10000], 0x3C);
}

TEST_F(InterruptsTest, EiTakesEffectAtOnce) {
    place(m, 0, {0xFB, 0x20});  // EI; RIM
    EjecutaPASO(m, host);
    EXPECT_TRUE(m.intState.IE);
    EjecutaPASO(m, host);
    EXPECT_EQ(m.A, 8);
}

}  // namespace
}  // namespace tavinor::test
