#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace tavinor {

/// The text of every opcode, 00 to FF. "byte" and "palabra" stand for an operand of one or two bytes; "?"
/// marks the codes that the processor leaves undefined.
// Eight opcodes a line, as on the processor's chart.
// clang-format off
inline constexpr std::array<std::string_view, 256> tabla{
    // 00..0F
    "NOP", "LXI B,palabra", "STAX B", "INX B", "INR B", "DCR B", "MVI B,byte", "RLC",
    "?", "DAD B", "LDAX B", "DCX B", "INR C", "DCR C", "MVI C,byte", "RRC",
    // 10..1F
    "?", "LXI D,palabra", "STAX D", "INX D", "INR D", "DCR D", "MVI D,byte", "RAL",
    "?", "DAD D", "LDAX D", "DCX D", "INR E", "DCR E", "MVI E,byte", "RAR",
    // 20..2F
    "RIM", "LXI H,palabra", "SHLD palabra", "INX H", "INR H", "DCR H", "MVI H,byte", "DAA",
    "?", "DAD H", "LHLD palabra", "DCX H", "INR L", "DCR L", "MVI L,byte", "CMA",
    // 30..3F
    "SIM", "LXI SP,palabra", "STA palabra", "INX SP", "INR M", "DCR M", "MVI M,byte", "STC",
    "?", "DAD SP", "LDA palabra", "DCX SP", "INR A", "DCR A", "MVI A,byte", "CMC",
    // 40..4F
    "MOV B,B", "MOV B,C", "MOV B,D", "MOV B,E", "MOV B,H", "MOV B,L", "MOV B,M", "MOV B,A",
    "MOV C,B", "MOV C,C", "MOV C,D", "MOV C,E", "MOV C,H", "MOV C,L", "MOV C,M", "MOV C,A",
    // 50..5F
    "MOV D,B", "MOV D,C", "MOV D,D", "MOV D,E", "MOV D,H", "MOV D,L", "MOV D,M", "MOV D,A",
    "MOV E,B", "MOV E,C", "MOV E,D", "MOV E,E", "MOV E,H", "MOV E,L", "MOV E,M", "MOV E,A",
    // 60..6F
    "MOV H,B", "MOV H,C", "MOV H,D", "MOV H,E", "MOV H,H", "MOV H,L", "MOV H,M", "MOV H,A",
    "MOV L,B", "MOV L,C", "MOV L,D", "MOV L,E", "MOV L,H", "MOV L,L", "MOV L,M", "MOV L,A",
    // 70..7F
    "MOV M,B", "MOV M,C", "MOV M,D", "MOV M,E", "MOV M,H", "MOV M,L", "HLT", "MOV M,A",
    "MOV A,B", "MOV A,C", "MOV A,D", "MOV A,E", "MOV A,H", "MOV A,L", "MOV A,M", "MOV A,A",
    // 80..8F
    "ADD B", "ADD C", "ADD D", "ADD E", "ADD H", "ADD L", "ADD M", "ADD A",
    "ADC B", "ADC C", "ADC D", "ADC E", "ADC H", "ADC L", "ADC M", "ADC A",
    // 90..9F
    "SUB B", "SUB C", "SUB D", "SUB E", "SUB H", "SUB L", "SUB M", "SUB A",
    "SBB B", "SBB C", "SBB D", "SBB E", "SBB H", "SBB L", "SBB M", "SBB A",
    // A0..AF
    "ANA B", "ANA C", "ANA D", "ANA E", "ANA H", "ANA L", "ANA M", "ANA A",
    "XRA B", "XRA C", "XRA D", "XRA E", "XRA H", "XRA L", "XRA M", "XRA A",
    // B0..BF
    "ORA B", "ORA C", "ORA D", "ORA E", "ORA H", "ORA L", "ORA M", "ORA A",
    "CMP B", "CMP C", "CMP D", "CMP E", "CMP H", "CMP L", "CMP M", "CMP A",
    // C0..CF
    "RNZ", "POP B", "JNZ palabra", "JMP palabra", "CNZ palabra", "PUSH B", "ADI byte", "RST 0",
    "RZ", "RET", "JZ palabra", "?", "CZ palabra", "CALL palabra", "ACI byte", "RST 1",
    // D0..DF
    "RNC", "POP D", "JNC palabra", "OUT byte", "CNC palabra", "PUSH D", "SUI byte", "RST 2",
    "RC", "?", "JC palabra", "IN byte", "CC palabra", "?", "SBI byte", "RST 3",
    // E0..EF
    "RPO", "POP H", "JPO palabra", "XTHL", "CPO palabra", "PUSH H", "ANI byte", "RST 4",
    "RPE", "PCHL", "JPE palabra", "XCHG", "CPE palabra", "?", "XRI byte", "RST 5",
    // F0..FF
    "RP", "POP PSW", "JP palabra", "DI", "CP palabra", "PUSH PSW", "ORI byte", "RST 6",
    "RM", "SPHL", "JM palabra", "EI", "CM palabra", "?", "CPI byte", "RST 7",
};
// clang-format on

inline constexpr std::string_view byteOperand = "byte";
inline constexpr std::string_view wordOperand = "palabra";
inline constexpr std::string_view undefinedText = "?";

namespace detail {

constexpr std::array<std::uint8_t, 256> computeLengths() {
    std::array<std::uint8_t, 256> result{};
    for (std::size_t opcode = 0; opcode < result.size(); ++opcode) {
        const std::string_view text = tabla[opcode];
        const bool byte = text.find(byteOperand) != std::string_view::npos;
        const bool word = text.find(wordOperand) != std::string_view::npos;
        result[opcode] = byte ? 2 : word ? 3 : 1;
    }
    return result;
}

/// Instruction lengths, computed once from the placeholders.
inline constexpr std::array<std::uint8_t, 256> lengths = computeLengths();

}  // namespace detail

/// The length in bytes (1, 2 or 3) of the instruction that begins with `opcode`.
constexpr int instructionLength(std::uint8_t opcode) {
    return detail::lengths[opcode];
}

}  // namespace tavinor
