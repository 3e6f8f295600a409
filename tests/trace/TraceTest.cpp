#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "tests/simulation/TracedMachine.h"
#include "trace/TraceReader.h"
#include "trace/TraceText.h"

namespace tavinor::test {
namespace {

/// The trace under test beside the naive one.
class TraceTest : public testing::Test {
  protected:
    void expectEqual(std::uint64_t first, std::uint64_t count) {
        std::uint64_t row = first;
        reader.read(first, count, [&](const TraceRow& values, const RowTexts* texts) {
            ASSERT_LT(row, naive.rows().size());
            const RowCells cells = rowCells(values, texts);
            for (std::size_t column = 0; column < traceColumns; ++column) {
                ASSERT_EQ(cells[column], naive.rows()[row][column]) << "row " << row << ", column " << column;
            }
            std::string line;
            appendLine(line, values, texts);
            ASSERT_EQ(line, naive.line(row));
            ++row;
        });
        const std::uint64_t size = naive.rows().size();
        ASSERT_EQ(row, first + std::min(count, size - std::min(first, size)));
    }
    void expectEqual() {
        ASSERT_EQ(traced.trace().size(), naive.rows().size());
        expectEqual(0, naive.rows().size());
    }
    std::vector<std::string> column(std::size_t index) {
        std::vector<std::string> cells;
        reader.read(0, traced.trace().size(), [&](const TraceRow& row, const RowTexts* texts) {
            cells.push_back(rowCells(row, texts)[index]);
        });
        return cells;
    }

