#include "images/Disassembler.h"

#include "machine/InstructionText.h"

namespace tavinor {

namespace {

std::uint32_t checkedCode(const MachineState& m, std::int32_t address) {
    return instructionCode(m, static_cast<std::int32_t>(asIndex(address, memorySize)));
}

}  // namespace

Instruction desensambla(const MachineState& m, std::int32_t cp) {
    const std::uint32_t code = checkedCode(m, cp);
    ShortText text;
    writeInstruction(text, code);
    return {std::string(text.view()), lengthOf(code)};
}

Instruction linea(const MachineState& m, const Breakpoints& breakpoints, std::int32_t cp) {
    const std::uint32_t code = checkedCode(m, cp);
    ShortText row;
    row.word(cp);
    row.character(breakpoints[asIndex(cp, memorySize)] != 0 ? '*' : ' ');
    writeBytes(row, code);
    row.text("  ");
    writeInstruction(row, code);
    return {std::string(row.view()), lengthOf(code)};
}

}  // namespace tavinor
