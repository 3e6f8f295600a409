#include "tests/history/RecordedMachine.h"

#include <algorithm>

#include "machine/Interrupts.h"
#include "tests/support/Machines.h"
#include "tests/support/TestHost.h"
#include "tests/support/WindowStep.h"

namespace tavinor::test {

namespace {

constexpr std::uint8_t hltCode = 0x76;

std::unique_ptr<Moment> randomMoment(std::mt19937& random) {
    auto moment = std::make_unique<Moment>();
    randomise(moment->machine, random);
    moment->machine.synmem();
    return moment;
}

}  // namespace

RecordedMachine::RecordedMachine(unsigned seed, std::size_t mostBytes)
    : random_(seed), now_(randomMoment(random_)), history_(*now_, mostBytes) {
    copy();
}

void RecordedMachine::run(std::int64_t count) {
    for (std::int64_t done = 0; done < count;) {
        const std::uint64_t before = history_.end().instructions;
        runBatchOf(std::min<std::int64_t>(1 + any(20'000), count - done));
        done += static_cast<std::int64_t>(history_.end().instructions - before);
        if (any(4) == 0) copy();
    }
}

void RecordedMachine::runBatchOf(std::int64_t most) {
    const std::int64_t limit = std::min(most, history_.untilCheckpoint());
    const BatchResult result = runBatch(now_->machine, *noBreakpoints_, {limit}, written_);
    if (result.instructions > 0) {
        now_->add(result);
        history_.executed(result.instructions, *now_);
    }
    if (result.end == BatchResult::End::singleStep) stepAlone();
}

void RecordedMachine::stepAlone() {
    MachineState& m = now_->machine;
    const bool halts = m.at(m.PC) == hltCode;
    TestHost host(m);
    const WindowStep step = stepAsTheWindow(m, host);
    now_->showM();
    if (step.error == noError) now_->count(step.states);
    history_.executed(1, *now_);
    if (!halts || any(3) == 0) return;
    const auto before = std::make_unique<Moment>(*now_);
    m.PC = any(0x10000);
    touched_.clear();
    act();
    history_.changed(*before, *now_, touched_, History::Kind::wayOut);
}

void RecordedMachine::changeSomething() {
    const auto before = std::make_unique<Moment>(*now_);
    touched_.clear();
    for (int acts = 1 + any(3); acts > 0; --acts) act();
    history_.changed(*before, *now_, touched_, History::Kind::outside);
    copy();
}

void RecordedMachine::act() {
    MachineState& m = now_->machine;
    switch (any(8)) {
        case 0: m.A = static_cast<std::uint8_t>(any(256)); break;
        case 1: m.H = static_cast<std::uint8_t>(any(256)); break;
        case 2: storeAnything(any(0x10000)); break;
        case 3: storeAnythingInPort(any(256)); break;
        case 4: m.SID = !m.SID; break;
        case 5: m.PC = any(0x10000); break;
        case 6:
            reset(m);
            now_->counters = {};
            break;
        default:  // a load
            for (int cell = any(3000); cell >= 0; --cell) storeAnything(cell + 0x1200);
    }
    m.recomputePairs();
    m.synmem();
    if (any(3) != 0) now_->showM();
}

void RecordedMachine::storeAnything(std::int32_t address) {
    now_->machine.storeMemory(address, any(256));
    touched_.markMemory(address);
}

void RecordedMachine::storeAnythingInPort(std::int32_t number) {
    now_->machine.storePort(number, any(256));
    touched_.markPort(number);
}

void RecordedMachine::copy() {
    copies_.push_back({history_.end(), std::make_unique<Moment>(*now_)});
}

void RecordedMachine::goBackTo(const Position& at, const Moment& moment) {
    *now_ = moment;
    history_.cutBehind(at);
    const auto behind = [&at](const Copy& copy) { return copy.at > at; };
    copies_.erase(std::remove_if(copies_.begin(), copies_.end(), behind), copies_.end());
}

void RecordedMachine::clear() {
    history_.begin(*now_);
    copies_.clear();
    copy();
}

}  // namespace tavinor::test
