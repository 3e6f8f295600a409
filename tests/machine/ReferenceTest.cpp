// Every opcode against a second interpreter of another make, on random machines and at the ends of memory.

#include <gtest/gtest.h>

#include <memory>
#include <random>

#include "machine/MnemonicTable.h"
#include "machine/Stepper.h"
#include "tests/support/Differences.h"
#include "tests/support/Errors.h"
#include "tests/support/Machines.h"
#include "tests/support/ReferenceMachine.h"

namespace tavinor::test {
namespace {

constexpr std::array<std::int32_t, 7> endAddresses{0x0000, 0x0001, 0x7FFF, 0x8000, 0xFFFD, 0xFFFE, 0xFFFF};

class ReferenceTest : public ::testing::Test {
  protected:
    ReferenceTest() { randomise(*base, random); }

    std::int32_t anyAddress() { return static_cast<std::int32_t>(random() & 0xFFFF); }
    std::int32_t endAddress() { return endAddresses[random() % endAddresses.size()]; }

    /// New registers over the same memory.
    void shuffleRegisters() {
        for (std::uint8_t* cell : {&m.A, &m.B, &m.C, &m.D, &m.E, &m.F, &m.H, &m.L}) {
            *cell = static_cast<std::uint8_t>(random() & 255);
        }
        m.SP = anyAddress();
        m.PC = anyAddress();
        m.SID = (random() & 1) != 0;
        m.intState.R75 = (random() & 1) != 0;
    }

    void setPair(std::uint8_t& high, std::uint8_t& low, std::int32_t value) {
        high = static_cast<std::uint8_t>(value / 256);
        low = static_cast<std::uint8_t>(value % 256);
    }

    void setOperand(std::int32_t word) {
        m.mem[static_cast<std::size_t>(m.PC) + 1] = static_cast<std::uint8_t>(word % 256);
        m.mem[static_cast<std::size_t>(m.PC) + 2] = static_cast<std::uint8_t>(word / 256);
    }

    /// One step of both machines with `opcode` at PC: the same end, the same writes in the same order.
    void compareStep(int opcode, Advance advance) {
        m.mem[static_cast<std::size_t>(m.PC)] = static_cast<std::uint8_t>(opcode);
        m.recomputePairs();
        ReferenceMachine reference(m);
        TestHost host(m);
        const int expectedError = reference.step(advance == Advance::past);
        const int error = errorOf([&] { EjecutaPASO(m, host, advance); });
        ASSERT_EQ(error, expectedError) << "opcode " << opcode;
        const MachineState expected = reference.machine();
        ASSERT_EQ(differences(m, expected), "") << "opcode " << opcode;
        ASSERT_EQ(host.memoryWrites, reference.memoryWrites) << "opcode " << opcode;
        ASSERT_EQ(host.portWrites, reference.portWrites) << "opcode " << opcode;
        ASSERT_EQ(host.halts, reference.halts) << "opcode " << opcode;
    }

    std::mt19937 random{1976};
    std::unique_ptr<MachineState> base = std::make_unique<MachineState>();
    std::unique_ptr<MachineState> machine = std::make_unique<MachineState>(*base);
    MachineState& m = *machine;
};

TEST_F(ReferenceTest, EveryOpcodeOnRandomMachines) {
    for (int opcode = 0; opcode < 256; ++opcode) {
        for (int round = 0; round < 400; ++round) {
            if (round % 100 == 0) m = *base;
            shuffleRegisters();
            ASSERT_NO_FATAL_FAILURE(compareStep(opcode, Advance::past));
        }
    }
}

TEST_F(ReferenceTest, EveryOpcodeInPlaceOfTheInterruptedOne) {
    for (int opcode = 0; opcode < 256; ++opcode) {
        for (int round = 0; round < 20; ++round) {
            shuffleRegisters();
            if (round % 2 == 0) m.PC = endAddress();
            ASSERT_NO_FATAL_FAILURE(compareStep(opcode, Advance::stay));
        }
    }
}

TEST_F(ReferenceTest, EveryOpcodeWithPcSpAndPairsAtTheEndsOfMemory) {
    for (int opcode = 0; opcode < 256; ++opcode) {
        m = *base;
        for (const std::int32_t pc : endAddresses) {
            for (const std::int32_t sp : endAddresses) {
                shuffleRegisters();
                m.PC = pc;
                m.SP = sp;
                setPair(m.H, m.L, endAddress());
                setPair(m.B, m.C, endAddress());
                setPair(m.D, m.E, endAddress());
                setOperand(endAddress());
                ASSERT_NO_FATAL_FAILURE(compareStep(opcode, Advance::past));
            }
        }
    }
}

TEST_F(ReferenceTest, EveryOpcodeWithHLAtTheEndsOfMemory) {
    for (int opcode = 0; opcode < 256; ++opcode) {
        for (const std::int32_t hl : {0x0000, 0xFFFE, 0xFFFF}) {
            for (const std::int32_t pc : {0x1234, 0x0000, 0xFFFE, 0xFFFF}) {
                shuffleRegisters();
                m.PC = pc;
                setPair(m.H, m.L, hl);
                ASSERT_NO_FATAL_FAILURE(compareStep(opcode, Advance::past));
            }
        }
    }
}

TEST_F(ReferenceTest, LengthsFollowFromTheBitFields) {
    for (int opcode = 0; opcode < 256; ++opcode) {
        EXPECT_EQ(instructionLength(static_cast<std::uint8_t>(opcode)), lengthByFields(opcode)) << opcode;
    }
}

}  // namespace
}  // namespace tavinor::test
