#include "ui/main/ByteGrid.h"

#include <QHeaderView>
#include <QMouseEvent>
#include <QScopedValueRollback>
#include <QScrollBar>
#include <algorithm>
#include <utility>

#include "machine/MachineState.h"
#include "ui/common/Fonts.h"
#include "ui/common/HexBox.h"

namespace tavinor {

namespace {

std::int32_t addressOf(const QModelIndex& index) {
    return index.row() * ByteGridModel::columns + index.column();
}

constexpr int fewestRowsOfAGrowingGrid = 8;
constexpr int fewestRows = 4;

}  // namespace

ByteGridModel::ByteGridModel(int size, QObject* parent)
    : QAbstractTableModel(parent),
      size_(size),
      digits_(size > 256 ? 4 : 2),
      changedRows_(static_cast<std::size_t>(size / columns)) {}

int ByteGridModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : size_ / columns;
}

int ByteGridModel::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : columns;
}

QVariant ByteGridModel::data(const QModelIndex& index, int role) const {
    if (!index.isValid()) return {};
    const std::int32_t address = addressOf(index);
    switch (role) {
        case Qt::DisplayRole: return cellText(address);
        case Qt::TextAlignmentRole: return static_cast<int>(Qt::AlignRight | Qt::AlignVCenter);
        case Qt::AccessibleTextRole:
            return hexString(address, digits_) + QStringLiteral(": ") + cellText(address);
        default: return {};
    }
}

QVariant ByteGridModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (role == Qt::TextAlignmentRole) return static_cast<int>(Qt::AlignRight | Qt::AlignVCenter);
    if (role != Qt::DisplayRole) return {};
    if (orientation == Qt::Vertical) return hexString(section * columns, digits_);
    return QStringLiteral(" ") + hexString(section, 1);
}

void ByteGridModel::fill(std::uint8_t byte) {
    bytes_.assign(static_cast<std::size_t>(size_), byte);
    changedRows_.assign(changedRows_.size(), true);
}

void ByteGridModel::setCells(std::size_t first, const std::uint8_t* bytes, std::size_t count) {
    for (std::size_t i = 0; i < count; ++i) {
        if (bytes_[first + i] == bytes[i]) continue;
        bytes_[first + i] = bytes[i];
        changedRows_[(first + i) / static_cast<std::size_t>(columns)] = true;
    }
}

std::uint8_t ByteGridModel::cell(std::int32_t address) const {
    return bytes_[asIndex(address, static_cast<std::int32_t>(bytes_.size()))];
}

bool ByteGridModel::takeRowChanged(int row) {
    auto changed = changedRows_[static_cast<std::size_t>(row)];
    const bool before = changed;
    changed = false;
    return before;
}

QString ByteGridModel::cellText(std::int32_t address) const {
    return bytes_.empty() ? QString() : hexString(cell(address), 2);
}

ByteGrid::ByteGrid(ByteGridModel* model, int visibleRows, QWidget* parent)
    : SingleSelection(parent), model_(model), visibleRows_(visibleRows) {
    setModel(model);
    setSelectionMode(QAbstractItemView::SingleSelection);
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    setTabKeyNavigation(false);  // Tab goes on to the next control
    setCornerButtonEnabled(false);
    setTextElideMode(Qt::ElideNone);
    setVerticalScrollMode(QAbstractItemView::ScrollPerItem);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollBarPolicy(visibleRows > 0 ? Qt::ScrollBarAsNeeded : Qt::ScrollBarAlwaysOn);
    horizontalHeader()->setSectionsClickable(false);
    horizontalHeader()->setSectionResizeMode(QHeaderView::Stretch);
    verticalHeader()->setSectionsClickable(false);
    verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    useFont(this, fixedFont, [this] { fitCells(); });
    showCurrent(0);
}

void ByteGrid::fitCells() {
    const QFontMetrics metrics(font());
    horizontalHeader()->setFont(font());
    verticalHeader()->setFont(font());
    const int cell = metrics.horizontalAdvance(QStringLiteral("00")) + 7;
    horizontalHeader()->setMinimumSectionSize(cell);
    horizontalHeader()->setDefaultSectionSize(cell);
    verticalHeader()->setMinimumSectionSize(metrics.height());
    verticalHeader()->setDefaultSectionSize(metrics.height() + 2);
    setMinimumWidth(ByteGridModel::columns * cell + verticalHeader()->sizeHint().width() +
                    verticalScrollBar()->sizeHint().width() + 2 * frameWidth());
    if (visibleRows_ > 0) setMaximumHeight(heightFor(visibleRows_));
    updateGeometry();
}

int ByteGrid::heightFor(int rows) const {
    return rows * verticalHeader()->defaultSectionSize() + horizontalHeader()->sizeHint().height() +
           2 * frameWidth();
}

/// A grid that grows asks for no more than it must have, so that one of a set number of rows gets all of them
/// first once that is there.
QSize ByteGrid::sizeHint() const {
    return {minimumWidth(), heightFor(visibleRows_ > 0 ? visibleRows_ : fewestRowsOfAGrowingGrid)};
}

QSize ByteGrid::minimumSizeHint() const {
    return {minimumWidth(), heightFor(visibleRows_ > 0 ? fewestRows : fewestRowsOfAGrowingGrid)};
}

std::int32_t ByteGrid::currentAddress() const {
    return addressOf(currentIndex());
}

void ByteGrid::showCurrent(std::int32_t address) {
    const QScopedValueRollback<bool> silent(showing_, true);
    const QModelIndex index =
        model_->index(address / ByteGridModel::columns, address % ByteGridModel::columns);
    setAutoScroll(false);  // the first visible row is the caller's business
    selectionModel()->setCurrentIndex(index, QItemSelectionModel::ClearAndSelect);
    setAutoScroll(true);
}

void ByteGrid::scrollNear(std::int32_t address) {
    const int row = address / ByteGridModel::columns;
    verticalScrollBar()->setValue(row > 0 ? row - 1 : 0);
}

void ByteGrid::refresh() {
    const int below = rowAt(viewport()->height() - 1);
    const int last = below >= 0 ? below : model_->rowCount() - 1;
    for (int row = std::max(rowAt(0), 0); row <= last; ++row) {
        if (model_->takeRowChanged(row)) {
            viewport()->update(0, rowViewportPosition(row), viewport()->width(), rowHeight(row));
        }
    }
}

void ByteGrid::currentChanged(const QModelIndex& current, const QModelIndex& previous) {
    QTableView::currentChanged(current, previous);
    if (!showing_ && current.isValid()) emit cellSelected(addressOf(current), addressOf(previous));
}

void ByteGrid::mousePressEvent(QMouseEvent* event) {
    const QModelIndex before = currentIndex();
    QTableView::mousePressEvent(event);
    // A press on the cell that is current already selects it as well.
    if (currentIndex() == before && indexAt(event->pos()) == before && before.isValid()) {
        emit cellSelected(currentAddress(), currentAddress());
    }
}

/// Qt calls this with what is typed, and would go to the next cell that begins with it.
void ByteGrid::keyboardSearch(const QString& typed) {
    static const QString digits = QStringLiteral("0123456789ABCDEFabcdef");
    if (typed.size() == 1 && digits.contains(typed)) emit digitTyped(typed);
}

}  // namespace tavinor
