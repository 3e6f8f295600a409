#include "ui/main/InterruptPanel.h"

#include <QHBoxLayout>
#include <QVBoxLayout>

#include "ui/common/Naming.h"

namespace tavinor {

InterruptPanel::InterruptPanel(const MachineState& machine, QWidget* parent)
    : QGroupBox(QStringLiteral("Interrupciones"), parent), machine_(machine) {
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(makeMaskBoxes());
    layout->addLayout(makeLineBoxes());
    layout->addLayout(makeButtons());
    layout->addLayout(makeVectorRow());
    layout->addStretch();

    connect(CHK55, &CommandCheckBox::changedByUser, this, &InterruptPanel::CHK55_Click);
    connect(CHK65, &CommandCheckBox::changedByUser, this, &InterruptPanel::CHK65_Click);
    connect(CHK75, &CommandCheckBox::changedByUser, this, &InterruptPanel::CHK75_Click);
    connect(CHKEI, &CommandCheckBox::changedByUser, this, &InterruptPanel::CHKEI_Click);
    connect(chkSID, &CommandCheckBox::changedByUser, this, &InterruptPanel::serialInputEntered);
    connect(Rst55, &CommandButton::command, this, &InterruptPanel::rst55Requested);
    connect(Rst65, &CommandButton::command, this, &InterruptPanel::rst65Requested);
    connect(Rst75, &CommandButton::command, this, &InterruptPanel::rst75Requested);
    connect(Trap, &CommandButton::command, this, &InterruptPanel::trapRequested);
    connect(Intr, &CommandButton::command, this, &InterruptPanel::intrRequested);
}

QLayout* InterruptPanel::makeMaskBoxes() {
    const auto make = [this](const char* name, const char* spoken, const char* caption) {
        return new CommandCheckBox(QString::fromLatin1(name), QString::fromUtf8(spoken),
                                   QString::fromLatin1(caption), this);
    };
    CHK55 = make("CHK55", "Máscara de RST 5.5", "M5.5");
    CHK65 = make("CHK65", "Máscara de RST 6.5", "M6.5");
    CHK75 = make("CHK75", "Máscara de RST 7.5", "M7.5");
    CHKEI = make("CHKEI", "Interrupciones habilitadas", "IE");
    chkSID = make("chkSID", "Entrada serie SID", "SID");
    auto* row = new QHBoxLayout;
    for (QWidget* box : {CHK55, CHK65, CHK75}) row->addWidget(box);
    return row;
}

QLayout* InterruptPanel::makeLineBoxes() {
    ChkSOD = new DisplayCheckBox(QStringLiteral("ChkSOD"), QStringLiteral("Salida serie SOD"),
                                 QStringLiteral("SOD"), this);
    auto* row = new QHBoxLayout;
    row->addWidget(CHKEI);
    row->addWidget(chkSID);
    row->addWidget(ChkSOD);
    return row;
}

QLayout* InterruptPanel::makeButtons() {
    const auto make = [this](const char* name, const char* caption) {
        return new CommandButton(QString::fromLatin1(name),
                                 QStringLiteral("Petición de ") + QString::fromLatin1(caption),
                                 QString::fromLatin1(caption), this);
    };
    Rst55 = make("Rst55", "RST 5.5");
    Rst65 = make("Rst65", "RST 6.5");
    Rst75 = make("Rst75", "RST 7.5");
    Trap = make("Trap", "TRAP");
    Intr = make("Intr", "INTR");
    auto* rows = new QVBoxLayout;
    for (QWidget* button : {Rst55, Rst65, Rst75, Trap}) rows->addWidget(button);
    return rows;
}

QLayout* InterruptPanel::makeVectorRow() {
    txtVec = new HexBox(QStringLiteral("txtVec"), QStringLiteral("Vector de INTR"), 2, this);
    auto* row = new QHBoxLayout;
    row->addWidget(Intr, 1);
    row->addWidget(caption(QStringLiteral("Vector:"), txtVec, this));
    row->addWidget(txtVec);
    return row;
}

void InterruptPanel::bringUpToDate() {
    const InterruptState& state = machine_.intState;
    CHKEI->showChecked(state.IE);
    CHK55->showChecked(state.M55);
    CHK65->showChecked(state.M65);
    CHK75->showChecked(state.M75);
    ChkSOD->showChecked(machine_.SOD);
    chkSID->showChecked(machine_.SID);
    allow();
}

void InterruptPanel::allow() {
    const RequestsAllowed allowed = requestsAllowed(machine_.intState);
    Rst55->setEnabled(allowed.rst55);
    Rst65->setEnabled(allowed.rst65);
    Rst75->setEnabled(allowed.rst75);
    Intr->setEnabled(allowed.intr);
    emit allowedChanged(allowed);
}

/// A request that is still latched is served as soon as the user unmasks or enables it: see behaviour.md,
/// Main window: interrupts.
void InterruptPanel::serveLatchedRst75() {
    if (machine_.intState.R75 && requestsAllowed(machine_.intState).rst75) emit rst75Requested();
}

/// Announces the machine's interrupt state with one part of it changed.
void InterruptPanel::enter(bool InterruptState::*own, bool checked) {
    InterruptState state = machine_.intState;
    state.*own = checked;
    emit interruptsEntered(state);
    allow();
}

void InterruptPanel::CHK55_Click(bool checked) {
    enter(&InterruptState::M55, checked);
}

void InterruptPanel::CHK65_Click(bool checked) {
    enter(&InterruptState::M65, checked);
}

void InterruptPanel::CHK75_Click(bool checked) {
    enter(&InterruptState::M75, checked);
    serveLatchedRst75();
}

void InterruptPanel::CHKEI_Click(bool checked) {
    enter(&InterruptState::IE, checked);
    serveLatchedRst75();
}

}  // namespace tavinor
