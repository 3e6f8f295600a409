// Instructions in batches against as many single steps of the window.

#include "machine/Batch.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <memory>
#include <random>
#include <set>

#include "tests/support/Differences.h"
#include "tests/support/Machines.h"
#include "tests/support/TestHost.h"
#include "tests/support/WindowStep.h"

namespace tavinor::test {
namespace {

using End = BatchResult::End;

/// A machine that is executed one instruction at a time, as the window does it.
class SteppedMachine {
  public:
    explicit SteppedMachine(const MachineState& start) : machine_(std::make_unique<MachineState>(start)) {}

    [[nodiscard]] MachineState& machine() { return *machine_; }
    [[nodiscard]] const TestHost& host() const { return host_; }
    void forgetWrites() {
        host_.memoryWrites.clear();
        host_.portWrites.clear();
    }

    /// The T-states of the instruction; those of one that fails are 0.
    int step() {
        const WindowStep step = stepAsTheWindow(*machine_, host_);
        error_ = step.error;
        return step.states;
    }
    /// How the last step ended.
    [[nodiscard]] int error() const { return error_; }

  private:
    std::unique_ptr<MachineState> machine_;
    TestHost host_{*machine_};
    int error_ = noError;
};

class BatchTest : public ::testing::Test {
  protected:
    BatchTest() { noBreakpoints(); }

    void noBreakpoints() { breakpoints->fill(0); }

    BatchResult run(std::int64_t instructions) { return runBatch(m, *breakpoints, {instructions}, written); }

    std::unique_ptr<MachineState> machine = std::make_unique<MachineState>();
    MachineState& m = *machine;
    std::unique_ptr<Breakpoints> breakpoints = std::make_unique<Breakpoints>();
    Written written;
};

/// The pages and ports that the steps wrote, as a batch would tell them.
Written writesOf(const TestHost& host) {
    Written written;
    for (const Write& write : host.memoryWrites) {
        written.pages[static_cast<std::size_t>(write.dir / pageSize)] = true;
    }
    written.ports = !host.portWrites.empty();
    return written;
}

/// Single steps until `limit` is reached; what a batch of the same length has to say.
BatchResult stepsFor(SteppedMachine& stepped, const Breakpoints& breakpoints, const BatchLimit& limit) {
    BatchResult result;
    while (result.instructions < limit.instructions && result.tStates < limit.tStates) {
        const MachineState& m = stepped.machine();
        const auto before = std::make_unique<Registers>(m.registers());
        const bool halts = m.mem[static_cast<std::size_t>(m.PC)] == 0x76;
        const int states = halts ? 0 : stepped.step();
        if (halts || stepped.error() != noError) {
            static_cast<Registers&>(stepped.machine()) = *before;
            result.end = End::singleStep;
            return result;
        }
        ++result.instructions;
        result.tStates += states;
        if (breakpoints[static_cast<std::size_t>(m.PC)] != 0) {
            result.end = End::breakpoint;
            return result;
        }
    }
    return result;
}

/// Random instructions over random memory, which they overwrite, in slices of random length.
class RandomBatches {
  public:
    explicit RandomBatches(unsigned seed) : random_(seed) {
        randomise(*machine_, random_);
        machine_->synmem();
        stepped_ = std::make_unique<SteppedMachine>(*machine_);
        for (int i = 0; i < 200; ++i) (*breakpoints_)[random_() & 0xFFFF] = -1;
    }

