#include "ui/main/ListingRowDelegate.h"

#include <QApplication>
#include <QPainter>
#include <QPolygonF>

#include "ui/common/Contrast.h"
#include "ui/main/ListingPanel.h"

namespace tavinor {

namespace {

constexpr int longestRow = 29;  // address, mark, bytes, blanks and "LXI SP,palabra"

/// The gutter's two places: one for the triangle, one for the disc.
struct Gutter {
    QRectF programCounter;
    QRectF breakpoint;
    int width;
};

Gutter gutterOf(const QRect& row) {
    const qreal size = row.height() * 0.6;
    const qreal top = row.top() + (row.height() - size) / 2;
    const qreal step = size + 3;
    return {QRectF(row.left() + 2, top, size, size), QRectF(row.left() + 2 + step, top, size, size),
            static_cast<int>(2 * step) + 4};
}

void paintTriangle(QPainter* painter, const QRectF& place, const QColor& colour) {
    painter->setBrush(colour);
    painter->drawPolygon(
        QPolygonF({place.topLeft(), QPointF(place.right(), place.center().y()), place.bottomLeft()}));
}

/// Red, as far as it stands out from the row.
void paintDisc(QPainter* painter, const QRectF& place, const QColor& paper, const QColor& ink) {
    const bool dark = paper.lightness() < 128;
    const QColor red = dark ? QColor(0xEF, 0x53, 0x50) : QColor(0xC6, 0x28, 0x28);
    painter->setBrush(standingOut(red, paper, ink, markContrast));
    painter->drawEllipse(place);
}

}  // namespace

void ListingRowDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                               const QModelIndex& index) const {
    QStyleOptionViewItem row(option);
    initStyleOption(&row, index);
    const QString text = row.text;
    row.text.clear();
    const QStyle* style = row.widget != nullptr ? row.widget->style() : QApplication::style();
    style->drawControl(QStyle::CE_ItemViewItem, &row, painter, row.widget);

    const bool selected = (row.state & QStyle::State_Selected) != 0;
    const bool focused =
        row.state.testFlag(QStyle::State_Active) && row.widget != nullptr && row.widget->hasFocus();
    const QPalette::ColorGroup group = focused ? QPalette::Active : QPalette::Inactive;
    const QColor ink = row.palette.color(group, selected ? QPalette::HighlightedText : QPalette::Text);
    const QColor paper = row.palette.color(group, selected ? QPalette::Highlight : QPalette::Base);
    const bool isProgramCounter = index.data(ListingView::programCounterRole).toBool();
    const Gutter gutter = gutterOf(row.rect);

    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    painter->setPen(Qt::NoPen);
    if (isProgramCounter) paintTriangle(painter, gutter.programCounter, ink);
    constexpr int mark = ListingView::breakpointColumn;
    if (text.size() > mark && text.at(mark) == '*') {
        paintDisc(painter, gutter.breakpoint, paper, ink);
    }
    QFont font = row.font;
    font.setBold(isProgramCounter);
    painter->setFont(font);
    painter->setPen(ink);
    painter->drawText(row.rect.adjusted(gutter.width, 0, 0, 0), Qt::AlignLeft | Qt::AlignVCenter, text);
    painter->restore();
}

QSize ListingRowDelegate::sizeHint(const QStyleOptionViewItem& option, const QModelIndex& /*index*/) const {
    const QFontMetrics metrics(option.font);
    const int height = metrics.height() + 1;
    const int text = metrics.horizontalAdvance(QString(longestRow, '0'));
    return {gutterOf(QRect(0, 0, 0, height)).width + text + 4, height};
}

}  // namespace tavinor
