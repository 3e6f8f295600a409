#include "ui/trace/TraceRecorder.h"

#include <new>
#include <utility>

#include "machine/HexText.h"
#include "ui/trace/InstructionCode.h"
#include "ui/trace/TraceText.h"

namespace tavinor {

namespace {

RegisterTexts textsOf(RegisterImage image, const RegisterTexts* typed) {
    return typed != nullptr ? *typed : registerTexts(image);
}

}  // namespace

void TraceRecorder::listainstru(const MachineState& machine, const ShownBoxes& boxes) {
    lastRowIsOurs_ = false;
    try {
        const RegisterImage image(boxes.registers, boxes.M);
        const bool known = !store_.empty() && lastRowShows(image, boxes);
        lastRowIsOurs_ = (known || addStateRow(image, boxes)) && addInstructionRow(machine, boxes);
    } catch (const std::bad_alloc&) {
        // The row is missing; execution goes on.
    }
}

void TraceRecorder::listareg(const ShownBoxes& boxes) {
    try {
        const RegisterImage image(boxes.registers, boxes.M);
        if (store_.empty()) {
            lastRowIsOurs_ = addStateRow(image, boxes);
        } else if (lastRowIsOurs_) {
            if (boxes.texts != nullptr || store_.lastTexts() != nullptr) writeTexts(boxes);
            store_.setLastRegisters(image);
        }
    } catch (const std::bad_alloc&) {
        // The row keeps what it has.
    }
}

void TraceRecorder::writeTexts(const ShownBoxes& boxes) {
    auto texts = std::make_unique<RowTexts>();
    if (store_.lastTexts() != nullptr) texts->address = store_.lastTexts()->address;
    if (boxes.texts != nullptr) texts->registers = *boxes.texts;
    store_.setLastTexts(std::move(texts));
}

/// Whether the last row reads as the boxes do, where typing plays a part. The column of the flags never makes
/// a difference.
bool TraceRecorder::lastTextsShow(RegisterImage image, const ShownBoxes& boxes) const {
    const TraceRow& last = store_.last();
    const RowTexts* lastTexts = store_.lastTexts();
    const bool lastTyped = lastTexts != nullptr && lastTexts->registers;
    RegisterTexts shownLast;
    if (last.hasRegisters) shownLast = textsOf(last.registers, lastTyped ? &*lastTexts->registers : nullptr);
    return shownLast == textsOf(image, boxes.texts);
}

bool TraceRecorder::addStateRow(RegisterImage image, const ShownBoxes& boxes) {
    TraceRow row;
    row.registers = image;
    row.hasRegisters = true;
    if (boxes.texts == nullptr) return store_.append(row);
    auto texts = std::make_unique<RowTexts>();
    texts->registers = *boxes.texts;
    return store_.append(row, std::move(texts));
}

bool TraceRecorder::addInstructionRow(const MachineState& machine, const ShownBoxes& boxes) {
    if (boxes.texts != nullptr) return addTypedInstructionRow(machine, (*boxes.texts)[pcText]);
    TraceRow row;
    row.hasInstruction = true;
    row.address = static_cast<std::uint16_t>(boxes.registers.PC);
    row.code = instructionCode(machine, row.address);
    return store_.append(row);
}

/// `typed` is the text of `txtPC`; of an address that is too long its last digits count.
bool TraceRecorder::addTypedInstructionRow(const MachineState& machine, const std::string& typed) {
    TraceRow row;
    row.hasInstruction = true;
    row.address = static_cast<std::uint16_t>(dec(typed) & 0xFFFF);
    row.code = instructionCode(machine, row.address);
    auto texts = std::make_unique<RowTexts>();
    texts->address = typed;
    return store_.append(row, std::move(texts));
}

}  // namespace tavinor
