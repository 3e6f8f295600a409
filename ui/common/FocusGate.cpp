#include "ui/common/FocusGate.h"

#include <QApplication>
#include <QWidget>

namespace tavinor {

FocusGate& FocusGate::of(const QWidget* widget) {
    QWidget* window = widget->window();
    auto* gate = window->findChild<FocusGate*>(QString(), Qt::FindDirectChildrenOnly);
    return gate != nullptr ? *gate : *new FocusGate(window);
}

bool FocusGate::isInReach(const QWidget* widget) {
    const QWidget* modal = QApplication::activeModalWidget();
    return modal == nullptr || modal == widget->window();
}

bool FocusGate::pass(QWidget* next) {
    if (!isInReach(window_)) return false;
    HexBox* box = box_;
    if (box == nullptr) return true;
    if (!box->leave()) return false;
    if (next != nullptr) {
        next->setFocus(Qt::ShortcutFocusReason);
    } else if (box->hasFocus()) {
        box->reenter();
    }
    return true;
}

bool FocusGate::passTyped() {
    return box_ != nullptr && box_->edited() ? pass() : isInReach(window_);
}

void FocusGate::enter(HexBox* box) {
    box_ = box;
}

void FocusGate::leave(const HexBox* box) {
    if (box_ == box) box_.clear();
}

}  // namespace tavinor
