#include "images/Comment.h"

#include <gtest/gtest.h>

#include <map>
#include <memory>

#include "machine/Flags.h"
#include "tests/support/Bits.h"
#include "tests/support/Errors.h"
#include "tests/support/Machines.h"

namespace tavinor::test {
namespace {

constexpr std::int32_t here = 0x1000;

class CommentTest : public ::testing::Test {
  protected:
    CommentTest() {
        m.PC = here;
        m.B = 0x20, m.C = 0x10, m.D = 0x20, m.E = 0x20;
        m.recomputePairs();
        m.mem[0x2010] = 0xB1;
        m.mem[0x2020] = 0xD1;
        m.mem[0x2030] = 0xA1;
        m.port[0x30] = 0x0C;
    }

    /// The comment at PC for an opcode with the operand bytes 30 20.
    std::string comment(int opcode, std::uint8_t shownFlags) {
        place(m, here, {opcode, 0x30, 0x20});
        return comenta(m, shownFlags, here);
    }

    std::unique_ptr<MachineState> machine = std::make_unique<MachineState>();
    MachineState& m = *machine;
};

using Comments = std::map<int, std::string>;

void put(Comments& comments, std::initializer_list<int> opcodes, const std::string& text) {
    for (const int opcode : opcodes) comments[opcode] = text;
}

Comments commentsThatIgnoreFlags() {
    Comments comments;
    put(comments, {0x00}, "No hace nada");
    for (const int opcode : undefinedOpcodes) comments[opcode] = "Código invalido";
    put(comments, {0x76}, "Sistema parado");
    put(comments, {0xC7}, "Salto a 0000");
    put(comments, {0xCF}, "Salto a 0008");
    put(comments, {0xD7}, "Salto a 0010");
    put(comments, {0xDF}, "Salto a 0018");
    put(comments, {0xE7}, "Salto a 0020");
    put(comments, {0xEF}, "Salto a 0028");
    put(comments, {0xF7}, "Salto a 0030");
    put(comments, {0xFF}, "Salto a 0038");
    put(comments, {0x0A}, "[BC]=B1");
    put(comments, {0x1A}, "[DE]=D1");
    put(comments, {0x3A}, "[2030]=A1");
    put(comments, {0xDB}, "p[30]0C");
    return comments;
}

/// All comments when every flag is shown set, or when none is.
Comments allComments(bool flagsSet) {
    Comments comments = commentsThatIgnoreFlags();
    put(comments, {0xC0, 0xC2, 0xC4, 0xC8, 0xCA, 0xCC}, flagsSet ? "Z=1" : "Z=0");
    put(comments, {0xD0, 0xD2, 0xD4, 0xD8, 0xDA, 0xDC, 0x3F}, flagsSet ? "C=1" : "C=0");
    put(comments, {0xE0, 0xE2, 0xE4, 0xE8, 0xEA, 0xEC}, flagsSet ? "P=1 (E)" : "P=0 (O)");
    put(comments, {0xF0, 0xF2, 0xF4, 0xF8, 0xFA, 0xFC}, flagsSet ? "S=1 (-)" : "S=0 (+)");
    return comments;
}

TEST_F(CommentTest, EveryOpcodeWithAndWithoutFlags) {
    for (const bool flagsSet : {false, true}) {
        const Comments expected = allComments(flagsSet);
        for (int opcode = 0; opcode < 256; ++opcode) {
            const auto found = expected.find(opcode);
            EXPECT_EQ(comment(opcode, flagsSet ? 0xFF : 0x00), found != expected.end() ? found->second : "")
                << opcode;
        }
    }
}

TEST_F(CommentTest, EachConditionShowsItsOwnFlag) {
    EXPECT_EQ(comment(0xCA, flag::Z), "Z=1");
    EXPECT_EQ(comment(0xCA, 0xFF - flag::Z), "Z=0");
    EXPECT_EQ(comment(0xDA, flag::CY), "C=1");
    EXPECT_EQ(comment(0xDA, 0xFF - flag::CY), "C=0");
    EXPECT_EQ(comment(0xEA, flag::P), "P=1 (E)");
    EXPECT_EQ(comment(0xEA, 0xFF - flag::P), "P=0 (O)");
    EXPECT_EQ(comment(0xFA, flag::S), "S=1 (-)");
    EXPECT_EQ(comment(0xFA, 0xFF - flag::S), "S=0 (+)");
}

TEST_F(CommentTest, FlagsAreThoseShownAndNotThoseOfTheMachine) {
    m.F = 0xFF;
    EXPECT_EQ(comment(0xCA, 0), "Z=0");
}

TEST_F(CommentTest, StoresAndUnconditionalJumpsHaveNone) {
    for (const int opcode : {0x02, 0x12, 0x22, 0x32, 0x2A, 0xD3, 0x37, 0x20, 0x30, 0xC3, 0xCD, 0xC9, 0xE9}) {
        EXPECT_EQ(comment(opcode, 0xFF), "") << opcode;
    }
}

TEST_F(CommentTest, TheOpcodeIsTakenAtTheAddressAndTheOperandsAtPc) {
    place(m, here, {0x00, 0x30, 0x20});
    place(m, 0x3000, {0x3A, 0x77, 0x77});
    EXPECT_EQ(comenta(m, 0, 0x3000), "[2030]=A1");
    place(m, 0x3000, {0xDB, 0x77});
    EXPECT_EQ(comenta(m, 0, 0x3000), "p[30]0C");
}

TEST_F(CommentTest, OperandsAtTheTopComeFromTheBottom) {
    place(m, 0xFFFF, {0x3A, 0x30, 0x20});
    m.PC = 0xFFFF;
    EXPECT_EQ(comenta(m, 0, 0xFFFF), "[2030]=A1");
    place(m, 0xFFFE, {0x3A, 0x30, 0x20});
    m.PC = 0xFFFE;
    EXPECT_EQ(comenta(m, 0, 0xFFFE), "[2030]=A1");
}

TEST_F(CommentTest, AddressesOutsideMemoryAreSubscriptErrors) {
    EXPECT_EQ(errorOf([this] { comenta(m, 0, 65536); }), subscriptError);
    EXPECT_EQ(errorOf([this] { comenta(m, 0, -1); }), subscriptError);
    m.PC = 65536;
    EXPECT_EQ(errorOf([this] { comenta(m, 0, 0); }), subscriptError);
}

}  // namespace
}  // namespace tavinor::test
