#include "ui/trace/AccessibleTrace.h"

#include <QAccessible>
#include <QAccessibleWidget>
#include <QHash>
#include <algorithm>
#include <memory>
#include <optional>

#include "ui/trace/TraceView.h"

namespace tavinor {

namespace {

constexpr int columns = static_cast<int>(traceColumns);

QString utf8(std::string_view s) {
    return QString::fromUtf8(s.data(), static_cast<qsizetype>(s.size()));
}

QString headerText(int column) {
    return utf8(traceHeader[static_cast<std::size_t>(column)]).trimmed();
}

QRect onScreen(const TraceView& view, const QRect& inViewport) {
    return {view.viewport()->mapToGlobal(inViewport.topLeft()), inViewport.size()};
}

/// What every cell of the grid has in common.
class GridCell : public QAccessibleInterface {
  public:
    GridCell(TraceView& view, int column) : view_(view), column_(column) {}

    [[nodiscard]] QObject* object() const override { return nullptr; }
    [[nodiscard]] QWindow* window() const override { return view_.window()->windowHandle(); }
    [[nodiscard]] QAccessibleInterface* parent() const override {
        return QAccessible::queryAccessibleInterface(&view_);
    }
    [[nodiscard]] QAccessibleInterface* child(int) const override { return nullptr; }
    [[nodiscard]] QAccessibleInterface* childAt(int, int) const override { return nullptr; }
    [[nodiscard]] int childCount() const override { return 0; }
    int indexOfChild(const QAccessibleInterface*) const override { return -1; }
    void setText(QAccessible::Text, const QString&) override {}

  protected:
    TraceView& view_;
    const int column_;
};

class HeaderCell final : public GridCell {
  public:
    using GridCell::GridCell;

    [[nodiscard]] bool isValid() const override { return true; }
    [[nodiscard]] QAccessible::Role role() const override { return QAccessible::ColumnHeader; }
    [[nodiscard]] QAccessible::State state() const override { return {}; }
    [[nodiscard]] QString text(QAccessible::Text what) const override {
        return what == QAccessible::Name ? headerText(column_) : QString();
    }
    [[nodiscard]] QRect rect() const override {
        QRect cell = view_.cellRect({view_.firstRow(), column_});
        cell.setTop(0);
        cell.setHeight(view_.cellRect({view_.firstRow(), column_}).top());
        return onScreen(view_, cell);
    }
};

class DataCell final : public GridCell, public QAccessibleTableCellInterface {
  public:
    DataCell(TraceView& view, const TraceView::Cell& cell) : GridCell(view, cell.column), cell_(cell) {}

    [[nodiscard]] bool isValid() const override { return cell_.row < view_.rowCount(); }
    [[nodiscard]] QAccessible::Role role() const override { return QAccessible::Cell; }
    [[nodiscard]] QAccessible::State state() const override;
    [[nodiscard]] QString text(QAccessible::Text what) const override {
        if (what != QAccessible::Name || !isValid()) return {};
        return utf8(view_.cells(cell_.row)[static_cast<std::size_t>(column_)]).trimmed();
    }
    [[nodiscard]] QRect rect() const override { return onScreen(view_, view_.cellRect(cell_)); }
    void* interface_cast(QAccessible::InterfaceType type) override {
        if (type != QAccessible::TableCellInterface) return nullptr;
        return static_cast<QAccessibleTableCellInterface*>(this);
    }

    [[nodiscard]] bool isSelected() const override { return view_.isSelected(cell_.row); }
    [[nodiscard]] QList<QAccessibleInterface*> columnHeaderCells() const override {
        return {parent()->child(column_)};
    }
    [[nodiscard]] QList<QAccessibleInterface*> rowHeaderCells() const override { return {}; }
    [[nodiscard]] int columnIndex() const override { return column_; }
    [[nodiscard]] int rowIndex() const override;
    [[nodiscard]] int columnExtent() const override { return 1; }
    [[nodiscard]] int rowExtent() const override { return 1; }
    [[nodiscard]] QAccessibleInterface* table() const override { return parent(); }

  private:
    const TraceView::Cell cell_;
};

/// The table. Its row 0 is `base()`; its children are the header cells, then the cells row by row.
class AccessibleTrace final : public QAccessibleWidget, public QAccessibleTableInterface {
  public:
    explicit AccessibleTrace(TraceView& view) : QAccessibleWidget(&view, QAccessible::Table), view_(view) {}
    ~AccessibleTrace() override { forgetCells(); }

    /// One screen before the visible rows and one after them.
    [[nodiscard]] std::uint64_t base() const {
        const auto screen = static_cast<std::uint64_t>(view_.visibleRows());
        return view_.firstRow() - std::min(view_.firstRow(), screen);
    }
    [[nodiscard]] int indexOf(const TraceView::Cell& cell) const {
        if (cell.row < base() || cell.row - base() >= static_cast<std::uint64_t>(rowCount())) return -1;
        return columns + static_cast<int>(cell.row - base()) * columns + cell.column;
    }
    void forgetCells() {
        for (const QAccessible::Id id : cells_) QAccessible::deleteAccessibleInterface(id);
        cells_.clear();
    }

