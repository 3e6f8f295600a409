// The 16-bit operations: INX, DCX, DAD, and the stack side of CALL and RET.

#include <gtest/gtest.h>

#include <memory>

#include "machine/Alu.h"
#include "tests/support/Bits.h"
#include "tests/support/Differences.h"
#include "tests/support/Errors.h"
#include "tests/support/Machines.h"
#include "tests/support/TestHost.h"

namespace tavinor {
namespace {

using test::rippleAdd;
using test::Sum;
using test::Write;

class AluPairTest : public ::testing::Test {
  protected:
    void setHL(int value) {
        m.H = static_cast<std::uint8_t>(value / 256);
        m.L = static_cast<std::uint8_t>(value % 256);
        m.HL = value;
    }

    std::unique_ptr<MachineState> machine = std::make_unique<MachineState>();
    MachineState& m = *machine;
    test::TestHost host{m};
};

TEST_F(AluPairTest, IncrementAndDecrementGoRoundAtBothEnds) {
    std::int32_t cell = 65535;
    OPINX(cell);
    EXPECT_EQ(cell, 0);
    OPDCX(cell);
    EXPECT_EQ(cell, 65535);
}

TEST_F(AluPairTest, IncrementAndDecrementOfEveryValue) {
    for (std::int32_t value = 0; value <= 65535; ++value) {
        std::int32_t cell = value;
        OPINX(cell);
        ASSERT_EQ(cell, static_cast<std::uint16_t>(value + 1));
        cell = value;
        OPDCX(cell);
        ASSERT_EQ(cell, static_cast<std::uint16_t>(value - 1));
    }
}

TEST_F(AluPairTest, AddingPairsAgreesWithTheBitwiseAdderOverAGrid) {
    for (const int f : {0x00, 0x01, 0xFE, 0xFF}) {
        for (int x = 0; x < 65536; x += 257 * 3) {
            for (int y = 0; y < 65536; y += 251) {
                m.F = static_cast<std::uint8_t>(f);
                setHL(x);
                OPDAD(m, y);
                const Sum low = rippleAdd(x % 256, y % 256, false);
                const Sum high = rippleAdd(x / 256, y / 256, low.carry);
                ASSERT_EQ(m.L, low.value) << x << ' ' << y;
                ASSERT_EQ(m.H, high.value) << x << ' ' << y;
                ASSERT_EQ(m.HL, high.value * 256 + low.value);
                ASSERT_EQ(m.F, (f & 0xFE) + (high.carry ? 1 : 0)) << x << ' ' << y;
            }
        }
    }
}

TEST_F(AluPairTest, Adding1To65535GivesZeroWithCyAndLeavesZAlone) {
    for (const int z : {0, flag::Z}) {
        setHL(65535);
        m.F = static_cast<std::uint8_t>(z);
        OPDAD(m, 1);
        EXPECT_EQ(m.HL, 0);
        EXPECT_EQ(m.H, 0);
        EXPECT_EQ(m.L, 0);
        EXPECT_EQ(m.F, z | flag::CY);
    }
}

TEST_F(AluPairTest, AddingUpTo65535ClearsCy) {
    setHL(0x8000);
    m.F = 0xFF;
    OPDAD(m, 0x7FFF);
    EXPECT_EQ(m.HL, 0xFFFF);
    EXPECT_EQ(m.F, 0xFE);
}

TEST_F(AluPairTest, AddingHLToItselfDoublesIt) {
    setHL(0x8001);
    OPDAD(m, m.HL);
    EXPECT_EQ(m.HL, 0x0002);
    EXPECT_EQ(m.F, flag::CY);
}

TEST_F(AluPairTest, CallStoresHighByteFirstAndItsLowByteAtTheNewSP) {
    m.PC = 0x1234;
    m.SP = 0x2000;
    OPCALL(m, host, 0xABCD);
    EXPECT_EQ(m.PC, 0xABCD);
    EXPECT_EQ(m.SP, 0x1FFE);
    EXPECT_EQ(host.memoryWrites, (std::vector<Write>{{0x1FFF, 0x12}, {0x1FFE, 0x34}}));
}

TEST_F(AluPairTest, CallWithAnEmptyStackWritesAtTheTopOfMemory) {
    m.PC = 0x1234;
    OPCALL(m, host, 0);
    EXPECT_EQ(m.SP, 0xFFFE);
    EXPECT_EQ(host.memoryWrites, (std::vector<Write>{{0xFFFF, 0x12}, {0xFFFE, 0x34}}));
}

TEST_F(AluPairTest, CallFromPC65536FailsWithOverflowAfterOneDecreaseOfSP) {
    for (const int pc : {65536, 65537, 65538}) {
        m.PC = pc;
        m.SP = 0;
        EXPECT_EQ(test::errorOf([this] { OPCALL(m, host, 0x1234); }), test::overflowError);
        EXPECT_EQ(m.SP, 65535);
        EXPECT_EQ(m.PC, pc);
    }
    EXPECT_TRUE(host.memoryWrites.empty());
}

TEST_F(AluPairTest, ReturnTakesWhatCallStoredFromAnySP) {
    for (const int sp : {0x0000, 0x0001, 0x0002, 0x2000, 0xFFFE, 0xFFFF}) {
        m.PC = 0xBEEF;
        m.SP = sp;
        OPCALL(m, host, 0x0100);
        m.mem[0x10000] = 0x99;  // the mirror is not the stack
        OPRET(m, m);
        EXPECT_EQ(m.PC, 0xBEEF);
        EXPECT_EQ(m.SP, sp);
    }
}

TEST_F(AluPairTest, ReturnWithSP65535TakesTheHighByteFromZero) {
    test::place(m, 0xFFFF, {0x34, 0x12});
    m.SP = 0xFFFF;
    OPRET(m, m);
    EXPECT_EQ(m.PC, 0x1234);
    EXPECT_EQ(m.SP, 1);
}

}  // namespace
}  // namespace tavinor
