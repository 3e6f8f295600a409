// Programs of random bytes, run beside the second interpreter: what must hold after every instruction.

#include <gtest/gtest.h>

#include <memory>
#include <random>

#include "machine/Stepper.h"
#include "tests/support/Differences.h"
#include "tests/support/Errors.h"
#include "tests/support/Machines.h"
#include "tests/support/ReferenceMachine.h"

namespace tavinor::test {
namespace {

/// The registers that an opcode may change, as bits in the order of `registersOf`; PC and SP not among them.
enum Changes : unsigned { none = 0, a = 1, b = 2, c = 4, d = 8, e = 16, f = 32, h = 64, l = 128 };

std::array<int, 8> registersOf(const Registers& r) {
    return {r.A, r.B, r.C, r.D, r.E, r.F, r.H, r.L};
}

constexpr std::array<unsigned, 8> changesByCode{b, c, d, e, h, l, none, a};

unsigned pairChanges(int p) {
    constexpr std::array<unsigned, 4> changes{b | c, d | e, h | l, none};
    return changes[static_cast<std::size_t>(p)];
}

unsigned mayChangeLow(OpcodeFields op) {
    const unsigned target = changesByCode[static_cast<std::size_t>(op.y)];
    switch (op.z) {
        case 0: return op.y == 4 ? a : none;                            // RIM
        case 1: return op.q == 0 ? pairChanges(op.p) : (h | l | f);     // LXI, DAD
        case 2: return op.q == 0 ? none : op.p == 2 ? (h | l) : a + 0;  // stores; LHLD; loads
        case 3: return pairChanges(op.p);                               // INX, DCX
        case 4:
        case 5: return target | f;  // INR, DCR
        case 6: return target;      // MVI
        default: return op.y == 5 ? a + 0 : op.y >= 6 ? f + 0 : (a | f);
    }
}

unsigned mayChangeHigh(OpcodeFields op) {
    if (op.z == 1 && op.q == 0) return op.p == 3 ? (a | f) : pairChanges(op.p);  // POP
    if (op.z == 3 && op.y == 3) return a;                                        // IN
    if (op.z == 3 && op.y == 4) return h | l;                                    // XTHL
    if (op.z == 3 && op.y == 5) return d | e | h | l;                            // XCHG
    if (op.z == 6) return op.y == 7 ? f + 0 : (a | f);                           // immediates
    return none;
}

unsigned mayChange(int opcode) {
    const OpcodeFields op(opcode);
    if (opcode == 0x76) return none;
    if (op.x == 0) return mayChangeLow(op);
    if (op.x == 1) return changesByCode[static_cast<std::size_t>(op.y)];
    if (op.x == 2) return op.y == 7 ? f + 0 : (a | f);
    return mayChangeHigh(op);
}

void expectOnlyNamedRegistersChanged(int opcode, const Registers& before, const Registers& after) {
    const std::array<int, 8> old = registersOf(before);
    const std::array<int, 8> current = registersOf(after);
    const unsigned allowed = mayChange(opcode);
    for (std::size_t i = 0; i < old.size(); ++i) {
        if ((allowed >> i & 1U) == 0) {
            ASSERT_EQ(old[i], current[i]) << "opcode " << opcode << ", register " << i;
        }
    }
}

void expectPairsAgree(const Registers& r) {
    Registers recomputed = r;
    recomputed.recomputePairs();
    ASSERT_EQ(registerDifferences(r, recomputed), "");
}

/// Memory as it must be when only the host writes it and only the mirror is refreshed besides.
void replay(std::array<std::uint8_t, mirroredMemorySize>& shadow, TestHost& host) {
    shadow[0x10000] = shadow[0];
    shadow[0x10001] = shadow[1];
    for (const Write& write : host.memoryWrites) {
        shadow[static_cast<std::size_t>(write.dir)] = static_cast<std::uint8_t>(write.dat);
    }
    host.memoryWrites.clear();
}

class RandomProgramTest : public ::testing::Test {
  protected:
    void runProgram(unsigned seed, int steps) {
        std::mt19937 random(seed);
        randomise(m, random);
        const auto shadow = std::make_unique<std::array<std::uint8_t, mirroredMemorySize>>(m.mem);
        const auto reference = std::make_unique<ReferenceMachine>(m);
        TestHost host(m);
        for (int i = 0; i < steps; ++i) {
            const Registers before = m;
            const int opcode = m.mem[static_cast<std::size_t>(m.PC)];
            const int error = errorOf([&] { EjecutaPASO(m, host); });
            ASSERT_EQ(error, reference->step());
            ASSERT_EQ(static_cast<Registers&>(m), reference->registers())
                << "opcode " << opcode << '\n'
                << registerDifferences(m, reference->registers());
            ASSERT_NO_FATAL_FAILURE(expectPairsAgree(m));
            ASSERT_NO_FATAL_FAILURE(expectOnlyNamedRegistersChanged(opcode, before, m));
            replay(*shadow, host);
            m.PC &= 0xFFFF;  // as the window does
            reference->setPC(m.PC);
        }
        EXPECT_TRUE(*shadow == m.mem) << "memory was written past the host";
        EXPECT_EQ(differences(m, reference->machine()), "");
    }

    std::unique_ptr<MachineState> machine = std::make_unique<MachineState>();
    MachineState& m = *machine;
};

TEST_F(RandomProgramTest, RandomBytesRunAsTheReferenceSays) {
    for (unsigned seed = 1; seed <= 100; ++seed) {
        ASSERT_NO_FATAL_FAILURE(runProgram(seed, 3000)) << "seed " << seed;
    }
}

}  // namespace
}  // namespace tavinor::test
