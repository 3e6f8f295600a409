#include "tests/simulation/Twins.h"

#include <algorithm>
#include <array>
#include <random>
#include <utility>

#include "machine/HexText.h"
#include "machine/Interrupts.h"
#include "tests/support/Differences.h"
#include "tests/support/Errors.h"
#include "trace/TraceText.h"

namespace tavinor::test {

namespace {

// The plain one has one command for three lines.
void trap(Simulation& s) {
    s.trap();
}
void trap(PlainSimulation& s) {
    s.accept(vector::trap);
}
void rst55(Simulation& s) {
    s.rst55();
}
void rst55(PlainSimulation& s) {
    s.accept(vector::rst55);
}
void rst65(Simulation& s) {
    s.rst65();
}
void rst65(PlainSimulation& s) {
    s.accept(vector::rst65);
}

}  // namespace

Twins::Twins(Chance chance) : simulation(*this), chance_(std::move(chance)), reader_(simulation.trace()) {
    plain.onHalt = [this](PlainSimulation& halted) { answer(halted); };
}

template <typename Command>
void Twins::both(const Command& command) {
    command(simulation);
    command(plain);
}

void Twins::fillMemory() {
    const bool goesRound = any(2) == 0;
    static const std::array<std::uint8_t, 12> loop{0x21, 0x00, 0x10, 0x34, 0x2C, 0x7D,
                                                   0xE6, 0x0F, 0x76, 0xC3, 0x03, 0x00};
    std::mt19937 bytes(chance_());
    for (std::int32_t address = 0; address < memorySize; ++address) {
        const int program = address < 12 ? loop[static_cast<std::size_t>(address)] : 0;
        const int data = goesRound ? program : static_cast<int>(bytes() & 255);
        both([&](auto& target) { target.writeMemory(address, data); });
    }
    both([](auto& target) { target.refresh(); });
}

void Twins::run(std::int64_t most) {
    const RegisterTexts* typed = typed_ ? &*typed_ : nullptr;
    const std::uint64_t before = simulation.history().end().instructions;
    const auto countersBefore = simulation.history().revision();
    const bool failed = errorOf([&] { simulation.run(most, typed); }) != noError;
    // Where the trace was cleared within a HLT, that was the one instruction.
    const bool cleared = simulation.history().revision() != countersBefore;
    const std::uint64_t executed = cleared ? 1 : simulation.history().end().instructions - before;
    bool plainFailed = false;
    for (std::uint64_t i = 0; i < executed; ++i) {
        if (beforePlainStep) beforePlainStep(i);
        plainFailed = !plain.step(i == 0 ? typed : nullptr);
    }
    typed_.reset();
    if (failed != plainFailed) plain.trace.clear();  // seen as a difference
    if (failed) simulation.refresh();
}

void Twins::halt() {
    answers_.push_back({static_cast<WayOut>(any(6)), vectorText(), any(12) == 0});
    const Answer answer = answers_.back();
    if (answer.clears) simulation.clearTrace();
    errorOf([&] { carryOut(simulation, answer); });
    simulation.refresh();
}

void Twins::answer(PlainSimulation& halted) {
    const Answer answer = answers_.front();
    answers_.pop_front();
    if (answer.clears) halted.clearTrace();
    errorOf([&] { carryOut(halted, answer); });
    halted.refresh();
}

template <typename Target>
void Twins::carryOut(Target& target, const Answer& answer) {
    switch (answer.wayOut) {
        case WayOut::reset: target.reset(); break;
        case WayOut::trap: trap(target); break;
        case WayOut::rst55: rst55(target); break;
        case WayOut::rst65: rst65(target); break;
        case WayOut::rst75: target.rst75(); break;
        case WayOut::intr: target.intr(answer.vectorText); break;
    }
}

/// Now and then a HLT, or more than a byte holds.
std::string Twins::vectorText() {
    const int choice = any(8);
    if (choice == 0) return "76";
    if (choice == 1) return "77";
    return hexa(any(256), 2);
}

void Twins::type() {
    static const std::array<const char*, 6> texts{"", "5", "zz", "FFFFF", " 12 ", "FFFF"};
    if (!typed_) typed_ = plain.boxes();
    (*typed_)[static_cast<std::size_t>(any(11))] = texts[static_cast<std::size_t>(any(6))];
}

void Twins::clearTrace() {
    both([](auto& target) { target.clearTrace(); });
}

void Twins::editRegister() {
    Registers r = simulation.machine().registers();
    const std::array<std::uint8_t*, 8> bytes{&r.A, &r.B, &r.C, &r.D, &r.E, &r.F, &r.H, &r.L};
    switch (any(4)) {
        case 0: r.PC = any(0x10000); break;
        case 1: r.SP = any(0x10000); break;
        default: *bytes[static_cast<std::size_t>(any(8))] = byte();
    }
    both([&](auto& target) { target.setRegisters(r); });
    if (any(2) == 0) both([](auto& target) { target.refreshM(); });
}

void Twins::loadSomething() {
    const std::filesystem::path path = hexFile();
    WorkObserver unobserved;
    static_cast<void>(simulation.load(path, unobserved));
    plain.load(path);
    both([](auto& target) { target.refresh(); });
}

/// Records of up to 16 bytes. Now and then the end record is missing, and all that was stored stays.
std::filesystem::path Twins::hexFile() {
    std::int32_t address = any(0x10000 - 300);
    std::string text;
    for (int records = 1 + any(18); records > 0; --records) {
        const int size = 1 + any(16);
        int sum = size + address / 256 + address % 256;
        text += ':' + hexa(size, 2) + hexa(address, 4) + "00";
        for (int i = 0; i < size; ++i) {
            const int data = byte();
            text += hexa(data, 2);
            sum += data;
        }
        text += hexa(-sum & 255, 2) + "\r\n";
        address += size;
    }
    if (any(6) != 0) text += ":00000001FF\r\n";
    return folder_.write("program.hex", text);
}

void Twins::request() {
    // The answers of a HLT that the instruction executes are made by the one and used by the other.
    const Answer answer{static_cast<WayOut>(any(6)), vectorText(), false};
    const int error = errorOf([&] { carryOut(simulation, answer); });
    const int plainError = errorOf([&] { carryOut(plain, answer); });
    if (error != plainError) plain.trace.clear();  // seen as a difference
    both([](auto& target) { target.refresh(); });
}

void Twins::disturb() {
    if (typed_) both([](auto& target) { target.refresh(); });
    typed_.reset();
    const int address = any(4) == 0 ? simulation.machine().HL : any(0x10000);
    const int data = byte();
    switch (any(8)) {
        case 0:
        case 1: editRegister(); break;
        case 2:  // with its refresh, as the memory panel does
            both([&](auto& target) {
                target.writeMemory(address, data);
                target.refresh();
            });
            break;
        case 3: both([&](auto& target) { target.writeMemory(address, data); }); break;  // as the entry row
        case 4: both([&](auto& target) { target.writePort(address & 255, data); }); break;
        case 5: loadSomething(); break;
        case 6: {
            const InterruptState state{any(2) == 0, any(2) == 0, any(2) == 0, any(2) == 0, any(2) == 0};
            simulation.setInterrupts(state);
            plain.moment.machine.intState = state;
            simulation.setSID(state.IE);
            plain.moment.machine.SID = state.IE;
            break;
        }
        default: request();
    }
}

void Twins::goBack(const Position& target, const PlainSimulation& copy, std::size_t rows) {
    simulation.goBack(target);
    typed_.reset();
    NaiveTrace trace = std::move(plain.trace);
    trace.cut(rows);
    plain = copy;
    plain.trace = std::move(trace);
    std::copy_n(plain.moment.machine.mem.begin(), memorySize, plain.grid.begin());
}

std::string Twins::differences() {
    std::string text = test::differences(simulation.machine(), plain.moment.machine);
    if (simulation.counters() != plain.moment.counters) text += "counters\n";
    if (simulation.shownM() != plain.moment.shownM) text += "shown M\n";
    if (rows() != plain.trace.rows().size()) {
        text +=
            "rows: " + std::to_string(rows()) + ", not " + std::to_string(plain.trace.rows().size()) + '\n';
    }
    const Written written = simulation.takeWritten();
    for (std::size_t page = 0; page < written.pages.size(); ++page) {
        if (written.pages[page]) {
            std::copy_n(simulation.machine().mem.begin() + static_cast<std::ptrdiff_t>(page * pageSize),
                        pageSize, grid_.begin() + static_cast<std::ptrdiff_t>(page * pageSize));
        }
    }
    for (const Simulation::ShownCell& cell : simulation.shownCells()) {
        grid_[static_cast<std::size_t>(cell.address)] = cell.byte;
    }
    if (grid_ != plain.grid) text += "the grid of memory\n";
    return text;
}

std::string Twins::rowDifferences(std::uint64_t first, std::uint64_t count) {
    std::string text;
    std::uint64_t row = first;
    reader_.read(first, count, [&](const TraceRow& values, const RowTexts* texts) {
        std::string line;
        appendLine(line, values, texts);
        const bool there = row < plain.trace.rows().size();
        if (text.empty() && (!there || line != plain.trace.line(row))) {
            text = std::to_string(row) + ": " + line + "\n not: " + (there ? plain.trace.line(row) : "none");
        }
        ++row;
    });
    return text;
}

}  // namespace tavinor::test
