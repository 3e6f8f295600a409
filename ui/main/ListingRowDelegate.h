#pragma once

#include <QStyledItemDelegate>

namespace tavinor {

/// Draws a row of the program listing: a gutter with a triangle at the program counter and a disc at a
/// breakpoint, then the text. The triangle and the "*" in the text tell the same without colour.
class ListingRowDelegate : public QStyledItemDelegate {
    Q_OBJECT

  public:
    using QStyledItemDelegate::QStyledItemDelegate;

    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override;
    [[nodiscard]] QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;
};

}  // namespace tavinor
