#include "tests/simulation/LongPlay.h"

#include <algorithm>
#include <utility>

#include "machine/Interrupts.h"
#include "tests/support/Differences.h"

namespace tavinor::test {

namespace {

constexpr std::int32_t loop = 0x0006;

struct Code {
    std::int32_t address;
    std::vector<int> bytes;
};

/// Goes round the pages 10 to 1F. Every 256 turns it stores elsewhere, every 4096 there is a HLT.
const Code program[] = {
    {0x0000, {0x31, 0x00, 0x80, 0x21, 0x00, 0x10}},              // LXI SP,8000; LXI H,1000
    {0x0006, {0x34, 0x23, 0x7C, 0xE6, 0x0F, 0xF6, 0x10, 0x67}},  // INR M; INX H; H to 10..1F
    {0x000E, {0x7D, 0xA7, 0xCC, 0x40, 0x00, 0xC3, 0x06, 0x00}},  // MOV A,L; ANA A; CZ 0040; JMP 0006
    {0x0024, {0xC9}},                                            // the interrupts' RET
    {0x002C, {0xC9}},
    {0x0034, {0xC9}},
    {0x003C, {0xC9}},
    {0x0040, {0x3A, 0x00, 0x40, 0x3C, 0x32, 0x00, 0x40, 0xE6, 0x0F}},  // LDA 4000; INR A; STA 4000; ANI 0F
    {0x0049, {0xCC, 0x50, 0x00, 0xC9}},                                // CZ 0050; RET
    {0x0050, {0x22, 0x00, 0x50, 0x76, 0xC9}},                          // SHLD 5000; HLT; RET
    {LongPlay::haltCell, {0x76, 0xC3, 0x06, 0x00}},                    // HLT; JMP 0006
};

}  // namespace

LongPlay::LongPlay(unsigned seed) : random_(seed) {
    plain_.keepsRows = false;
    plain_.onHalt = [this](PlainSimulation& halted) { answer(halted); };
    plain_.onStore = [this](std::int32_t address) {
        stores_.push_back({address, plain_.moment.machine.mem[static_cast<std::size_t>(address)]});
    };
    both([](auto& target) {
        for (const Code& code : program) {
            std::int32_t address = code.address;
            for (const int byte : code.bytes) target.writeMemory(address++, byte);
        }
        target.refresh();
        target.clearTrace();
    });
    stores_.clear();
}

template <typename Command>
void LongPlay::both(const Command& command) {
    command(simulation);
    command(plain_);
}

void LongPlay::note(const Position& position) {
    const Moment& now = plain_.moment;
    entries.push_back({position, Processor(now.machine), now.counters, now.shownM, stores_.size()});
}

void LongPlay::runTo(std::uint64_t instructions) {
    Position at = simulation.settledHistory().end();
    while (at.instructions < instructions) {
        const auto left = static_cast<std::int64_t>(instructions - at.instructions);
        simulation.run(std::min<std::int64_t>(1 + any(20'000), left), nullptr);
        const Position end = simulation.history().end();
        for (; at.instructions < end.instructions; ++at.instructions) {
            note(at);
            plain_.step(nullptr);
        }
        at = end;
    }
}

void LongPlay::edit(const std::function<void(Registers&)>& change, std::int32_t address, int byte) {
    const Position position = simulation.settledHistory().end();
    if (!simulation.history().endsGroup(position)) note(position);
    Registers registers = simulation.machine().registers();
    change(registers);
    both([&](auto& target) {
        target.setRegisters(registers);
        target.writeMemory(address, byte);
        target.refresh();
    });
}

void LongPlay::haltNow(std::int32_t address, std::int32_t SP) {
    const std::int32_t usual = simulation.machine().SP;
    const auto jump = [&](Registers& r) {
        r.PC = haltCell;
        r.SP = SP;
    };
    edit(jump, address, any(256));
    callsNext_ = true;
    runTo(simulation.history().end().instructions + 1);
    const auto goOn = [&](Registers& r) {
        r.PC = loop;
        r.SP = usual;
    };
    edit(goOn, address, any(256));
}

void LongPlay::halt() {
    answers_.push_back(std::exchange(callsNext_, false) ? 1 : any(5));
    carryOut(simulation, answers_.back());
    simulation.refresh();
}

void LongPlay::answer(PlainSimulation& plain) {
    carryOut(plain, answers_.front());
    answers_.pop_front();
    plain.refresh();
}

template <typename Target>
void LongPlay::carryOut(Target& target, int wayOut) {
    switch (wayOut) {
        case 0: target.reset(); break;
        case 1: target.rst75(); break;
        case 2: target.intr("00"); break;  // NOP
        case 3: target.intr("77"); break;  // MOV M,A
        default: target.intr("C7");        // RST 0
    }
}

void LongPlay::goBackTo(std::size_t index) {
    const Entry& entry = entries[index];
    simulation.goBack(entry.position);
    MachineState& m = plain_.moment.machine;
    for (; stores_.size() > entry.stores; stores_.pop_back()) {
        m.mem[static_cast<std::size_t>(stores_.back().address)] = stores_.back().before;
    }
    entry.processor.putInto(m);
    m.synmem();
    plain_.moment.counters = entry.counters;
    plain_.moment.shownM = entry.shownM;
    entries.resize(index);
}

std::string LongPlay::differences() const {
    std::string text = test::differences(simulation.machine(), plain_.moment.machine);
    if (simulation.counters() != plain_.moment.counters) text += "counters\n";
    if (simulation.shownM() != plain_.moment.shownM) text += "shown M\n";
    return text;
}

bool LongPlay::stored(std::size_t index, std::int32_t address) const {
    const std::size_t end = index + 1 < entries.size() ? entries[index + 1].stores : stores_.size();
    const auto store = [&](std::size_t i) { return stores_.begin() + static_cast<std::ptrdiff_t>(i); };
    return std::any_of(store(entries[index].stores), store(end),
                       [address](const Store& made) { return made.address == address; });
}

std::int32_t LongPlay::anyStored() {
    return stores_[static_cast<std::size_t>(any(static_cast<std::uint32_t>(stores_.size())))].address;
}

}  // namespace tavinor::test
