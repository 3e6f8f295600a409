#include "tests/ui/trace/TracedMachine.h"

#include <algorithm>

#include "machine/Flags.h"
#include "machine/HexText.h"
#include "machine/Stepper.h"

namespace tavinor {

namespace {

BoxTexts textsOf(const Registers& r, std::uint8_t M) {
    return {hexa(int{r.A}, 2), hexa(int{r.B}, 2), hexa(int{r.C}, 2), hexa(int{r.D}, 2),
            hexa(int{r.E}, 2), hexa(int{r.F}, 2), hexa(int{r.H}, 2), hexa(int{r.L}, 2),
            hexa(int{M}, 2),   hexa(r.PC, 4),     hexa(r.SP, 4),     txtflags(r.F)};
}

}  // namespace

void TracedMachine::load(const std::vector<std::uint8_t>& program, std::int32_t address) {
    std::copy(program.begin(), program.end(), machine_->mem.begin() + address);
    refresh();
}

void TracedMachine::refresh() {
    machine_->synmem();
    machine_->PC &= 0xFFFF;
    shown_ = *machine_;
    shownM_ = machine_->mem[static_cast<std::size_t>(machine_->HL)];
    typed_.reset();
}

void TracedMachine::type(std::size_t box, const std::string& text) {
    if (!typed_) {
        const BoxTexts b = textsOf(shown_, shownM_);
        typed_ = {b.A, b.B, b.C, b.D, b.E, b.F, b.H, b.L, b.M, b.PC, b.SP};
    }
    (*typed_)[box] = text;
}

ShownBoxes TracedMachine::shown() const {
    return {shown_, shownM_, typed_ ? &*typed_ : nullptr};
}

BoxTexts TracedMachine::boxTexts() const {
    BoxTexts b = textsOf(shown_, shownM_);
    if (typed_) {
        const RegisterTexts& t = *typed_;
        b = {t[0], t[1], t[2], t[3], t[4], t[5], t[6], t[7], t[8], t[9], t[10], b.flags};
    }
    return b;
}

bool TracedMachine::step() {
    recorder_.listainstru(*machine_, shown());
    if (naive_ != nullptr) naive_->listainstru(*machine_, boxTexts());
    machine_->synmem();
    try {
        EjecutaPASO(*machine_, *this);
    } catch (const RuntimeError&) {
        refresh();
        return false;
    }
    refresh();
    recorder_.listareg(shown());
    if (naive_ != nullptr) naive_->listareg(boxTexts());
    return true;
}

void TracedMachine::steps(int count) {
    for (int i = 0; i < count; ++i) step();
}

void TracedMachine::clear() {
    recorder_.clear();
    if (naive_ != nullptr) naive_->clear();
}

}  // namespace tavinor
