#include "ui/main/Principal.h"

#include <QApplication>
#include <QCloseEvent>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QMenuBar>
#include <QScopeGuard>
#include <QScopedValueRollback>
#include <QScreen>
#include <QThread>
#include <QVBoxLayout>
#include <array>
#include <exception>
#include <new>
#include <optional>
#include <utility>

#include "assembler/OutputPaths.h"
#include "assembler/window/Ensamblador.h"
#include "images/HexLoader.h"
#include "machine/Interrupts.h"
#include "machine/Stepper.h"
#include "ui/common/FileDialogs.h"
#include "ui/common/FileDrops.h"
#include "ui/common/HexBox.h"
#include "ui/common/MemoryGuard.h"
#include "ui/common/MessageBoxes.h"
#include "ui/common/Naming.h"
#include "ui/common/Paths.h"
#include "ui/common/ScrollingContent.h"
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

namespace {
QString errorText(const RuntimeError& error) {
    return error.number() == RuntimeError::Number::overflow
               ? QStringLiteral("Error 6: desbordamiento")
               : QStringLiteral("Error 9: subíndice fuera del intervalo");
}

}  // namespace

template <typename Procedure>
void Principal::guarded(const Procedure& procedure) {
    try {
        procedure();
        if (std::exchange(memoryOut_, false)) throw std::bad_alloc();
    } catch (const RuntimeError& error) {
        recover(errorText(error));
    } catch (const std::bad_alloc&) {
        recover(memoryOutText());
    }
}

template <typename Work>
void Principal::showSafely(const Work& work) {
    try {
        work();
    } catch (const std::bad_alloc&) {
        memoryOut_ = true;
    }
}

Principal::Principal(QWidget* parent)
    : QMainWindow(parent),
      commands_(new CommandBar(this)),
      listing_(new ListingPanel(machine_, breakpoints_, this)),
      entry_(new EntryPanel(machine_, this)),
      registers_(new RegisterPanel(machine_, this)),
      stack_(new StackPanel(machine_, this)),
      interrupts_(new InterruptPanel(machine_, this)),
      memory_(new BytePanel(memoryPanelNames(), this)),
      ports_(new BytePanel(portPanelNames(), this)),
      halt_(new Halt(this)),
      editor_(std::make_unique<Editor>()),
      trace_(std::make_unique<Listapasos>()),
      recorder_(trace_->recorder()) {
    setObjectName(QStringLiteral("Principal"));
    layOut();
    makeMenus();
    connectCommands();
    connectPanels();
    Form_Load();
}

Principal::~Principal() = default;

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

void Principal::layOut() {
    auto* program = new QVBoxLayout;
    program->addWidget(listing_, 1);
    program->addWidget(entry_);
    auto* stackAndInterrupts = new QHBoxLayout;
    stackAndInterrupts->addWidget(stack_);
    stackAndInterrupts->addWidget(interrupts_, 1);
    auto* processor = new QVBoxLayout;
    processor->addWidget(registers_);
    processor->addLayout(stackAndInterrupts, 1);
    auto* bytes = new QVBoxLayout;
    bytes->addWidget(memory_, 1);
    bytes->addWidget(ports_);

    auto* columns = new QHBoxLayout;
    columns->addLayout(program);
    columns->addLayout(processor);
    columns->addLayout(bytes, 1);
    auto* content = new QWidget(this);
    auto* layout = new QVBoxLayout(content);
    layout->addWidget(commands_);
    layout->addLayout(columns, 1);
    setCentralWidget(new ScrollingContent(content, this));
    // Room for the whole listing and a good piece of memory, where the screen has it.
    resize(QSize(1180, 730).expandedTo(sizeHint()).boundedTo(screen()->availableSize() - QSize(16, 40)));
}

void Principal::makeMenus() {
    listains = menuBar()->addAction(QStringLiteral("&Lista"));
    listains->setObjectName(QStringLiteral("listains"));
    connect(listains, &QAction::triggered, this, &Principal::listains_Click);
}

