#include "simulation/Simulation.h"

#include <algorithm>
#include <utility>

#include "machine/Batch.h"
#include "machine/Interrupts.h"
#include "machine/Stepper.h"
#include "machine/TStates.h"
#include "trace/TraceReader.h"

namespace tavinor {

namespace {

constexpr std::uint8_t hltCode = 0x76;

}  // namespace

Simulation::Simulation(HaltHandler& handler, std::size_t historyBytes)
    : handler_(handler),
      now_(std::make_unique<Moment>()),
      history_(*now_, historyBytes),
      trace_(history_),
      replay_(history_),
      before_(std::make_unique<Moment>()) {}

// ---- execution

void Simulation::step(const RegisterTexts* typed) {
    endChange();
    trace_.listainstru(*now_, typed);
    execute();
}

std::int64_t Simulation::run(std::int64_t most, const RegisterTexts* typed) {
    if (typed != nullptr || !shownCells_.empty()) {
        step(typed);
        return 1;
    }
    endChange();
    trace_.listainstru(*now_, nullptr);
    return executeBatch(most);
}

/// What a batch leaves to a single step is executed by the next call, unless it is all there is.
std::int64_t Simulation::executeBatch(std::int64_t most) {
    const BatchLimit limit{std::min(most, history_.untilCheckpoint())};
    const BatchResult result = runBatch(now_->machine, *breakpoints_, limit, written_);
    if (result.instructions == 0) {
        execute();
        return 1;
    }
    now_->add(result);
    history_.executed(result.instructions, *now_);
    trace_.listareg(*now_);
    return result.instructions;
}

/// One instruction, whose state row has been seen to.
void Simulation::execute() {
    MachineState& m = now_->machine;
    if (m.at(m.PC) == hltCode) announceHalt();
    int states = 0;
    try {
        states = EjecutaPASO(m, *this);
    } catch (...) {
        if (changing_ == Changing::wayOut) {
            finishHalt();
        } else {
            finishInstruction();
            trace_.listafailed();
        }
        throw;
    }
    if (changing_ == Changing::wayOut) {
        finishHalt();
        return;
    }
    now_->count(states);
    finishInstruction();
    trace_.listareg(*now_);
}

void Simulation::announceHalt() {
    trace_.openRow();
    try {
        handler_.haltComes();
    } catch (...) {
        trace_.withdrawOpenRow();
        throw;
    }
}

void Simulation::finishInstruction() {
    now_->bringUpToDate();
    history_.executed(1, *now_);
}

/// The HLT has been executed, and its way out is a change that follows it. Where the trace was cleared in
/// between, the history begins at the HLT, and the way out is all there is.
void Simulation::finishHalt() {
    now_->bringUpToDate();
    const bool cleared = std::exchange(clearedInHalt_, false);
    if (!cleared) history_.executed(1, *before_);
    changing_ = Changing::nothing;
    history_.changed(*before_, *now_, touched_, cleared ? History::Kind::outside : History::Kind::wayOut);
    trace_.listareg(*now_);
}

/// The HLT itself counts before its way out, which may be a reset.
void Simulation::halt() {
    now_->count(tStates[hltCode]);
    if (changing_ == Changing::nothing) {
        beginWayOut();
    } else {
        borrowed_.back().counted = true;  // nothing else than an INTR executes it then
    }
    ++haltsOpen_;
    try {
        handler_.halt();
    } catch (...) {
        --haltsOpen_;
        throw;
    }
    --haltsOpen_;
}

void Simulation::beginWayOut() {
    *before_ = *now_;
    before_->bringUpToDate();
    touched_.clear();
    changing_ = Changing::wayOut;
}

void Simulation::savmem(std::int32_t dir, std::int32_t dat) {
    now_->machine.storeMemory(dir, dat);
    const std::size_t cell = asIndex(dir, memorySize);  // no view has a place for a mirror cell
    written_.pages[cell / pageSize] = true;
    if (changing_ != Changing::nothing) touched_.markMemory(dir);
    std::erase_if(shownCells_, [dir](const ShownCell& shown) { return shown.address == dir; });
    for (Borrowed& borrowed : borrowed_) {
        if (borrowed.address == dir) borrowed.stored = static_cast<std::uint8_t>(dat);
    }
}

void Simulation::savport(std::int32_t dir, std::int32_t dat) {
    now_->machine.storePort(dir, dat);
    written_.ports = true;
    if (changing_ != Changing::nothing) touched_.markPort(dir);
}

// ---- changes from outside

/// To be called before anything is changed. All changes up to the next instruction are one.
void Simulation::beginChange() {
    if (changing_ != Changing::nothing) return;
    *before_ = *now_;
    touched_.clear();
    changing_ = Changing::user;
}

void Simulation::endChange() {
    if (changing_ != Changing::user) return;
    changing_ = Changing::nothing;
    history_.changed(*before_, *now_, touched_, History::Kind::outside);
}

void Simulation::setRegisters(const Registers& registers) {
    beginChange();
    static_cast<Registers&>(now_->machine) = registers;
    now_->machine.recomputePairs();
}

void Simulation::setInterrupts(const InterruptState& state) {
    beginChange();
    now_->machine.intState = state;
}

void Simulation::setSID(bool on) {
    beginChange();
    now_->machine.SID = on;
}

void Simulation::writeMemory(std::int32_t address, int byte) {
    beginChange();
    savmem(address, byte);
    now_->machine.synmem();
}

void Simulation::writePort(std::int32_t number, int byte) {
    beginChange();
    savport(number, byte);
}

void Simulation::reset() {
    beginChange();
    tavinor::reset(now_->machine);
    now_->counters = {};
}

/// The processor's own call, which is no instruction.
template <typename Acceptance>
void Simulation::accept(const Acceptance& acceptance) {
    beginChange();
    acceptance(now_->machine);
    now_->counters.tStates += acceptanceTStates;
}

void Simulation::trap() {
    accept([this](MachineState& m) { acceptInterrupt(m, *this, vector::trap); });
}

void Simulation::rst55() {
    accept([this](MachineState& m) { acceptInterrupt(m, *this, vector::rst55); });
}

void Simulation::rst65() {
    accept([this](MachineState& m) { acceptInterrupt(m, *this, vector::rst65); });
}

void Simulation::rst75() {
    accept([this](MachineState& m) { acceptRst75(m, *this); });
}

void Simulation::intr(std::string_view vectorText) {
    beginChange();
    const std::int32_t place = now_->machine.PC;
    borrowed_.push_back(
        {.address = place, .byte = now_->machine.at(place), .stored = std::nullopt, .counted = false});
    try {
        const int states = requestIntr(now_->machine, *this, vectorText);
        if (!borrowed_.back().counted) now_->count(states);
    } catch (...) {
        giveBack();
        throw;
    }
    giveBack();
}

/// The grid never shows the borrowed byte; it keeps what the instruction has stored there last.
void Simulation::giveBack() {
    const Borrowed borrowed = borrowed_.back();
    borrowed_.pop_back();
    const std::int32_t address = borrowed.address;
    if (address >= memorySize) return;  // a mirror cell: no view shows it
    // Where the instruction has failed, the vector is still there.
    if (machine().at(address) != borrowed.byte) touched_.markMemory(address);
    const std::uint8_t shown = borrowed.stored.value_or(borrowed.byte);
    std::erase_if(shownCells_, [address](const ShownCell& cell) { return cell.address == address; });
    if (shown != machine().at(address)) shownCells_.push_back({address, shown});
    written_.pages[static_cast<std::size_t>(address / pageSize)] = true;
}

LoadResult Simulation::load(const std::filesystem::path& path, WorkObserver& observer) {
    beginChange();
    return carga(path, now_->machine, *breakpoints_, *this, observer);
}

/// PC may be behind FFFF, and M behind the machine, only after something that has begun a change; but
/// bringing M up to date is one itself.
void Simulation::refresh() {
    const MachineState& m = now_->machine;
    if (m.PC >= memorySize || now_->shownM != m.at(m.HL)) beginChange();
    now_->bringUpToDate();
}

void Simulation::refreshM() {
    if (now_->shownM == machine().at(machine().HL)) return;
    beginChange();
    now_->showM();
}

void Simulation::toggleBreakpoint(std::int32_t address) {
    std::int16_t& flag = (*breakpoints_)[asIndex(address, memorySize)];
    flag = static_cast<std::int16_t>(~flag);
}

/// What the boxes show is not refreshed by it.
void Simulation::clearTrace() {
    trace_.clear();
    *before_ = *now_;
    touched_.clear();
    // Within a HLT the way out is still to come. The history begins with the borrowed bytes back in place.
    // clang 14 cannot compile the views of libstdc++. NOLINTNEXTLINE(modernize-loop-convert)
    for (auto borrowed = borrowed_.rbegin(); borrowed != borrowed_.rend(); ++borrowed) {
        before_->machine.mem[static_cast<std::size_t>(borrowed->address)] = borrowed->byte;
        touched_.markMemory(borrowed->address);
    }
    before_->machine.synmem();
    clearedInHalt_ = changing_ == Changing::wayOut;
    if (haltsOpen_ == 0) changing_ = Changing::nothing;
    history_.begin(*before_);
}

Written Simulation::takeWritten() {
    return std::exchange(written_, {});
}

// ---- the way back

bool Simulation::canGoBack() const {
    if (haltsOpen_ > 0 || !history_.recording()) return false;
    const bool changed = changing_ == Changing::user && History::differ(*before_, *now_, touched_);
    return changed || history_.end() != Position{};
}

void Simulation::goBack(const Position& target) {
    endChange();
    replay_.seek(target);
    *now_ = replay_.moment();
    shownCells_.clear();
    written_.pages.fill(true);
    written_.ports = true;
    history_.cutBehind(target);
    trace_.cut();
    if (trace_.empty()) return;
    TraceReader(trace_).read(trace_.size() - 1, 1,
                             [this](const TraceRow& row, const RowTexts*) { trace_.setLast(row); });
}

}  // namespace tavinor
