#include "ui/main/ListingPanel.h"

#include <QApplication>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QScopedValueRollback>
#include <QWheelEvent>
#include <cstdlib>

#include "ui/common/FocusGate.h"
#include "ui/common/Fonts.h"
#include "ui/common/Naming.h"
#include "ui/main/ListingAccessible.h"
#include "ui/main/ListingRowDelegate.h"

namespace tavinor {

namespace {

/// What a screen reader adds to a row's text.
QString spokenRow(const QString& text, bool isProgramCounter) {
    QString spoken = text;
    if (text.at(ListingView::breakpointColumn) == '*') spoken += QStringLiteral(", punto de ruptura");
    if (isProgramCounter) spoken += QStringLiteral(", contador de programa");
    return spoken;
}

}  // namespace

ListingView::ListingView(QWidget* parent) : SingleSelection(parent) {
    ListingAccessible::install();
    named(this, QStringLiteral("prg"), QStringLiteral("Listado del programa"));
    setUniformItemSizes(true);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);  // the panel has a bar of its own
    setItemDelegate(new ListingRowDelegate(this));
    useFont(this, fixedFont, [this] { fitRows(); });
    connect(this, &QListWidget::currentRowChanged, this, [this](int row) {
        if (!showing_ && row >= 0) emit prg_Click();
    });
}

void ListingView::fitRows() {
    QStyleOptionViewItem option;
    initViewItemOption(&option);
    setMinimumWidth(itemDelegate()->sizeHint(option, {}).width() + 2 * frameWidth());
}

void ListingView::showRows(const Listing& listing, std::int32_t programCounter) {
    const QScopedValueRollback<bool> silent(showing_, true);
    const auto wanted = static_cast<int>(listing.rows().size());
    while (count() < wanted) addItem(QString());
    while (count() > wanted) delete takeItem(count() - 1);
    for (int row = 0; row < wanted; ++row) {
        const QString text = QString::fromStdString(listing.rows()[static_cast<std::size_t>(row)]);
        const bool isProgramCounter = listing.address(row) == programCounter;
        item(row)->setText(text);
        item(row)->setData(programCounterRole, isProgramCounter);
        item(row)->setData(Qt::AccessibleTextRole, spokenRow(text, isProgramCounter));
    }
    setCurrentRow(listing.selected());
}

void ListingView::choose(int row) {
    if (row == currentRow()) {
        emit prg_Click();
    } else {
        setCurrentRow(row);
    }
}

int ListingView::rowOf(std::int32_t address) const {
    int row = count() - 1;
    while (row >= 0 && this->address(row) != address) --row;
    return row;
}

void ListingView::keyPressEvent(QKeyEvent* event) {
    switch (event->key()) {
        case Qt::Key_Return:
        case Qt::Key_Enter: emit enterPressed(); return;
        case Qt::Key_F9:  // held down it would leave to chance whether the breakpoint stays
            if (!event->isAutoRepeat()) emit f9Pressed();
            return;
        case Qt::Key_Up: emit upPressed(); break;
        case Qt::Key_Down: emit downPressed(); break;
        default: break;
    }
    QListWidget::keyPressEvent(event);
}

void ListingView::mousePressEvent(QMouseEvent* event) {
    const int before = currentRow();
    QListWidget::mousePressEvent(event);
    // A press on the row that is selected already counts as well.
    const QListWidgetItem* pressed = itemAt(event->pos());
    if (pressed != nullptr && currentRow() == before && row(pressed) == before) emit prg_Click();
}

/// Since its first press a run may have selected another row, or listed other rows: the second press selects
/// the row under the pointer anew.
void ListingView::mouseDoubleClickEvent(QMouseEvent* event) {
    mousePressEvent(event);
    if (event->button() == Qt::LeftButton && itemAt(event->pos()) != nullptr) emit prg_DblClick();
}

void ListingView::wheelEvent(QWheelEvent* event) {
    wheelRest_ += event->angleDelta().y();
    const int steps = wheelRest_ / QWheelEvent::DefaultDeltasPerStep;
    wheelRest_ %= QWheelEvent::DefaultDeltasPerStep;
    if (steps != 0) emit wheelTurned(steps);
    event->accept();
}

