#include "ui/trace/RowPredictor.h"

#include "machine/MnemonicTable.h"

namespace tavinor {

namespace {

unsigned differences(RegisterImage a, RegisterImage b) {
    unsigned bits = a.M() != b.M() ? deviation::M : 0;
    for (unsigned i = 0; i < RegisterImage::words; ++i) {
        if (a.word(i) != b.word(i)) bits |= deviation::word(i);
    }
    return bits;
}

bool isReturn(int opcode) {
    return opcode == 0xC9 || (opcode & 0xC7) == 0xC0;
}
bool isPop(int opcode) {
    return (opcode & 0xCF) == 0xC1;
}

}  // namespace

/// A row whose instruction was not foreseen, or that has none.
unsigned RowPredictor::followOther(const TraceRow& row) {
    if (!row.hasInstruction) return deviation::state | takeOver(row);
    unsigned deviations = 0;
    if (row.address != address()) {
        deviations |= deviation::address;
        setAddress(row.address);
    }
    if (row.code != code()) {
        deviations |= deviation::code;
        setCode(row.code);
    }
    if (!row.hasRegisters) return deviations | deviation::noRegisters;
    execute();
    return deviations | takeOver(row);
}

unsigned RowPredictor::takeOver(const TraceRow& row) {
    const unsigned deviations = differences(row.registers, registers());
    if (deviations != 0) adopt(row);
    return deviations;
}

TraceRow RowPredictor::predict() {
    TraceRow row;
    row.hasInstruction = row.hasRegisters = true;
    row.address = address();
    row.code = code();
    execute();
    row.registers = registers();
    return row;
}

void RowPredictor::setCode(std::uint32_t code) {
    const int length = instructionLength(opcodeOf(code));
    for (int i = 0; i < length; ++i) set(machine_.PC + i, codeByte(code, i));
    machine_.synmem();
}

void RowPredictor::adopt(const TraceRow& row) {
    const RegisterImage& r = row.registers;
    const auto high = [&r](unsigned word) { return static_cast<std::uint8_t>(highByte(r.word(word))); };
    const auto low = [&r](unsigned word) { return static_cast<std::uint8_t>(lowByte(r.word(word))); };
    using R = RegisterImage;
    Registers& own = machine_;
    own = {.A = high(R::AF),
           .B = high(R::BC),
           .C = low(R::BC),
           .D = high(R::DE),
           .E = low(R::DE),
           .F = low(R::AF),
           .H = high(R::HL),
           .L = low(R::HL),
           .PC = r.word(R::PC),
           .SP = r.word(R::SP)};
    machine_.recomputePairs();
    if (row.hasInstruction) learn(row);
    set(machine_.HL, r.M());
    machine_.synmem();
}

void RowPredictor::set(std::int32_t address, int byte) {
    machine_.storeMemory(address & 0xFFFF, byte);
}

/// What the instruction has read, as far as its result shows it. Being wrong costs another surprise, no more.
void RowPredictor::learn(const TraceRow& row) {
    const int opcode = opcodeOf(row.code);
    const std::int32_t operand = wordOperandOf(row.code);
    const int A = machine_.A;
    const auto setWord = [this](std::int32_t address, int word) {
        set(address, lowByte(word));
        set(address + 1, highByte(word));
    };
    if (isReturn(opcode)) setWord(machine_.SP - 2, machine_.PC);
    if (isPop(opcode)) {
        const std::array<std::int32_t, 4> pairs{machine_.BC, machine_.DE, machine_.HL, machine_.PSW};
        setWord(machine_.SP - 2, pairs[static_cast<std::size_t>(opcode >> 4 & 3)]);
    }
    switch (opcode) {
        case 0x0A: set(machine_.BC, A); break;                                // LDAX B
        case 0x1A: set(machine_.DE, A); break;                                // LDAX D
        case 0x3A: set(operand, A); break;                                    // LDA
        case 0x2A: setWord(operand, machine_.HL); break;                      // LHLD
        case 0xDB: machine_.port[codeByte(row.code, 1)] = machine_.A; break;  // IN
        case 0x20:                                                            // RIM
            machine_.intState = {.IE = (A & 8) != 0,
                                 .M55 = (A & 1) != 0,
                                 .M65 = (A & 2) != 0,
                                 .M75 = (A & 4) != 0,
                                 .R75 = (A & 16) != 0};
            machine_.SID = (A & 128) != 0;
            break;
        default: break;
    }
}

}  // namespace tavinor
