#include "machine/Flags.h"
#include "tests/machine/InstructionCase.h"
#include "tests/support/Bits.h"

namespace tavinor::test {

namespace {

using Cases = std::vector<InstructionCase>;
using State = MachineState;

constexpr std::int32_t target = 0x2345;

void calledFrom(State& m, int returnAddress, std::int32_t address) {
    m.mem[0x2FFF] = static_cast<std::uint8_t>(returnAddress / 256);
    m.mem[0x2FFE] = static_cast<std::uint8_t>(returnAddress % 256);
    m.SP = 0x2FFE;
    m.PC = address;
}

void returned(State& m) {
    m.PC = target;
    m.SP = 0x3002;
}

void putReturnAddress(State& m) {
    m.mem[0x3000] = target % 256;
    m.mem[0x3001] = target / 256;
}

struct Condition {
    const char* name;
    int offset;  ///< Added to the opcode of the first conditional jump, call or return.
    int bit;
    bool whenSet;
};
constexpr std::array<Condition, 8> conditions{{
    {"NZ", 0x00, flag::Z, false},
    {"Z", 0x08, flag::Z, true},
    {"NC", 0x10, flag::CY, false},
    {"C", 0x18, flag::CY, true},
    {"PO", 0x20, flag::P, false},
    {"PE", 0x28, flag::P, true},
    {"P", 0x30, flag::S, false},
    {"M", 0x38, flag::S, true},
}};

/// Jump, call and return under one condition, once with its flag set alone and once with all but its flag.
void addConditional(Cases& cases, const Condition& condition) {
    for (const bool set : {true, false}) {
        const bool taken = set == condition.whenSet;
        const auto f = static_cast<std::uint8_t>(set ? condition.bit : 255 - condition.bit);
        const std::string name = condition.name + std::string(taken ? " taken" : " not taken");
        const auto before = [f](State& m) {
            m.F = f;
            putReturnAddress(m);
        };
        const auto when = [taken](const InstructionCase::Change& change) {
            return taken ? change : InstructionCase::Change([](State&) {});
        };
        cases.push_back({"J" + name, {0xC2 + condition.offset, 0x45, 0x23}, before, when([](State& m) {
                             m.PC = target;
                         })});
        cases.push_back({"C" + name, {0xC4 + condition.offset, 0x45, 0x23}, before, when([](State& m) {
                             calledFrom(m, 0x1003, target);
                         })});
        cases.push_back({"R" + name, {0xC0 + condition.offset}, before, when(returned)});
    }
}

void addJumps(Cases& cases) {
    for (const Condition& condition : conditions) addConditional(cases, condition);
    const Cases added{
        {"JMP", {0xC3, 0x45, 0x23}, {}, [](State& m) { m.PC = target; }},
        {"CALL", {0xCD, 0x45, 0x23}, {}, [](State& m) { calledFrom(m, 0x1003, target); }},
        {"RET", {0xC9}, putReturnAddress, returned},
        {"PCHL",
         {0xE9},
         [](State& m) { m.H = target / 256, m.L = target % 256; },
         [](State& m) { m.PC = target; }},
        {"RST 0", {0xC7}, {}, [](State& m) { calledFrom(m, 0x1001, 0); }},
        {"RST 1", {0xCF}, {}, [](State& m) { calledFrom(m, 0x1001, 8); }},
        {"RST 2", {0xD7}, {}, [](State& m) { calledFrom(m, 0x1001, 16); }},
        {"RST 3", {0xDF}, {}, [](State& m) { calledFrom(m, 0x1001, 24); }},
        {"RST 4", {0xE7}, {}, [](State& m) { calledFrom(m, 0x1001, 32); }},
        {"RST 5", {0xEF}, {}, [](State& m) { calledFrom(m, 0x1001, 40); }},
        {"RST 6", {0xF7}, {}, [](State& m) { calledFrom(m, 0x1001, 48); }},
        {"RST 7", {0xFF}, {}, [](State& m) { calledFrom(m, 0x1001, 56); }},
    };
    cases.insert(cases.end(), added.begin(), added.end());
}

void addIdle(Cases& cases) {
    cases.push_back({"NOP", {0x00}, {}, {}});
    for (const int opcode : undefinedOpcodes) {
        cases.push_back({"undefined " + std::to_string(opcode), {opcode}, {}, {}});
    }
    cases.push_back({"HLT by itself", {0x76}, {}, {}});
}

void addInterrupts(Cases& cases) {
    const Cases added{
        {"EI", {0xFB}, [](State& m) { m.intState.IE = false; }, [](State& m) { m.intState.IE = true; }},
        {"DI", {0xF3}, [](State& m) { m.intState.IE = true; }, [](State& m) { m.intState.IE = false; }},
        {"RIM with everything set",
         {0x20},
         [](State& m) {
             m.intState = {true, true, true, true, true};
             m.SID = true;
             m.SOD = false;
         },
         [](State& m) { m.A = 0x9F; }},
        {"RIM with nothing set",
         {0x20},
         [](State& m) {
             m.intState = {};
             m.SID = false;
             m.SOD = true;
         },
         [](State& m) { m.A = 0; }},
        {"SIM does it all at once",
         {0x30},
         [](State& m) {
             m.intState = {true, true, true, false, true};
             m.SOD = false;
             m.A = 0xDC;
         },
         [](State& m) {
             m.intState = {true, false, false, true, false};
             m.SOD = true;
         }},
    };
    cases.insert(cases.end(), added.begin(), added.end());
}

}  // namespace

std::vector<InstructionCase> controlCases() {
    Cases cases;
    addJumps(cases);
    addIdle(cases);
    addInterrupts(cases);
    return cases;
}

}  // namespace tavinor::test
