#pragma once

#include <QAbstractTableModel>
#include <QTableView>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "ui/main/SingleSelection.h"

namespace tavinor {

/// What a byte grid shows: its own bytes, sixteen a row. They follow the machine only through `setCells`, so
/// a byte that the machine borrows for a moment is not seen here.
class ByteGridModel : public QAbstractTableModel {
    Q_OBJECT

  public:
    static constexpr int columns = 16;

    /// `size` is the number of cells, a multiple of 16; the row headers have as many digits as addresses
    /// need. The cells are empty until they are filled.
    ByteGridModel(int size, QObject* parent);

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] int columnCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
    [[nodiscard]] QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

    /// Gives every cell the same byte.
    void fill(std::uint8_t byte);
    /// Changes the bytes of `count` cells of the filled grid from `first` on; it has them. Nothing is drawn
    /// until `takeRowChanged` has been asked.
    void setCells(std::size_t first, const std::uint8_t* bytes, std::size_t count);
    /// Whether a cell of a row has changed since the last question about that row.
    [[nodiscard]] bool takeRowChanged(int row);
    /// The byte of a cell of the filled grid. @throws RuntimeError subscript when `address` has no cell.
    [[nodiscard]] std::uint8_t cell(std::int32_t address) const;
    /// The text of a cell, two digits; empty until the cells are filled.
    [[nodiscard]] QString cellText(std::int32_t address) const;

  private:
    int size_;
    std::vector<std::uint8_t> bytes_;
    int digits_;
    std::vector<bool> changedRows_;
};

/// The table of a byte grid. Its current cell is the selected address.
class ByteGrid : public SingleSelection<QTableView> {
    Q_OBJECT

  public:
    /// A grid with `visibleRows` shows these rows, fewer and a scroll bar where there is less room; 0 lets it
    /// grow and scroll.
    ByteGrid(ByteGridModel* model, int visibleRows, QWidget* parent);

    [[nodiscard]] std::int32_t currentAddress() const;
    /// Makes a cell the current one, without a signal.
    void showCurrent(std::int32_t address);
    /// Shows `address` with one row of context above it.
    void scrollNear(std::int32_t address);
    /// Draws the rows that changed, of those in view: in a run most of what is written is not.
    void refresh();

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;

  signals:
    /// The user selected a cell, by mouse, keyboard or an assistive tool; `before` was selected until then.
    void cellSelected(std::int32_t address, std::int32_t before);
    /// The user typed a hexadecimal digit on the current cell.
    void digitTyped(const QString& digit);

  public:
    /// What is typed reaches the view here, from keys and input methods alike.
    void keyboardSearch(const QString& typed) override;

  protected:
    void currentChanged(const QModelIndex& current, const QModelIndex& previous) override;
    void mousePressEvent(QMouseEvent* event) override;

  private:
    void fitCells();
    [[nodiscard]] int heightFor(int rows) const;

    ByteGridModel* model_ = nullptr;
    int visibleRows_;
};

}  // namespace tavinor