void Principal::connectCommands() {
    using Procedure = void (Principal::*)();
    const auto connectCommand = [this](auto* sender, auto signal, Procedure procedure) {
        connect(sender, signal, this,
                [this, procedure] { guarded([this, procedure] { (this->*procedure)(); }); });
    };
    connectCommand(commands_->Ejecutar, &CommandButton::command, &Principal::Ejecutar_Click);
    connectCommand(commands_->Eje_paso, &CommandButton::command, &Principal::Eje_paso_Click);
    connectCommand(commands_->CargarHEX, &CommandButton::command, &Principal::CargarHEX_Click);
    connectCommand(commands_->Ensamblar, &CommandButton::command, &Principal::Ensamblar_Click);
    connectCommand(commands_->Editar, &CommandButton::command, &Principal::Editar_Click);
    connectCommand(commands_->about, &CommandButton::command, &Principal::about_Click);
    connectCommand(commands_->Reset, &CommandButton::command, &Principal::Reset_Click);
    connectCommand(interrupts_, &InterruptPanel::trapRequested, &Principal::Trap_Click);
    connectCommand(interrupts_, &InterruptPanel::rst55Requested, &Principal::Rst55_Click);
    connectCommand(interrupts_, &InterruptPanel::rst65Requested, &Principal::Rst65_Click);
    connectCommand(interrupts_, &InterruptPanel::rst75Requested, &Principal::Rst75_Click);
    connectCommand(interrupts_, &InterruptPanel::intrRequested, &Principal::Intr_Click);
    connect(interrupts_, &InterruptPanel::allowedChanged, halt_, &Halt::allow);
    connect(halt_, &Halt::vectorLeft, interrupts_, &InterruptPanel::setVector);
    connect(halt_, &Halt::chosen, this,
            [this](int option) { guarded([this, option] { carryOut(option); }); });
    connect(new FileDrops(this, {QStringLiteral("hex"), QStringLiteral("asm")}), &FileDrops::dropped, this,
            [this](const QString& path, const QString& kind) {
                guarded([this, path, kind] { openDropped(path, kind); });
            });
}

void Principal::connectPanels() {
    using ByteProcedure = void (Principal::*)(std::int32_t, int);
    const auto connectBytes = [this](auto* sender, auto signal, ByteProcedure procedure) {
        connect(sender, signal, this, [this, procedure](std::int32_t address, int byte) {
            guarded([=, this] { (this->*procedure)(address, byte); });
        });
    };
    connectBytes(registers_, &RegisterPanel::memoryByteEntered, &Principal::enterMemoryByte);
    connectBytes(memory_, &BytePanel::byteEntered, &Principal::enterSelectedByte);
    connectBytes(ports_, &BytePanel::byteEntered, &Principal::enterPortByte);
    connectBytes(entry_, &EntryPanel::codeEntered, &Principal::enterCode);
    connectBytes(entry_, &EntryPanel::operandEntered, &Principal::enterOperand);
    connect(listing_, &ListingPanel::rowSelected, entry_, &EntryPanel::showRow);
    connect(entry_, &EntryPanel::addressEntered, this,
            [this](std::int32_t address) { guarded([=, this] { listing_->position(address); }); });
    connect(registers_, &RegisterPanel::programCounterEntered, this, [this] {
        guarded([this] {
            listing_->note(machine_.PC);
            listing_->bringUpToDate();
        });
    });
    connect(registers_, &RegisterPanel::stackPointerEntered, this, [this] {
        guarded([this] {
            stack_->note(machine_.SP);
            stack_->regenpila();
        });
    });
}

void Principal::savmem(std::int32_t dir, std::int32_t dat) {
    machine_.storeMemory(dir, dat);
    memory_->setCell(dir, static_cast<std::uint8_t>(dat));
}

void Principal::savport(std::int32_t dir, std::int32_t dat) {
    machine_.storePort(dir, dat);
    ports_->setCell(dir, static_cast<std::uint8_t>(dat));
}

void Principal::halt() {
    showAll();  // in the trace, the row of this HLT is there already
    heldPaints_.letGo();
    halt_->ask();
    if (!halt_->continues()) stopRun();
}

/// Stops a run, or starts one. A run that is started again inside the yield in which it was stopped goes on
/// in the loop that is still on the stack.
void Principal::Ejecutar_Click() {
    const bool start = !commands_->running();
    commands_->showRunning(start);
    halt_->setRunning(start);
    listing_->setRunning(start);
    if (start && !loopOnStack_) run();
}

