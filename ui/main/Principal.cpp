#include "ui/main/Principal.h"

#include <QApplication>
#include <QCloseEvent>
#include <QLabel>
#include <QScopeGuard>
#include <optional>

#include "ui/common/FocusGate.h"
#include "ui/common/MessageBoxes.h"
#include "ui/common/Naming.h"
#include "ui/editor/Editor.h"
#include "ui/main/BytePanel.h"
#include "ui/main/CommandBar.h"
#include "ui/main/EntryPanel.h"
#include "ui/main/HistoryMenu.h"
#include "ui/main/InterruptPanel.h"
#include "ui/main/ListingPanel.h"
#include "ui/main/RegisterPanel.h"
#include "ui/main/StackPanel.h"
#include "ui/trace/Listapasos.h"

namespace tavinor {

namespace {

/// What can be seen of a widget in its window, as a place on the screen.
QRect seen(const QWidget& widget) {
    const QRect part = widget.visibleRegion().boundingRect();
    return {widget.mapToGlobal(part.topLeft()), part.size()};
}

}  // namespace

QString Principal::errorText(const RuntimeError& error) {
    return error.number() == RuntimeError::Number::overflow
               ? QStringLiteral("Error 6: desbordamiento")
               : QStringLiteral("Error 9: subíndice fuera del intervalo");
}

/// The mnemonic table and the grids' headers are constant data. The first reset is not the user's, who cannot
/// undo it.
void Principal::Form_Load() {
    setWindowTitle(applicationTitle());
    llenagrd();
    memory_->showSelectedCell();
    ports_->showSelectedCell();
    Reset_Click();
    simulation_.clearTrace();
    allowWaysBack();
}

void Principal::llenagrd() {
    memory_->fill(0);
    ports_->fill(0);
}

// What the user does to the machine.

void Principal::enterRegisters(const Registers& registers) {
    simulation_.setRegisters(registers);
    showRegisters();
    allowWaysBack();
}

void Principal::enterInterrupts(const InterruptState& state) {
    simulation_.setInterrupts(state);
    allowWaysBack();
}

void Principal::enterSerialInput(bool SID) {
    simulation_.setSID(SID);
    allowWaysBack();
}

void Principal::enterPointer() {
    simulation_.refreshM();
    showRegisters();
    allowWaysBack();
}

void Principal::enterMemoryByte(std::int32_t address, int byte) {
    simulation_.writeMemory(address, byte);
    regen();
}

/// The memory panel's own data box takes the current cell along.
void Principal::enterSelectedByte(std::int32_t address, int byte) {
    simulation_.writeMemory(address, byte);
    memory_->showCurrent(address);
    regen();
}

/// No refresh follows, unlike a memory byte: see behaviour.md, Main window: refresh.
void Principal::enterPortByte(std::int32_t address, int byte) {
    simulation_.writePort(address, byte);
    ports_->showCurrent(address);
    showWritten();
    allowWaysBack();
}

void Principal::enterInstructionByte(std::int32_t address, int byte) {
    simulation_.writeMemory(address, byte);
    showWritten();
    listing_->rebuildInPlace();
    entry_->bringUpToDate();
    allowWaysBack();
}

void Principal::Reset_Click() {
    simulation_.reset();
    regen();
}

void Principal::Trap_Click() {
    simulation_.trap();
    regen();
}

void Principal::Rst55_Click() {
    simulation_.rst55();
    regen();
}

void Principal::Rst65_Click() {
    simulation_.rst65();
    regen();
}

void Principal::Rst75_Click() {
    simulation_.rst75();
    regen();
}

void Principal::Intr_Click() {
    simulation_.intr(interrupts_->vector().toStdString());
    regen();
}

// What is shown of it.

/// In the trace, the row of this HLT is there already.
void Principal::haltComes() {
    showAll();
}

void Principal::halt() {
    run_.letPaintsGo();
    QList<QRect> readable;
    for (const QWidget* panel : {static_cast<QWidget*>(registers_), static_cast<QWidget*>(interrupts_),
                                 static_cast<QWidget*>(ports_)}) {
        for (const QWidget* control : panel->findChildren<QWidget*>()) readable.append(seen(*control));
    }
    halt_->ask(seen(*listing_), readable);
    if (!halt_->continues()) stopRun();
}

/// Stops a run, or starts one. A run that is started again inside the yield in which it was stopped goes on
/// in the loop that is still on the stack: see behaviour.md, Main window: runs.
void Principal::Ejecutar_Click() {
    const bool start = !running();
    commands_->showRunning(start);
    halt_->setRunning(start);
    listing_->setRunning(start);
    allowWaysBack();
    if (start) run_.start();
}

bool Principal::running() const {
    return commands_->running();
}

void Principal::stop() {
    stopRun();
}

/// A refresh overwrites what is being typed.
Principal::Executed Principal::executeSome(std::int64_t most) {
    const std::optional<RegisterTexts> typed = typedTexts();
    const std::int64_t instructions = simulation_.run(most, typed ? &*typed : nullptr);
    viewsBehind_ = true;
    if (typed) bringUpToDate();
    return {.instructions = instructions, .atBreakpoint = simulation_.atBreakpoint()};
}

std::optional<RegisterTexts> Principal::typedTexts() const {
    return registers_->edited() ? std::optional(registers_->texts()) : std::nullopt;
}

void Principal::Eje_paso_Click() {
    const std::optional<RegisterTexts> typed = typedTexts();
    simulation_.step(typed ? &*typed : nullptr);
    viewsBehind_ = true;
    showAll();
}

void Principal::regen() {
    simulation_.refresh();
    viewsBehind_ = true;
    showAll();
}

void Principal::showAll() {
    bringUpToDate();
    trace_->bringUpToDate();
}

void Principal::bringUpToDate() {
    if (!viewsBehind_) return;
    viewsBehind_ = false;
    auto unfinished = qScopeGuard([this] { viewsBehind_ = true; });
    showRegisters();
    registers_->bringUpToDate();
    listing_->bringUpToDate();
    entry_->bringUpToDate();
    interrupts_->bringUpToDate();
    stack_->regenpila();
    showWritten();
    allowWaysBack();
    if (!state_->text().isEmpty()) state_->clear();  // what it says is over
    unfinished.dismiss();
}

void Principal::allowWaysBack() {
    const bool inReach = QApplication::activeModalWidget() == nullptr;
    history_->allow(inReach && !running() && simulation_.canGoBack());
}

void Principal::showRegisters() {
    shown_ = {.registers = machine().registers(), .M = simulation_.shownM()};
}

void Principal::showWritten() {
    const Written written = simulation_.takeWritten();
    for (std::size_t page = 0; page < written.pages.size(); ++page) {
        const std::size_t first = page * pageSize;
        if (written.pages[page]) memory_->setCells(first, &machine().mem[first], pageSize);
    }
    for (const auto& [address, byte] : simulation_.shownCells()) {
        memory_->setCells(static_cast<std::size_t>(address), &byte, 1);
    }
    if (written.ports) ports_->setCells(0, machine().port.data(), machine().port.size());
    memory_->bringUpToDate();
    ports_->bringUpToDate();
}

void Principal::listains_Click() {
    if (FocusGate::of(this).pass()) trace_->open();
}

void Principal::about_Click() {
    emit aboutRequested();
}

void Principal::carryOut(Halt::WayOut wayOut) {
    using WayOut = Halt::WayOut;
    switch (wayOut) {
        case WayOut::reset: Reset_Click(); break;
        case WayOut::trap: Trap_Click(); break;
        case WayOut::rst55: Rst55_Click(); break;
        case WayOut::rst65: Rst65_Click(); break;
        case WayOut::rst75: Rst75_Click(); break;
        case WayOut::intr: Intr_Click(); break;
    }
}

void Principal::recover(const QString& message) {
    stopRun();
    run_.showSafely([this] { regen(); });
    run_.forgetThatMemoryIsOut();  // it is told, or worse than that
    showMessage(this, message);
}

void Principal::stopRun() {
    if (running()) Ejecutar_Click();
}

bool Principal::agreesToEnd() {
    stopRun();
    return editor_->mayClose();
}

void Principal::rescue() const {
    editor_->rescue();
}

/// Qt hands the focus of a control that becomes disabled on as Tab would. The next key would press the
/// neighbour, so the focus goes to where no key acts on the machine.
bool Principal::focusNextPrevChild(bool next) {
    const QWidget* holder = focusWidget();
    if (holder == nullptr || holder->isEnabled()) return QMainWindow::focusNextPrevChild(next);
    listing_->takeFocus();
    return true;
}

bool Principal::Form_QueryUnload() {
    return !running() && editor_->mayClose();
}

/// Nothing is undone behind a modal window.
bool Principal::event(QEvent* event) {
    if (event->type() == QEvent::WindowBlocked) history_->allow(false);
    if (event->type() == QEvent::WindowUnblocked) allowWaysBack();
    return QMainWindow::event(event);
}

void Principal::closeEvent(QCloseEvent* event) {
    event->ignore();
    if (!Form_QueryUnload()) return;
    trace_->hide();
    hide();
    emit closed();
}

}  // namespace tavinor
