#include <QAccessible>
#include <QAccessibleActionInterface>
#include <QApplication>
#include <QScrollBar>
#include <QStyle>
#include <QStyleOptionSlider>
#include <QTest>

#include "tests/support/RealInput.h"
#include "tests/ui/main/Simulator.h"
#include "tests/ui/main/ViewsCheck.h"

using namespace tavinor;

namespace {
int beeps = 0;
}

/// In place of Qt's own: the platform without a screen has nothing to beep with.
void QApplication::beep() {
    ++beeps;
}

/// The program listing: rows, selection, breakpoints, and the ways to scroll it.
class ListingPanelTest : public QObject {
    Q_OBJECT

  private:
    std::unique_ptr<Simulator> s_;

    void key(Qt::Key key) const { pressKey(&s_->window, key); }
    [[nodiscard]] int lastRow() const { return s_->listing()->count() - 1; }
    [[nodiscard]] int breakpoint(int address) const {
        return s_->window.breakpoints()[static_cast<std::size_t>(address)];
    }
    void doubleClickRow(int row) const { doubleClickAt(s_->listing()->viewport(), s_->placeOfRow(row)); }

    /// The action of a child of a list or grid, as an assistive tool asks for it.
    static void actOn(QWidget* view, int child) {
        QAccessibleInterface* cell = QAccessible::queryAccessibleInterface(view)->child(child);
        cell->actionInterface()->doAction(cell->actionInterface()->actionNames().first());
    }

    /// Clicks on an arrow of the listing's scroll bar.
    void clickScrollBar(QStyle::SubControl arrow) const {
        auto* bar = s_->find<QScrollBar>("prgScrollBar");
        QStyleOptionSlider option;
        option.initFrom(bar);
        option.orientation = Qt::Vertical;
        option.minimum = bar->minimum();
        option.maximum = bar->maximum();
        option.sliderPosition = option.sliderValue = bar->value();
        option.pageStep = bar->pageStep();
        clickAt(bar, bar->style()->subControlRect(QStyle::CC_ScrollBar, &option, arrow, bar).center());
    }

  private slots:
    void init() { s_ = std::make_unique<Simulator>(); }
    void cleanup() { s_.reset(); }

    void holds29Rows() {
        QCOMPARE(s_->rows().size(), 29);
        QCOMPARE(s_->rows().first(), "0000 00        NOP");
        QCOMPARE(s_->rows().last(), "001C 00        NOP");
        QCOMPARE(s_->selectedAddress(), 0);
        QVERIFY(s_->find<QScrollBar>("prgScrollBar")->isVisible());
    }

    void aClickCopiesTheRow_data() {
        QTest::addColumn<int>("row");
        QTest::addColumn<QStringList>("entry");
        QTest::newRow("one byte") << 0 << QStringList({"0000", "C9", "", "", " RET"});
        QTest::newRow("two bytes") << 1 << QStringList({"0001", "3E", "05", "", " MVI A,05"});
        QTest::newRow("three bytes") << 2 << QStringList({"0003", "31", "CD", "AB", " LXI SP,ABCD"});
        QTest::newRow("undefined") << 3 << QStringList({"0006", "08", "", "", " ?"});
    }

    void aClickCopiesTheRow() {
        QFETCH(int, row);
        QFETCH(QStringList, entry);
        const QAccessibleInterface* spoken = QAccessible::queryAccessibleInterface(s_->find<QWidget>("INS"));
        s_->load(0, QByteArray::fromHex("C9"
                                        "3E05"
                                        "31CDAB"
                                        "08"));
        s_->clickRow(row);
        QCOMPARE(s_->entryRow(), entry);
        QCOMPARE(spoken->text(QAccessible::Name), entry.last());
        s_->enter("INSOP2", "");
        s_->box("INSCO")->showText("77");
        s_->clickRow(row);  // the row that is selected already counts as well
        QCOMPARE(s_->entryRow(), entry);
    }

