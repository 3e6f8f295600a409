#pragma once

#include <QAccessible>
#include <QAccessibleWidget>
#include <QList>

namespace tavinor {

class ListingView;

/// The program listing as assistive tools see it: a list whose rows can be selected, and whose action sets or
/// clears the breakpoint, as a double-click does.
class ListingAccessible : public QAccessibleWidget {
  public:
    explicit ListingAccessible(ListingView* view);
    ~ListingAccessible() override;

    /// Makes assistive tools find this class for a `ListingView`.
    static void install();

    [[nodiscard]] int childCount() const override;
    [[nodiscard]] QAccessibleInterface* child(int index) const override;
    [[nodiscard]] int indexOfChild(const QAccessibleInterface* child) const override;
    [[nodiscard]] QAccessibleInterface* childAt(int x, int y) const override;
    [[nodiscard]] QAccessibleInterface* focusChild() const override;

  private:
    [[nodiscard]] ListingView* view() const;

    mutable QList<QAccessible::Id> rows_;  // made when first asked for
};

}  // namespace tavinor
