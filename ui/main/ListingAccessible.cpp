#include "ui/main/ListingAccessible.h"

#include <QPointer>
#include <cstdint>
#include <optional>

#include "ui/common/FocusGate.h"
#include "ui/main/ListingPanel.h"

namespace tavinor {

namespace {

/// One row of the listing. It speaks for a place in the list, whatever instruction stands there; what it does
/// is for the instruction that the tool has read there, which a run may have scrolled away since.
class ListingRowAccessible : public QAccessibleInterface, public QAccessibleActionInterface {
  public:
    ListingRowAccessible(ListingView* view, int row) : view_(view), row_(row) {}

    [[nodiscard]] int row() const { return row_; }

    [[nodiscard]] bool isValid() const override { return view_ != nullptr && row_ < view_->count(); }
    [[nodiscard]] QObject* object() const override { return nullptr; }
    [[nodiscard]] QAccessibleInterface* parent() const override {
        return QAccessible::queryAccessibleInterface(view_);
    }
    [[nodiscard]] QAccessibleInterface* child(int /*index*/) const override { return nullptr; }
    [[nodiscard]] QAccessibleInterface* childAt(int /*x*/, int /*y*/) const override { return nullptr; }
    [[nodiscard]] int childCount() const override { return 0; }
    [[nodiscard]] int indexOfChild(const QAccessibleInterface* /*child*/) const override { return -1; }
    [[nodiscard]] QAccessible::Role role() const override { return QAccessible::ListItem; }

    [[nodiscard]] QString text(QAccessible::Text kind) const override {
        if (!isValid() || kind != QAccessible::Name) return {};
        told_ = view_->address(row_);
        return view_->item(row_)->data(Qt::AccessibleTextRole).toString();
    }
    void setText(QAccessible::Text /*kind*/, const QString& /*text*/) override {}

    [[nodiscard]] QRect rect() const override {
        if (!isValid()) return {};
        const QRect place = view_->visualItemRect(view_->item(row_));
        return {view_->viewport()->mapToGlobal(place.topLeft()), place.size()};
    }

    [[nodiscard]] QAccessible::State state() const override {
        QAccessible::State state;
        state.invalid = !isValid();
        state.focusable = state.selectable = true;
        state.selected = isValid() && view_->currentRow() == row_;
        state.focused = state.selected && view_->hasFocus();
        return state;
    }

    void* interface_cast(QAccessible::InterfaceType type) override {
        return type == QAccessible::ActionInterface ? static_cast<QAccessibleActionInterface*>(this)
                                                    : nullptr;
    }

    [[nodiscard]] QStringList actionNames() const override { return {setFocusAction(), toggleAction()}; }
    [[nodiscard]] QString localizedActionDescription(const QString& name) const override {
        return name == toggleAction() ? QStringLiteral("Pone o quita el punto de ruptura")
                                      : QStringLiteral("Selecciona la instrucción");
    }
    void doAction(const QString& name) override {
        if (!isValid()) return;
        const std::int32_t address = told_.value_or(view_->address(row_));
        if (!FocusGate::of(view_).pass(view_)) return;
        const int row = view_->rowOf(address);
        if (row >= 0) view_->choose(row);
        if (name == toggleAction()) emit view_->toggleAsked(address);
    }
    [[nodiscard]] QStringList keyBindingsForAction(const QString& name) const override {
        return name == toggleAction() ? QStringList{QStringLiteral("F9")} : QStringList{};
    }

  private:
    QPointer<ListingView> view_;
    int row_;
    mutable std::optional<std::int32_t> told_;  // the address in the text that the tool has read last
};

QAccessibleInterface* makeListingAccessible(const QString& /*className*/, QObject* object) {
    auto* view = qobject_cast<ListingView*>(object);
    return view == nullptr ? nullptr : new ListingAccessible(view);
}

}  // namespace

ListingAccessible::ListingAccessible(ListingView* view)
    : QAccessibleWidget(view, QAccessible::List, view->accessibleName()) {}

ListingAccessible::~ListingAccessible() {
    for (const QAccessible::Id id : rows_) QAccessible::deleteAccessibleInterface(id);
}

void ListingAccessible::install() {
    QAccessible::installFactory(makeListingAccessible);
}

ListingView* ListingAccessible::view() const {
    return qobject_cast<ListingView*>(widget());
}

int ListingAccessible::childCount() const {
    return view()->count();
}

QAccessibleInterface* ListingAccessible::child(int index) const {
    if (index < 0 || index >= childCount()) return nullptr;
    while (rows_.size() <= index) {
        const auto row = static_cast<int>(rows_.size());
        rows_.append(QAccessible::registerAccessibleInterface(new ListingRowAccessible(view(), row)));
    }
    return QAccessible::accessibleInterface(rows_.at(index));
}

int ListingAccessible::indexOfChild(const QAccessibleInterface* child) const {
    const auto* row = dynamic_cast<const ListingRowAccessible*>(child);
    return row == nullptr ? -1 : row->row();
}

QAccessibleInterface* ListingAccessible::childAt(int x, int y) const {
    const QListWidgetItem* item = view()->itemAt(view()->viewport()->mapFromGlobal(QPoint(x, y)));
    return item == nullptr ? nullptr : child(view()->row(item));
}

QAccessibleInterface* ListingAccessible::focusChild() const {
    return view()->hasFocus() ? child(view()->currentRow()) : nullptr;
}

}  // namespace tavinor