    void keysCopyTheRow() {
        s_->clickRow(0);
        key(Qt::Key_Down);
        QCOMPARE(s_->entryRow().first(), "0001");
        key(Qt::Key_End);
        QCOMPARE(s_->entryRow().first(), "001C");
        key(Qt::Key_Up);
        QCOMPARE(s_->entryRow().first(), "001B");
    }

    void theProgramsOwnSelectionCopiesNothing() {
        s_->clickRow(4);
        const QStringList entry = s_->entryRow();
        s_->press("Eje_paso");
        QCOMPARE(s_->selectedAddress(), 1);
        QCOMPARE(s_->entryRow(), entry);
        s_->enter("txtPC", "0100");
        QCOMPARE(s_->selectedAddress(), 0x100);
        QCOMPARE(s_->entryRow(), entry);
    }

    void theCountersRowAloneIsMarked() {
        for (int counter = 0; counter < 3; ++counter) {
            for (int row = 0; row < 5; ++row) {
                const QVariant marked = s_->listing()->item(row)->data(ListingView::programCounterRole);
                QCOMPARE(marked.toBool(), row == counter);
            }
            s_->press("Eje_paso");
        }
    }

    void aDoubleClickSetsABreakpoint() {
        s_->load(0, QByteArray::fromHex("3E05C30020"));
        const QStringList before = s_->rows();
        doubleClickRow(1);
        QCOMPARE(s_->rows().at(1), "0002*C3 00 20  JMP 2000");
        QCOMPARE(breakpoint(2), -1);
        QCOMPARE(s_->selectedAddress(), 2);
        QVERIFY(s_->listing()->item(1)->data(Qt::AccessibleTextRole).toString().contains("punto de ruptura"));
        QCOMPARE(std::count(s_->window.breakpoints().begin(), s_->window.breakpoints().end(), 0),
                 memorySize - 1);
        doubleClickRow(1);
        QCOMPARE(s_->rows(), before);
        QCOMPARE(breakpoint(2), 0);
    }

    void anotherButtonsDoubleClickSetsNone() {
        QListWidget* listing = s_->listing();
        for (const Qt::MouseButton button : {Qt::RightButton, Qt::MiddleButton}) {
            QTest::mouseDClick(listing->viewport(), button, Qt::NoModifier, s_->placeOfRow(1));
            QCOMPARE(breakpoint(1), 0);
        }
    }

    void f9StandsForTheDoubleClick() {
        s_->clickRow(7);
        key(Qt::Key_F9);
        QCOMPARE(breakpoint(7), -1);
        QCOMPARE(s_->rows().at(7), "0007*00        NOP");
        key(Qt::Key_F9);
        QCOMPARE(breakpoint(7), 0);
    }

    void f9HeldDownIsPressedOnce() {
        s_->clickRow(7);
        key(Qt::Key_F9);
        QKeyEvent repeat(QEvent::KeyPress, Qt::Key_F9, Qt::NoModifier, {}, true);
        QApplication::sendEvent(s_->listing(), &repeat);
        QCOMPARE(breakpoint(7), -1);
        QVERIFY(repeat.isAccepted());
    }

    void aDoubleClickKeepsTheFirstRow() {
        s_->load(0, QByteArray::fromHex("3E3E3E3E3E3E"));
        s_->enter("txtDIR", "0003");
        s_->clickRow(0);
        key(Qt::Key_Up);  // nothing: the first row is 0000 or one byte earlier
        const int first = s_->rowAddress(0);
        doubleClickRow(5);
        QCOMPARE(s_->rowAddress(0), first);
    }

    void resetKeepsBreakpoints() {
        doubleClickRow(3);
        s_->press("Reset");
        QCOMPARE(breakpoint(3), -1);
        QCOMPARE(s_->rows().at(3), "0003*00        NOP");
    }

    void upOnTheFirstRowGoesBackOneByte() {
        s_->load(0x1230, QByteArray::fromHex("000000C3"));  // 1233 begins a JMP across the first row
        s_->enter("txtDIR", "1240");
        s_->clickRow(0);
        QCOMPARE(s_->selectedAddress(), 0x1234);
        key(Qt::Key_Up);
        QCOMPARE(s_->rows().first(), "1233 C3 00 00  JMP 0000");
        QCOMPARE(s_->rowAddress(1), 0x1236);
        QCOMPARE(s_->listing()->currentRow(), 0);
        QCOMPARE(s_->rows().size(), 29);
        QCOMPARE(s_->entryRow(), QStringList({"1233", "C3", "00", "00", " JMP 0000"}));
    }