ListingPanel::ListingPanel(const MachineState& machine, const Breakpoints& breakpoints,
                           const ShownValues& shown, QWidget* parent)
    : QGroupBox(QStringLiteral("Programa"), parent),
      listing_(machine, breakpoints),
      shown_(shown),
      prg(new ListingView(this)),
      scrollBar_(new QScrollBar(Qt::Vertical, this)) {
    scrollBar_->setObjectName(QStringLiteral("prgScrollBar"));
    scrollBar_->setAccessibleName(QStringLiteral("Desplazamiento del listado"));
    auto* layout = new QHBoxLayout(this);
    layout->setSpacing(0);
    layout->addWidget(prg);
    layout->addWidget(scrollBar_);
    connect(prg, &ListingView::prg_Click, this, &ListingPanel::prg_Click);
    connect(prg, &ListingView::prg_DblClick, this, &ListingPanel::prg_DblClick);
    connect(prg, &ListingView::f9Pressed, this, &ListingPanel::f9);
    connect(prg, &ListingView::toggleAsked, this, &ListingPanel::toggle);
    connect(prg, &ListingView::enterPressed, this, &ListingPanel::prg_KeyPress);
    connect(prg, &ListingView::upPressed, this, [this] { prg_KeyDown(Qt::Key_Up); });
    connect(prg, &ListingView::downPressed, this, [this] { prg_KeyDown(Qt::Key_Down); });
    connect(prg, &ListingView::wheelTurned, this, &ListingPanel::turnWheel);
    connect(scrollBar_, &QScrollBar::actionTriggered, this, &ListingPanel::scrollBarUsed);
    connect(prg->verticalScrollBar(), &QScrollBar::valueChanged, this, &ListingPanel::fitScrollBar);
    connect(prg->verticalScrollBar(), &QScrollBar::rangeChanged, this, &ListingPanel::fitScrollBar);
}

void ListingPanel::bringUpToDate() {
    positionRows(shown_.registers.PC);
}

void ListingPanel::position(std::int32_t address) {
    chosen_ = address;
    positionRows(address);
}

void ListingPanel::positionRows(std::int32_t address) {
    listing_.position(address);
    showRows();
}

void ListingPanel::rebuildInPlace() {
    listing_.rebuildInPlace();
    showRows();
}

void ListingPanel::prg_Click() {
    // An assistive tool can select a row without moving the focus; a refusal takes the selection back.
    if (!FocusGate::of(this).pass(prg)) {
        showRows();
        return;
    }
    listing_.select(prg->currentRow());
    if (listing_.selected() == Listing::noRow) return;
    chosen_ = listing_.address(listing_.selected());
    emit rowSelected(prg->currentItem()->text());
}

void ListingPanel::prg_DblClick() {
    if (listing_.selected() != Listing::noRow) toggle(listing_.address(listing_.selected()));
}

/// Stands for the double-click on the selected row. A run selects the program counter's row after every
/// instruction, so meanwhile the row is meant that the user selected last, by mouse, by key or by typing its
/// address; it counts also where the list has scrolled away from it for the moment. The entry row shows it.
void ListingPanel::f9() {
    if (running_ && chosen_) {
        toggle(*chosen_);
    } else {
        prg_DblClick();
    }
}

void ListingPanel::toggle(std::int32_t address) {
    emit breakpointToggled(address);
    rebuildInPlace();
}

/// Enter has nothing to press here: see behaviour.md, Main window: listing.
void ListingPanel::prg_KeyPress() {
    QApplication::beep();
}

void ListingPanel::prg_KeyDown(int key) {
    const bool back = key == Qt::Key_Up && listing_.firstSelected();
    const bool forward = key == Qt::Key_Down && listing_.lastSelected();
    if (!back && !forward) return;
    const std::int32_t before = listing_.address(listing_.selected());
    if (back) listing_.stepBackOneByte();
    if (forward) listing_.scrollForward();
    showRows();
    // The user has selected another instruction, in the same row of the list.
    if (listing_.address(listing_.selected()) != before) prg_Click();
}

void ListingPanel::prg_Scroll() {
    if (listing_.firstSelected()) {
        listing_.scrollBack();
    } else if (listing_.lastSelected()) {
        listing_.scrollForward();
    }
    showRows();
}

/// The bar has one step more at either end than the list can scroll, so that it can be used there too.
/// `action` has moved its slider; the list follows, and the slider goes to where the list really is.
void ListingPanel::scrollBarUsed(int /*action*/) {
    QScrollBar* inner = prg->verticalScrollBar();
    inner->setValue(scrollBar_->sliderPosition() - 1);
    prg_Scroll();
    scrollBar_->setSliderPosition(inner->value() + 1);
}

void ListingPanel::turnWheel(int steps) {
    const auto action = steps > 0 ? QScrollBar::SliderSingleStepSub : QScrollBar::SliderSingleStepAdd;
    const int rows = std::abs(steps) * QApplication::wheelScrollLines();
    for (int i = 0; i < rows; ++i) scrollBar_->triggerAction(action);
}

void ListingPanel::showRows() {
    prg->showRows(listing_, shown_.registers.PC);
    fitScrollBar();
}

void ListingPanel::fitScrollBar() {
    const QScrollBar* inner = prg->verticalScrollBar();
    scrollBar_->setPageStep(inner->pageStep());
    scrollBar_->setRange(0, inner->maximum() + 2);
    scrollBar_->setValue(inner->value() + 1);
}

}  // namespace tavinor
