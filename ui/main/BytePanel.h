#pragma once

#include <QGroupBox>
#include <QString>
#include <cstddef>
#include <cstdint>

#include "ui/common/HexBox.h"
#include "ui/main/ByteGrid.h"
#include "ui/main/CellBox.h"

namespace tavinor {

/// What tells the memory panel from the port panel: names, captions and sizes.
struct BytePanelNames {
    QString title;
    QString grid, gridAccessible;
    QString address, addressAccessible;
    QString data, dataAccessible;
    int cells;
    int addressDigits;
    int visibleRows;  ///< 0 = as many as there is room for
};

/// A framed group with a byte grid and the boxes "Dirección:" and "Dato:" for its selected cell. The grid is
/// a view: an entered byte is announced, and comes back through `setCells`.
class BytePanel : public QGroupBox {
    Q_OBJECT

  public:
    BytePanel(const BytePanelNames& names, QWidget* parent);

    /// Gives every cell the same byte. The cells are empty before.
    void fill(std::uint8_t byte) { model_->fill(byte); }
    /// The bytes of `count` cells from `first` on, which the panel has.
    void setCells(std::size_t first, const std::uint8_t* bytes, std::size_t count) {
        model_->setCells(first, bytes, count);
    }
    [[nodiscard]] std::int32_t currentAddress() const { return grid_->currentAddress(); }
    /// Makes a cell the current one; neither the boxes nor the first visible row change.
    void showCurrent(std::int32_t address) { grid_->showCurrent(address); }
    /// Draws what changed.
    void bringUpToDate();
    /// Copies address and text of the current cell into the boxes.
    void showSelectedCell();

  signals:
    /// The data box was left: `data` (0..255) is meant for `address`.
    void byteEntered(std::int32_t address, int data);

  private:
    void selectCell(std::int32_t address, std::int32_t before);
    void addressLeft();
    void typeDigit(const QString& digit);
    void compareData();

    ByteGridModel* model_ = nullptr;
    // Two panels share the class: the controls' own names are their objectNames.
    HexBox* address_ = nullptr;
    CellBox* data_ = nullptr;
    ByteGrid* grid_ = nullptr;
};

/// The panel "Memoria" with `grdmem`, `txtDirMem` and `txtDatMem`.
BytePanelNames memoryPanelNames();
/// The panel "Puertos de E/S" with `grdport`, `txtDirPort` and `txtDatPort`.
BytePanelNames portPanelNames();

}  // namespace tavinor