    void upAtTheBottomOfMemoryDoesNothing() {
        s_->clickRow(0);
        const QStringList rows = s_->rows();
        key(Qt::Key_Up);
        QCOMPARE(s_->rows(), rows);
        QCOMPARE(s_->selectedAddress(), 0);
    }

    void downOnTheLastRowScrollsByOneInstruction() {
        s_->load(0x1C, QByteArray::fromHex("3E55C9"));
        s_->clickRow(lastRow());
        QCOMPARE(s_->selectedAddress(), 0x1C);
        key(Qt::Key_Down);
        QCOMPARE(s_->rows().size(), 29);
        QCOMPARE(s_->rowAddress(0), 1);
        QCOMPARE(s_->rows().last(), "001E C9        RET");
        QCOMPARE(s_->listing()->currentRow(), lastRow());
        QCOMPARE(s_->entryRow(), QStringList({"001E", "C9", "", "", " RET"}));
        key(Qt::Key_Down);
        QCOMPARE(s_->entryRow().first(), "001F");
    }

    void theListEndsAtTheTopOfMemory() {
        s_->enter("txtDIR", "FFF8");
        QCOMPARE(s_->rows().last(), "FFFF 00        NOP");
        QCOMPARE(s_->rows().size(), 20);  // from FFEC on
        s_->clickRow(lastRow());
        key(Qt::Key_Down);
        QCOMPARE(s_->rowAddress(0), 0xFFEC);
        QCOMPARE(s_->selectedAddress(), 0xFFFF);
        s_->load(0xFFFE, QByteArray::fromHex("C3"));
        s_->load(0x0000, QByteArray::fromHex("42"));
        s_->enter("txtDIR", "FFF8");
        QCOMPARE(s_->rows().last(), "FFFE C3 00 42  JMP 4200");
    }

    void enterBeepsAndChangesNothing() {
        s_->clickRow(3);
        const QStringList rows = s_->rows();
        const QStringList entry = s_->entryRow();
        beeps = 0;
        key(Qt::Key_Return);
        QCOMPARE(beeps, 1);
        key(Qt::Key_Enter);
        QCOMPARE(beeps, 2);
        key(Qt::Key_Space);
        typeText(&s_->window, "g");
        QCOMPARE(beeps, 2);
        QCOMPARE(s_->rows(), rows);
        QCOMPARE(s_->entryRow(), entry);
        QCOMPARE(s_->selectedAddress(), 3);
    }

    void theScrollBarGoesBackToAOneByteInstruction() {
        s_->load(0x100, QByteArray::fromHex("00C33E0021"));  // 0103 holds the only other one-byte code
        s_->enter("txtDIR", "0111");
        s_->clickRow(0);
        QCOMPARE(s_->selectedAddress(), 0x105);
        const QStringList entry = s_->entryRow();
        clickScrollBar(QStyle::SC_ScrollBarSubLine);
        QCOMPARE(s_->rowAddress(0), 0x103);
        QCOMPARE(s_->listing()->currentRow(), 0);
        clickScrollBar(QStyle::SC_ScrollBarSubLine);
        QCOMPARE(s_->rowAddress(0), 0x100);
        QCOMPARE(s_->entryRow(), entry);
    }

    void theScrollBarStopsAtTheBottomOfMemory() {
        s_->load(0, QByteArray::fromHex("C33E21C33E21"));
        s_->enter("txtPC", "0006");
        s_->clickRow(0);
        for (int i = 0; i < 8; ++i) clickScrollBar(QStyle::SC_ScrollBarSubLine);
        QCOMPARE(s_->rowAddress(0), 0);
    }