    TracedMachine traced;
    const NaiveTrace& naive = traced.naive();
    TraceReader reader{traced.trace()};
};

using Texts = std::vector<std::string>;
constexpr std::size_t boxA = 0, boxF = 5, boxPC = 9, boxSP = 10;

TEST_F(TraceTest, TheFirstStepAddsAStateRowAndItsOwn) {
    traced.load({0x3E, 0x05});
    traced.step();
    EXPECT_EQ(column(0), Texts({"", "0000"}));
    EXPECT_EQ(column(1), Texts({"", "3E 05    "}));
    EXPECT_EQ(column(2), Texts({"", "MVI A,05"}));
    EXPECT_EQ(column(3), Texts({"00", "05"}));
    EXPECT_EQ(column(13), Texts({"0000", "0002"}));
    expectEqual();
}

TEST_F(TraceTest, TheBytesAreNineCharactersWide) {
    traced.load({0x00, 0x3E, 0x05, 0x21, 0x34, 0x12});
    traced.steps(3);
    EXPECT_EQ(column(1), Texts({"", "00       ", "3E 05    ", "21 34 12 "}));
    EXPECT_EQ(column(2), Texts({"", "NOP", "MVI A,05", "LXI H,1234"}));
}

TEST_F(TraceTest, AnEditBetweenTwoStepsAddsAStateRow) {
    traced.steps(2);
    traced.edit([](Registers& r) { r.A = 0x77; });
    traced.steps(2);
    EXPECT_EQ(column(0), Texts({"", "0000", "0001", "", "0002", "0003"}));
    EXPECT_EQ(column(3), Texts({"00", "00", "00", "77", "77", "77"}));
    expectEqual();
}

TEST_F(TraceTest, AMemoryByteThatNoBoxShowsMakesNoStateRow) {
    traced.step();
    traced.write(0x4000, 9);
    traced.step();
    EXPECT_EQ(traced.trace().size(), 3U);
    traced.write(0, 9);  // HL is 0000: txtM shows it
    traced.step();
    EXPECT_EQ(traced.trace().size(), 5U);
    expectEqual();
}

/// Only F itself is compared: the flags as text stand in the row, but make no difference.
TEST_F(TraceTest, TheFlagColumnMakesNoDifference) {
    traced.step();
    traced.edit([](Registers& r) { r.F = 0xFF; });
    traced.type(boxF, "00");  // the box reads as the last row does, the flags do not
    traced.step();
    EXPECT_EQ(traced.trace().size(), 3U);
    expectEqual();
}

TEST_F(TraceTest, ACellShowsWhatWasBeingTyped) {
    traced.step();
    traced.type(boxA, "1g");
    traced.type(boxSP, "");
    traced.step();
    EXPECT_EQ(column(3), Texts({"00", "00", "1g", "00"}));
    EXPECT_EQ(column(14), Texts({"0000", "0000", "", "0000"}));
    traced.step();
    EXPECT_EQ(traced.trace().size(), 5U);
    expectEqual();
}

TEST_F(TraceTest, TheAddressIsTheTextOfItsBox) {
    traced.load({0x00, 0x3E, 0x05});
    traced.load({0xC3, 0x34, 0x12}, 0x2345);
    for (const char* typed : {"12345", "2345", "x", "", "  1", "ÁÉ", "1\t2"}) {
        traced.type(boxPC, typed);
        traced.step();
    }
    const Texts addresses = column(0);
    const Texts instructions = column(2);
    EXPECT_EQ(addresses[1], "12345");
    EXPECT_EQ(instructions[1], "JMP 1234");
    EXPECT_EQ(addresses[5], "x");
    EXPECT_EQ(instructions[5], "NOP");
    EXPECT_EQ(traced.machine().PC, 8);  // the machine went its own way
    ASSERT_EQ(traced.trace().size(), naive.rows().size());
}

TEST_F(TraceTest, AnInstructionThatFailedKeepsNoRegisters) {
    traced.edit([](Registers& r) { r.PC = 0xFFFF; });
    traced.load({0xFF}, 0xFFFF);  // RST 7 cannot push 10000
    EXPECT_FALSE(traced.step());
    EXPECT_EQ(column(3), Texts({"00", ""}));
    traced.step();
    EXPECT_EQ(column(2), Texts({"", "RST 7", "", "NOP"}));
    EXPECT_EQ(column(14), Texts({"0000", "", "FFFF", "FFFF"}));
    expectEqual();
}

/// The boxes show again what they showed before it, but its row shows nothing.
TEST_F(TraceTest, AfterAnInstructionThatFailedTheNextHasAStateRow) {
    const auto atTheTop = [](Registers& r) {
        r.PC = 0xFFFF;
        r.SP = 0;
    };
    traced.load({0xFF}, 0xFFFF);
    traced.edit(atTheTop);
    EXPECT_FALSE(traced.step());
    traced.edit(atTheTop);
    EXPECT_FALSE(traced.step());
    EXPECT_EQ(column(2), Texts({"", "RST 7", "", "RST 7"}));
    expectEqual();
}

TEST_F(TraceTest, RegistersThatWereNeverWrittenAreNoZeros) {
    traced.edit([](Registers& r) { r.PC = 0xFFFF; });
    traced.load({0xFF}, 0xFFFF);
    EXPECT_FALSE(traced.step());
    traced.both([](auto& target) {
        target.reset();
        target.refresh();
    });
    traced.step();
    EXPECT_EQ(column(13), Texts({"FFFF", "", "0000", "0001"}));
    expectEqual();
}

TEST_F(TraceTest, AnInstructionAtTheTopReadsItsOperandsFromTheBottom) {
    traced.edit([](Registers& r) { r.PC = 0xFFFE; });
    traced.load({0xC3, 0x00}, 0xFFFE);
    traced.load({0x20});
    traced.step();
    EXPECT_EQ(column(2)[1], "JMP 2000");
    EXPECT_EQ(traced.machine().PC, 0x2000);
    expectEqual();
}

TEST_F(TraceTest, ClearedInTheMiddleOfAStepTheListStartsWithAStateRow) {
    traced.load({0x00, 0x76, 0x3C});
    traced.onHalt = [this] { traced.clear(); };
    traced.steps(2);
    EXPECT_EQ(column(2), Texts({""}));
    traced.step();
    EXPECT_EQ(column(2), Texts({"", "INR A"}));
    expectEqual();
}

TEST_F(TraceTest, AHaltHasNoRegistersBeforeItsWayOut) {
    traced.load({0x76});
    Texts within;
    traced.onHalt = [&] {
        if (within.empty()) within = column(13);  // the plain machine halts later
    };
    traced.step();
    EXPECT_EQ(within, Texts({"0000", ""}));
    EXPECT_EQ(column(13), Texts({"0000", "0001"}));
    expectEqual();
}

TEST_F(TraceTest, AByteAtHLThatNoRefreshHasShownYetMakesNoStateRow) {
    traced.step();
    traced.both([](auto& target) { target.writeMemory(0, 9); });  // HL is 0000; as the entry row does it
    traced.step();
    EXPECT_EQ(traced.trace().size(), 3U);
    traced.both([](auto& target) { target.writeMemory(0, 8); });
    traced.both([](auto& target) { target.refresh(); });
    traced.step();
    EXPECT_EQ(traced.trace().size(), 5U);
    EXPECT_EQ(column(12), Texts({"00", "00", "09", "08", "08"}));
    expectEqual();
}

TEST_F(TraceTest, ClearedWhileMIsBehindTheFirstRowShowsTheOldOne) {
    traced.steps(2);
    traced.both([](auto& target) { target.writeMemory(0, 9); });
    traced.clear();
    traced.step();
    EXPECT_EQ(column(12), Texts({"00", "09"}));
    expectEqual();
}

TEST_F(TraceTest, AnEditAfterTheWayOutOfAHaltHasAStateRowOfItsOwn) {
    traced.load({0x76, 0x3C, 0x3C});
    traced.onHalt = [this] {
        traced.both([](auto& target) {
            target.rst75();
            target.refresh();
        });
    };
    traced.step();
    traced.edit([](Registers& r) {
        r.A = 0x77;
        r.PC = 1;
    });
    traced.steps(2);
    EXPECT_EQ(column(2), Texts({"", "HLT", "", "INR A", "INR A"}));
    EXPECT_EQ(column(13), Texts({"0000", "003C", "0001", "0002", "0003"}));
    expectEqual();
}

TEST_F(TraceTest, ReadsAnyPieceAcrossTheKeptMachines) {
    traced.load({0x01, 0x00, 0x00, 0x03, 0x78, 0xB1, 0xC2, 0x03, 0x00, 0xC3, 0x00, 0x00});
    traced.steps(2 * 65536 + 100);
    for (const std::uint64_t border : {65536U, 131072U}) {
        for (std::uint64_t first = border - 3; first < border + 3; ++first) {
            for (const std::uint64_t count : {0U, 1U, 2U, 7U}) expectEqual(first, count);
        }
    }
    const std::uint64_t size = traced.trace().size();
    for (std::uint64_t first = size - 3; first < size + 3; ++first) expectEqual(first, 2);
    expectEqual();
}

TEST_F(TraceTest, EveryNumberOfRowsAroundAKeptMachineIsWhole) {
    traced.steps(65533);
    while (traced.trace().size() < 65541) {
        traced.step();
        expectEqual(65530, 20);
    }
    expectEqual();
}

// Programs of each kind, among things that happen between their steps and during them.

struct Program {
    const char* name;
    std::vector<std::uint8_t> bytes;
};

void PrintTo(const Program& program, std::ostream* out) {
    *out << program.name;
}

class TracedPrograms : public TraceTest, public testing::WithParamInterface<Program> {};

TEST_P(TracedPrograms, AreRecordedRowByRow) {
    traced.load(GetParam().bytes);
    traced.steps(70'000);
    expectEqual();
}

INSTANTIATE_TEST_SUITE_P(
    Kinds, TracedPrograms,
    testing::Values(
        Program{"nothing", {}},
        Program{"delay", {0x01, 0xFF, 0xFF, 0x0B, 0x78, 0xB1, 0xC2, 0x03, 0x00, 0xC3, 0x00, 0x00}},
        Program{"port wait", {0xDB, 0x05, 0xE6, 0x80, 0xCA, 0x00, 0x00}},
        Program{"port counter", {0xDB, 0x05, 0x3C, 0xD3, 0x05, 0xC3, 0x00, 0x00}},
        Program{"calls",
                {0x31, 0x00, 0x80, 0xCD, 0x09, 0x00, 0xC3, 0x03, 0x00, 0x3C, 0xF5, 0xE3, 0xE1, 0xC9}},
        Program{"stack sweep", {0x31, 0x00, 0x01, 0xC1, 0xD1, 0xE1, 0xF1, 0xC3, 0x03, 0x00}},
        Program{"memory sum", {0x21, 0x00, 0x00, 0x7E, 0x80, 0x47, 0x23, 0xC3, 0x03, 0x00}},
        Program{"memory fill", {0x21, 0x00, 0x10, 0x74, 0x35, 0x23, 0x22, 0x00, 0xF0, 0xC3, 0x03, 0x00}},
        Program{"loads", {0x3A, 0x20, 0x00, 0x0A, 0x1A, 0x2A, 0x21, 0x00, 0x03, 0x13, 0xC3, 0x00, 0x00}},
        Program{"rewrites itself", {0x3A, 0x07, 0x00, 0x3C, 0x32, 0x07, 0x00, 0x06, 0x00, 0xC3, 0x00, 0x00}},
        Program{"serial", {0x20, 0x07, 0x30, 0xFB, 0x20, 0xF3, 0xC3, 0x00, 0x00}}));

}  // namespace
}  // namespace tavinor::test
