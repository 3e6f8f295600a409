#include "tests/trace/NaiveTrace.h"

#include "images/Disassembler.h"
#include "machine/HexText.h"

namespace tavinor {

namespace {

constexpr std::size_t flagColumn = 9;

void fill(NaiveTrace::Row& row, const BoxTexts& b) {
    const std::array<std::string, 12> texts{b.A, b.B, b.C, b.D, b.E, b.F, b.flags, b.H, b.L, b.M, b.PC, b.SP};
    for (std::size_t i = 0; i < texts.size(); ++i) row[3 + i] = texts[i];
}

}  // namespace

void NaiveTrace::listainstru(const MachineState& machine, const BoxTexts& boxes) {
    NaiveTrace::Row now;
    fill(now, boxes);
    bool changed = rows_.empty();
    if (!changed) {
        now[flagColumn] = rows_.back()[flagColumn];
        for (std::size_t column = 3; column < now.size(); ++column) {
            changed = changed || now[column] != rows_.back()[column];
        }
    }
    if (changed) {
        rows_.emplace_back();
        listareg(boxes);
    }
    const std::int32_t address = dec(boxes.PC) & 0xFFFF;
    const Instruction instruction = desensambla(machine, address);
    const auto byte = [&](int offset) {
        return hexa(machine.mem[static_cast<std::size_t>((address + offset) % memorySize)], 2);
    };
    std::string dat;
    if (instruction.length == 1) dat = byte(0) + "       ";
    if (instruction.length == 2) dat = byte(0) + " " + byte(1) + "    ";
    if (instruction.length == 3) dat = byte(0) + " " + byte(1) + " " + byte(2) + " ";
    rows_.push_back({boxes.PC, dat, instruction.text});
}

void NaiveTrace::listareg(const BoxTexts& boxes) {
    if (rows_.empty()) rows_.emplace_back();
    fill(rows_.back(), boxes);
}

std::string NaiveTrace::line(std::size_t row) const {
    std::string text;
    for (const std::string& cell : rows_[row]) text += (&cell == rows_[row].data() ? "" : "\t") + cell;
    return text;
}

}  // namespace tavinor