    /// One slice in both ways; the instructions in it.
    std::int64_t compareSlice() {
        BatchLimit limit{.instructions = 1 + static_cast<std::int64_t>(random_() % 4096)};
        if (random_() % 4 == 0) limit.tStates = 1 + static_cast<std::int64_t>(random_() % 30'000);
        Written written;
        const BatchResult result = runBatch(*machine_, *breakpoints_, limit, written);
        stepped_->forgetWrites();
        const BatchResult expected = stepsFor(*stepped_, *breakpoints_, limit);
        EXPECT_EQ(result, expected);
        EXPECT_EQ(written.pages, writesOf(stepped_->host()).pages);
        EXPECT_EQ(written.ports, writesOf(stepped_->host()).ports);
        EXPECT_EQ(differences(*machine_, stepped_->machine()), "");
        if (result.end == End::singleStep) stepOver();
        return result.instructions;
    }

  private:
    /// What a batch leaves is done by a step; then both go on from a place of their own choice.
    void stepOver() {
        stepped_->step();
        stepped_->machine().PC = static_cast<std::int32_t>(random_() & 0xFFFF);
        *machine_ = stepped_->machine();
    }

    std::mt19937 random_;
    std::unique_ptr<MachineState> machine_ = std::make_unique<MachineState>();
    std::unique_ptr<Breakpoints> breakpoints_ = std::make_unique<Breakpoints>();
    std::unique_ptr<SteppedMachine> stepped_;
};

/// How many instructions are compared: TAVINOR_BATCH_MILLIONS asks for more than the usual 2 million.
std::int64_t instructionsToCompare() {
    const char* millions = std::getenv("TAVINOR_BATCH_MILLIONS");
    return (millions != nullptr ? std::strtoll(millions, nullptr, 10) : 2) * 1'000'000;
}

TEST_F(BatchTest, RandomSlicesOfRandomProgramsEqualSingleSteps) {
    const std::int64_t all = instructionsToCompare();
    std::int64_t done = 0;
    for (unsigned seed = 1; done < all; ++seed) {
        RandomBatches batches(seed);
        // Memory that the program has filled with one byte says little more: a new one every so often.
        for (int slice = 0; slice < 200 && done < all; ++slice) {
            done += batches.compareSlice();
            ASSERT_FALSE(HasFailure()) << "seed " << seed << ", slice " << slice;
        }
    }
}

TEST_F(BatchTest, EveryOpcodeAtTheTopOfMemoryWithTheStackAtTheBottom) {
    std::mt19937 random(8085);
    const auto base = std::make_unique<MachineState>();
    randomise(*base, random);
    for (int opcode = 0; opcode < 256; ++opcode) {
        for (const std::int32_t pc : {0xFFFC, 0xFFFD, 0xFFFE, 0xFFFF}) {
            for (const std::int32_t sp : {0, 1, 2}) {
                for (const int f : {0x00, 0xD5}) {
                    m = *base;
                    m.PC = pc;
                    m.SP = sp;
                    m.F = static_cast<std::uint8_t>(f);
                    m.recomputePairs();
                    m.mem[static_cast<std::size_t>(pc)] = static_cast<std::uint8_t>(opcode);
                    m.synmem();
                    SteppedMachine stepped(m);
                    const BatchResult expected = stepsFor(stepped, *breakpoints, {1});
                    written = {};
                    ASSERT_EQ(run(1), expected) << opcode << " at " << pc;
                    if (expected.end == End::singleStep) continue;
                    ASSERT_EQ(differences(m, stepped.machine()), "")
                        << opcode << " at " << pc << ", SP " << sp;
                    ASSERT_EQ(written.pages, writesOf(stepped.host()).pages) << opcode;
                }
            }
        }
    }
}

TEST_F(BatchTest, AnySplitGivesTheSame) {
    std::mt19937 random(5);
    randomise(m, random);
    m.synmem();
    const auto start = std::make_unique<MachineState>(m);
    const BatchResult whole = run(3000);
    const auto end = std::make_unique<MachineState>(m);
    for (const std::int64_t slice : {1, 2, 7, 64, 1000}) {
        m = *start;
        BatchResult sum;
        while (sum.end == End::limit && sum.instructions < whole.instructions) {
            const BatchResult part = run(std::min(slice, whole.instructions - sum.instructions));
            sum.instructions += part.instructions;
            sum.tStates += part.tStates;
            sum.end = part.end;
        }
        EXPECT_EQ(sum.instructions, whole.instructions);
        EXPECT_EQ(sum.tStates, whole.tStates);
        EXPECT_EQ(differences(m, *end), "") << "slices of " << slice;
    }
}

TEST_F(BatchTest, ABreakpointAtTheFirstInstructionDoesNotCount) {
    place(m, 0x100, {0x00, 0x00, 0xC3, 0x00, 0x01});  // NOP; NOP; JMP 0100
    m.PC = 0x100;
    (*breakpoints)[0x100] = -1;
    const BatchResult result = run(100);
    EXPECT_EQ(result.end, End::breakpoint);
    EXPECT_EQ(result.instructions, 3);
    EXPECT_EQ(result.tStates, 4 + 4 + 10);
    EXPECT_EQ(m.PC, 0x100);
}

TEST_F(BatchTest, ABreakpointIsToldBeforeTheLimit) {
    place(m, 0x100, {0x00, 0x00});  // NOP; NOP
    m.PC = 0x100;
    (*breakpoints)[0x101] = -1;
    EXPECT_EQ(run(1).end, End::breakpoint);
}

TEST_F(BatchTest, ABreakpointAt0000IsMetBehindTheTop) {
    place(m, 0xFFFE, {0x00, 0x00});  // NOP; NOP
    m.PC = 0xFFFE;
    (*breakpoints)[0] = -1;
    const BatchResult result = run(100);
    EXPECT_EQ(result.end, End::breakpoint);
    EXPECT_EQ(result.instructions, 2);
    EXPECT_EQ(m.PC, 0);
}

TEST_F(BatchTest, TheInstructionThatReachesTheTStatesIsTheLast) {
    place(m, 0x100, {0x00, 0x00, 0x00, 0x00});  // NOP, 4 T-states each
    m.PC = 0x100;
    const BatchResult exact = runBatch(m, *breakpoints, {.instructions = 100, .tStates = 8}, written);
    EXPECT_EQ(exact.instructions, 2);
    const BatchResult over = runBatch(m, *breakpoints, {.instructions = 100, .tStates = 5}, written);
    EXPECT_EQ(over.instructions, 2);
    EXPECT_EQ(over.tStates, 8);
}

TEST_F(BatchTest, AHaltIsLeftToAStep) {
    place(m, 0x100, {0x3C, 0x76});  // INR A; HLT
    m.PC = 0x100;
    const BatchResult result = run(100);
    EXPECT_EQ(result, (BatchResult{.instructions = 1, .tStates = 4, .end = End::singleStep}));
    EXPECT_EQ(m.PC, 0x101);
    EXPECT_EQ(run(100), (BatchResult{.instructions = 0, .tStates = 0, .end = End::singleStep}));
}

TEST_F(BatchTest, ACallThatWouldFailIsLeftToAStepUntouched) {
    for (const int opcode : {0xCD, 0xC4, 0xFF}) {  // CALL, CNZ, RST 7
        const std::int32_t pc = opcode == 0xFF ? 0xFFFF : 0xFFFD;
        m = MachineState{};
        place(m, pc, {opcode, 0x34});
        m.PC = pc;
        m.SP = 0x2000;
        m.synmem();
        const auto before = std::make_unique<MachineState>(m);
        EXPECT_EQ(run(100), (BatchResult{.instructions = 0, .tStates = 0, .end = End::singleStep})) << opcode;
        EXPECT_EQ(differences(m, *before), "") << opcode;
    }
}

TEST_F(BatchTest, ACallAtTheTopThatIsNotTakenGoesOn) {
    place(m, 0xFFFD, {0xCC, 0x34, 0x12});  // CZ 1234
    m.PC = 0xFFFD;
    EXPECT_EQ(run(1), (BatchResult{.instructions = 1, .tStates = 9, .end = End::limit}));
    EXPECT_EQ(m.PC, 0);
}

TEST_F(BatchTest, AWriteToCells0And1IsInTheirMirrorAtOnce) {
    place(m, 0x100,
          {0x21, 0x12, 0x34,    // LXI H,3412
           0x22, 0x00, 0x00,    // SHLD 0000
           0xC3, 0xFF, 0xFF});  // JMP FFFF
    place(m, 0xFFFF, {0x01});   // LXI B, whose operand is in cells 0 and 1
    m.PC = 0x100;
    m.synmem();
    EXPECT_EQ(run(4).instructions, 4);
    EXPECT_EQ(m.BC, 0x3412);
    EXPECT_EQ(m.mem[0x10000], 0x12);
    EXPECT_EQ(m.mem[0x10001], 0x34);
}

TEST_F(BatchTest, WhatIsWrittenIsAddedToTheMap) {
    place(m, 0x100,
          {0x32, 0xFF, 0x20,  // STA 20FF
           0x32, 0x00, 0x30,  // STA 3000
           0xD3, 0x05});      // OUT 05
    m.PC = 0x100;
    written.pages[0x77] = true;
    run(2);
    Written expected;
    for (const std::size_t page : {0x77U, 0x20U, 0x30U}) expected.pages[page] = true;
    EXPECT_EQ(written.pages, expected.pages);
    EXPECT_FALSE(written.ports);
    run(1);
    EXPECT_TRUE(written.ports);
}

}  // namespace
}  // namespace tavinor::test
