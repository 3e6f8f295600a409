#pragma once

#include <QAbstractScrollArea>
#include <QString>
#include <array>
#include <cstdint>
#include <limits>
#include <optional>

#include "ui/trace/RowSelection.h"
#include "ui/trace/ShownRows.h"

class QAction;

namespace tavinor {

/// The grid of the trace. It holds no rows: it knows which row is the first one visible and asks for the
/// texts of the rows that the user looks at. Whole rows are selected; the current cell is where the keyboard
/// is.
class TraceView : public QAbstractScrollArea {
    Q_OBJECT

  public:
    /// What fits at least, and the rows that stay in view when new ones come.
    static constexpr int newestRows = 10;
    /// More are not copied: they would take the memory of the whole computer.
    static constexpr std::uint64_t mostRowsToCopy = 1'000'000;

    using Cell = TraceCell;

    TraceView(const Trace& trace, QWidget* parent);

    /// Follows rows that were recorded or cleared since the last time: the newest ones come into view.
    void bringUpToDate();

    [[nodiscard]] std::uint64_t rowCount() const;
    [[nodiscard]] std::uint64_t firstRow() const { return firstRow_; }
    /// The rows that are wholly visible, even where there are fewer to show.
    [[nodiscard]] int visibleRows() const;
    /// The texts of a row.
    [[nodiscard]] const RowCells& cells(std::uint64_t row);
    /// Where a cell is in the viewport, or would be.
    [[nodiscard]] QRect cellRect(const Cell& cell) const;
    [[nodiscard]] std::optional<Cell> cellAt(const QPoint& position) const;

    [[nodiscard]] const std::optional<Cell>& current() const { return selection_.current(); }
    /// Moves to a cell and shows it; the selection becomes its row, or reaches up to it.
    void setCurrent(const Cell& cell, bool extend);
    [[nodiscard]] bool isSelected(std::uint64_t row) const { return selection_.contains(row); }
    [[nodiscard]] std::uint64_t selectedRows() const { return selection_.count(); }
    void scrollTo(std::uint64_t first);

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;

  signals:
    /// The selection is too large to be copied.
    void copyRefused();
    /// There is no memory to read or copy rows; they are shown empty. Told once, until rows can be read
    /// again.
    void memoryOut();
    /// Other rows are shown, or the same ones elsewhere.
    void rowsShown();
    void currentChanged();

  protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void changeEvent(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void scrollContentsBy(int dx, int dy) override;

  private:
    static constexpr int cellMargin = 5;

    void measure();
    void makeActions();
    [[nodiscard]] QSize sizeFor(int rows) const;
    [[nodiscard]] std::uint64_t lastFirstRow() const;
    void updateBars();
    void showFirstRow();
    void barActed(int action);
    void keepInView(const Cell& cell);
    [[nodiscard]] std::optional<Cell> moved(const Cell& from, int key, bool ends) const;
    void copy();
    void selectAll();
    bool fetch(std::uint64_t first, std::uint64_t count,
               std::int64_t most = std::numeric_limits<std::int64_t>::max());
    void paintHeader(QPainter& painter);
    void paintRow(QPainter& painter, std::uint64_t row);
    [[nodiscard]] int gridWidth() const { return columnLefts_.back(); }

    const Trace& trace_;
    ShownRows rows_;
    std::uint64_t seenRevision_ = 0;
    std::uint64_t firstRow_ = 0;
    RowSelection selection_;
    int wheelRemainder_ = 0;

    int rowHeight_ = 1;
    int headerHeight_ = 1;
    std::array<int, traceColumns + 1> columnLefts_{};
    bool memoryOutTold_ = false;
};

}  // namespace tavinor
