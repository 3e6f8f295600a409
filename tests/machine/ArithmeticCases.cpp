#include "machine/Flags.h"
#include "tests/machine/InstructionCase.h"

namespace tavinor::test {

namespace {

using Cases = std::vector<InstructionCase>;
using State = MachineState;

constexpr std::uint8_t unusedBits = 0x2A;
constexpr std::int32_t pointed = 0x2040;

std::uint8_t asF(int bits) {
    return static_cast<std::uint8_t>(bits);
}

/// One operation with its eight register forms and its immediate one.
struct AluRow {
    const char* name;
    const char* immediateName;
    int opcode;
    int immediateOpcode;
    int result, flags;          ///< Of A = 3C with the operand C5 and CY set.
    int selfResult, selfFlags;  ///< Of A = 3C with itself and CY set.
};

constexpr std::array<AluRow, 8> aluRows{{
    {"ADD", "ADI", 0x80, 0xC6, 0x01, 0x11, 0x78, 0x14},
    {"ADC", "ACI", 0x88, 0xCE, 0x02, 0x11, 0x79, 0x10},
    {"SUB", "SUI", 0x90, 0xD6, 0x77, 0x15, 0x00, 0x54},
    {"SBB", "SBI", 0x98, 0xDE, 0x76, 0x11, 0xFF, 0x85},
    {"ANA", "ANI", 0xA0, 0xE6, 0x04, 0x10, 0x3C, 0x14},
    {"XRA", "XRI", 0xA8, 0xEE, 0xF9, 0x84, 0x00, 0x44},
    {"ORA", "ORI", 0xB0, 0xF6, 0xFD, 0x80, 0x3C, 0x04},
    {"CMP", "CPI", 0xB8, 0xFE, 0x3C, 0x05, 0x3C, 0x44},
}};

void addAluForm(Cases& cases, const AluRow& row, int code) {
    const NamedRegister source = registersByCode[static_cast<std::size_t>(code)];
    const bool self = code == 7;
    cases.push_back({.name = std::string(row.name) + " " + source.name,
                     .code = {row.opcode + code},
                     .before =
                         [source](State& m) {
                             m.F = unusedBits | flag::CY;
                             m.H = pointed / 256, m.L = pointed % 256;
                             (source.cell != nullptr ? m.*source.cell : m.mem[pointed]) = 0xC5;
                             if (source.cell == &Registers::H) m.L = 0;  // HL leads anywhere
                             m.A = 0x3C;
                         },
                     .after =
                         [row, self](State& m) {
                             m.A = static_cast<std::uint8_t>(self ? row.selfResult : row.result);
                             m.F = asF(self ? row.selfFlags : row.flags);
                         }});
}

void addAlu(Cases& cases) {
    for (const AluRow& row : aluRows) {
        for (int code = 0; code < 8; ++code) addAluForm(cases, row, code);
        cases.push_back({.name = row.immediateName,
                         .code = {row.immediateOpcode, 0xC5},
                         .before = [](State& m) { m.A = 0x3C, m.F = unusedBits | flag::CY; },
                         .after =
                             [row](State& m) {
                                 m.A = static_cast<std::uint8_t>(row.result);
                                 m.F = asF(row.flags);
                             }});
    }
}

void addIncrements(Cases& cases) {
    for (int code = 0; code < 8; ++code) {
        const NamedRegister target = registersByCode[static_cast<std::size_t>(code)];
        const auto cell = [target](State& m) -> std::uint8_t& {
            return target.cell != nullptr ? m.*target.cell : m.mem[pointed];
        };
        const auto before = [cell](int value, int f) {
            return [cell, value, f](State& m) {
                m.H = pointed / 256, m.L = pointed % 256;
                cell(m) = static_cast<std::uint8_t>(value);
                m.F = asF(f);
            };
        };
        const auto after = [cell](int value, int f) {
            return [cell, value, f](State& m) {
                cell(m) = static_cast<std::uint8_t>(value);
                m.F = asF(f);
            };
        };
        const std::string name = target.name;
        const int inr = 0x04 + code * 8;
        const int dcr = 0x05 + code * 8;
        cases.push_back({"INR " + name + " of 7F", {inr}, before(0x7F, 0xFF), after(0x80, 0x91)});
        cases.push_back({"INR " + name + " of FF", {inr}, before(0xFF, 0xFE), after(0x00, 0x54)});
        cases.push_back({"DCR " + name + " of 10", {dcr}, before(0x10, 0xFF), after(0x0F, 0x05)});
        cases.push_back({"DCR " + name + " of 01", {dcr}, before(0x01, 0xFE), after(0x00, 0x44)});
    }
}

void addPairs(Cases& cases) {
    const auto hl = [](int high, int low) {
        return [high, low](State& m) {
            m.H = static_cast<std::uint8_t>(high);
            m.L = static_cast<std::uint8_t>(low);
        };
    };
    const Cases added{
        {"INX B", {0x03}, [](State& m) { m.B = 0x12, m.C = 0xFF; }, [](State& m) { m.B = 0x13, m.C = 0; }},
        {"INX D", {0x13}, [](State& m) { m.D = 0x12, m.E = 0xFF; }, [](State& m) { m.D = 0x13, m.E = 0; }},
        {"INX H", {0x23}, hl(0xFF, 0xFF), hl(0, 0)},
        {"INX SP", {0x33}, [](State& m) { m.SP = 0x12FF; }, [](State& m) { m.SP = 0x1300; }},
        {"INX SP at FFFF", {0x33}, [](State& m) { m.SP = 0xFFFF; }, [](State& m) { m.SP = 0; }},
        {"DCX B", {0x0B}, [](State& m) { m.B = 0x12, m.C = 0; }, [](State& m) { m.B = 0x11, m.C = 0xFF; }},
        {"DCX D", {0x1B}, [](State& m) { m.D = 0x12, m.E = 0; }, [](State& m) { m.D = 0x11, m.E = 0xFF; }},
        {"DCX H", {0x2B}, hl(0, 0), hl(0xFF, 0xFF)},
        {"DCX SP", {0x3B}, [](State& m) { m.SP = 0; }, [](State& m) { m.SP = 0xFFFF; }},
        {"DAD B",
         {0x09},
         [](State& m) { m.B = 0x10, m.C = 0x01, m.H = 0x20, m.L = 0xFF, m.F = 0xFF; },
         [](State& m) { m.H = 0x31, m.L = 0x00, m.F = 0xFE; }},
        {"DAD D",
         {0x19},
         [](State& m) { m.D = 0xF0, m.E = 0x01, m.H = 0x20, m.L = 0xFF, m.F = 0x00; },
         [](State& m) { m.H = 0x11, m.L = 0x00, m.F = 0x01; }},
        {"DAD H",
         {0x29},
         [](State& m) { m.H = 0x80, m.L = 0x80, m.F = 0x40; },
         [](State& m) { m.H = 0x01, m.L = 0x00, m.F = 0x41; }},
        {"DAD SP without overflow",
         {0x39},
         [](State& m) { m.SP = 0x0FFF, m.H = 0xF0, m.L = 0x00, m.F = 0x01; },
         [](State& m) { m.H = 0xFF, m.L = 0xFF, m.F = 0x00; }},
        {"DAD SP with overflow",
         {0x39},
         [](State& m) { m.SP = 0x1000, m.H = 0xF0, m.L = 0x00, m.F = 0x00; },
         [](State& m) { m.H = 0x00, m.L = 0x00, m.F = 0x01; }},
    };
    cases.insert(cases.end(), added.begin(), added.end());
}

/// A and F before and after an instruction that works on them alone.
InstructionCase accumulator(const char* name, int opcode, int a, int f, int aAfter, int fAfter) {
    const auto change = [](int newA, int newF) {
        return [newA, newF](State& m) {
            m.A = static_cast<std::uint8_t>(newA);
            m.F = asF(newF);
        };
    };
    return {name, {opcode}, change(a, f), change(aAfter, fAfter)};
}

void addAccumulator(Cases& cases) {
    const Cases added{
        accumulator("RLC into CY", 0x07, 0x81, 0xFE, 0x03, 0xFF),
        accumulator("RLC without", 0x07, 0x41, 0xFF, 0x82, 0xFE),
        accumulator("RRC into CY", 0x0F, 0x81, 0xFE, 0xC0, 0xFF),
        accumulator("RRC without", 0x0F, 0x82, 0xFF, 0x41, 0xFE),
        accumulator("RAL in and out", 0x17, 0x80, 0xFF, 0x01, 0xFF),
        accumulator("RAL of 80 with CY clear", 0x17, 0x80, 0xFE, 0x00, 0xFF),
        accumulator("RAL without", 0x17, 0x41, 0x00, 0x82, 0x00),
        accumulator("RAR in and out", 0x1F, 0x01, 0xFF, 0x80, 0xFF),
        accumulator("RAR of 01 with CY clear", 0x1F, 0x01, 0xFE, 0x00, 0xFF),
        accumulator("RAR without", 0x1F, 0x82, 0x00, 0x41, 0x00),
        accumulator("DAA of 9A", 0x27, 0x9A, 0x00, 0x00, 0x45),
        accumulator("DAA with everything set", 0x27, 0x11, 0xFF, 0x77, 0xFF),
        accumulator("DAA with Z left over", 0x27, 0x11, 0x40, 0x11, 0x44),
        accumulator("CMA", 0x2F, 0x5A, 0xFF, 0xA5, 0xFF),
        accumulator("STC", 0x37, 0x5A, 0xFE, 0x5A, 0xFF),
        accumulator("STC when set", 0x37, 0x5A, 0x01, 0x5A, 0x01),
        accumulator("CMC sets", 0x3F, 0x5A, 0xFE, 0x5A, 0xFF),
        accumulator("CMC clears", 0x3F, 0x5A, 0xFF, 0x5A, 0xFE),
    };
    cases.insert(cases.end(), added.begin(), added.end());
}

}  // namespace

std::vector<InstructionCase> arithmeticCases() {
    Cases cases;
    addAlu(cases);
    addIncrements(cases);
    addPairs(cases);
    addAccumulator(cases);
    return cases;
}

}  // namespace tavinor::test
