#include "images/Listing.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <memory>
#include <random>

#include "images/Disassembler.h"
#include "tests/support/Errors.h"
#include "tests/support/Machines.h"
#include "tests/support/ReferenceMachine.h"

namespace tavinor::test {
namespace {

class ListingTest : public ::testing::Test {
  protected:
    int lengthAt(std::int32_t address) const {
        return lengthByFields(m.mem[static_cast<std::size_t>(address)]);
    }

    void fillWith(int opcode) { m.mem.fill(static_cast<std::uint8_t>(opcode)); }

    void fillRandomly(unsigned seed) {
        std::mt19937 random(seed);
        randomise(m, random);
    }

    std::unique_ptr<MachineState> machine = std::make_unique<MachineState>();
    std::unique_ptr<Breakpoints> breakpoints = std::make_unique<Breakpoints>();
    MachineState& m = *machine;
    Listing listing{m, *breakpoints};
};

// --- inidisp ---

TEST_F(ListingTest, InidispStartsAt0000WhenTheProgramLeadsFromThere) {
    place(m, 0, {0x3E, 0x05, 0x06, 0x07});  // MVI A,05; MVI B,07
    EXPECT_EQ(inidisp(m, 4), 0);
    listing.position(4);
    EXPECT_EQ(listing.selected(), 2) << "the third row";
    EXPECT_EQ(listing.rows()[2].substr(0, 4), "0004");
}

TEST_F(ListingTest, InidispTriesTwelveBytesBefore) {
    EXPECT_EQ(inidisp(m, 0x20), 0x14) << "NOPs lead anywhere";
}

TEST_F(ListingTest, InidispTakesTheNextStartThatLandsOnTheAddress) {
    place(m, 0x14, {0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x01});
    EXPECT_EQ(inidisp(m, 0x20), 0x20) << "every start runs into LXI B at 001F";
    place(m, 0x14, {0x01, 0x00, 0x3E, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00});
    EXPECT_EQ(inidisp(m, 0x20), 0x14) << "LXI B, then NOPs";
    place(m, 0x14, {0x01, 0x00, 0x01, 0x3E, 0x01, 0x3E, 0x01, 0x00, 0x01, 0x00, 0x01, 0x3E});
    EXPECT_EQ(inidisp(m, 0x20), 0x20);
    place(m, 0x1E, {0x3E, 0x01});  // MVI A,01 leads to 0020, and the LXI B at 001A leads there
    EXPECT_EQ(inidisp(m, 0x20), 0x1A);
}

TEST_F(ListingTest, InidispOf0000Is0000) {
    fillWith(0x01);
    EXPECT_EQ(inidisp(m, 0), 0);
    EXPECT_EQ(inidisp(m, 1), 1);
    EXPECT_EQ(inidisp(m, 3), 0);
}

TEST_F(ListingTest, InidispIsTheEarliestOfTwelveThatLeadsToTheAddress) {
    fillRandomly(42);
    std::mt19937 random(43);
    for (int i = 0; i < 20'000; ++i) {
        const auto target = static_cast<std::int32_t>(i < 40 ? i : random() & 0xFFFF);
        // Backwards: a start leads to the target when its next instruction does.
        std::array<bool, 16> leads{};
        leads[0] = true;
        std::int32_t earliest = target;
        for (std::int32_t back = 1; back <= 12 && back <= target; ++back) {
            const std::int32_t next = back - lengthAt(target - back);
            leads[static_cast<std::size_t>(back)] = next >= 0 && leads[static_cast<std::size_t>(next)];
            if (leads[static_cast<std::size_t>(back)]) earliest = target - back;
        }
        ASSERT_EQ(inidisp(m, target), earliest) << target;
    }
}

// --- dispmem ---

TEST_F(ListingTest, DispmemShows29InstructionsThatFollowEachOther) {
    fillRandomly(7);
    listing.dispmem(0x1234);
    ASSERT_EQ(listing.rows().size(), 29U);
    std::int32_t address = 0x1234;
    for (const std::string& row : listing.rows()) {
        EXPECT_EQ(row, linea(m, *breakpoints, address).text);
        address += lengthAt(address);
    }
}

TEST_F(ListingTest, DispmemReturnsTheRowOfTheSelectedAddressOrMinusOne) {
    fillWith(0x01);  // LXI B: addresses 0, 3, 6...
    EXPECT_EQ(listing.dispmem(0, 0), 0);
    EXPECT_EQ(listing.dispmem(0, 3), 1);
    EXPECT_EQ(listing.dispmem(0, 4), -1);
    EXPECT_EQ(listing.dispmem(0, 84), 28);
    EXPECT_EQ(listing.dispmem(0, 87), -1) << "behind the last row";
    EXPECT_EQ(listing.dispmem(0x100, 0xFD), -1) << "before the first row";
    EXPECT_EQ(listing.dispmem(0), -1);
}

TEST_F(ListingTest, DispmemEndsAtTheTopOfMemory) {
    EXPECT_EQ(listing.dispmem(0xFFF0, 0xFFFF), 15);
    EXPECT_EQ(listing.rows().size(), 16U);
    EXPECT_EQ(listing.rows().back(), "FFFF 00        NOP");
    EXPECT_EQ(listing.dispmem(0xFFFF, 0xFFFF), 0);
    EXPECT_EQ(listing.rows().size(), 1U);
}

TEST_F(ListingTest, TheLastRowMayReachRoundTheTop) {
    fillWith(0x01);  // the mirror cells as well: no row shows them
    place(m, 0, {0x34, 0x12});
    listing.dispmem(0xFFFC);
    ASSERT_EQ(listing.rows().size(), 2U);
    EXPECT_EQ(listing.rows()[0], "FFFC 01 01 01  LXI B,0101");
    EXPECT_EQ(listing.rows()[1], "FFFF 01 34 12  LXI B,1234");
}

TEST_F(ListingTest, TheListIsFullWhenRow29EndsExactlyAtTheTop) {
    listing.dispmem(0x10000 - 29);
    EXPECT_EQ(listing.rows().size(), 29U);
    listing.dispmem(0x10000 - 28);
    EXPECT_EQ(listing.rows().size(), 28U);
}

TEST_F(ListingTest, DispmemShowsBreakpoints) {
    (*breakpoints)[0x101] = -1;
    listing.dispmem(0x100);
    EXPECT_EQ(listing.rows()[0], "0100 00        NOP");
    EXPECT_EQ(listing.rows()[1], "0101*00        NOP");
}

TEST_F(ListingTest, SwitchingABreakpointTwiceRestoresTheRows) {
    fillRandomly(9);
    listing.position(0x4000);
    const std::vector<std::string> before = listing.rows();
    const int selected = listing.selected();
    const auto place = static_cast<std::size_t>(listing.address(selected));
    for (int i = 0; i < 2; ++i) {
        std::int16_t& flag = (*breakpoints)[place];
        flag = static_cast<std::int16_t>(~flag);
        listing.rebuildInPlace();
        EXPECT_EQ(listing.selected(), selected);
        EXPECT_EQ(listing.rows()[static_cast<std::size_t>(selected)][4], i == 0 ? '*' : ' ');
    }
    EXPECT_EQ(listing.rows(), before);
}

// --- position and rebuildInPlace ---

TEST_F(ListingTest, PositionSelectsTheRowOfTheAddress) {
    fillRandomly(5);
    for (const std::int32_t address : {0, 1, 11, 12, 13, 0x1234, 0xFFF0, 0xFFFE, 0xFFFF}) {
        listing.position(address);
        ASSERT_NE(listing.selected(), Listing::noRow) << address;
        EXPECT_EQ(listing.address(listing.selected()), address);
        EXPECT_EQ(listing.address(0), inidisp(m, address));
        EXPECT_LE(listing.selected(), 12);
    }
}

TEST_F(ListingTest, RebuildInPlaceKeepsTheFirstRowAndTheSelectedAddress) {
    listing.dispmem(0x100);
    listing.select(4);
    place(m, 0x101, {0x3E});  // MVI A takes the row behind it
    listing.rebuildInPlace();
    EXPECT_EQ(listing.address(0), 0x100);
    EXPECT_EQ(listing.selected(), 3);
    EXPECT_EQ(listing.address(3), 0x104);
}

TEST_F(ListingTest, RebuildInPlaceLosesASelectionWhoseAddressIsNoRowAnyMore) {
    listing.dispmem(0x100);
    listing.select(2);
    place(m, 0x101, {0x3E});
    listing.rebuildInPlace();
    EXPECT_EQ(listing.selected(), Listing::noRow);
}

TEST_F(ListingTest, RebuildInPlaceWithoutASelectionLooksFor0000) {
    listing.dispmem(0x100);
    listing.rebuildInPlace();
    EXPECT_EQ(listing.address(0), 0x100);
    EXPECT_EQ(listing.selected(), Listing::noRow);
    listing.dispmem(0);
    listing.rebuildInPlace();
    EXPECT_EQ(listing.selected(), 0);
}

TEST_F(ListingTest, RebuildInPlaceOfAnEmptyListStartsAt0000) {
    listing.rebuildInPlace();
    EXPECT_EQ(listing.rows().size(), 29U);
    EXPECT_EQ(listing.address(0), 0);
    EXPECT_EQ(listing.selected(), 0);
}

TEST_F(ListingTest, RebuildInPlaceAfterTheListGrewShorterThanTheSelectedRow) {
    listing.dispmem(0x100);
    listing.select(28);
    listing.dispmem(0xFFFF);
    listing.rebuildInPlace();
    EXPECT_EQ(listing.address(0), 0xFFFF);
    EXPECT_EQ(listing.selected(), Listing::noRow);
}

// --- selection ---

TEST_F(ListingTest, SelectOutsideTheRowsMeansNone) {
    listing.dispmem(0);
    for (const int row : {-1, 29, 1000, -5}) {
        listing.select(3);
        listing.select(row);
        EXPECT_EQ(listing.selected(), Listing::noRow) << row;
        EXPECT_FALSE(listing.firstSelected());
        EXPECT_FALSE(listing.lastSelected());
    }
}

TEST_F(ListingTest, FirstAndLastRowKnowTheirSelection) {
    listing.dispmem(0);
    listing.select(0);
    EXPECT_TRUE(listing.firstSelected());
    EXPECT_FALSE(listing.lastSelected());
    listing.select(28);
    EXPECT_FALSE(listing.firstSelected());
    EXPECT_TRUE(listing.lastSelected());
    listing.dispmem(0xFFFF);
    listing.select(0);
    EXPECT_TRUE(listing.firstSelected());
    EXPECT_TRUE(listing.lastSelected());
}

TEST_F(ListingTest, AnEmptyListHasNeitherAFirstNorALastRowSelected) {
    EXPECT_TRUE(listing.rows().empty());
    EXPECT_EQ(listing.selected(), Listing::noRow);
    EXPECT_FALSE(listing.firstSelected());
    EXPECT_FALSE(listing.lastSelected());
}

TEST_F(ListingTest, ARowThatDoesNotExistHasNoAddress) {
    listing.dispmem(0);
    EXPECT_EQ(errorOf([this] { (void)listing.address(29); }), subscriptError);
    EXPECT_EQ(errorOf([this] { (void)listing.address(-1); }), subscriptError);
}

// --- scrolling ---

TEST_F(ListingTest, UpFrom1234RedrawsFrom1233EvenWhenThatSplitsAnInstruction) {
    place(m, 0x1232, {0xC3, 0x3E, 0x12});  // JMP 123E, whose operand decodes as MVI A,12
    listing.dispmem(0x1234);
    listing.select(0);
    listing.stepBackOneByte();
    EXPECT_EQ(listing.rows().size(), 29U);
    EXPECT_EQ(listing.rows()[0], "1233 3E 12     MVI A,12");
    EXPECT_TRUE(listing.firstSelected());
}

TEST_F(ListingTest, UpOn0000DoesNothingSpecial) {
    listing.dispmem(0);
    listing.select(0);
    const std::vector<std::string> before = listing.rows();
    listing.stepBackOneByte();
    EXPECT_EQ(listing.rows(), before);
    EXPECT_EQ(listing.selected(), 0);
}

TEST_F(ListingTest, ScrollingBackLooksForAOneByteInstruction) {
    place(m, 0x1230, {0x00, 0x3E, 0x01, 0xC3});  // NOP; then no code of one byte
    listing.dispmem(0x1234);
    listing.select(0);
    listing.scrollBack();
    EXPECT_EQ(listing.address(0), 0x1230);
    EXPECT_TRUE(listing.firstSelected());
}

TEST_F(ListingTest, ScrollingBackTakesAnUndefinedCodeForOneOfOneByte) {
    place(m, 0x1232, {0xCB, 0x3E});
    listing.dispmem(0x1234);
    listing.select(0);
    listing.scrollBack();
    EXPECT_EQ(listing.rows()[0], "1232 CB        ?");
}

TEST_F(ListingTest, ScrollingBackStopsAt0000) {
    fillWith(0x01);
    listing.dispmem(0x1234);
    listing.select(0);
    listing.scrollBack();
    EXPECT_EQ(listing.address(0), 0);
    const std::vector<std::string> before = listing.rows();
    listing.scrollBack();
    EXPECT_EQ(listing.rows(), before);
}

TEST_F(ListingTest, ScrollingForwardMovesByOneInstructionAndKeepsTheLength) {
    fillRandomly(3);
    listing.dispmem(0x4000);
    for (int i = 0; i < 100; ++i) {
        const std::vector<std::string> before = listing.rows();
        const std::int32_t last = listing.address(28);
        listing.scrollForward();
        ASSERT_EQ(listing.rows().size(), 29U);
        EXPECT_TRUE(std::equal(before.begin() + 1, before.end(), listing.rows().begin()));
        EXPECT_EQ(listing.rows().back(), linea(m, *breakpoints, last + lengthAt(last)).text);
    }
}

TEST_F(ListingTest, ScrollingForwardEndsWithTheInstructionThatReachesTheTop) {
    listing.dispmem(0x10000 - 30);
    listing.scrollForward();
    EXPECT_EQ(listing.rows().back().substr(0, 4), "FFFF");
    const std::vector<std::string> before = listing.rows();
    listing.scrollForward();
    EXPECT_EQ(listing.rows(), before);
    place(m, 0xFFFE, {0xC3});  // JMP takes FFFF and goes round
    listing.dispmem(0x10000 - 30);
    listing.scrollForward();
    EXPECT_EQ(listing.rows().back().substr(0, 4), "FFFE");
}

TEST_F(ListingTest, ScrollingForwardShowsABreakpointInTheNewRow) {
    (*breakpoints)[29] = -1;
    listing.dispmem(0);
    listing.scrollForward();
    EXPECT_EQ(listing.rows().back(), "001D*00        NOP");
}

}  // namespace
}  // namespace tavinor::test
