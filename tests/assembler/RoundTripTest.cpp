// Random memory, disassembled, written as a source, assembled: the same memory.

#include <gtest/gtest.h>

#include <cstdint>
#include <random>
#include <string>

#include "images/Disassembler.h"
#include "machine/HexText.h"
#include "machine/MnemonicTable.h"
#include "tests/assembler/Support.h"

namespace tavinor::test {

namespace {

constexpr int imagesTried = 40;

void fillAtRandom(MachineState& machine, std::mt19937& random) {
    std::uniform_int_distribution<int> byte(0, 255);
    for (std::uint8_t& cell : machine.mem) cell = static_cast<std::uint8_t>(byte(random));
}

/// The disassembled instruction as the assembler reads it: operands are hexadecimal, with a leading 0 and H.
/// What no source text gives (the undefined codes, and EF) is written as a byte.
std::string sourceLine(MachineState& machine, std::int32_t address) {
    const std::uint8_t opcode = machine.mem[static_cast<std::size_t>(address)];
    if (tabla[opcode] == "?" || tabla[opcode] == "RST 5") {
        return " DFB 0" + hexa(std::int32_t{opcode}, 2) + "H";
    }
    const Instruction instruction = desensambla(machine, address);
    if (instruction.length == 1) return " " + instruction.text;
    const std::size_t digits = instruction.length == 2 ? 2 : 4;
    const std::size_t operand = instruction.text.size() - digits;
    return " " + instruction.text.substr(0, operand) + "0" + instruction.text.substr(operand) + "H";
}

class RoundTrip : public testing::TestWithParam<int> {};

TEST_P(RoundTrip, GivesTheSameMemory) {
    std::mt19937 random(static_cast<std::uint32_t>(GetParam()));
    MachineState machine;
    fillAtRandom(machine, random);
    const std::int32_t start = std::uniform_int_distribution<std::int32_t>(0, 60000)(random);
    const std::int32_t end = start + 5000;

    std::string source = " ORG 0" + hexa(start, 4) + "H\n";
    std::int32_t next = start;
    while (next < end) {
        source += sourceLine(machine, next) + "\n";
        next += desensambla(machine, next).length;
    }
    const AssemblyResult result = assembled(source);
    ASSERT_TRUE(result.assembled) << result.report;

    ImageBuffer expected;
    expected.fill(noByte);
    for (auto i = static_cast<std::size_t>(start); i < static_cast<std::size_t>(next); ++i) {
        expected[i] = machine.mem[i];
    }
    EXPECT_EQ(differences(expected, result.image), "");
}

INSTANTIATE_TEST_SUITE_P(Images, RoundTrip, testing::Range(0, imagesTried));

}  // namespace

}  // namespace tavinor::test
