#include "images/Disassembler.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <memory>
#include <random>

#include "machine/HexText.h"
#include "machine/MnemonicTable.h"
#include "tests/support/Bits.h"
#include "tests/support/Differences.h"
#include "tests/support/Errors.h"
#include "tests/support/Machines.h"
#include "tests/support/ReferenceMachine.h"

namespace tavinor::test {
namespace {

using Names = std::array<std::string, 8>;

const Names registerNames{"B", "C", "D", "E", "H", "L", "M", "A"};
const std::array<std::string, 4> pairNames{"B", "D", "H", "SP"};
const std::array<std::string, 4> stackedNames{"B", "D", "H", "PSW"};
const Names conditionNames{"NZ", "Z", "NC", "C", "PO", "PE", "P", "M"};

const std::string& pick(const Names& names, int index) {
    return names[static_cast<std::size_t>(index)];
}

const std::string& pick(const std::array<std::string, 4>& names, int index) {
    return names[static_cast<std::size_t>(index)];
}

std::string lowTableText(OpcodeFields f) {
    const Names idle{"NOP", "?", "?", "?", "RIM", "?", "SIM", "?"};
    const Names memory{"STAX B",       "LDAX B",       "STAX D",      "LDAX D",
                       "SHLD palabra", "LHLD palabra", "STA palabra", "LDA palabra"};
    const Names accumulator{"RLC", "RRC", "RAL", "RAR", "DAA", "CMA", "STC", "CMC"};
    switch (f.z) {
        case 0: return pick(idle, f.y);
        case 1: return f.q == 0 ? "LXI " + pick(pairNames, f.p) + ",palabra" : "DAD " + pick(pairNames, f.p);
        case 2: return pick(memory, f.y);
        case 3: return (f.q == 0 ? "INX " : "DCX ") + pick(pairNames, f.p);
        case 4: return "INR " + pick(registerNames, f.y);
        case 5: return "DCR " + pick(registerNames, f.y);
        case 6: return "MVI " + pick(registerNames, f.y) + ",byte";
        default: return pick(accumulator, f.y);
    }
}

std::string highTableText(OpcodeFields f) {
    const std::array<std::string, 4> returns{"RET", "?", "PCHL", "SPHL"};
    const Names singles{"JMP palabra", "?", "OUT byte", "IN byte", "XTHL", "XCHG", "DI", "EI"};
    const Names immediates{"ADI byte", "ACI byte", "SUI byte", "SBI byte",
                           "ANI byte", "XRI byte", "ORI byte", "CPI byte"};
    switch (f.z) {
        case 0: return "R" + pick(conditionNames, f.y);
        case 1: return f.q == 0 ? "POP " + pick(stackedNames, f.p) : pick(returns, f.p);
        case 2: return "J" + pick(conditionNames, f.y) + " palabra";
        case 3: return pick(singles, f.y);
        case 4: return "C" + pick(conditionNames, f.y) + " palabra";
        case 5:
            if (f.q == 0) return "PUSH " + pick(stackedNames, f.p);
            return f.p == 0 ? "CALL palabra" : "?";
        case 6: return pick(immediates, f.y);
        default: return "RST " + std::to_string(f.y);
    }
}

/// The table's text for an opcode, put together from its bit fields.
std::string tableText(int opcode) {
    const Names operations{"ADD ", "ADC ", "SUB ", "SBB ", "ANA ", "XRA ", "ORA ", "CMP "};
    const OpcodeFields f(opcode);
    switch (f.x) {
        case 0: return lowTableText(f);
        case 1:
            if (opcode == 0x76) return "HLT";
            return "MOV " + pick(registerNames, f.y) + "," + pick(registerNames, f.z);
        case 2: return pick(operations, f.y) + pick(registerNames, f.z);
        default: return highTableText(f);
    }
}

/// The table's text with its placeholder replaced.
std::string filled(const std::string& text, int low, int high) {
    const std::size_t word = text.find("palabra");
    const std::size_t byte = text.find("byte");
    if (word != std::string::npos) return text.substr(0, word) + hexa(high * 256 + low, 4);
    if (byte != std::string::npos) return text.substr(0, byte) + hexa(low, 2);
    return text;
}

class DisassemblerTest : public ::testing::Test {
  protected:
    std::string line(std::int32_t address) { return linea(m, *breakpoints, address).text; }

