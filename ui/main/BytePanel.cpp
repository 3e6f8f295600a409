#include "ui/main/BytePanel.h"

#include <QHBoxLayout>
#include <QVBoxLayout>

#include "machine/HexText.h"
#include "machine/MachineState.h"
#include "ui/common/FocusGate.h"
#include "ui/common/Naming.h"

namespace tavinor {

BytePanel::BytePanel(const BytePanelNames& names, QWidget* parent)
    : QGroupBox(names.title, parent),
      model_(new ByteGridModel(names.cells, this)),
      address_(new HexBox(names.address, names.addressAccessible, names.addressDigits, this)),
      data_(new CellBox(names.data, names.dataAccessible, this)),
      grid_(named(new ByteGrid(model_, names.visibleRows, this), names.grid, names.gridAccessible)) {
    auto* boxes = new QHBoxLayout;
    boxes->addWidget(caption(QStringLiteral("Dirección:"), address_, this));
    boxes->addWidget(address_);
    boxes->addSpacing(12);
    boxes->addWidget(caption(QStringLiteral("Dato:"), data_, this));
    boxes->addWidget(data_);
    boxes->addStretch();
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(boxes);
    layout->addWidget(grid_);

    connect(grid_, &ByteGrid::cellSelected, this, &BytePanel::selectCell);
    connect(grid_, &ByteGrid::digitTyped, this, &BytePanel::typeDigit);
    connect(address_, &QLineEdit::textChanged, this, &BytePanel::compareData);
    connect(address_, &HexBox::left, this, &BytePanel::addressLeft);
    connect(data_, &HexBox::left, this, [this] { emit byteEntered(address_->value(), data_->value()); });
}

void BytePanel::bringUpToDate() {
    grid_->refresh();
    compareData();
}

void BytePanel::compareData() {
    const std::optional<int> address = address_->normalValue();
    data_->showCell(address ? std::optional(model_->cell(*address)) : std::nullopt);
}

void BytePanel::showSelectedCell() {
    const std::int32_t address = grid_->currentAddress();
    address_->showValue(address);
    data_->showText(model_->cellText(address));
}

void BytePanel::selectCell(std::int32_t /*address*/, std::int32_t before) {
    // An assistive tool can select a cell without moving the focus; a refusal takes the selection back.
    if (FocusGate::of(this).pass(grid_)) {
        showSelectedCell();
    } else {
        grid_->showCurrent(before);
    }
}

/// The boxes may speak of another cell, or the data box keep another byte: first they show this one.
void BytePanel::typeDigit(const QString& digit) {
    showSelectedCell();
    data_->startTyping(digit);
}

/// The data box keeps its text until a cell is selected: see behaviour.md, Main window: memory and ports.
void BytePanel::addressLeft() {
    const std::int32_t address = address_->value();
    grid_->showCurrent(address);
    grid_->scrollNear(address);
}

BytePanelNames memoryPanelNames() {
    return {.title = QStringLiteral("Memoria"),
            .grid = QStringLiteral("grdmem"),
            .gridAccessible = QStringLiteral("Contenido de la memoria"),
            .address = QStringLiteral("txtDirMem"),
            .addressAccessible = QStringLiteral("Dirección de memoria"),
            .data = QStringLiteral("txtDatMem"),
            .dataAccessible = QStringLiteral("Dato de memoria"),
            .cells = memorySize,
            .addressDigits = 4,
            .visibleRows = 0};
}

BytePanelNames portPanelNames() {
    return {.title = QStringLiteral("Puertos de E/S"),
            .grid = QStringLiteral("grdport"),
            .gridAccessible = QStringLiteral("Contenido de los puertos"),
            .address = QStringLiteral("txtDirPort"),
            .addressAccessible = QStringLiteral("Dirección de puerto"),
            .data = QStringLiteral("txtDatPort"),
            .dataAccessible = QStringLiteral("Dato de puerto"),
            .cells = portCount,
            .addressDigits = 2,
            .visibleRows = portCount / ByteGridModel::columns};
}

}  // namespace tavinor
