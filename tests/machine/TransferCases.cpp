#include "tests/machine/InstructionCase.h"

namespace tavinor::test {

namespace {

using Cases = std::vector<InstructionCase>;
using State = MachineState;

/// Register codes are told apart by these values; D and E lead to a cell that nothing else uses.
constexpr std::int32_t pointed = 0x2040;

void pointHL(State& m) {
    m.H = pointed / 256;
    m.L = pointed % 256;
}

void addMove(Cases& cases, int dst, int src) {
    const NamedRegister to = registersByCode[static_cast<std::size_t>(dst)];
    const NamedRegister from = registersByCode[static_cast<std::size_t>(src)];
    cases.push_back({.name = std::string("MOV ") + to.name + "," + from.name,
                     .code = {0x40 + dst * 8 + src},
                     .before =
                         [](State& m) {
                             pointHL(m);
                             m.mem[pointed] = 0xE7;
                         },
                     .after =
                         [to, from](State& m) {
                             const std::uint8_t value = from.cell != nullptr ? m.*from.cell : m.mem[pointed];
                             (to.cell != nullptr ? m.*to.cell : m.mem[pointed]) = value;
                         }});
}

void addMoves(Cases& cases) {
    for (int dst = 0; dst < 8; ++dst) {
        for (int src = 0; src < 8; ++src) {
            if (dst != memoryCode || src != memoryCode) addMove(cases, dst, src);
        }
    }
}

void addImmediates(Cases& cases) {
    const Cases added{
        {"MVI B", {0x06, 0x9C}, {}, [](State& m) { m.B = 0x9C; }},
        {"MVI C", {0x0E, 0x9C}, {}, [](State& m) { m.C = 0x9C; }},
        {"MVI D", {0x16, 0x9C}, {}, [](State& m) { m.D = 0x9C; }},
        {"MVI E", {0x1E, 0x9C}, {}, [](State& m) { m.E = 0x9C; }},
        {"MVI H", {0x26, 0x9C}, {}, [](State& m) { m.H = 0x9C; }},
        {"MVI L", {0x2E, 0x9C}, {}, [](State& m) { m.L = 0x9C; }},
        {"MVI A", {0x3E, 0x9C}, {}, [](State& m) { m.A = 0x9C; }},
        {"MVI M", {0x36, 0x9C}, pointHL, [](State& m) { m.mem[pointed] = 0x9C; }},
        {"LXI B", {0x01, 0x34, 0x12}, {}, [](State& m) { m.B = 0x12, m.C = 0x34; }},
        {"LXI D", {0x11, 0x34, 0x12}, {}, [](State& m) { m.D = 0x12, m.E = 0x34; }},
        {"LXI H", {0x21, 0x34, 0x12}, {}, [](State& m) { m.H = 0x12, m.L = 0x34; }},
        {"LXI SP", {0x31, 0x34, 0x12}, {}, [](State& m) { m.SP = 0x1234; }},
    };
    cases.insert(cases.end(), added.begin(), added.end());
}

void addLoadsAndStores(Cases& cases) {
    const auto pointBC = [](State& m) { m.B = 0x20, m.C = 0x50, m.mem[0x2050] = 0xD1; };
    const auto pointDE = [](State& m) { m.D = 0x20, m.E = 0x60, m.mem[0x2060] = 0xD2; };
    const auto word = [](State& m) { m.mem[0x2070] = 0x78, m.mem[0x2071] = 0x56; };
    const Cases added{
        {"LDAX B", {0x0A}, pointBC, [](State& m) { m.A = 0xD1; }},
        {"LDAX D", {0x1A}, pointDE, [](State& m) { m.A = 0xD2; }},
        {"STAX B", {0x02}, pointBC, [](State& m) { m.mem[0x2050] = m.A; }},
        {"STAX D", {0x12}, pointDE, [](State& m) { m.mem[0x2060] = m.A; }},
        {"LDA", {0x3A, 0x70, 0x20}, word, [](State& m) { m.A = 0x78; }},
        {"STA", {0x32, 0x70, 0x20}, word, [](State& m) { m.mem[0x2070] = m.A; }},
        {"LHLD", {0x2A, 0x70, 0x20}, word, [](State& m) { m.L = 0x78, m.H = 0x56; }},
        {"LHLD at FFFF goes on at 0000",
         {0x2A, 0xFF, 0xFF},
         [](State& m) { m.mem[0xFFFF] = 0x78, m.mem[0] = 0x56, m.mem[0x10000] = 0x56; },
         [](State& m) { m.L = 0x78, m.H = 0x56; }},
        {"SHLD", {0x22, 0x70, 0x20}, word, [](State& m) { m.mem[0x2070] = m.L, m.mem[0x2071] = m.H; }},
        {"SHLD at FFFF goes on at 0000",
         {0x22, 0xFF, 0xFF},
         {},
         [](State& m) { m.mem[0xFFFF] = m.L, m.mem[0] = m.H; }},
        {"XCHG",
         {0xEB},
         [](State& m) { m.D = 1, m.E = 2, m.H = 3, m.L = 4; },
         [](State& m) { m.D = 3, m.E = 4, m.H = 1, m.L = 2; }},
    };
    cases.insert(cases.end(), added.begin(), added.end());
}

void addStack(Cases& cases) {
    const auto top = [](State& m) { m.mem[0x3000] = 0x78, m.mem[0x3001] = 0x56; };
    const auto pushed = [](int high, int low) {
        return [high, low](State& m) {
            m.mem[0x2FFF] = static_cast<std::uint8_t>(high);
            m.mem[0x2FFE] = static_cast<std::uint8_t>(low);
            m.SP = 0x2FFE;
        };
    };
    const Cases added{
        {"PUSH B", {0xC5}, [](State& m) { m.B = 1, m.C = 2; }, pushed(1, 2)},
        {"PUSH D", {0xD5}, [](State& m) { m.D = 1, m.E = 2; }, pushed(1, 2)},
        {"PUSH H", {0xE5}, [](State& m) { m.H = 1, m.L = 2; }, pushed(1, 2)},
        {"PUSH PSW", {0xF5}, [](State& m) { m.A = 0x12, m.F = 85; }, pushed(0x12, 85)},
        {"PUSH PSW keeps the unused bits", {0xF5}, [](State& m) { m.A = 1, m.F = 0xFF; }, pushed(1, 0xFF)},
        {"POP B", {0xC1}, top, [](State& m) { m.B = 0x56, m.C = 0x78, m.SP = 0x3002; }},
        {"POP D", {0xD1}, top, [](State& m) { m.D = 0x56, m.E = 0x78, m.SP = 0x3002; }},
        {"POP H", {0xE1}, top, [](State& m) { m.H = 0x56, m.L = 0x78, m.SP = 0x3002; }},
        {"POP PSW", {0xF1}, top, [](State& m) { m.A = 0x56, m.F = 0x78, m.SP = 0x3002; }},
        {"XTHL",
         {0xE3},
         [top](State& m) {
             top(m);
             m.H = 0xA1, m.L = 0xB2;
         },
         [](State& m) { m.H = 0x56, m.L = 0x78, m.mem[0x3000] = 0xB2, m.mem[0x3001] = 0xA1; }},
        {"SPHL", {0xF9}, pointHL, [](State& m) { m.SP = pointed; }},
    };
    cases.insert(cases.end(), added.begin(), added.end());
}

void addPorts(Cases& cases) {
    const Cases added{
        {"IN", {0xDB, 0xFE}, [](State& m) { m.port[0xFE] = 0xC4; }, [](State& m) { m.A = 0xC4; }},
        {"OUT", {0xD3, 0xFE}, [](State& m) { m.A = 0x4C; }, [](State& m) { m.port[0xFE] = 0x4C; }},
    };
    cases.insert(cases.end(), added.begin(), added.end());
}

}  // namespace

std::vector<InstructionCase> transferCases() {
    Cases cases;
    addMoves(cases);
    addImmediates(cases);
    addLoadsAndStores(cases);
    addStack(cases);
    addPorts(cases);
    return cases;
}

}  // namespace tavinor::test