    void theScrollBarGoesOnFromTheLastRow() {
        s_->clickRow(lastRow());
        clickScrollBar(QStyle::SC_ScrollBarAddLine);
        QCOMPARE(s_->rows().size(), 29);
        QCOMPARE(s_->rowAddress(0), 1);
        QCOMPARE(s_->rowAddress(lastRow()), 0x1D);
        clickScrollBar(QStyle::SC_ScrollBarAddLine);
        QCOMPARE(s_->rowAddress(lastRow()), 0x1E);
    }

    void theWheelScrolls() {
        s_->clickRow(lastRow());
        const QStringList entry = s_->entryRow();
        s_->type("txtA", "zz");  // the wheel takes no focus
        turnWheel(s_->listing()->viewport(), -1);
        const int first = s_->rowAddress(0);
        QVERIFY(first > 0);
        QCOMPARE(s_->rows().size(), 29);
        turnWheel(s_->listing()->viewport(), -2);
        QCOMPARE(s_->rowAddress(0), 3 * first);
        QCOMPARE(s_->entryRow(), entry);
        QVERIFY(s_->box("txtA")->hasFocus());
        s_->enter("txtA", "0");
        s_->clickRow(0);
        turnWheel(s_->listing()->viewport(), 1);
        QCOMPARE(s_->rowAddress(0), 2 * first);
    }

    void theWheelChangesNoRowsInBetween() {
        s_->clickRow(10);
        const QStringList rows = s_->rows();
        turnWheel(s_->listing()->viewport(), -3);
        turnWheel(s_->listing()->viewport(), 3);
        QCOMPARE(s_->rows(), rows);
        QCOMPARE(s_->selectedAddress(), 10);
    }

    /// An assistive tool moves the selection without taking the focus from a box.
    void aRefusedBoxKeepsTheSelection() {
        s_->clickRow(2);
        const QStringList entry = s_->entryRow();
        s_->type("txtA", "zz");
        s_->dialogs.expectMessage("Valor incorrecto");
        s_->listing()->setCurrentRow(5);
        QTRY_VERIFY(s_->dialogs.allCame());
        QTRY_VERIFY(s_->box("txtA")->hasFocus());
        QCOMPARE(s_->selectedAddress(), 2);
        QCOMPARE(s_->entryRow(), entry);
        s_->enter("txtA", "1");
        s_->listing()->setCurrentRow(5);
        QCOMPARE(s_->selectedAddress(), 5);
        QCOMPARE(s_->entryRow().first(), "0005");
    }

    void aRefusedBoxKeepsTheCurrentCell() {
        s_->clickCell("grdmem", 0x0012);
        s_->type("txtA", "zz");
        s_->dialogs.expectMessage("Valor incorrecto");
        s_->grid("grdmem")->setCurrentIndex(s_->grid("grdmem")->model()->index(3, 3));
        QTRY_VERIFY(s_->dialogs.allCame());
        QTRY_VERIFY(s_->box("txtA")->hasFocus());
        QCOMPARE(s_->currentAddress("grdmem"), 0x0012);
        QCOMPARE(s_->text("txtDirMem"), "0012");
    }

    void aToolsActionOnARowSelectsIt() {
        s_->clickRow(0);
        for (const int row : {6, 6, 2}) {
            actOn(s_->listing(), row);
            QTRY_COMPARE(s_->selectedAddress(), row);
            QCOMPARE(s_->listing()->selectedItems(), QList({s_->listing()->item(row)}));
            QCOMPARE(s_->entryRow().first(), hexDigits(row, 4));
        }
        s_->type("txtA", "zz");
        s_->dialogs.expectMessage("Valor incorrecto");
        actOn(s_->listing(), 9);
        QTRY_VERIFY(s_->dialogs.allCame());
        QTRY_VERIFY(s_->box("txtA")->hasFocus());
        QCOMPARE(s_->selectedAddress(), 2);
        QCOMPARE(s_->listing()->selectedItems(), QList({s_->listing()->item(2)}));
        QCOMPARE(s_->entryRow().first(), "0002");
    }

