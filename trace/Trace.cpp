#include "trace/Trace.h"

#include <algorithm>
#include <new>
#include <utility>

#include "machine/HexText.h"
#include "machine/Instruction.h"
#include "trace/TraceText.h"

namespace tavinor {

void Trace::listainstru(const Moment& now, const RegisterTexts* typed) {
    if (!history_.recording()) return;
    try {
        const RegisterImage image(now.machine, now.shownM);
        if (empty() || !lastRowShows(image, typed)) addStateRow(now, typed);
        if (typed != nullptr) noteTyped(now.machine, (*typed)[pcText]);
    } catch (const std::bad_alloc&) {
        // The row is missing; execution goes on.
    }
}

/// The column of the flags never makes a difference: it says what F says.
bool Trace::lastRowShows(const RegisterImage& image, const RegisterTexts* typed) const {
    const TypedRow* last = this->typed(size() - 1);
    const bool lastTyped = last != nullptr && last->texts.registers;
    if (typed == nullptr && !lastTyped) return lastHasRegisters_ && last_ == image;
    RegisterTexts shown;
    if (lastHasRegisters_) shown = lastTyped ? *last->texts.registers : registerTexts(last_);
    return shown == (typed != nullptr ? *typed : registerTexts(image));
}

void Trace::addStateRow(const Moment& now, const RegisterTexts* typed) {
    std::map<std::uint64_t, TypedRow> texts;  // all that needs memory comes before the row is there
    if (typed != nullptr) texts[size()].texts.registers = *typed;
    stateRows_.emplace_back(history_.end());
    typed_.merge(texts);
    last_ = RegisterImage(now.machine, now.shownM);
    lastHasRegisters_ = true;
    ++revision_;
}

/// Of an address that is too long its last digits count.
void Trace::noteTyped(const MachineState& machine, const std::string& address) {
    TypedRow row;
    row.texts.address = address;
    row.address = static_cast<std::uint16_t>(dec(address) & 0xFFFF);
    row.code = instructionCode(machine, row.address);
    typed_[size()] = std::move(row);
}

void Trace::openRow() {
    if (!history_.recording()) return;
    open_ = true;
    lastHasRegisters_ = false;
    ++revision_;
}

/// The next comparison finds no registers in the last row: it may cost a state row too many.
void Trace::withdrawOpenRow() {
    open_ = false;
    forgetTypedBehindTheEnd();
    ++revision_;
}

void Trace::listareg(const Moment& now) {
    open_ = false;
    ++revision_;
    if (!history_.recording()) return;
    if (empty()) {
        listainstru(now, nullptr);  // the first state row
        return;
    }
    last_ = RegisterImage(now.machine, now.shownM);
    lastHasRegisters_ = true;
}

void Trace::listafailed() {
    if (!history_.recording()) return;
    lastHasRegisters_ = false;
    ++revision_;
}

void Trace::clear() {
    stateRows_.clear();
    typed_.clear();
    open_ = false;
    ++revision_;
}

/// A state row belongs to what the user changed; one without such a change (or that of what was being typed)
/// belongs to the instruction behind it. The first one always does: it leaves with the first instruction.
void Trace::cut() {
    const Position end = history_.end();
    const bool endsGroup = end.instructions > 0 && history_.endsGroup(end);
    const auto isBehind = [&](const Position& at) { return at > end || (at == end && !endsGroup); };
    while (!stateRows_.empty() && isBehind(stateRows_.back().position())) stateRows_.pop_back();
    forgetTypedBehindTheEnd();
    lastHasRegisters_ = false;  // until it is told
    ++revision_;
}

void Trace::forgetTypedBehindTheEnd() {
    typed_.erase(typed_.lower_bound(size()), typed_.end());
}

void Trace::setLast(const TraceRow& last) {
    last_ = last.registers;
    lastHasRegisters_ = last.hasRegisters;
}

std::uint64_t Trace::stateRowsBefore(std::uint64_t row) const {
    std::uint64_t low = 0;
    std::uint64_t high = stateRows_.size();
    while (low < high) {
        const std::uint64_t middle = low + (high - low) / 2;
        if (rowOfState(middle) < row) {
            low = middle + 1;
        } else {
            high = middle;
        }
    }
    return low;
}

const Trace::TypedRow* Trace::typed(std::uint64_t row) const {
    const auto found = typed_.find(row);
    return found == typed_.end() ? nullptr : &found->second;
}

}  // namespace tavinor
