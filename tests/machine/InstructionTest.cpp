// Every instruction on an ordinary machine, from tables: what it meets, what it leaves behind.

#include <gtest/gtest.h>

#include <cctype>
#include <memory>
#include <set>

#include "machine/Stepper.h"
#include "tests/machine/InstructionCase.h"
#include "tests/support/Differences.h"
#include "tests/support/TestHost.h"

namespace tavinor {
namespace test {

/// How a case shows in a failure.
void PrintTo(const InstructionCase& instruction, std::ostream* out) {
    *out << instruction.name;
}

namespace {

constexpr std::int32_t codeAddress = 0x1000;

void fillWithDistinctValues(MachineState& m) {
    for (std::size_t i = 0; i < m.mem.size(); ++i) m.mem[i] = static_cast<std::uint8_t>(i * 7 + i / 256 + 3);
    m.synmem();
    for (std::size_t i = 0; i < m.port.size(); ++i) m.port[i] = static_cast<std::uint8_t>(i * 5 + 1);
    m.A = 0xA1, m.B = 0xB2, m.C = 0xC3, m.D = 0xD4, m.E = 0xE5, m.H = 0x96, m.L = 0x87;
    m.F = 0x2A;
    m.PC = codeAddress;
    m.SP = 0x3000;
    m.intState = {.IE = false, .M55 = true, .M65 = false, .M75 = true, .R75 = false};
    m.SID = true;
}

std::vector<InstructionCase> allCases() {
    std::vector<InstructionCase> cases = transferCases();
    for (const auto& more : {arithmeticCases(), controlCases()}) {
        cases.insert(cases.end(), more.begin(), more.end());
    }
    return cases;
}

class InstructionTest : public ::testing::TestWithParam<InstructionCase> {};

TEST_P(InstructionTest, LeavesExactlyWhatItShould) {
    const InstructionCase& instruction = GetParam();
    const auto m = std::make_unique<MachineState>();
    fillWithDistinctValues(*m);
    if (instruction.before) instruction.before(*m);
    m->recomputePairs();
    std::int32_t address = codeAddress;
    for (const int byte : instruction.code) m->storeMemory(address++, byte);
    m->synmem();

    const auto expected = std::make_unique<MachineState>(*m);
    expected->PC = address;
    if (instruction.after) instruction.after(*expected);
    expected->recomputePairs();

    TestHost host(*m);
    EjecutaPASO(*m, host);
    EXPECT_EQ(differences(*m, *expected), "");
    EXPECT_EQ(host.halts, instruction.code[0] == 0x76 ? 1 : 0);
}

std::string testName(const ::testing::TestParamInfo<InstructionCase>& instruction) {
    std::string name = std::to_string(instruction.index) + "_";
    for (const char c : instruction.param.name) name += std::isalnum(static_cast<unsigned char>(c)) ? c : '_';
    return name;
}

INSTANTIATE_TEST_SUITE_P(Table, InstructionTest, ::testing::ValuesIn(allCases()), testName);

TEST(InstructionTable, HoldsEveryOpcode) {
    std::set<int> opcodes;
    for (const InstructionCase& instruction : allCases()) opcodes.insert(instruction.code[0]);
    EXPECT_EQ(opcodes.size(), 256U);
    EXPECT_EQ(*opcodes.begin(), 0);
    EXPECT_EQ(*opcodes.rbegin(), 255);
}

}  // namespace
}  // namespace test
}  // namespace tavinor