/// The loop of a run. Handlers run nested inside `yield`, so the caption is read anew after it.
void Principal::run() {
    const QScopedValueRollback<bool> onStack(loopOnStack_, true);
    const QScopedValueRollback<int> level(runLevel_, QThread::currentThread()->loopLevel());
    qApp->installEventFilter(this);
    const auto atEnd = qScopeGuard([this] {
        qApp->removeEventFilter(this);
        showSafely([this] { paintFrame(); });
    });
    do {
        executeOne();
        if (breakpoints_[static_cast<std::size_t>(machine_.PC)] != 0 && commands_->running()) {
            Ejecutar_Click();
            return;
        }
        yield();
    } while (commands_->running());
}

void Principal::executeOne() {
    listainstru();
    EjecutaPASO(machine_, *this);
    noteValues();
    listareg();
}

void Principal::listainstru() {
    const auto& [registers, M] = registers_->values();
    if (!registers_->edited()) {
        recorder_.listainstru(machine_, {registers, M});
        return;
    }
    const RegisterTexts texts = registers_->texts();
    recorder_.listainstru(machine_, {registers, M, &texts});
}

/// The refresh just before has overwritten what was being typed.
void Principal::listareg() {
    const auto& [registers, M] = registers_->values();
    recorder_.listareg({registers, M});
}

/// Posted events are served after every instruction, those of the operating system often enough for a click
/// to be seen long before the button is up again.
void Principal::yield() {
    QCoreApplication::sendPostedEvents();
    const RunPace::Due due = pace_.next();
    if (due == RunPace::Due::nothing) return;
    QCoreApplication::processEvents();
    if (std::exchange(memoryOut_, false)) throw std::bad_alloc();
    if (due == RunPace::Due::frame) paintFrame();
}

/// The requests to paint that the views post here are held back like all others, and let go at once.
void Principal::paintFrame() {
    showAll();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::UpdateRequest);
    heldPaints_.letGo();
}

/// Sees every event of the program while a run is going. A dialog that was opened during the run has an event
/// loop of its own, in which the run stands still and windows paint as always.
bool Principal::eventFilter(QObject* watched, QEvent* event) {
    const bool runTurns = QThread::currentThread()->loopLevel() == runLevel_;
    if (runTurns && heldPaints_.hold(watched, event)) return true;
    showSafely([this, runTurns] {
        bringUpToDate();
        if (runTurns) return;
        trace_->bringUpToDate();
        heldPaints_.letGo();
    });
    return QMainWindow::eventFilter(watched, event);
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
    machine_.synmem();
    machine_.PC &= 0xFFFF;  // PC is taken back from the four digits of its box
    registers_->note({machine_.registers(), machine_.mem[static_cast<std::size_t>(machine_.HL)]});
    listing_->note(machine_.PC);
    stack_->note(machine_.SP);
    viewsBehind_ = true;
    if (registers_->edited()) bringUpToDate();  // a refresh overwrites what is being typed
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

LoadResult Principal::load(const QString& path) {
    WorkProgress progress(this, {QStringLiteral("Cargando el fichero..."), QStringLiteral("Parte cargada")});
    return carga(toPath(path), machine_, breakpoints_, *this, progress);
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

void Principal::enterCode(std::int32_t address, int code) {
    savmem(address, code);
    memory_->bringUpToDate();
    listing_->rebuildInPlace();
    entry_->bringUpToDate();
}

void Principal::enterOperand(std::int32_t address, int operand) {
    machine_.synmem();
    enterCode(address, operand);
}

void Principal::recover(const QString& message) {
    stopRun();
    showSafely([this] { regen(); });
    memoryOut_ = false;  // it is told, or worse than that
    showMessage(this, message);
}

void Principal::stopRun() {
    if (commands_->running()) Ejecutar_Click();
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
    return !commands_->running() && editor_->mayClose();
}

void Principal::closeEvent(QCloseEvent* event) {
    event->ignore();
    if (!Form_QueryUnload()) return;
    trace_->hide();
    hide();
    emit closed();
}

}  // namespace tavinor