    void aToolFindsItsWayAmongTheRows() {
        QAccessibleInterface* view = QAccessible::queryAccessibleInterface(s_->listing());
        QCOMPARE(view->childCount(), 29);
        for (const int row : {0, 7, 28}) {
            QAccessibleInterface* spoken = view->child(row);
            QCOMPARE(spoken->role(), QAccessible::ListItem);
            QCOMPARE(spoken->parent(), view);
            QCOMPARE(view->indexOfChild(spoken), row);
            const QPoint middle = spoken->rect().center();
            QCOMPARE(view->childAt(middle.x(), middle.y()), spoken);
            s_->clickRow(row);
            QCOMPARE(view->focusChild(), spoken);
            QVERIFY(spoken->state().focused && spoken->state().selected);
        }
        QVERIFY(view->child(29) == nullptr && view->childAt(-1, -1) == nullptr);
        s_->leaveBox();
        QVERIFY(view->focusChild() == nullptr);
    }

    void aToolIsToldWhatARowCanDo() {
        QAccessibleActionInterface* actions =
            QAccessible::queryAccessibleInterface(s_->listing())->child(3)->actionInterface();
        const QString select = QAccessibleActionInterface::setFocusAction();
        const QString toggle = QAccessibleActionInterface::toggleAction();
        QCOMPARE(actions->actionNames(), (QStringList{select, toggle}));
        QCOMPARE(actions->localizedActionDescription(select), QString("Selecciona la instrucción"));
        QCOMPARE(actions->localizedActionDescription(toggle), QString("Pone o quita el punto de ruptura"));
        QCOMPARE(actions->keyBindingsForAction(select), QStringList());
        QCOMPARE(actions->keyBindingsForAction(toggle), QStringList{"F9"});
        actions->doAction(toggle);
        QVERIFY(breakpoint(3) != 0);
    }

    /// Leaving PC's box lists other rows; the action is meant for the row that the tool was told of.
    void aToolsActionIsMeantForTheRowItWasMadeOn() {
        QAccessibleInterface* row = QAccessible::queryAccessibleInterface(s_->listing())->child(6);
        s_->type("txtPC", "0010");
        row->actionInterface()->doAction(QAccessibleActionInterface::toggleAction());
        QCOMPARE(s_->rowAddress(6), 0x000A);
        QCOMPARE(breakpoint(6), -1);
        QCOMPARE(breakpoint(0x0A), 0);
        QCOMPARE(s_->selectedAddress(), 6);
        s_->type("txtPC", "0200");
        row->actionInterface()->doAction(QAccessibleActionInterface::toggleAction());
        QCOMPARE(breakpoint(0x0A), -1);
        QCOMPARE(s_->rowOf(0x0A), -1);
        QCOMPARE(s_->selectedAddress(), 0x0200);
    }

    void aToolsActionOnACellSelectsIt() {
        QAbstractItemView* grid = s_->grid("grdport");
        for (const int address : {0x23, 0x23, 0x45}) {
            const QModelIndex index = grid->model()->index(address / 16, address % 16);
            actOn(grid, 17 * (address / 16 + 1) + address % 16 + 1);
            QTRY_COMPARE(grid->currentIndex(), index);
            QTRY_COMPARE(grid->selectionModel()->selectedIndexes(), QModelIndexList({index}));
            QCOMPARE(s_->text("txtDirPort"), hexDigits(address, 2));
        }
    }

    void aCtrlClickKeepsACellSelected() {
        s_->clickCell("grdport", 0x42);
        clickAt(s_->grid("grdport")->viewport(),
                s_->grid("grdport")->visualRect(s_->grid("grdport")->currentIndex()).center(), Qt::LeftButton,
                Qt::ControlModifier);
        QCOMPARE(s_->grid("grdport")->selectionModel()->selectedIndexes().size(), 1);
        QCOMPARE(s_->currentAddress("grdport"), 0x42);
    }

    void aCtrlClickKeepsARowSelected() {
        s_->clickRow(4);
        clickAt(s_->listing()->viewport(), s_->placeOfRow(4), Qt::LeftButton, Qt::ControlModifier);
        QCOMPARE(s_->listing()->selectedItems().size(), 1);
        QCOMPARE(s_->selectedAddress(), 4);
    }
};

QTEST_MAIN(ListingPanelTest)
#include "ListingPanelTest.moc"
