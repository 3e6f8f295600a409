// What the trace takes, and what happens when there is no memory for more of it.

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <new>
#include <string>
#include <vector>

#include "tests/simulation/TracedMachine.h"
#include "tests/support/TemporaryFolder.h"
#include "trace/TraceFile.h"
#include "trace/TraceReader.h"
#include "trace/TraceText.h"

namespace {

/// Allocations that still succeed; negative: all do.
int allocationsLeft = -1;

bool refuseAllocation() {
    if (allocationsLeft < 0) return false;
    if (allocationsLeft == 0) return true;
    --allocationsLeft;
    return false;
}

}  // namespace

[[gnu::noinline]] void* operator new(std::size_t size) {
    void* memory = refuseAllocation() ? nullptr : std::malloc(size);
    if (memory == nullptr) throw std::bad_alloc();
    return memory;
}
[[gnu::noinline]] void operator delete(void* memory) noexcept {
    std::free(memory);
}
[[gnu::noinline]] void operator delete(void* memory, std::size_t) noexcept {
    std::free(memory);
}

namespace tavinor::test {
namespace {

std::vector<std::string> lines(const Trace& trace) {
    std::vector<std::string> result;
    TraceReader(trace).read(0, trace.size(), [&](const TraceRow& row, const RowTexts* texts) {
        result.emplace_back();
        appendLine(result.back(), row, texts);
    });
    return result;
}

/// The rows of `expected` up to where `actual` ends.
void expectBeginning(const std::vector<std::string>& actual, const std::vector<std::string>& expected) {
    ASSERT_LE(actual.size(), expected.size());
    for (std::size_t i = 0; i < actual.size(); ++i) ASSERT_EQ(actual[i], expected[i]) << "row " << i;
}

/// An INR M for each address, so that all of memory is written again and again.
const std::vector<std::uint8_t> fillingLoop{0x21, 0x20, 0x00, 0x34, 0x23, 0x7C, 0xB5,
                                            0xC2, 0x03, 0x00, 0xC3, 0x00, 0x00};

TEST(TraceMemoryTest, HasABoundHoweverLongTheRun) {
    TracedMachine traced;
    traced.recordOnlyCompact();
    traced.load(fillingLoop);
    traced.steps(30'000'000);
    EXPECT_EQ(traced.trace().size(), 30'000'001U);
    EXPECT_LE(traced.simulation().history().checkpoints().bytes(), History::usualBytes);
    EXPECT_LE(traced.trace().heldBytes() + traced.simulation().history().bytesOfChanges(), 128U);
}

TEST(TraceMemoryTest, TakesNoMoreThan64BytesForAChange) {
    constexpr std::size_t changes = 1'000'000;
    TracedMachine traced;
    traced.recordOnlyCompact();
    traced.load(fillingLoop);
    traced.steps(1000);
    const auto held = [&] {
        return traced.trace().heldBytes() + traced.simulation().history().bytesOfChanges();
    };
    const std::size_t before = held();
    for (std::size_t i = 0; i < changes; ++i) {
        const std::int32_t address = traced.machine().HL;
        traced.write(address, traced.machine().at(address) ^ 0x55);
        traced.steps(3);
    }
    EXPECT_EQ(traced.simulation().history().end().changes, changes + 1);
    EXPECT_LE(held() - before, 64 * changes);
}

/// What lies far back is executed again from the machine kept before it, and not from the beginning.
TEST(TraceMemoryTest, ARowCostsTheInstructionsBehindTheMachineKeptBeforeIt) {
    TracedMachine traced;
    traced.recordOnlyCompact();
    traced.load(fillingLoop);
    traced.steps(20'000'000);
    TraceReader reader(traced.trace());
    const auto executed = [&] { return traced.simulation().history().executedAgain(); };
    const auto cost = [&](std::uint64_t row) {
        const std::uint64_t before = executed();
        reader.read(row, 1, [](const TraceRow&, const RowTexts*) {});
        return executed() - before;
    };
    for (const std::uint64_t row : {19'999'990U, 5'000'000U, 19'000'000U, 12'345'678U, 1U}) {
        EXPECT_LE(cost(row), 64 * Checkpoints::densest) << row;
    }
    cost(10'000'000);
    EXPECT_EQ(cost(10'000'001), 1U);  // it goes on
}

/// Refused at any place, an allocation ends the recording and nothing else: the rows before stay.
TEST(TraceMemoryTest, RefusedAtAnyPlaceSpoilsNoRow) {
    std::size_t fewest = 1000;
    for (int allowed = 0; allowed < 40; ++allowed) {
        TracedMachine traced;
        traced.recordOnlyCompact();
        traced.load(std::vector<std::uint8_t>(200, 0x7E));  // MOV A,M
        std::vector<std::string> before;
        int left = allowed;
        for (int i = 0; i < 80; ++i) {
            traced.write(0, i);
            if (i % 7 == 0) traced.type(3, "this is no digit, and too long for a short string");
            allocationsLeft = left;
            traced.step();
            left = allocationsLeft;
            allocationsLeft = -1;
            const std::vector<std::string> after = lines(traced.trace());
            expectBeginning(before, after);
            before = after;
        }
        EXPECT_EQ(traced.machine().PC, 80);  // execution went on
        fewest = std::min(fewest, before.size());
    }
    EXPECT_LT(fewest, 100U);  // there were refusals
}

TEST(TraceMemoryTest, ClearingStartsAnewAtOnce) {
    TracedMachine traced;
    traced.recordOnlyCompact();
    traced.step();
    allocationsLeft = 0;
    for (int i = 0; i < 1000; ++i) {  // until what is there already is full
        traced.write(0x4000, i & 255);
        traced.step();
    }
    allocationsLeft = -1;
    ASSERT_FALSE(traced.simulation().history().recording());
    EXPECT_FALSE(traced.simulation().canGoBack());
    const std::uint64_t rows = traced.trace().size();
    traced.steps(100);
    EXPECT_EQ(traced.trace().size(), rows);
    traced.clear();
    traced.steps(10);
    EXPECT_EQ(traced.trace().size(), 11U);
    EXPECT_TRUE(traced.simulation().canGoBack());
}

/// Saving executes rows again and puts their text together, which takes memory of its own.
TEST(TraceMemoryTest, RefusedWhileSavingEndsTheSaving) {
    TracedMachine traced;
    traced.steps(100);
    const TemporaryFolder folder;
    const std::filesystem::path path = folder.path() / "lista.txt";
    TraceFile file(traced.trace(), path);
    ASSERT_TRUE(file.open());
    allocationsLeft = 0;
    EXPECT_THROW(file.writeMore(), std::bad_alloc);
    allocationsLeft = -1;
    EXPECT_TRUE(file.close());
    std::string header;
    appendHeaderLine(header);
    std::ifstream saved(path, std::ios::binary);
    EXPECT_EQ(std::string(std::istreambuf_iterator<char>(saved), {}), header + "\r\n");
}

}  // namespace
}  // namespace tavinor::test