    std::unique_ptr<MachineState> machine = std::make_unique<MachineState>();
    std::unique_ptr<Breakpoints> breakpoints = std::make_unique<Breakpoints>();
    MachineState& m = *machine;
};

TEST_F(DisassemblerTest, TheTableFollowsTheStructureOfTheOpcodeMap) {
    for (std::size_t opcode = 0; opcode < 256; ++opcode) {
        EXPECT_EQ(tabla[opcode], tableText(static_cast<int>(opcode))) << opcode;
    }
}

TEST_F(DisassemblerTest, TenCodesAreUndefined) {
    EXPECT_EQ(static_cast<std::size_t>(std::count(tabla.begin(), tabla.end(), "?")), undefinedOpcodes.size());
    for (const int opcode : undefinedOpcodes)
        EXPECT_EQ(tabla[static_cast<std::size_t>(opcode)], "?") << opcode;
}

TEST_F(DisassemblerTest, EveryOpcodeShowsItsOperandsAndItsLength) {
    for (int opcode = 0; opcode < 256; ++opcode) {
        place(m, 0x1234, {opcode, 0x5A, 0x0C});
        const Instruction instruction = desensambla(m, 0x1234);
        EXPECT_EQ(instruction.text, filled(tableText(opcode), 0x5A, 0x0C)) << opcode;
        EXPECT_EQ(instruction.length, lengthByFields(opcode)) << opcode;
    }
}

TEST_F(DisassemblerTest, ImmediateByteHasTwoDigits) {
    place(m, 0, {0x3E, 0x05});
    EXPECT_EQ(desensambla(m, 0).text, "MVI A,05");
    EXPECT_EQ(desensambla(m, 0).length, 2);
}

TEST_F(DisassemblerTest, WordIsShownHighByteFirst) {
    place(m, 0, {0xC3, 0x00, 0x20});
    EXPECT_EQ(desensambla(m, 0).text, "JMP 2000");
    EXPECT_EQ(desensambla(m, 0).length, 3);
}

TEST_F(DisassemblerTest, OperandsAreAlwaysPadded) {
    place(m, 0, {0xD3, 0x05});  // OUT 05
    EXPECT_EQ(desensambla(m, 0).text, "OUT 05");
    place(m, 0, {0x21, 0x12, 0x00});  // LXI H,0012
    EXPECT_EQ(desensambla(m, 0).text, "LXI H,0012");
}

TEST_F(DisassemblerTest, AnUndefinedCodeIsAQuestionMarkOfOneByte) {
    place(m, 0x10, {0xCB, 0xFF, 0xFF});
    EXPECT_EQ(desensambla(m, 0x10).text, "?");
    EXPECT_EQ(desensambla(m, 0x10).length, 1);
    EXPECT_EQ(line(0x10), "0010 CB        ?");
}

TEST_F(DisassemblerTest, OperandsBehindFFFEAndFFFFComeFromTheStartOfMemory) {
    place(m, 0xFFFF, {0xCD, 0x34, 0x12});
    EXPECT_EQ(desensambla(m, 0xFFFF).text, "CALL 1234");
    EXPECT_EQ(line(0xFFFF), "FFFF CD 34 12  CALL 1234");
    place(m, 0xFFFE, {0xCD, 0x78, 0x56});
    EXPECT_EQ(desensambla(m, 0xFFFE).text, "CALL 5678");
    EXPECT_EQ(line(0xFFFE), "FFFE CD 78 56  CALL 5678");
    place(m, 0xFFFF, {0x3E, 0x9A});
    EXPECT_EQ(desensambla(m, 0xFFFF).text, "MVI A,9A");
    EXPECT_EQ(line(0xFFFF), "FFFF 3E 9A     MVI A,9A");
}

TEST_F(DisassemblerTest, OperandsAtTheTopAreTheSameWhateverTheMirrorHolds) {
    std::mt19937 random(22);
    randomise(m, random);  // with a mirror that is out of date
    for (int opcode = 0; opcode < 256; ++opcode) {
        for (const std::int32_t address : {0xFFFE, 0xFFFF}) {
            place(m, address, {opcode});
            const std::string behind = line(address);
            const std::string textBehind = desensambla(m, address).text;
            const auto refreshed = std::make_unique<MachineState>(m);
            refreshed->synmem();
            ASSERT_NE(differences(m, *refreshed), "");
            EXPECT_EQ(behind, linea(*refreshed, *breakpoints, address).text) << opcode;
            EXPECT_EQ(textBehind, desensambla(*refreshed, address).text) << opcode;
        }
    }
}

TEST_F(DisassemblerTest, LinesOfOneTwoAndThreeBytes) {
    place(m, 0, {0x3E, 0x05, 0xC3, 0x00, 0x20, 0x76});
    (*breakpoints)[2] = -1;
    EXPECT_EQ(line(0), "0000 3E 05     MVI A,05");
    EXPECT_EQ(line(2), "0002*C3 00 20  JMP 2000");
    EXPECT_EQ(line(5), "0005 76        HLT");
    EXPECT_EQ(linea(m, *breakpoints, 2).length, 3);
}

TEST_F(DisassemblerTest, ABreakpointChangesOnlyTheFifthCharacter) {
    place(m, 0x1234, {0x3E, 0x05});
    std::string expected = line(0x1234);
    ASSERT_EQ(expected[4], ' ');
    expected[4] = '*';
    (*breakpoints)[0x1234] = -1;
    EXPECT_EQ(line(0x1234), expected);
    (*breakpoints)[0x1234] = 0;
    (*breakpoints)[0x1235] = (*breakpoints)[0x1233] = -1;
    expected[4] = ' ';
    EXPECT_EQ(line(0x1234), expected);
}

TEST_F(DisassemblerTest, EveryLineHasItsColumns) {
    for (int opcode = 0; opcode < 256; ++opcode) {
        place(m, 0xABCD, {opcode, 0x5A, 0x0C});
        const std::string text = line(0xABCD);
        const std::array<std::string, 3> bytes{"      ", " 5A   ", " 5A 0C"};
        const auto operands = static_cast<std::size_t>(lengthByFields(opcode) - 1);
        EXPECT_EQ(text.substr(0, 5), "ABCD ");
        EXPECT_EQ(text.substr(5, 8), hexa(opcode, 2) + bytes[operands]);
        EXPECT_EQ(text.substr(13, 2), "  ");
        EXPECT_EQ(text.substr(15), filled(tableText(opcode), 0x5A, 0x0C));
    }
}

TEST_F(DisassemblerTest, AddressesOutsideMemoryAreSubscriptErrors) {
    for (const std::int32_t address : {-1, 65536, 65537, 70000}) {
        EXPECT_EQ(errorOf([&] { desensambla(m, address); }), subscriptError) << address;
        EXPECT_EQ(errorOf([&] { linea(m, *breakpoints, address); }), subscriptError) << address;
    }
}

}  // namespace
}  // namespace tavinor::test
