#include "images/Comment.h"

#include "machine/Flags.h"
#include "machine/HexText.h"
#include "machine/Instruction.h"
#include "machine/MnemonicTable.h"

namespace tavinor {

namespace {

std::string memoryComment(const MachineState& m, const std::string& name, std::int32_t address) {
    return "[" + name + "]=" + hexa(m.mem[asIndex(address, memorySize)], 2);
}

std::string restartComment(int opcode) {
    return "Salto a " + hexa(opcode & 0x38, 4);
}

}  // namespace

std::string comenta(const MachineState& m, std::uint8_t shownFlags, std::int32_t dir) {
    const int opcode = m.mem[asIndex(dir, memorySize)];
    const auto pc = static_cast<std::int32_t>(asIndex(m.PC, memorySize));
    const std::uint32_t behindPC = threeBytesAt(m, pc);
    const int operand = byteOperandOf(behindPC);
    const int address = wordOperandOf(behindPC);
    const auto shows = [shownFlags](int bit) { return (shownFlags & bit) != 0; };

    if (tabla[static_cast<std::size_t>(opcode)] == undefinedText) return "Código invalido";
    switch (opcode) {
        case 0x00: return "No hace nada";
        case 0x76: return "Sistema parado";
        case 0xC7:
        case 0xCF:
        case 0xD7:
        case 0xDF:
        case 0xE7:
        case 0xEF:
        case 0xF7:
        case 0xFF: return restartComment(opcode);
        case 0xC0:
        case 0xC2:
        case 0xC4:
        case 0xC8:
        case 0xCA:
        case 0xCC: return shows(flag::Z) ? "Z=1" : "Z=0";
        case 0x3F:
        case 0xD0:
        case 0xD2:
        case 0xD4:
        case 0xD8:
        case 0xDA:
        case 0xDC: return shows(flag::CY) ? "C=1" : "C=0";
        case 0xE0:
        case 0xE2:
        case 0xE4:
        case 0xE8:
        case 0xEA:
        case 0xEC: return shows(flag::P) ? "P=1 (E)" : "P=0 (O)";
        case 0xF0:
        case 0xF2:
        case 0xF4:
        case 0xF8:
        case 0xFA:
        case 0xFC: return shows(flag::S) ? "S=1 (-)" : "S=0 (+)";
        case 0x0A: return memoryComment(m, "BC", m.BC);
        case 0x1A: return memoryComment(m, "DE", m.DE);
        case 0x3A: return memoryComment(m, hexa(address, 4), address);
        case 0xDB:  // without the "=" of memory: see behaviour.md, Images: comments
            return "p[" + hexa(operand, 2) + "]" + hexa(m.port[static_cast<std::size_t>(operand)], 2);
        default: return {};
    }
}

}  // namespace tavinor
