#pragma once

#include <QAbstractItemView>
#include <QItemSelectionModel>
#include <QMetaObject>
#include <QVariant>

namespace tavinor {

/// A view of Qt's (`View`) in which one item is selected at all times, and that is the current one.
template <typename View>
class SingleSelection : public View {
  public:
    using View::View;

  protected:
    /// Where the keyboard is: the current item.
    [[nodiscard]] QVariant inputMethodQuery(Qt::InputMethodQuery query) const override {
        if (query != Qt::ImCursorRectangle) return View::inputMethodQuery(query);
        return this->visualRect(this->currentIndex()).translated(this->viewport()->pos());
    }

    /// A click with Ctrl does not take the selection away.
    QItemSelectionModel::SelectionFlags selectionCommand(const QModelIndex& index,
                                                         const QEvent* /*event*/) const override {
        return index.isValid() ? QItemSelectionModel::ClearAndSelect : QItemSelectionModel::NoUpdate;
    }

    /// An assistive tool changes the selection and leaves the current item as it is: that follows.
    void selectionChanged(const QItemSelection& selected, const QItemSelection& deselected) override {
        View::selectionChanged(selected, deselected);
        if (showing_) return;
        QMetaObject::invokeMethod(
            this, [this] { followSelection(); }, Qt::QueuedConnection);
    }

    bool showing_ = false;  // the program selects, not the user

  private:
    void followSelection() {
        const QModelIndexList chosen = this->selectedIndexes();
        if (chosen.isEmpty() || chosen.first() == this->currentIndex()) return;
        this->setCurrentIndex(chosen.first());
    }
};

}  // namespace tavinor
