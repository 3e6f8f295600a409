#include "tests/simulation/TracedMachine.h"

#include <utility>

#include "tests/support/Errors.h"
#include "trace/TraceText.h"

namespace tavinor::test {

TracedMachine::TracedMachine(std::size_t historyBytes) : simulation_(*this, historyBytes) {
    plain_.onHalt = [this](PlainSimulation&) { answer(Halted::plain); };
}

void TracedMachine::answer(Halted halted) {
    halted_ = halted;
    if (onHalt) onHalt();
    halted_ = Halted::none;
}

void TracedMachine::load(const std::vector<std::uint8_t>& program, std::int32_t address) {
    both([&](auto& target) {
        std::int32_t next = address;
        for (const std::uint8_t byte : program) target.writeMemory(next++, byte);
        target.refresh();
    });
}

void TracedMachine::edit(const std::function<void(Registers&)>& change) {
    Registers registers = machine().registers();
    change(registers);
    both([&](auto& target) {
        target.setRegisters(registers);
        target.refresh();
    });
}

void TracedMachine::write(std::int32_t address, int byte) {
    both([&](auto& target) {
        target.writeMemory(address, byte);
        target.refresh();
    });
}

void TracedMachine::type(std::size_t box, const std::string& text) {
    if (!typed_) typed_ = registerTexts(RegisterImage(machine(), simulation_.shownM()));
    (*typed_)[box] = text;
}

bool TracedMachine::step() {
    const std::optional<RegisterTexts> texts = std::exchange(typed_, std::nullopt);
    const RegisterTexts* typed = texts ? &*texts : nullptr;
    const bool succeeded = errorOf([&] { simulation_.step(typed); }) == noError;
    if (!plainLeftOut_) plain_.step(typed);
    return succeeded;
}

void TracedMachine::steps(std::int64_t count) {
    if (!plainLeftOut_ || typed_) {
        for (std::int64_t i = 0; i < count; ++i) step();
        return;
    }
    while (count > 0) count -= simulation_.run(count, nullptr);
}

void TracedMachine::clear() {
    both([](auto& target) { target.clearTrace(); });
}

}  // namespace tavinor::test
