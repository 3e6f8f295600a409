// How the grid of the trace looks.

#include <QPainter>
#include <QScrollBar>
#include <QStyleOptionFocusRect>
#include <QStyleOptionHeader>

#include "ui/trace/TraceView.h"

namespace tavinor {

namespace {

/// A paint executes no more again, so that it takes some 10 ms at most.
constexpr std::int64_t mostInstructionsAPaint = 2'000'000;

QString text(std::string_view s) {
    return QString::fromUtf8(s.data(), static_cast<qsizetype>(s.size()));
}

}  // namespace

void TraceView::paintEvent(QPaintEvent*) {
    QPainter painter(viewport());
    painter.setFont(font());
    const auto lines = static_cast<std::uint64_t>(visibleRows() + 1);
    const std::uint64_t end = std::min(rowCount(), firstRow_ + lines);
    const bool allKnown = end == firstRow_ || (known(firstRow_) && known(end - 1));
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
    const RowCells& texts = cached(row);
    const bool selected = isSelected(row);
    const bool stateRow = known(row) && texts[0].empty();
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
    if (hasFocus() && current_ && current_->row == row) {
        QStyleOptionFocusRect focus;
        focus.initFrom(this);
        focus.rect = cellRect(*current_).adjusted(0, 0, -1, -1);
        focus.state |= QStyle::State_KeyboardFocusChange;
        focus.backgroundColor = palette().color(group, back);
        style()->drawPrimitive(QStyle::PE_FrameFocusRect, &focus, &painter, this);
    }
}

}  // namespace tavinor
