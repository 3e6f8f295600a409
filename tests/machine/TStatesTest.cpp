// The T-states of every instruction against the groups of the processor's manual.

#include <gtest/gtest.h>

#include <map>
#include <memory>
#include <string>

#include "machine/Flags.h"
#include "machine/MnemonicTable.h"
#include "machine/Stepper.h"
#include "machine/TStates.h"
#include "tests/support/Machines.h"
#include "tests/support/TestHost.h"

namespace tavinor::test {
namespace {

/// Of one mnemonic: with register operands, and with the memory byte M among the operands.
struct Times {
    int states;
    int withM = 0;
};

const std::map<std::string, Times>& manual() {
    static const std::map<std::string, Times> times{
        {"NOP", {4}},    {"?", {4}},      {"MOV", {4, 7}}, {"MVI", {7, 10}}, {"LXI", {10}},
        {"LDA", {13}},   {"STA", {13}},   {"LHLD", {16}},  {"SHLD", {16}},   {"LDAX", {7}},
        {"STAX", {7}},   {"XCHG", {4}},   {"ADD", {4, 7}}, {"ADC", {4, 7}},  {"SUB", {4, 7}},
        {"SBB", {4, 7}}, {"ANA", {4, 7}}, {"XRA", {4, 7}}, {"ORA", {4, 7}},  {"CMP", {4, 7}},
        {"ADI", {7}},    {"ACI", {7}},    {"SUI", {7}},    {"SBI", {7}},     {"ANI", {7}},
        {"XRI", {7}},    {"ORI", {7}},    {"CPI", {7}},    {"INR", {4, 10}}, {"DCR", {4, 10}},
        {"INX", {6}},    {"DCX", {6}},    {"DAD", {10}},   {"DAA", {4}},     {"RLC", {4}},
        {"RRC", {4}},    {"RAL", {4}},    {"RAR", {4}},    {"CMA", {4}},     {"STC", {4}},
        {"CMC", {4}},    {"JMP", {10}},   {"CALL", {18}},  {"RET", {10}},    {"RST", {12}},
        {"PCHL", {6}},   {"PUSH", {12}},  {"POP", {10}},   {"XTHL", {16}},   {"SPHL", {6}},
        {"IN", {10}},    {"OUT", {10}},   {"EI", {4}},     {"DI", {4}},      {"HLT", {5}},
        {"RIM", {4}},    {"SIM", {4}},
    };
    return times;
}

struct Conditional {
    const char* first;  ///< of the mnemonic
    int notTaken, taken;
};
constexpr std::array<Conditional, 3> conditionals{{{"J", 7, 10}, {"C", 9, 18}, {"R", 6, 12}}};
constexpr std::array<std::string_view, 8> conditions{"NZ", "Z", "NC", "C", "PO", "PE", "P", "M"};

/// The group of a conditional instruction, or null.
const Conditional* conditionalOf(const std::string& mnemonic) {
    for (const Conditional& group : conditionals) {
        for (const std::string_view condition : conditions) {
            if (mnemonic == group.first + std::string(condition)) return &group;
        }
    }
    return nullptr;
}

std::string mnemonicOf(int opcode) {
    const std::string_view text = tabla[static_cast<std::size_t>(opcode)];
    return std::string(text.substr(0, text.find(' ')));
}

bool hasM(int opcode) {
    const std::string_view text = tabla[static_cast<std::size_t>(opcode)];
    const std::size_t blank = text.find(' ');
    if (blank == std::string_view::npos) return false;
    const std::string_view operands = text.substr(blank + 1);
    return operands == "M" || operands.starts_with("M,") || operands.ends_with(",M");
}

TEST(TStatesTest, EveryOpcodeTakesWhatTheManualSays) {
    for (int opcode = 0; opcode < 256; ++opcode) {
        const std::string mnemonic = mnemonicOf(opcode);
        const int states = tStates[static_cast<std::size_t>(opcode)];
        if (const Conditional* group = conditionalOf(mnemonic)) {
            EXPECT_EQ(states, group->notTaken) << mnemonic;
            continue;
        }
        ASSERT_TRUE(manual().contains(mnemonic)) << mnemonic;
        const Times& times = manual().at(mnemonic);
        EXPECT_EQ(states, hasM(opcode) ? times.withM : times.states)
            << tabla[static_cast<std::size_t>(opcode)];
    }
}

/// One step of `opcode` with the flags `f`, far from the ends of memory.
int statesOfAStep(int opcode, int f) {
    const auto machine = std::make_unique<MachineState>();
    place(*machine, 0x100, {opcode, 0x45, 0x23});
    machine->PC = 0x100;
    machine->SP = 0x3000;
    machine->F = static_cast<std::uint8_t>(f);
    TestHost host(*machine);
    return EjecutaPASO(*machine, host);
}

TEST(TStatesTest, AStepTellsWhatItTook) {
    for (int opcode = 0; opcode < 256; ++opcode) {
        const Conditional* group = conditionalOf(mnemonicOf(opcode));
        const int clear = statesOfAStep(opcode, 0);
        const int set = statesOfAStep(opcode, flag::S | flag::Z | flag::P | flag::CY);
        if (group == nullptr) {
            EXPECT_EQ(clear, tStates[static_cast<std::size_t>(opcode)]) << opcode;
            EXPECT_EQ(set, clear) << opcode;
        } else {
            const bool takenWhenSet = (opcode & 0x08) != 0;
            EXPECT_EQ(takenWhenSet ? set : clear, group->taken) << opcode;
            EXPECT_EQ(takenWhenSet ? clear : set, group->notTaken) << opcode;
        }
    }
}

}  // namespace
}  // namespace tavinor::test
