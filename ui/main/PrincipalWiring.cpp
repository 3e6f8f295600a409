// How the main window is put together: its parts, their places, and who hears whom.
#include <QHBoxLayout>
#include <QLabel>
#include <QMenuBar>
#include <QStatusBar>
#include <QVBoxLayout>
#include <utility>

#include "ui/common/FileDrops.h"
#include "ui/common/FocusGate.h"
#include "ui/common/Naming.h"
#include "ui/common/ScrollingContent.h"
#include "ui/editor/Editor.h"
#include "ui/main/BytePanel.h"
#include "ui/main/CommandBar.h"
#include "ui/main/EntryPanel.h"
#include "ui/main/HistoryMenu.h"
#include "ui/main/InterruptPanel.h"
#include "ui/main/ListingPanel.h"
#include "ui/main/Principal.h"
#include "ui/main/RegisterPanel.h"
#include "ui/main/StackPanel.h"
#include "ui/trace/Listapasos.h"

namespace tavinor {

Principal::Principal(std::unique_ptr<RunPace> pace)
    : run_(*this, std::move(pace)),
      commands_(new CommandBar(this)),
      listing_(new ListingPanel(machine(), breakpoints(), shown_, this)),
      entry_(new EntryPanel(machine(), this)),
      registers_(new RegisterPanel(machine(), shown_, this)),
      stack_(new StackPanel(machine(), shown_, this)),
      interrupts_(new InterruptPanel(machine(), this)),
      memory_(new BytePanel(memoryPanelNames(), this)),
      ports_(new BytePanel(portPanelNames(), this)),
      halt_(new Halt(this)),
      editor_(std::make_unique<Editor>()),
      trace_(std::make_unique<Listapasos>(simulation_)) {
    setObjectName(QStringLiteral("Principal"));
    layOut();
    makeMenus();
    connectCommands();
    connectPanels();
    Form_Load();
}

Principal::~Principal() = default;

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

    auto* content = new QWidget(this);
    auto* columns = new QHBoxLayout(content);
    columns->setContentsMargins(0, 0, 0, 0);
    columns->addLayout(program);
    columns->addLayout(processor);
    columns->addLayout(bytes, 1);
    auto* central = new QWidget(this);
    auto* layout = new QVBoxLayout(central);
    layout->addWidget(commands_);
    layout->addWidget(new ScrollingContent(content, commands_, this), 1);
    setCentralWidget(central);
    state_ = named(new QLabel(this), QStringLiteral("estado"), {});
    state_->setTextFormat(Qt::PlainText);
    state_->setIndent(8);
    statusBar()->addWidget(state_, 1);
    statusBar()->setSizeGripEnabled(false);
    // Room for the whole listing and a good piece of memory, where the screen has it.
    resize(QSize(1180, 730).expandedTo(sizeHint()).boundedTo(roomOnScreen(*this)));
}

void Principal::makeMenus() {
    listains = menuBar()->addAction(QStringLiteral("&Lista"));
    listains->setObjectName(QStringLiteral("listains"));
    history_ = new HistoryMenu(this);
    menuBar()->addMenu(history_);
    const auto connectWay = [this](QAction* action, auto way) {
        connect(action, &QAction::triggered, this, [this, way] { guarded([this, way] { goBack(way); }); });
    };
    connectWay(history_->pasoAtras, [this] { return waysBack_.oneStep(); });
    connectWay(history_->atrasPunto, [this] { return waysBack_.toBreakpoint(); });
    connectWay(history_->atrasCasilla, [this] { return waysBack_.toLastWrite(memory_->currentAddress()); });
    connect(trace_.get(), &Listapasos::cleared, this, &Principal::allowWaysBack);
    connectWay(history_->alPrincipio, [this] { return waysBack_.toBeginning(); });
}

/// The views show what was shown there: nothing is refreshed first.
template <typename Way>
void Principal::goBack(const Way& way) {
    if (!FocusGate::of(this).passTyped() || !simulation_.canGoBack()) return;
    const std::optional<QString> told = way();
    viewsBehind_ = true;
    showAll();
    if (told) state_->setText(*told);
}

void Principal::connectCommands() {
    using Procedure = void (Principal::*)();
    const auto connectCommand = [this](auto* sender, auto signal, Procedure procedure) {
        connect(sender, signal, this,
                [this, procedure] { guarded([this, procedure] { (this->*procedure)(); }); });
    };
    connectCommand(listains, &QAction::triggered, &Principal::listains_Click);
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
            [this](Halt::WayOut wayOut) { guarded([this, wayOut] { carryOut(wayOut); }); });
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
    connectBytes(entry_, &EntryPanel::codeEntered, &Principal::enterInstructionByte);
    connectBytes(entry_, &EntryPanel::operandEntered, &Principal::enterInstructionByte);
    connect(registers_, &RegisterPanel::registersEntered, this, &Principal::enterRegisters);
    connect(registers_, &RegisterPanel::pointerEntered, this, &Principal::enterPointer);
    connect(interrupts_, &InterruptPanel::interruptsEntered, this, &Principal::enterInterrupts);
    connect(interrupts_, &InterruptPanel::serialInputEntered, this, &Principal::enterSerialInput);
    connect(listing_, &ListingPanel::breakpointToggled, this,
            [this](std::int32_t address) { simulation_.toggleBreakpoint(address); });
    connect(listing_, &ListingPanel::rowSelected, entry_, &EntryPanel::showRow);
    connect(entry_, &EntryPanel::addressEntered, this,
            [this](std::int32_t address) { guarded([=, this] { listing_->position(address); }); });
    connect(registers_, &RegisterPanel::programCounterEntered, this,
            [this] { guarded([this] { listing_->bringUpToDate(); }); });
    connect(registers_, &RegisterPanel::stackPointerEntered, this,
            [this] { guarded([this] { stack_->regenpila(); }); });
}

}  // namespace tavinor
