// The stepper where memory ends and where the order of its actions shows.

#include <gtest/gtest.h>

#include <memory>
#include <vector>

#include "machine/Stepper.h"
#include "tests/support/Bits.h"
#include "tests/support/Differences.h"
#include "tests/support/Errors.h"
#include "tests/support/Machines.h"
#include "tests/support/TestHost.h"

namespace tavinor::test {
namespace {

class StepperEdgesTest : public ::testing::Test {
  protected:
    int step() {
        return errorOf([this] { EjecutaPASO(m, host); });
    }

    std::unique_ptr<MachineState> machine = std::make_unique<MachineState>();
    MachineState& m = *machine;
    TestHost host{m};
};

TEST_F(StepperEdgesTest, MovMMDoesNotExistItsCodeHalts) {
    place(m, 0x100, {0x76});
    m.PC = 0x100;
    EXPECT_EQ(step(), noError);
    EXPECT_EQ(host.halts, 1);
    EXPECT_EQ(m.PC, 0x101);
    EXPECT_TRUE(host.memoryWrites.empty());
}

TEST_F(StepperEdgesTest, HaltSeesThePcBehindItAndItsChangesArePairedAfterwards) {
    place(m, 0x100, {0x76});
    m.PC = 0x100;
    host.onHalt = [this] {
        EXPECT_EQ(m.PC, 0x101);
        m.B = 0x12;
        m.C = 0x34;
        m.PC = 0x4000;
    };
    EXPECT_EQ(step(), noError);
    EXPECT_EQ(m.PC, 0x4000);
    EXPECT_EQ(m.BC, 0x1234);
}

TEST_F(StepperEdgesTest, AnErrorInsideTheHaltGoesUpAndLeavesThePairs) {
    place(m, 0x100, {0x76});
    m.PC = 0x100;
    host.onHalt = [this] {
        m.B = 0x12;
        m.storeMemory(0, 256);
    };
    EXPECT_EQ(step(), overflowError);
    EXPECT_EQ(m.PC, 0x101);
    EXPECT_EQ(m.BC, 0);
}

TEST_F(StepperEdgesTest, PushPswStoresFAtSpAndAAboveIt) {
    place(m, 0x100, {0xF5});  // PUSH PSW
    m.PC = 0x100;
    m.SP = 0x2000;
    m.A = 0x12;
    m.F = 85;
    EXPECT_EQ(step(), noError);
    EXPECT_EQ(m.SP, 0x1FFE);
    EXPECT_EQ(m.mem[0x1FFE], 85);
    EXPECT_EQ(m.mem[0x1FFF], 18);
    EXPECT_EQ(host.memoryWrites, (std::vector<Write>{{0x1FFF, 18}, {0x1FFE, 85}}));
}

TEST_F(StepperEdgesTest, PopPswLoadsAllEightBitsOfF) {
    place(m, 0x100, {0xF1});  // POP PSW
    place(m, 0x2000, {0xFF, 0x00});
    m.PC = 0x100;
    m.SP = 0x2000;
    EXPECT_EQ(step(), noError);
    EXPECT_EQ(m.F, 0xFF);
    EXPECT_EQ(m.A, 0x00);
    EXPECT_EQ(m.PSW, 0x00FF);
}

TEST_F(StepperEdgesTest, PushWithSp0GoesTo65535And65534) {
    place(m, 0x100, {0xC5});  // PUSH B
    m.PC = 0x100;
    m.B = 0x12;
    m.C = 0x34;
    EXPECT_EQ(step(), noError);
    EXPECT_EQ(m.SP, 65534);
    EXPECT_EQ(m.mem[65535], 0x12);
    EXPECT_EQ(m.mem[65534], 0x34);
}

TEST_F(StepperEdgesTest, PushWithSp1PutsTheHighByteAt0AndTheLowByteAt65535) {
    place(m, 0x100, {0xC5});  // PUSH B
    m.PC = 0x100;
    m.SP = 1;
    m.B = 0x12;
    m.C = 0x34;
    EXPECT_EQ(step(), noError);
    EXPECT_EQ(m.SP, 65535);
    EXPECT_EQ(host.memoryWrites, (std::vector<Write>{{0, 0x12}, {65535, 0x34}}));
}

TEST_F(StepperEdgesTest, PopWithSp65535TakesTheHighByteFromTheRealCell0) {
    place(m, 0x100, {0xC1});  // POP B
    place(m, 0xFFFF, {0x34, 0x12});
    m.mem[0x10000] = 0x99;
    m.PC = 0x100;
    m.SP = 65535;
    EXPECT_EQ(step(), noError);
    EXPECT_EQ(m.BC, 0x1234);
    EXPECT_EQ(m.SP, 1);
}

TEST_F(StepperEdgesTest, ReturnWithSp65535TakesTheHighByteFromTheRealCell0) {
    place(m, 0x100, {0xC9});  // RET
    place(m, 0xFFFF, {0x34, 0x12});
    m.mem[0x10000] = 0x99;
    m.PC = 0x100;
    m.SP = 65535;
    EXPECT_EQ(step(), noError);
    EXPECT_EQ(m.PC, 0x1234);
    EXPECT_EQ(m.SP, 1);
}

TEST_F(StepperEdgesTest, LhldAt65535UsesTheRealCell0) {
    place(m, 0x100, {0x2A, 0xFF, 0xFF});  // LHLD FFFF
    place(m, 0xFFFF, {0x34, 0x12});
    m.mem[0x10000] = 0x99;
    m.PC = 0x100;
    EXPECT_EQ(step(), noError);
    EXPECT_EQ(m.HL, 0x1234);
}

TEST_F(StepperEdgesTest, ShldAt65535WritesCell0AndNotItsMirror) {
    place(m, 0x100, {0x22, 0xFF, 0xFF});  // SHLD FFFF
    m.PC = 0x100;
    m.H = 0x12;
    m.L = 0x34;
    EXPECT_EQ(step(), noError);
    EXPECT_EQ(host.memoryWrites, (std::vector<Write>{{65535, 0x34}, {0, 0x12}}));
    EXPECT_EQ(m.mem[0x10000], 0) << "the mirror lags";
}

TEST_F(StepperEdgesTest, XthlWithSp65535ExchangesWithTheRealCell0) {
    place(m, 0x100, {0xE3});  // XTHL
    place(m, 0xFFFF, {0x34, 0x12});
    m.mem[0x10000] = 0x99;
    m.PC = 0x100;
    m.SP = 65535;
    m.H = 0xAB;
    m.L = 0xCD;
    EXPECT_EQ(step(), noError);
    EXPECT_EQ(m.HL, 0x1234);
    EXPECT_EQ(m.SP, 65535);
    EXPECT_EQ(host.memoryWrites, (std::vector<Write>{{0, 0xAB}, {65535, 0xCD}}));
}

TEST_F(StepperEdgesTest, InxSpAt65535Gives0) {
    place(m, 0x100, {0x33});  // INX SP
    m.PC = 0x100;
    m.SP = 65535;
    EXPECT_EQ(step(), noError);
    EXPECT_EQ(m.SP, 0);
}

TEST_F(StepperEdgesTest, AnUndefinedCodeAdvancesByOneAndChangesNothingElse) {
    for (const int opcode : undefinedOpcodes) {
        place(m, 0x100, {opcode, 0xFF, 0xFF});
        m.PC = 0x100;
        const auto before = std::make_unique<MachineState>(m);
        before->PC = 0x101;
        EXPECT_EQ(step(), noError);
        EXPECT_EQ(differences(m, *before), "") << opcode;
    }
}

// --- the top of memory ---

TEST_F(StepperEdgesTest, AnInstructionAt65535LeavesPc65536AndTheNextStepFailsWithError9) {
    place(m, 0xFFFF, {0x00});  // NOP
    m.PC = 0xFFFF;
    EXPECT_EQ(step(), noError);
    EXPECT_EQ(m.PC, 65536);
    EXPECT_EQ(step(), subscriptError);
    EXPECT_EQ(m.PC, 65536);
}

TEST_F(StepperEdgesTest, LongerInstructionsAt65535LeavePc65537And65538) {
    place(m, 0xFFFF, {0x3E});  // MVI A
    m.PC = 0xFFFF;
    EXPECT_EQ(step(), noError);
    EXPECT_EQ(m.PC, 65537);
    place(m, 0xFFFF, {0x01});  // LXI B
    m.PC = 0xFFFF;
    EXPECT_EQ(step(), noError);
    EXPECT_EQ(m.PC, 65538);
}

TEST_F(StepperEdgesTest, AStepFromPc65536OrMoreFailsWithError9WhateverTheOpcode) {
    for (int opcode = 0; opcode < 256; ++opcode) {
        for (const std::int32_t pc : {65536, 65537, 65538, 70000, -1}) {
            m.mem[0x10000] = m.mem[0x10001] = static_cast<std::uint8_t>(opcode);
            m.PC = pc;
            const auto before = std::make_unique<MachineState>(m);
            ASSERT_EQ(step(), subscriptError) << opcode << ' ' << pc;
            ASSERT_EQ(differences(m, *before), "") << opcode << ' ' << pc;
        }
    }
    EXPECT_TRUE(host.memoryWrites.empty());
    EXPECT_EQ(host.halts, 0);
}

/// A call of three bytes from FFFD, FFFE or FFFF, or a restart from FFFF: the return address has 17 bits.
class CallAtTheTopTest : public StepperEdgesTest {
  protected:
    void expectOverflow(int opcode, std::int32_t pc, int f, int length) {
        place(m, pc, {opcode});
        m.PC = pc;
        m.SP = 0x2000;
        m.F = static_cast<std::uint8_t>(f);
        m.recomputePairs();
        m.B = 0x12;  // BC is out of date now, and stays so
        m.synmem();
        const auto expected = std::make_unique<MachineState>(m);
        expected->PC = pc + length;
        expected->SP = 0x1FFF;
        EXPECT_EQ(step(), overflowError) << opcode << ' ' << pc;
        EXPECT_EQ(differences(m, *expected), "") << opcode << ' ' << pc;
        EXPECT_EQ(m.BC, 0);
        EXPECT_TRUE(host.memoryWrites.empty());
        m.B = 0;
        place(m, pc, {0});
    }
};

TEST_F(CallAtTheTopTest, CallFrom65533FailsWithError6AfterOneDecreaseOfSp) {
    for (const std::int32_t pc : {0xFFFD, 0xFFFE, 0xFFFF}) expectOverflow(0xCD, pc, 0, 3);
}

TEST_F(CallAtTheTopTest, RestartAt65535FailsWithError6AfterOneDecreaseOfSp) {
    for (int n = 0; n < 8; ++n) expectOverflow(0xC7 + n * 8, 0xFFFF, 0, 1);
}

TEST_F(CallAtTheTopTest, ATakenConditionalCallFailsAnUntakenOneDoesNot) {
    for (int condition = 0; condition < 8; ++condition) {
        const bool whenSet = condition % 2 == 1;
        const int opcode = 0xC4 + condition * 8;
        for (const std::int32_t pc : {0xFFFD, 0xFFFE, 0xFFFF}) {
            expectOverflow(opcode, pc, whenSet ? 0xFF : 0x00, 3);
            place(m, pc, {opcode});
            m.PC = pc;
            m.SP = 0x2000;
            m.F = whenSet ? 0x00 : 0xFF;
            EXPECT_EQ(step(), noError);
            EXPECT_EQ(m.PC, pc + 3);
            EXPECT_EQ(m.SP, 0x2000);
            place(m, pc, {0});
        }
    }
}

TEST_F(CallAtTheTopTest, CallFrom65532IsTheLastThatReturns) {
    place(m, 0xFFFC, {0xCD, 0x34, 0x12});  // CALL 1234
    m.PC = 0xFFFC;
    m.SP = 0x2000;
    EXPECT_EQ(step(), noError);
    EXPECT_EQ(m.PC, 0x1234);
    EXPECT_EQ(host.memoryWrites, (std::vector<Write>{{0x1FFF, 0xFF}, {0x1FFE, 0xFF}}));
}

TEST_F(CallAtTheTopTest, JumpsReturnsAndPchlAtTheTopAreNoErrors) {
    place(m, 0xFFFF, {0xC3, 0x34, 0x12});  // JMP 1234
    m.synmem();
    m.PC = 0xFFFF;
    EXPECT_EQ(step(), noError);
    EXPECT_EQ(m.PC, 0x1234);
    place(m, 0xFFFF, {0xC9});  // RET
    m.PC = 0xFFFF;
    m.SP = 0x2000;
    EXPECT_EQ(step(), noError);
    EXPECT_EQ(m.PC, 0);
    place(m, 0xFFFF, {0xE9});  // PCHL
    m.PC = 0xFFFF;
    EXPECT_EQ(step(), noError);
    EXPECT_EQ(m.PC, m.HL);
}

// --- the mirror ---

TEST_F(StepperEdgesTest, TheFetchComesBeforeTheMirrorIsRefreshed) {
    place(m, 0xFFFF, {0x3E});  // MVI A, whose operand is the mirror of cell 0
    m.mem[0] = 0x11;
    m.mem[0x10000] = 0x22;
    m.PC = 0xFFFF;
    EXPECT_EQ(step(), noError);
    EXPECT_EQ(m.A, 0x22) << "as of the last refresh";
    EXPECT_EQ(m.mem[0x10000], 0x11) << "refreshed on the way";
    m.PC = 0xFFFF;
    EXPECT_EQ(step(), noError);
    EXPECT_EQ(m.A, 0x11);
}

TEST_F(StepperEdgesTest, AnInstructionThatWritesCell0LeavesTheMirrorStale) {
    place(m, 0x100, {0x32, 0x00, 0x00});  // STA 0000
    m.PC = 0x100;
    m.A = 0x77;
    EXPECT_EQ(step(), noError);
    EXPECT_EQ(m.mem[0], 0x77);
    EXPECT_EQ(m.mem[0x10000], 0x00);
}

TEST_F(StepperEdgesTest, AnInstructionReadsItsOperandsBeforeItWritesThem) {
    place(m, 0x100, {0x22, 0x01, 0x01});  // SHLD 0101, over its own operand
    m.PC = 0x100;
    m.H = 0xAB;
    m.L = 0xCD;
    EXPECT_EQ(step(), noError);
    EXPECT_EQ(host.memoryWrites, (std::vector<Write>{{0x101, 0xCD}, {0x102, 0xAB}}));
    EXPECT_EQ(m.PC, 0x103);
}

TEST_F(StepperEdgesTest, PairsThatWereOutOfDateAgreeAfterAnyInstruction) {
    for (int opcode = 0; opcode < 256; ++opcode) {
        place(m, 0x100, {opcode, 0x00, 0x20});
        m.PC = 0x100;
        m.SP = 0x3000;
        m.PSW = m.BC = m.DE = m.HL = 0x2222;
        m.A = 1, m.B = 2, m.C = 3, m.D = 4, m.E = 5, m.F = 0, m.H = 6, m.L = 7;
        ASSERT_EQ(step(), noError) << opcode;
        ASSERT_EQ(m.PSW, m.A * 256 + m.F) << opcode;
        ASSERT_EQ(m.BC, m.B * 256 + m.C) << opcode;
        ASSERT_EQ(m.DE, m.D * 256 + m.E) << opcode;
        ASSERT_EQ(m.HL, m.H * 256 + m.L) << opcode;
    }
}

TEST_F(StepperEdgesTest, PairInstructionsWorkOnThePairAndNotOnItsRegisters) {
    place(m, 0x100, {0x03, 0x1B, 0x23});  // INX B; DCX D; INX H
    m.PC = 0x100;
    m.BC = m.DE = m.HL = 0x4000;
    EXPECT_EQ(step(), noError);
    EXPECT_EQ(m.BC, 0x4001);
    m.DE = m.HL = 0x4000;
    EXPECT_EQ(step(), noError);
    EXPECT_EQ(m.DE, 0x3FFF);
    m.HL = 0x4000;
    EXPECT_EQ(step(), noError);
    EXPECT_EQ(m.HL, 0x4001);
}

}  // namespace
}  // namespace tavinor::test
