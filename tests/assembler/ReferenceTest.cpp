// Every instruction of the processor, with several operands, assembled by an independent assembler and by
// ours: the bytes must be the same. RST 5 is left out, which ours encodes as RST 3; MOV M,M is no
// instruction. What the independent assembler made is kept (reference/make).

#include <gtest/gtest.h>

#include <array>
#include <filesystem>
#include <string>

#include "images/HexLoader.h"
#include "machine/HexText.h"
#include "machine/MnemonicTable.h"
#include "tests/assembler/Support.h"

namespace tavinor::test {

namespace {

constexpr std::array operands{0x0000, 0x0001, 0x1234, 0x7F80, 0xA5C3, 0xFFFF};

std::string literal(int value, int width) {
    return "0" + hexa(value, width) + "H";
}

/// The instruction with `operand` in place of its placeholder; the low byte where there is one for a byte.
std::string filledIn(std::string_view instruction, int operand) {
    const std::string text(instruction);
    if (const std::size_t byte = text.find(byteOperand); byte != std::string::npos) {
        return text.substr(0, byte) + literal(operand, 2);
    }
    if (const std::size_t word = text.find(wordOperand); word != std::string::npos) {
        return text.substr(0, word) + literal(operand, 4);
    }
    return text;
}

std::string everyInstruction() {
    std::string source = " ORG 0100H\n";
    for (const int operand : operands) {
        for (const std::string_view instruction : tabla) {
            if (instruction == "?" || instruction == "RST 5") continue;
            source += " " + filledIn(instruction, operand) + "\n";
        }
    }
    return source;
}

ImageBuffer loadedFrom(const std::filesystem::path& hex) {
    LoadedMachine host;
    Breakpoints breakpoints{};
    WorkObserver unobserved;
    EXPECT_EQ(carga(hex, host.machine, breakpoints, host, unobserved).message, "");
    return host.image;
}

const std::filesystem::path kept = TAVINOR_REFERENCE_DIRECTORY;

TEST(Reference, TheSourceHasEveryInstruction) {
    const std::filesystem::path source = kept / "every-instruction.asm";
    if (blessing()) writeBytes(source, everyInstruction());
    EXPECT_EQ(readBytes(source), everyInstruction());
}

TEST(Reference, EveryInstructionHasTheBytesOfAnIndependentAssembler) {
    const AssemblyResult ours = assembled(everyInstruction());
    ASSERT_TRUE(ours.assembled) << ours.report;
    const ImageBuffer reference = loadedFrom(kept / "every-instruction.hex");
    // 245 instructions: 26 with a word, 18 with a byte, the others without an operand.
    ASSERT_NE(reference[0x0100 + 6 * (201 + 2 * 18 + 3 * 26) - 1], noByte);
    EXPECT_EQ(differences(reference, ours.image), "");
}

}  // namespace

}  // namespace tavinor::test
