#include "ui/main/Principal.h"

#include <QCloseEvent>
#include <QFileInfo>
#include <QScopeGuard>
#include <array>
#include <exception>
#include <new>
#include <optional>

#include "assembler/OutputPaths.h"
#include "assembler/window/Ensamblador.h"
#include "images/HexLoader.h"
#include "machine/Interrupts.h"
#include "machine/Stepper.h"
#include "ui/common/FileDialogs.h"
#include "ui/common/HexBox.h"
#include "ui/common/MessageBoxes.h"
#include "ui/common/Naming.h"
#include "ui/common/Paths.h"
#include "ui/common/WorkProgress.h"
#include "ui/editor/Editor.h"
#include "ui/main/BytePanel.h"
#include "ui/main/CommandBar.h"
#include "ui/main/EntryPanel.h"
#include "ui/main/Halt.h"
#include "ui/main/InterruptPanel.h"
#include "ui/main/ListingPanel.h"
#include "ui/main/RegisterPanel.h"
#include "ui/main/StackPanel.h"
#include "ui/trace/Listapasos.h"

namespace tavinor {

QString Principal::errorText(const RuntimeError& error) {
    return error.number() == RuntimeError::Number::overflow
               ? QStringLiteral("Error 6: desbordamiento")
               : QStringLiteral("Error 9: subíndice fuera del intervalo");
}

/// The mnemonic table and the grids' headers are constant data.
void Principal::Form_Load() {
    setWindowTitle(applicationTitle());
    llenagrd();
    memory_->showSelectedCell();
    ports_->showSelectedCell();
    Reset_Click();
}

void Principal::llenagrd() {
    memory_->fill(0);
    ports_->fill(0);
}

// What changes the machine or the breakpoints: all of it is here.

void Principal::savmem(std::int32_t dir, std::int32_t dat) {
    machine_.storeMemory(dir, dat);
    memory_->setCell(dir, static_cast<std::uint8_t>(dat));
}

void Principal::savport(std::int32_t dir, std::int32_t dat) {
    machine_.storePort(dir, dat);
    ports_->setCell(dir, static_cast<std::uint8_t>(dat));
}

void Principal::enterRegisters(const Registers& registers) {
    static_cast<Registers&>(machine_) = registers;
    machine_.recomputePairs();
    noteRegisters();
}

void Principal::enterInterrupts(const InterruptState& state) {
    machine_.intState = state;
}

void Principal::enterSerialInput(bool SID) {
    machine_.SID = SID;
}

void Principal::toggleBreakpoint(std::int32_t address) {
    std::int16_t& flag = breakpoints_[static_cast<std::size_t>(address)];
    flag = static_cast<std::int16_t>(~flag);
}

void Principal::enterInstructionByte(std::int32_t address, int byte) {
    savmem(address, byte);
    machine_.synmem();
    memory_->bringUpToDate();
    listing_->rebuildInPlace();
    entry_->bringUpToDate();
}

void Principal::executeOne() {
    listainstru();
    machine_.synmem();
    EjecutaPASO(machine_, *this);
    noteValues();
    listareg();
}

/// What holds between two instructions: the mirror cells equal cells 0 and 1, and PC, which is taken back
/// from its box, has four digits.
void Principal::settle() {
    machine_.synmem();
    machine_.PC &= 0xFFFF;
}

LoadResult Principal::load(const QString& path) {
    WorkProgress progress(this, {QStringLiteral("Cargando el fichero..."), QStringLiteral("Parte cargada")});
    return carga(toPath(path), machine_, breakpoints_, *this, progress);
}

void Principal::Reset_Click() {
    reset(machine_);
    regen();
}

void Principal::Trap_Click() {
    acceptInterrupt(machine_, *this, vector::trap);
    regen();
}

void Principal::Rst55_Click() {
    acceptInterrupt(machine_, *this, vector::rst55);
    regen();
}

void Principal::Rst65_Click() {
    acceptInterrupt(machine_, *this, vector::rst65);
    regen();
}

void Principal::Rst75_Click() {
    acceptRst75(machine_, *this);
    regen();
}

void Principal::Intr_Click() {
    requestIntr(machine_, *this, interrupts_->vector().toStdString());
    regen();
}

// What is shown of it.

void Principal::halt() {
    showAll();  // in the trace, the row of this HLT is there already
    run_.letPaintsGo();
    halt_->ask({listing_->mapToGlobal(QPoint()), listing_->size()});
    if (!halt_->continues()) stopRun();
}

/// Stops a run, or starts one. A run that is started again inside the yield in which it was stopped goes on
/// in the loop that is still on the stack.
void Principal::Ejecutar_Click() {
    const bool start = !running();
    commands_->showRunning(start);
    halt_->setRunning(start);
    listing_->setRunning(start);
    if (start) run_.start();
}

bool Principal::running() const {
    return commands_->running();
}

void Principal::stop() {
    stopRun();
}

/// One instruction, however many are allowed.
Principal::Executed Principal::executeSome(std::int64_t /*most*/) {
    executeOne();
    return {.instructions = 1, .atBreakpoint = breakpoints_[static_cast<std::size_t>(machine_.PC)] != 0};
}

void Principal::listainstru() {
    if (!registers_->edited()) {
        recorder_.listainstru(machine_, {shown_.registers, shown_.M});
        return;
    }
    const RegisterTexts texts = registers_->texts();
    recorder_.listainstru(machine_, {shown_.registers, shown_.M, &texts});
}

/// The refresh just before has overwritten what was being typed.
void Principal::listareg() {
    recorder_.listareg({shown_.registers, shown_.M});
}

void Principal::Eje_paso_Click() {
    executeOne();
    showAll();
}

void Principal::regen() {
    noteValues();
    showAll();
}

void Principal::noteValues() {
    settle();
    noteRegisters();
    noteM();
    viewsBehind_ = true;
    if (registers_->edited()) bringUpToDate();  // a refresh overwrites what is being typed
}

void Principal::noteRegisters() {
    shown_.registers = machine_.registers();
}

void Principal::noteM() {
    shown_.M = machine_.at(machine_.HL);
}

void Principal::showAll() {
    bringUpToDate();
    trace_->bringUpToDate();
}

void Principal::bringUpToDate() {
    if (!viewsBehind_) return;
    viewsBehind_ = false;
    auto unfinished = qScopeGuard([this] { viewsBehind_ = true; });
    registers_->bringUpToDate();
    listing_->bringUpToDate();
    entry_->bringUpToDate();
    interrupts_->bringUpToDate();
    stack_->regenpila();
    memory_->bringUpToDate();
    ports_->bringUpToDate();
    unfinished.dismiss();
}

void Principal::CargarHEX_Click() {
    const std::optional<QString> path = askFileToOpen(
        this, {.title = QStringLiteral("Cargar fichero .HEX"),
               .filter = QStringLiteral("Fichero hexadecimales (*.hex)|*.hex|Todos los ficheros (*.*)|*.*"),
               .initialName = {},
               .defaultSuffix = QStringLiteral("hex")});
    if (path) loadHexFile(*path);
}

void Principal::loadHexFile(const QString& path) {
    guarded([this, &path] {
        try {
            showLoaded(load(path));
        } catch (const std::bad_alloc&) {
            throw;
        } catch (const std::exception&) {
            showMessage(this, QStringLiteral("Fichero incorrecto"));
        }
    });
}

void Principal::showLoaded(const LoadResult& result) {
    if (!result.message.empty()) {
        memory_->bringUpToDate();  // what was stored is seen behind the message
        showMessage(this, QString::fromStdString(result.message), result.rightAlignedBox);
    }
    regen();
    if (result.loaded) showMessage(this, QStringLiteral("Carga correcta"));
}

void Principal::Ensamblar_Click() {
    const std::optional<QString> source = askFileToOpen(
        this, {.title = QStringLiteral("Ensamblar fichero .ASM"),
               .filter = QStringLiteral("Fichero ensamblador (*.asm)|*.asm|Todos los ficheros (*.*)|*.*"),
               .initialName = QStringLiteral("*.asm"),
               .defaultSuffix = QStringLiteral("asm")});
    if (!source) return;
    if (!QFileInfo::exists(*source)) {
        showMessage(this, QStringLiteral("El fichero: ") + *source + QStringLiteral(" no existe"));
        return;
    }
    const OutputPaths outputs = outputPaths(toPath(*source));
    Ensamblador window(this);
    window.assemble(*source, fromPath(outputs.hex), fromPath(outputs.listing));
    regen();
}

void Principal::Editar_Click() {
    editor_->openFromPrincipal(this);
}

void Principal::openDropped(const QString& path, const QString& kind) {
    if (!leaveFocusedBox(this)) return;
    if (kind == QStringLiteral("hex")) {
        loadHexFile(path);
    } else {
        editor_->openDropped(path, this);
    }
}

void Principal::listains_Click() {
    if (leaveFocusedBox(this)) trace_->open();
}

void Principal::about_Click() {
    emit aboutRequested();
}

void Principal::carryOut(int haltOption) {
    constexpr std::array<void (Principal::*)(), Halt::optionCount> procedures{
        &Principal::Reset_Click, &Principal::Trap_Click,  &Principal::Rst55_Click,
        &Principal::Rst65_Click, &Principal::Rst75_Click, &Principal::Intr_Click};
    (this->*procedures[static_cast<std::size_t>(haltOption)])();
}

void Principal::enterMemoryByte(std::int32_t address, int byte) {
    savmem(address, byte);
    regen();
}

/// The memory panel's own data box takes the current cell along.
void Principal::enterSelectedByte(std::int32_t address, int byte) {
    savmem(address, byte);
    memory_->showCurrent(address);
    regen();
}

/// No refresh follows, unlike a memory byte: no other view shows a port.
void Principal::enterPortByte(std::int32_t address, int byte) {
    savport(address, byte);
    ports_->showCurrent(address);
    ports_->bringUpToDate();
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

void Principal::closeEvent(QCloseEvent* event) {
    event->ignore();
    if (!Form_QueryUnload()) return;
    trace_->hide();
    hide();
    emit closed();
}

}  // namespace tavinor
