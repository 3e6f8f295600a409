#include "tests/simulation/PlainSimulation.h"

#include <memory>

#include "images/HexLoader.h"
#include "machine/Flags.h"
#include "machine/HexText.h"
#include "machine/Interrupts.h"
#include "machine/TStates.h"
#include "tests/support/WindowStep.h"

namespace tavinor::test {

namespace {
constexpr std::uint8_t hltCode = 0x76;
}

PlainSimulation::PlainSimulation() {
    moment.machine.mem.fill(0);
}

bool PlainSimulation::step(const RegisterTexts* typed) {
    MachineState& m = moment.machine;
    if (keepsRows) trace.listainstru(m, boxTexts(typed));
    const bool halts = m.at(m.PC) == hltCode;
    const test::WindowStep step = stepAsTheWindow(m, *this);
    moment.showM();
    if (step.error != noError) return false;
    if (!halts) moment.count(step.states);
    if (keepsRows) trace.listareg(boxTexts(nullptr));
    return true;
}

void PlainSimulation::refresh() {
    moment.machine.synmem();
    moment.machine.PC &= 0xFFFF;
    moment.showM();
}

void PlainSimulation::setRegisters(const Registers& registers) {
    static_cast<Registers&>(moment.machine) = registers;
    moment.machine.recomputePairs();
}

void PlainSimulation::reset() {
    tavinor::reset(moment.machine);
    moment.counters = {};
}

void PlainSimulation::accept(std::int32_t address) {
    acceptInterrupt(moment.machine, *this, address);
    moment.counters.tStates += acceptanceTStates;
}

void PlainSimulation::rst75() {
    acceptRst75(moment.machine, *this);
    moment.counters.tStates += acceptanceTStates;
}

void PlainSimulation::intr(std::string_view vectorText) {
    const std::int32_t place = moment.machine.PC;
    const std::uint8_t borrowed = moment.machine.at(place);
    const bool halts = dec(vectorText) == hltCode;
    int states = 0;
    try {
        states = requestIntr(moment.machine, *this, vectorText);
    } catch (const RuntimeError&) {
        if (moment.machine.at(place) != borrowed) noteStore(place);  // the vector is left there
        throw;
    }
    if (!halts) moment.count(states);
}

/// A HLT counts before its way out, which may set the counters to 0.
void PlainSimulation::halt() {
    moment.count(tStates[hltCode]);
    onHalt(*this);
}

void PlainSimulation::load(const std::filesystem::path& path) {
    const auto breakpoints = std::make_unique<Breakpoints>();  // those are beside the machine
    WorkObserver unobserved;
    carga(path, moment.machine, *breakpoints, *this, unobserved);
}

void PlainSimulation::savmem(std::int32_t dir, std::int32_t dat) {
    noteStore(dir);
    moment.machine.storeMemory(dir, dat);
    grid[asIndex(dir, memorySize)] = static_cast<std::uint8_t>(dat);
}

void PlainSimulation::noteStore(std::int32_t address) {
    if (onStore) onStore(address);
    stores.push_back(address);
}

RegisterTexts PlainSimulation::boxes() const {
    const BoxTexts b = boxTexts(nullptr);
    return {b.A, b.B, b.C, b.D, b.E, b.F, b.H, b.L, b.M, b.PC, b.SP};
}

BoxTexts PlainSimulation::boxTexts(const RegisterTexts* typed) const {
    const Registers& r = moment.machine;
    if (typed != nullptr) {
        const RegisterTexts& t = *typed;
        return {t[0], t[1], t[2], t[3], t[4], t[5], t[6], t[7], t[8], t[9], t[10], txtflags(r.F)};
    }
    return {hexa(int{r.A}, 2),           hexa(int{r.B}, 2), hexa(int{r.C}, 2), hexa(int{r.D}, 2),
            hexa(int{r.E}, 2),           hexa(int{r.F}, 2), hexa(int{r.H}, 2), hexa(int{r.L}, 2),
            hexa(int{moment.shownM}, 2), hexa(r.PC, 4),     hexa(r.SP, 4),     txtflags(r.F)};
}

}  // namespace tavinor::test