    void* interface_cast(QAccessible::InterfaceType type) override {
        if (type == QAccessible::TableInterface) return static_cast<QAccessibleTableInterface*>(this);
        return QAccessibleWidget::interface_cast(type);
    }
    int childCount() const override { return columns * (rowCount() + 1); }
    QAccessibleInterface* child(int index) const override;
    int indexOfChild(const QAccessibleInterface* child) const override {
        const QAccessible::Id id = QAccessible::uniqueId(const_cast<QAccessibleInterface*>(child));
        return cells_.key(id, -1);
    }
    QAccessibleInterface* childAt(int x, int y) const override {
        const std::optional<TraceView::Cell> cell =
            view_.cellAt(view_.viewport()->mapFromGlobal(QPoint(x, y)));
        return cell ? child(indexOf(*cell)) : nullptr;
    }
    QAccessibleInterface* focusChild() const override {
        return view_.hasFocus() && view_.current() ? child(indexOf(*view_.current())) : nullptr;
    }

    QAccessibleInterface* caption() const override { return nullptr; }
    QAccessibleInterface* summary() const override { return nullptr; }
    QAccessibleInterface* cellAt(int row, int column) const override {
        return child(columns * (row + 1) + column);
    }
    int rowCount() const override {
        const auto screens = static_cast<std::uint64_t>(3 * view_.visibleRows());
        return static_cast<int>(std::min(view_.rowCount() - std::min(base(), view_.rowCount()), screens));
    }
    int columnCount() const override { return columns; }
    QString columnDescription(int column) const override {
        return column >= 0 && column < columns ? headerText(column) : QString();
    }
    /// The number of the row, counted from 1.
    QString rowDescription(int row) const override {
        return QString::number(base() + static_cast<std::uint64_t>(row) + 1);
    }

    int selectedCellCount() const override { return selectedRowCount() * columns; }
    QList<QAccessibleInterface*> selectedCells() const override;
    int selectedColumnCount() const override { return 0; }
    int selectedRowCount() const override { return static_cast<int>(selectedRows().size()); }
    QList<int> selectedColumns() const override { return {}; }
    QList<int> selectedRows() const override;
    bool isColumnSelected(int) const override { return false; }
    bool isRowSelected(int row) const override {
        return row >= 0 && view_.isSelected(base() + static_cast<std::uint64_t>(row));
    }
    bool selectRow(int row) override {
        if (row < 0 || row >= rowCount()) return false;
        view_.setCurrent({base() + static_cast<std::uint64_t>(row), 0}, false);
        return true;
    }
    bool selectColumn(int) override { return false; }
    bool unselectRow(int) override { return false; }
    bool unselectColumn(int) override { return false; }
    void modelChange(QAccessibleTableModelChangeEvent*) override {}

  private:
    TraceView& view_;
    mutable QHash<int, QAccessible::Id> cells_;  // by child index, as long as the same rows are around
};

AccessibleTrace* accessibleOf(const TraceView& view) {
    return dynamic_cast<AccessibleTrace*>(
        QAccessible::queryAccessibleInterface(const_cast<TraceView*>(&view)));
}

QAccessible::State DataCell::state() const {
    QAccessible::State state;
    state.selectable = state.focusable = state.readOnly = true;
    state.selected = isSelected();
    state.focused = view_.hasFocus() && view_.current() == cell_;
    state.invisible = !isValid();
    state.offscreen = !view_.viewport()->rect().intersects(view_.cellRect(cell_));
    return state;
}

int DataCell::rowIndex() const {
    const AccessibleTrace* table = accessibleOf(view_);
    return table != nullptr ? table->indexOf(cell_) / columns - 1 : -1;
}

QAccessibleInterface* AccessibleTrace::child(int index) const {
    if (index < 0 || index >= childCount()) return nullptr;
    if (cells_.contains(index)) return QAccessible::accessibleInterface(cells_.value(index));
    QAccessibleInterface* cell = nullptr;
    if (index < columns) {
        cell = new HeaderCell(view_, index);
    } else {
        const auto row = static_cast<std::uint64_t>(index / columns - 1);
        cell = new DataCell(view_, {base() + row, index % columns});
    }
    cells_.insert(index, QAccessible::registerAccessibleInterface(cell));
    return cell;
}

QList<int> AccessibleTrace::selectedRows() const {
    QList<int> rows;
    for (int row = 0; row < rowCount(); ++row) {
        if (isRowSelected(row)) rows.append(row);
    }
    return rows;
}

QList<QAccessibleInterface*> AccessibleTrace::selectedCells() const {
    QList<QAccessibleInterface*> cells;
    for (const int row : selectedRows()) {
        for (int column = 0; column < columns; ++column) cells.append(cellAt(row, column));
    }
    return cells;
}

QAccessibleInterface* makeInterface(const QString&, QObject* object) {
    auto* view = qobject_cast<TraceView*>(object);
    return view != nullptr ? new AccessibleTrace(*view) : nullptr;
}

void tellRows(TraceView& view) {
    AccessibleTrace* table = accessibleOf(view);
    if (table == nullptr) return;
    table->forgetCells();
    QAccessibleTableModelChangeEvent event(&view, QAccessibleTableModelChangeEvent::ModelReset);
    QAccessible::updateAccessibility(&event);
}

void tellCurrent(TraceView& view) {
    const AccessibleTrace* table = accessibleOf(view);
    if (table == nullptr || !view.current() || !view.hasFocus()) return;
    QAccessibleEvent event(&view, QAccessible::Focus);
    event.setChild(table->indexOf(*view.current()));
    QAccessible::updateAccessibility(&event);
}

}  // namespace

void makeAccessible(TraceView& view) {
    QAccessible::installFactory(makeInterface);  // the same one again changes nothing
    QObject::connect(&view, &TraceView::rowsShown, &view, [&view] { tellRows(view); });
    QObject::connect(&view, &TraceView::currentChanged, &view, [&view] { tellCurrent(view); });
}

}  // namespace tavinor
