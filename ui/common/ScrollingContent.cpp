#include "ui/common/ScrollingContent.h"

#include <QApplication>
#include <QEvent>
#include <QLayout>
#include <QScreen>
#include <QScrollBar>
#include <QWindow>

namespace tavinor {

namespace {

/// What frame, title bar and menu bar of the window take from the screen, at most.
QSize aroundTheContent(const QFontMetrics& metrics) {
    return {16, 3 * metrics.height() + 40};
}

}  // namespace

ScrollingContent::ScrollingContent(QWidget* content, QWidget* above, QWidget* parent)
    : QScrollArea(parent), above_(above) {
    setFrameShape(QFrame::NoFrame);
    setFocusPolicy(Qt::NoFocus);  // Tab goes from control to control
    setWidgetResizable(true);
    setWidget(content);
    content->installEventFilter(this);
    if (above != nullptr) above->installEventFilter(this);
    connect(qApp, &QApplication::focusChanged, this, &ScrollingContent::followFocus);
}

QSize ScrollingContent::sizeHint() const {
    return withinScreen(widget()->sizeHint());
}

QSize ScrollingContent::minimumSizeHint() const {
    return withinScreen(widget()->minimumSizeHint());
}

/// A bar that is needed in one direction takes room in the other.
QSize ScrollingContent::withinScreen(const QSize& wanted) const {
    const QLayout* layout = parentWidget()->layout();
    const QMargins margins = layout->contentsMargins();
    const int bar = above_ == nullptr ? 0 : above_->sizeHint().height() + layout->spacing();
    const QSize room = screen()->availableSize() - aroundTheContent(fontMetrics()) -
                       QSize(margins.left() + margins.right(), margins.top() + margins.bottom() + bar);
    QSize size = wanted;
    if (wanted.height() > room.height()) size.rwidth() += verticalScrollBar()->sizeHint().width();
    if (wanted.width() > room.width()) size.rheight() += horizontalScrollBar()->sizeHint().height();
    return size.boundedTo(room);
}

/// Shows a control whole, or where the keyboard is in it when it is larger than the area.
void ScrollingContent::reveal(QWidget* control) {
    const QSize size = control->size();
    const QSize room = viewport()->size();
    if (size.width() > room.width() || size.height() > room.height()) {
        ensureWidgetVisible(control);
        return;
    }
    const QPoint middle = control->mapTo(widget(), control->rect().center());
    ensureVisible(middle.x(), middle.y(), size.width() / 2 + 1, size.height() / 2 + 1);
}

/// What is under the mouse is in view already, and must not move away while a button is down.
void ScrollingContent::followFocus(QWidget* old, QWidget* now) {
    if (old != nullptr && old != widget() && old != above_) old->removeEventFilter(this);
    if (now == nullptr || now == widget() || !widget()->isAncestorOf(now)) return;
    now->installEventFilter(this);
    if (QApplication::mouseButtons() == Qt::NoButton) reveal(now);
}

/// Another screen has other room.
void ScrollingContent::showEvent(QShowEvent* event) {
    QScrollArea::showEvent(event);
    const QWindow* window = this->window()->windowHandle();
    if (window == nullptr) return;
    connect(window, &QWindow::screenChanged, this, &QWidget::updateGeometry, Qt::UniqueConnection);
}

/// The content tells its new size to the area, and the window has to hear of it too, as of the room that the
/// bar leaves. A key may have moved the place in a control that is larger than the area.
bool ScrollingContent::eventFilter(QObject* watched, QEvent* event) {
    const bool own = watched == widget() || watched == above_;
    if (own && event->type() == QEvent::LayoutRequest) updateGeometry();
    if (!own && event->type() == QEvent::KeyRelease) {
        reveal(static_cast<QWidget*>(watched));
    }
    return QScrollArea::eventFilter(watched, event);
}

}  // namespace tavinor
