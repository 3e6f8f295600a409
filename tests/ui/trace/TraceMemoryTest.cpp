// What happens when there is no memory for another row.

#include <gtest/gtest.h>

#include <QFile>
#include <QTemporaryDir>
#include <algorithm>
#include <cstdlib>
#include <new>
#include <string>
#include <vector>

#include "tests/ui/trace/TracedMachine.h"
#include "ui/trace/TraceFile.h"
#include "ui/trace/TraceRecorder.h"
#include "ui/trace/TraceText.h"

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

void* operator new(std::size_t size) {
    void* memory = refuseAllocation() ? nullptr : std::malloc(size);
    if (memory == nullptr) throw std::bad_alloc();
    return memory;
}
void operator delete(void* memory) noexcept {
    std::free(memory);
}
void operator delete(void* memory, std::size_t) noexcept {
    std::free(memory);
}

using namespace tavinor;

namespace {

constexpr std::uint64_t plenty = ~std::uint64_t{0};

std::vector<std::string> lines(const TraceRecorder& recorder) {
    std::vector<std::string> result;
    recorder.store().read(0, recorder.store().size(), [&](const TraceRow& row, const RowTexts* texts) {
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

std::vector<std::string> linesOf(const NaiveTrace& naive) {
    std::vector<std::string> result;
    for (std::size_t row = 0; row < naive.rows().size(); ++row) result.push_back(naive.line(row));
    return result;
}

TEST(TraceMemory, WithoutAnyTheFirstRowStaysAsItWas) {
    TraceRecorder recorder([] { return std::uint64_t{0}; });
    TracedMachine traced(recorder);
    traced.load({0x3E, 0x05, 0x3C});
    traced.steps(100);
    EXPECT_EQ(lines(recorder),
              std::vector<std::string>{"\t\t\t00\t00\t00\t00\t00\t00\t00000\t00\t00\t3E\t0000\t0000"});
    EXPECT_EQ(traced.machine().PC, 101);  // execution went on
}

TEST(TraceMemory, TheReserveOfTheSystemIsNotTouched) {
    for (const bool enough : {false, true}) {
        TraceRecorder recorder([enough] { return TraceStore::reserve - (enough ? 0 : 1); });
        TracedMachine traced(recorder);
        traced.steps(10);
        EXPECT_EQ(recorder.store().size(), enough ? 11U : 1U);
    }
}

TEST(TraceMemory, IsLookedAtOnceABlock) {
    int looks = 0;
    TraceRecorder recorder([&looks] {
        ++looks;
        return plenty;
    });
    TracedMachine traced(recorder);
    traced.steps(3 * 65536);
    EXPECT_EQ(looks, 3);
    traced.step();
    EXPECT_EQ(looks, 4);
}

/// Rows that are missing leave no gap that could be taken for a row: what follows them starts with the state.
TEST(TraceMemory, ThatComesBackIsUsedAgain) {
    std::uint64_t available = plenty;
    TraceRecorder recorder([&available] { return available; });
    NaiveTrace naive;
    TracedMachine traced(recorder, &naive);
    traced.load({0x3C, 0xC3, 0x00, 0x00});
    traced.steps(65535);
    available = 0;
    traced.steps(100);
    EXPECT_EQ(recorder.store().size(), 65537U);
    expectBeginning(lines(recorder), linesOf(naive));
    available = plenty;
    traced.steps(2 * 65536);
    const std::vector<std::string> all = lines(recorder);
    ASSERT_GT(all.size(), 65537U + 1000U);
    EXPECT_EQ(all[65536], linesOf(naive)[65536]);
    EXPECT_EQ(all[65537].substr(0, 3), "\t\t\t");
    EXPECT_EQ(all.back(), linesOf(naive).back());
}

TEST(TraceMemory, ClearingStartsAnewAtOnce) {
    std::uint64_t available = 0;
    TraceRecorder recorder([&available] { return available; });
    TracedMachine traced(recorder);
    traced.steps(10);
    available = plenty;
    recorder.clear();
    traced.steps(10);
    EXPECT_EQ(recorder.store().size(), 11U);
}

/// Refused at any place, an allocation ends the routine and nothing else: what was whole stays as it was.
TEST(TraceMemory, RefusedAtAnyPlaceSpoilsNoRow) {
    std::size_t fewest = 1000;
    for (int allowed = 0; allowed < 40; ++allowed) {
        TraceRecorder recorder([] { return plenty; });
        TracedMachine traced(recorder);
        traced.load(std::vector<std::uint8_t>(200, 0x7E));  // MOV A,M
        std::vector<std::string> before;
        int left = allowed;
        for (int i = 0; i < 80; ++i) {
            traced.machine().mem[0] = static_cast<std::uint8_t>(i);
            traced.refresh();
            if (i % 7 == 0) traced.type(3, "this is no digit, and too long for a short string");
            allocationsLeft = left;
            traced.step();
            left = allocationsLeft;
            allocationsLeft = -1;
            const std::vector<std::string> after = lines(recorder);
            expectBeginning(before, after);
            before = after;
        }
        fewest = std::min(fewest, before.size());
    }
    EXPECT_LT(fewest, 10U);  // there were refusals
}

/// Saving unpacks rows and puts their text together, which takes memory of its own.
TEST(TraceMemory, RefusedWhileSavingEndsTheSaving) {
    TraceRecorder recorder([] { return plenty; });
    TracedMachine traced(recorder);
    traced.steps(100);
    const QTemporaryDir folder;
    const QString path = folder.filePath("lista.txt");
    TraceFile file(recorder.store(), path);
    ASSERT_TRUE(file.open());
    allocationsLeft = 0;
    EXPECT_THROW(file.writeMore(), std::bad_alloc);
    allocationsLeft = -1;
    EXPECT_TRUE(file.close());
    std::string header;
    appendHeaderLine(header);
    QFile saved(path);
    ASSERT_TRUE(saved.open(QIODevice::ReadOnly));
    EXPECT_EQ(saved.readAll().toStdString(), header + "\r\n");
}

}  // namespace
