#include "machine/MachineState.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>

#include "machine/Interrupts.h"
#include "machine/Stepper.h"
#include "tests/support/Differences.h"
#include "tests/support/Errors.h"
#include "tests/support/Machines.h"
#include "tests/support/TestHost.h"

namespace tavinor {
namespace {

using test::errorOf;
using test::noError;
using test::overflowError;
using test::subscriptError;

class MachineStateTest : public ::testing::Test {
  protected:
    std::unique_ptr<MachineState> machine = std::make_unique<MachineState>();
    MachineState& m = *machine;
    test::TestHost host{m};
};

TEST_F(MachineStateTest, IsAllZeroWhenCreated) {
    EXPECT_EQ(static_cast<Registers&>(m), Registers{});
    EXPECT_EQ(m.intState, InterruptState{});
    EXPECT_TRUE(std::all_of(m.mem.begin(), m.mem.end(), [](int cell) { return cell == 0; }));
    EXPECT_TRUE(std::all_of(m.port.begin(), m.port.end(), [](int cell) { return cell == 0; }));
    EXPECT_FALSE(m.SID);
    EXPECT_FALSE(m.SOD);
}

TEST_F(MachineStateTest, HasTwoCellsBeyondTheTopOfMemory) {
    EXPECT_EQ(m.mem.size(), 65538U);
    EXPECT_EQ(m.port.size(), 256U);
}

TEST_F(MachineStateTest, AfterTheFirstResetTheThreeLinesAreMasked) {
    reset(m);
    EXPECT_EQ(static_cast<Registers&>(m), Registers{});
    EXPECT_EQ(m.intState, (InterruptState{.IE = false, .M55 = true, .M65 = true, .M75 = true, .R75 = false}));
    EXPECT_FALSE(m.SID);
    EXPECT_FALSE(m.SOD);
}

TEST_F(MachineStateTest, PairsHoldHighByteTimes256PlusLowByte) {
    m.A = 0x12, m.F = 0x34, m.B = 0x56, m.C = 0x78, m.D = 0x9A, m.E = 0xBC, m.H = 0xDE, m.L = 0xF0;
    m.recomputePairs();
    EXPECT_EQ(m.PSW, 0x1234);
    EXPECT_EQ(m.BC, 0x5678);
    EXPECT_EQ(m.DE, 0x9ABC);
    EXPECT_EQ(m.HL, 0xDEF0);
}

TEST_F(MachineStateTest, SynmemCopiesTheFirstTwoCellsAndNothingElse) {
    for (std::size_t i = 0; i < m.mem.size(); ++i) m.mem[i] = static_cast<std::uint8_t>(i * 7 + i / 256 + 1);
    m.mem[65536] = 0xEE;
    m.mem[65537] = 0xDD;
    const auto expected = std::make_unique<MachineState>(m);
    expected->mem[65536] = expected->mem[0];
    expected->mem[65537] = expected->mem[1];
    m.synmem();
    EXPECT_EQ(test::differences(m, *expected), "");
    EXPECT_NE(m.mem[65536], 0xEE);
    EXPECT_NE(m.mem[65537], 0xDD);
}

TEST_F(MachineStateTest, TheMirrorLagsBehindAWriteUntilTheNextSynmem) {
    m.mem[0] = 0x11;
    m.synmem();
    host.savmem(0, 0x3E);
    EXPECT_EQ(m.mem[65536], 0x11);
    m.synmem();
    EXPECT_EQ(m.mem[65536], 0x3E);
}

TEST_F(MachineStateTest, AWordReadAtFFFFSeesTheTopByteAndTheFirstOneAfterSynmem) {
    m.mem[0] = 0x3E;
    m.mem[1] = 0x12;
    m.mem[0xFFFF] = 0x77;
    m.synmem();
    EXPECT_EQ(m.mem[0xFFFF], 0x77);
    EXPECT_EQ(m.mem[0x10000], 0x3E);
    EXPECT_EQ(m.mem[0x10001], 0x12);
}

TEST_F(MachineStateTest, AWrappedReadGoesRoundTheTopPastTheMirror) {
    test::place(m, 0xFFFF, {0x77, 0x34, 0x12});
    m.mem[0x10000] = m.mem[0x10001] = 0xEE;
    EXPECT_EQ(m.wrapped(0xFFFF), 0x77);
    EXPECT_EQ(m.wrapped(0x10000), 0x34);
    EXPECT_EQ(m.wrapped(0x10001), 0x12);
    EXPECT_EQ(m.wrapped(0), 0x34);
}

TEST_F(MachineStateTest, OperandsOfAnOpcodeAtFFFFComeFromTheMirrorAsOfTheLastSynmem) {
    test::place(m, 0, {0x34, 0x12});
    m.synmem();
    test::place(m, 0, {0xFF, 0xFF});
    m.mem[0xFFFF] = 0x01;  // LXI B
    m.PC = 0xFFFF;
    EXPECT_EQ(errorOf([this] { EjecutaPASO(m, host); }), noError);
    EXPECT_EQ(m.BC, 0x1234);
}

TEST_F(MachineStateTest, AByteCellTakes0To255AndNothingElse) {
    m.storeMemory(0x1234, 255);
    EXPECT_EQ(m.mem[0x1234], 255);
    m.storePort(0x12, 255);
    EXPECT_EQ(m.port[0x12], 255);
    for (const std::int32_t value : {256, -1, 65536, -256}) {
        EXPECT_EQ(errorOf([&] { m.storeMemory(0x1234, value); }), overflowError) << value;
        EXPECT_EQ(errorOf([&] { m.storePort(0x12, value); }), overflowError) << value;
    }
    EXPECT_EQ(m.mem[0x1234], 255);
    EXPECT_EQ(m.port[0x12], 255);
}

TEST_F(MachineStateTest, MemoryHasTheAddresses0To65537) {
    for (const std::int32_t address : {0, 65535, 65536, 65537}) {
        m.storeMemory(address, 0xA5);
        EXPECT_EQ(m.mem[static_cast<std::size_t>(address)], 0xA5);
    }
    for (const std::int32_t address : {-1, 65538, 1 << 30}) {
        EXPECT_EQ(errorOf([&] { m.storeMemory(address, 1); }), subscriptError) << address;
    }
}

TEST_F(MachineStateTest, PortsHaveTheNumbers0To255) {
    for (const std::int32_t number : {0, 255}) {
        m.storePort(number, 0xA5);
        EXPECT_EQ(m.port[static_cast<std::size_t>(number)], 0xA5);
    }
    for (const std::int32_t number : {-1, 256}) {
        EXPECT_EQ(errorOf([&] { m.storePort(number, 1); }), subscriptError) << number;
    }
}

TEST_F(MachineStateTest, ErrorsCarryTheirNumbers) {
    EXPECT_EQ(static_cast<int>(RuntimeError(RuntimeError::Number::overflow).number()), 6);
    EXPECT_EQ(static_cast<int>(RuntimeError(RuntimeError::Number::subscript).number()), 9);
    EXPECT_STREQ(RuntimeError(RuntimeError::Number::overflow).what(), "overflow");
    EXPECT_STREQ(RuntimeError(RuntimeError::Number::subscript).what(), "subscript out of range");
}

}  // namespace
}  // namespace tavinor
