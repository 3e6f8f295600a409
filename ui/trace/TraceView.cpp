#include "ui/trace/TraceView.h"

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QFontMetrics>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QScrollBar>
#include <QSignalBlocker>
#include <QStyleOptionFocusRect>
#include <QStyleOptionHeader>
#include <QWheelEvent>
#include <algorithm>
#include <cstdlib>
#include <limits>
#include <new>
#include <utility>

#include "ui/common/Fonts.h"
#include "ui/common/Naming.h"
#include "ui/common/RequiredMemory.h"
#include "ui/trace/AccessibleTrace.h"
#include "ui/trace/RowScale.h"

namespace tavinor {

namespace {

constexpr std::uint64_t memoryOfACopiedRow = 512;  // as UTF-8 while it grows, as Qt's text, on the clipboard
/// A paint executes no more again, so that it takes some 10 ms at most.
constexpr std::int64_t mostInstructionsAPaint = 2'000'000;
constexpr int lastColumn = static_cast<int>(traceColumns) - 1;

QString text(std::string_view s) {
    return QString::fromUtf8(s.data(), static_cast<qsizetype>(s.size()));
}

}  // namespace

TraceView::TraceView(const Trace& trace, QWidget* parent)
    : QAbstractScrollArea(parent), trace_(trace), rows_(trace) {
    makeAccessible(*this);  // first: naming it lets Qt look for its interface already
    named(this, QStringLiteral("lista"), QStringLiteral("Lista de pasos ejecutados"));
    useFont(this, fixedFont);
    setFocusPolicy(Qt::StrongFocus);
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
    viewport()->setBackgroundRole(QPalette::Base);
    measure();
    makeActions();
    connect(verticalScrollBar(), &QScrollBar::actionTriggered, this, &TraceView::barActed);
    updateBars();
}

void TraceView::measure() {
    const QFontMetrics metrics(font());
    rowHeight_ = metrics.height() + 4;
    headerHeight_ = metrics.height() + 8;
    int left = 0;
    for (std::size_t column = 0; column < traceColumns; ++column) {
        columnLefts_[column] = left;
        const auto letters = static_cast<int>(traceHeader[column].size());
        left += metrics.horizontalAdvance(QString(letters, '0')) + 2 * cellMargin;
    }
    columnLefts_[traceColumns] = left;
}

void TraceView::makeActions() {
    const auto add = [this](const QString& text, QKeySequence::StandardKey key, void (TraceView::*act)()) {
        auto* action = new QAction(text, this);
        action->setShortcut(key);
        action->setShortcutContext(Qt::WidgetShortcut);
        connect(action, &QAction::triggered, this, act);
        addAction(action);
    };
    add(QStringLiteral("Copiar"), QKeySequence::Copy, &TraceView::copy);
    add(QStringLiteral("Seleccionar todo"), QKeySequence::SelectAll, &TraceView::selectAll);
    setContextMenuPolicy(Qt::ActionsContextMenu);
}

QSize TraceView::sizeFor(int rows) const {
    const QSize frame(2 * frameWidth(), 2 * frameWidth());
    return frame + QSize(gridWidth() + verticalScrollBar()->sizeHint().width(),
                         headerHeight_ + rows * rowHeight_ + 2);
}

QSize TraceView::sizeHint() const {
    return sizeFor(newestRows);
}

/// Fewer columns can be scrolled; the newest rows must all fit, above the bar that scrolls the columns.
QSize TraceView::minimumSizeHint() const {
    return {columnLefts_[firstRegisterColumn],
            sizeFor(newestRows).height() + horizontalScrollBar()->sizeHint().height()};
}

std::uint64_t TraceView::rowCount() const {
    return trace_.size();
}

int TraceView::visibleRows() const {
    return std::max(1, (viewport()->height() - headerHeight_) / rowHeight_);
}

/// The first row when the last one is at the bottom.
std::uint64_t TraceView::lastFirstRow() const {
    const auto visible = static_cast<std::uint64_t>(visibleRows());
    return rowCount() > visible ? rowCount() - visible : 0;
}

void TraceView::bringUpToDate() {
    if (!isVisible() || seenRevision_ == trace_.revision()) return;
    seenRevision_ = trace_.revision();
    selection_.keepWithin(rowCount());
    firstRow_ = lastFirstRow();
    updateBars();
    viewport()->update();
    emit rowsShown();
}

void TraceView::updateBars() {
    firstRow_ = std::min(firstRow_, lastFirstRow());
    const QSignalBlocker quiet(verticalScrollBar());
    verticalScrollBar()->setRange(0, rowscale::barMaximum(lastFirstRow()));
    verticalScrollBar()->setPageStep(visibleRows());
    verticalScrollBar()->setValue(rowscale::barValue(firstRow_, lastFirstRow()));
    horizontalScrollBar()->setRange(0, std::max(0, gridWidth() - viewport()->width()));
    horizontalScrollBar()->setPageStep(viewport()->width());
    horizontalScrollBar()->setSingleStep(rowHeight_);
}

void TraceView::scrollTo(std::uint64_t first) {
    first = std::min(first, lastFirstRow());
    if (first == firstRow_) return;
    firstRow_ = first;
    updateBars();
    showFirstRow();
}

void TraceView::showFirstRow() {
    viewport()->update();
    emit rowsShown();
}

/// One step of the bar is one row and one page is what is visible, also where the bar is only a scale.
void TraceView::barActed(int action) {
    const int page = visibleRows();
    std::int64_t rows = 0;
    switch (action) {
        case QAbstractSlider::SliderSingleStepAdd: rows = 1; break;
        case QAbstractSlider::SliderSingleStepSub: rows = -1; break;
        case QAbstractSlider::SliderPageStepAdd: rows = page; break;
        case QAbstractSlider::SliderPageStepSub: rows = -page; break;
        default: scrollTo(rowscale::firstRow(verticalScrollBar()->sliderPosition(), lastFirstRow())); return;
    }
    scrollTo(rowscale::movedRow(firstRow_, rows, lastFirstRow()));
    verticalScrollBar()->setSliderPosition(verticalScrollBar()->value());
}

/// What else sets the bar's value (an assistive tool, for example) scrolls too.
void TraceView::scrollContentsBy(int dx, int dy) {
    const int value = verticalScrollBar()->value();
    if (dy != 0 && value != rowscale::barValue(firstRow_, lastFirstRow())) {
        scrollTo(rowscale::firstRow(value, lastFirstRow()));
    }
    if (dx != 0) viewport()->update();
}

/// No exception may reach Qt, which is painting. False where the rows are still to be executed again.
bool TraceView::fetch(std::uint64_t first, std::uint64_t count, std::int64_t most) {
    try {
        const bool there = rows_.read(first, count, most);
        memoryOutTold_ = false;
        return there;
    } catch (const std::bad_alloc&) {
        if (!std::exchange(memoryOutTold_, true)) emit memoryOut();
        return true;
    }
}

const RowCells& TraceView::cells(std::uint64_t row) {
    constexpr std::uint64_t around = 64;
    if (!rows_.knows(row)) fetch(row - row % around, around);
    return rows_.cells(row);
}

QRect TraceView::cellRect(const Cell& cell) const {
    const auto column = static_cast<std::size_t>(cell.column);
    const auto below = static_cast<std::int64_t>(cell.row - firstRow_);
    const int limit = 2 * visibleRows() + 2;
    const auto line = static_cast<int>(std::clamp<std::int64_t>(below, -limit, limit));
    return {columnLefts_[column] - horizontalScrollBar()->value(), headerHeight_ + line * rowHeight_,
            columnLefts_[column + 1] - columnLefts_[column], rowHeight_};
}

std::optional<TraceView::Cell> TraceView::cellAt(const QPoint& position) const {
    if (position.y() < headerHeight_) return std::nullopt;
    const std::uint64_t row =
        firstRow_ + static_cast<std::uint64_t>((position.y() - headerHeight_) / rowHeight_);
    const int x = position.x() + horizontalScrollBar()->value();
    if (row >= rowCount() || x < 0 || x >= gridWidth()) return std::nullopt;
    const auto after = std::upper_bound(columnLefts_.begin(), columnLefts_.end(), x);
    return Cell{row, static_cast<int>(after - columnLefts_.begin()) - 1};
}

void TraceView::setCurrent(const Cell& cell, bool extend) {
    if (cell.row >= rowCount()) return;
    selection_.move(cell, extend);
    keepInView(cell);
    viewport()->update();
    emit currentChanged();
}

void TraceView::keepInView(const Cell& cell) {
    const auto visible = static_cast<std::uint64_t>(visibleRows());
    if (cell.row < firstRow_) scrollTo(cell.row);
    if (cell.row >= firstRow_ + visible) scrollTo(cell.row - visible + 1);
    const auto column = static_cast<std::size_t>(cell.column);
    QScrollBar* bar = horizontalScrollBar();
    bar->setValue(
        std::clamp(bar->value(), columnLefts_[column + 1] - viewport()->width(), columnLefts_[column]));
}

/// Where a key leads from a cell, or nothing for a key that leads nowhere. `ends` is the Ctrl key.
std::optional<TraceView::Cell> TraceView::moved(const Cell& from, int key, bool ends) const {
    const std::uint64_t last = rowCount() - 1;
    const auto byRows = [&](std::int64_t rows) {
        return Cell{rowscale::movedRow(from.row, rows, last), from.column};
    };
    switch (key) {
        case Qt::Key_Up: return byRows(-1);
        case Qt::Key_Down: return byRows(1);
        case Qt::Key_PageUp: return byRows(-visibleRows());
        case Qt::Key_PageDown: return byRows(visibleRows());
        case Qt::Key_Left: return Cell{from.row, std::max(from.column - 1, 0)};
        case Qt::Key_Right: return Cell{from.row, std::min(from.column + 1, lastColumn)};
        case Qt::Key_Home: return Cell{ends ? 0 : from.row, 0};
        case Qt::Key_End: return Cell{ends ? last : from.row, lastColumn};
        default: return std::nullopt;
    }
}

void TraceView::paintEvent(QPaintEvent*) {
    QPainter painter(viewport());
    painter.setFont(font());
    const auto lines = static_cast<std::uint64_t>(visibleRows() + 1);
    const std::uint64_t end = std::min(rowCount(), firstRow_ + lines);
    const bool allKnown = end == firstRow_ || (rows_.knows(firstRow_) && rows_.knows(end - 1));
    if (!allKnown && !fetch(firstRow_, lines, mostInstructionsAPaint)) {
        // They are empty for the moment; the next paint goes on.
        QMetaObject::invokeMethod(viewport(), qOverload<>(&QWidget::update), Qt::QueuedConnection);
    }
    for (std::uint64_t row = firstRow_; row < end; ++row) paintRow(painter, row);
    paintHeader(painter);
}

void TraceView::paintHeader(QPainter& painter) {
    for (std::size_t column = 0; column < traceColumns; ++column) {
        QStyleOptionHeader option;
        option.initFrom(this);
        option.state = QStyle::State_Enabled | QStyle::State_Raised | QStyle::State_Horizontal;
        option.orientation = Qt::Horizontal;
        option.section = static_cast<int>(column);
        option.position = column == 0                  ? QStyleOptionHeader::Beginning
                          : column == traceColumns - 1 ? QStyleOptionHeader::End
                                                       : QStyleOptionHeader::Middle;
        option.rect = QRect(columnLefts_[column] - horizontalScrollBar()->value(), 0,
                            columnLefts_[column + 1] - columnLefts_[column], headerHeight_);
        style()->drawControl(QStyle::CE_HeaderSection, &option, &painter, this);
        painter.setPen(palette().color(QPalette::ButtonText));
        painter.drawText(option.rect.adjusted(cellMargin, 0, 0, 0), Qt::AlignLeft | Qt::AlignVCenter,
                         text(traceHeader[column]));
    }
}

void TraceView::paintRow(QPainter& painter, std::uint64_t row) {
    const RowCells& texts = rows_.cells(row);
    const bool selected = isSelected(row);
    const bool stateRow = rows_.knows(row) && texts[0].empty();
    const QPalette::ColorGroup group = hasFocus() ? QPalette::Active : QPalette::Inactive;
    const QRect first = cellRect({row, 0});
    const QRect line(first.left(), first.top(), gridWidth(), rowHeight_);
    const QPalette::ColorRole back = selected   ? QPalette::Highlight
                                     : stateRow ? QPalette::AlternateBase
                                                : QPalette::Base;
    painter.fillRect(line, palette().color(group, back));
    const QColor ink = palette().color(group, selected ? QPalette::HighlightedText : QPalette::Text);
    QStyleOption lines;
    lines.initFrom(this);
    const QColor grid =
        QColor::fromRgb(static_cast<QRgb>(style()->styleHint(QStyle::SH_Table_GridLineColor, &lines, this)));
    const QFontMetrics metrics(font());
    for (std::size_t column = 0; column < traceColumns; ++column) {
        const QRect cell = cellRect({row, static_cast<int>(column)});
        QString shown = text(texts[column]);
        // Typed texts can be longer than the column.
        if (shown.size() > static_cast<qsizetype>(traceHeader[column].size())) {
            shown = metrics.elidedText(shown, Qt::ElideRight, cell.width() - cellMargin);
        }
        painter.setPen(ink);
        painter.drawText(cell.left() + cellMargin, cell.top() + 2 + metrics.ascent(), shown);
        painter.setPen(grid);
        painter.drawLine(cell.topRight(), cell.bottomRight());
    }
    painter.drawLine(line.bottomLeft(), line.bottomRight());
    if (hasFocus() && current() && current()->row == row) {
        QStyleOptionFocusRect focus;
        focus.initFrom(this);
        focus.rect = cellRect(*current()).adjusted(0, 0, -1, -1);
        focus.state |= QStyle::State_KeyboardFocusChange;
        focus.backgroundColor = palette().color(group, back);
        style()->drawPrimitive(QStyle::PE_FrameFocusRect, &focus, &painter, this);
    }
}

void TraceView::keyPressEvent(QKeyEvent* event) {
    bringUpToDate();
    const Cell from = current().value_or(Cell{firstRow_, 0});
    const bool ends = event->modifiers().testFlag(Qt::ControlModifier);
    const std::optional<Cell> target =
        rowCount() > 0 ? moved(from, event->key(), ends) : std::optional<Cell>();
    if (!target) {
        QAbstractScrollArea::keyPressEvent(event);
        return;
    }
    // The first key only shows where the keyboard is, unless it leads to an end.
    setCurrent(current() || ends ? *target : from, event->modifiers().testFlag(Qt::ShiftModifier));
}

void TraceView::mousePressEvent(QMouseEvent* event) {
    bringUpToDate();
    const std::optional<Cell> cell = cellAt(event->position().toPoint());
    if (!cell) return;
    // The context menu is about the selection, as long as it is opened on it.
    if (event->button() == Qt::RightButton && isSelected(cell->row)) return;
    setCurrent(*cell, event->modifiers().testFlag(Qt::ShiftModifier));
}

/// Dragging selects the rows on the way, also the ones beyond the edges.
void TraceView::mouseMoveEvent(QMouseEvent* event) {
    if (!event->buttons().testFlag(Qt::LeftButton) || !current() || rowCount() == 0) return;
    const int y = event->position().toPoint().y() - headerHeight_;
    const int line = y < 0 ? -1 : std::min(y / rowHeight_, visibleRows());
    setCurrent({rowscale::movedRow(firstRow_, line, rowCount() - 1), current()->column}, true);
}

void TraceView::wheelEvent(QWheelEvent* event) {
    constexpr int notch = 120;
    const QPoint turned = event->angleDelta();
    if (std::abs(turned.x()) > std::abs(turned.y())) {
        QAbstractScrollArea::wheelEvent(event);
        return;
    }
    bringUpToDate();
    wheelRemainder_ += turned.y() * QApplication::wheelScrollLines();
    const int rows = wheelRemainder_ / notch;
    wheelRemainder_ -= rows * notch;
    scrollTo(rowscale::movedRow(firstRow_, -rows, lastFirstRow()));
    event->accept();
}

void TraceView::focusInEvent(QFocusEvent* event) {
    QAbstractScrollArea::focusInEvent(event);
    viewport()->update();
}

void TraceView::focusOutEvent(QFocusEvent* event) {
    QAbstractScrollArea::focusOutEvent(event);
    viewport()->update();
}

void TraceView::resizeEvent(QResizeEvent* event) {
    QAbstractScrollArea::resizeEvent(event);
    updateBars();
    emit rowsShown();
}

void TraceView::changeEvent(QEvent* event) {
    QAbstractScrollArea::changeEvent(event);
    if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange) {
        measure();
        updateBars();
        updateGeometry();
    }
}

void TraceView::selectAll() {
    bringUpToDate();
    if (rowCount() == 0) return;
    selection_.selectAll(rowCount() - 1);
    viewport()->update();
    emit currentChanged();
}

void TraceView::copy() {
    if (!current()) return;
    if (selectedRows() > mostRowsToCopy) {
        emit copyRefused();
        return;
    }
    try {
        requireMemory(selectedRows() * memoryOfACopiedRow);
        QGuiApplication::clipboard()->setText(
            QString::fromStdString(rows_.text(selection_.first(), selection_.count())));
    } catch (const std::bad_alloc&) {
        emit memoryOut();
    }
}

}  // namespace tavinor
