#include "images/Disassembler.h"

#include <cstddef>
#include <string_view>

#include "machine/HexText.h"
#include "machine/MnemonicTable.h"

namespace tavinor {

namespace {

constexpr std::size_t byteColumns = 8;

/// The instruction's bytes, two digits each, one blank between them, in eight columns.
std::string byteColumn(const MachineState& m, std::int32_t address, int length) {
    std::string column;
    for (int i = 0; i < length; ++i) {
        if (i > 0) column += ' ';
        column += hexa(m.wrapped(address + i), 2);
    }
    column.resize(byteColumns, ' ');
    return column;
}

}  // namespace

Instruction desensambla(const MachineState& m, std::int32_t cp) {
    const std::uint8_t opcode = m.mem[asIndex(cp, memorySize)];
    const std::string_view entry = tabla[opcode];
    const int length = instructionLength(opcode);
    if (length == 2) {
        const std::string text(entry.substr(0, entry.find(byteOperand)));
        return {text + hexa(m.wrapped(cp + 1), 2), length};
    }
    if (length == 3) {
        const std::string text(entry.substr(0, entry.find(wordOperand)));
        return {text + hexa(m.wrapped(cp + 2) * 256 + m.wrapped(cp + 1), 4), length};
    }
    return {std::string(entry), length};
}

Instruction linea(const MachineState& m, const Breakpoints& breakpoints, std::int32_t cp) {
    const Instruction instruction = desensambla(m, cp);
    const char mark = breakpoints[asIndex(cp, memorySize)] != 0 ? '*' : ' ';
    return {hexa(cp, 4) + mark + byteColumn(m, cp, instruction.length) + "  " + instruction.text,
            instruction.length};
}

}  // namespace tavinor
