// The window of the trace: what it shows, its keys, its mouse, clearing and closing.

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QDialog>
#include <QMenu>
#include <QScrollBar>
#include <QTest>
#include <QTimer>

#include "tests/support/DialogAnswerer.h"
#include "tests/support/MemoryLimit.h"
#include "tests/support/RealInput.h"
#include "tests/ui/trace/TraceWindowTest.h"

using namespace tavinor;

namespace {

const QString closeQuestion = QStringLiteral("Todo el listado se perderá.\n¿Desea cerrar de todas formas?");
constexpr auto yesNo = QMessageBox::Yes | QMessageBox::No;

}  // namespace

class ListapasosTest : public QObject, private TraceWindowTest {
    Q_OBJECT

  private:
    [[nodiscard]] QString naiveLine(std::size_t row) const {
        return QString::fromStdString(naive().line(row));
    }
    /// Right-clicks on a cell and chooses from the menu that opens.
    void chooseAt(std::uint64_t row, const QString& command) {
        QTimer whenOpen;
        bool chosen = false;
        whenOpen.callOnTimeout([&] {
            auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
            if (menu == nullptr) return;
            whenOpen.stop();
            for (QAction* action : menu->actions()) {
                if (action->text() != command) continue;
                chosen = true;
                menu->setActiveAction(action);
            }
            QTest::keyClick(menu, chosen ? Qt::Key_Return : Qt::Key_Escape);
        });
        whenOpen.start(10);
        clickAt(lista_->viewport(), lista_->cellRect({row, 2}).center(), Qt::RightButton);
        QTRY_VERIFY(chosen);
    }

    /// The instructions that are executed again for a paint of the rows from `first` on.
    [[nodiscard]] std::uint64_t costOfPainting(std::uint64_t first) {
        lista_->scrollTo(first);
        const History& history = traced_->simulation().history();
        const std::uint64_t before = history.executedAgain();
        lista_->viewport()->repaint();
        return history.executedAgain() - before;
    }

  private slots:
    void init() { setUp(); }
    void cleanup() { tearDown(); }

    /// With little room for them few machines of long ago are kept: the rows behind them come into view in
    /// several paints, each of which executes so many instructions and no more.
    void aPaintExecutesFewInstructions() {
        constexpr std::uint64_t mostAPaint = 2'000'000 + Checkpoints::densest;
        setUp(std::size_t{9} * 512 * 1024);
        traced_->recordOnlyCompact();
        // LXI H,0080; 0003: INR M; INR H; JMP 0003: each page of memory, over and over
        traced_->load({0x21, 0x80, 0x00, 0x34, 0x24, 0xC3, 0x03, 0x00});
        record(30'000'000);
        window_->show();
        QVERIFY(QTest::qWaitForWindowExposed(window_.get()));
        const std::uint64_t rows = lista_->rowCount();
        int unfinished = 0;
        for (const std::uint64_t first : {rows - 30, rows / 2 + 7, std::uint64_t{5}, rows / 3}) {
            std::uint64_t cost = costOfPainting(first);
            while (cost >= mostAPaint - Checkpoints::densest) {
                QVERIFY(cost <= mostAPaint);
                ++unfinished;
                cost = costOfPainting(first);
            }
            QVERIFY(cost <= mostAPaint);
            QCOMPARE(costOfPainting(first), std::uint64_t{0});  // they are known
            QVERIFY(!lista_->cells(first)[0].empty());
        }
        QVERIFY2(unfinished > 0, "no place was so far from a kept machine");
    }

    void isTitledAndModeless() {
        QCOMPARE(window_->windowTitle(), QString("Tavinor"));
        QCOMPARE(window_->objectName(), QString("Listapasos"));
        QVERIFY(!window_->isModal());
        QStringList texts;
        for (const QAction* action : window_->menuBar()->actions()) texts.append(action->text());
        QCOMPARE(texts, QStringList({"&Salvar", "&Borrar", "&Cerrar"}));
    }

    void recordsWithoutBeingShown() {
        record(3);
        QVERIFY(!window_->isVisible());
        QVERIFY(showActive(window_.get()));
        QCOMPARE(lista_->rowCount(), std::uint64_t{4});
        QCOMPARE(lista_->cells(1)[2], std::string("LXI B,FFFF"));
        QCOMPARE(QApplication::focusWidget(), lista_);
    }

    /// Ten rows are in view as the window comes; the newest ones always are.
    void keepsTheNewestRowsInView() {
        QVERIFY(showActive(window_.get()));
        QCOMPARE(lista_->visibleRows(), 10);
        record(8);
        QCOMPARE(lista_->firstRow(), std::uint64_t{0});  // 9 rows
        for (std::uint64_t rows = 10; rows < 30; ++rows) {
            record(1);
            QCOMPARE(lista_->rowCount(), rows);
            QCOMPARE(lista_->firstRow(), rows - 10);
        }
        press(Qt::Key_Home, Qt::ControlModifier);
        QCOMPARE(lista_->firstRow(), std::uint64_t{0});
        record(1);
        QCOMPARE(lista_->firstRow(), std::uint64_t{20});
    }

    void aTallerWindowIsFilled() {
        window_->resize(window_->width(), window_->height() * 3);
        QVERIFY(showActive(window_.get()));
        record(99);
        QVERIFY(lista_->visibleRows() > 20);
        QCOMPARE(lista_->firstRow() + static_cast<std::uint64_t>(lista_->visibleRows()), std::uint64_t{100});
    }

    /// The bar that a narrow window needs takes nothing from the newest rows.
    void aNarrowAndLowWindowShowsTheNewestRows() {
        QVERIFY(showActive(window_.get()));
        record(99);
        window_->resize(window_->minimumSizeHint());
        QTRY_VERIFY(lista_->horizontalScrollBar()->isVisible());
        record(1);
        QVERIFY(lista_->visibleRows() >= 10);
        QCOMPARE(lista_->firstRow() + static_cast<std::uint64_t>(lista_->visibleRows()), std::uint64_t{101});
    }

    void keysMoveTheCurrentCell() {
        QVERIFY(showActive(window_.get()));
        record(99);
        press(Qt::Key_Home, Qt::ControlModifier);
        QCOMPARE(*lista_->current(), (TraceView::Cell{0, 0}));
        press(Qt::Key_Down);
        press(Qt::Key_Down);
        press(Qt::Key_Up);
        press(Qt::Key_Right);
        press(Qt::Key_Right);
        press(Qt::Key_Left);
        QCOMPARE(*lista_->current(), (TraceView::Cell{1, 1}));
        press(Qt::Key_PageDown);
        QCOMPARE(lista_->current()->row, std::uint64_t{11});
        QCOMPARE(lista_->firstRow(), std::uint64_t{2});
        press(Qt::Key_PageUp);
        QCOMPARE(lista_->current()->row, std::uint64_t{1});
        press(Qt::Key_End);
        QCOMPARE(*lista_->current(), (TraceView::Cell{1, 14}));
        press(Qt::Key_Right);
        QCOMPARE(lista_->current()->column, 14);
        press(Qt::Key_Home);
        QCOMPARE(*lista_->current(), (TraceView::Cell{1, 0}));
        press(Qt::Key_End, Qt::ControlModifier);
        QCOMPARE(*lista_->current(), (TraceView::Cell{99, 14}));
        press(Qt::Key_Down);
        QCOMPARE(lista_->current()->row, std::uint64_t{99});
        QCOMPARE(lista_->firstRow(), std::uint64_t{90});
    }

    void theMouseSelectsRows() {
        QVERIFY(showActive(window_.get()));
        record(29);
        clickCell(21, 4);
        QCOMPARE(*lista_->current(), (TraceView::Cell{21, 4}));
        clickCell(24, 0, Qt::ShiftModifier);
        QCOMPARE(lista_->selectedRows(), std::uint64_t{4});
        QVERIFY(!lista_->isSelected(20) && lista_->isSelected(21) && lista_->isSelected(24) &&
                !lista_->isSelected(25));
        clickAt(lista_->viewport(), {10, 3});  // the header
        QCOMPARE(lista_->selectedRows(), std::uint64_t{4});
    }

    void draggingSelectsRowsAlsoBeyondTheEdges() {
        QVERIFY(showActive(window_.get()));
        record(99);
        QScrollBar* bar = lista_->verticalScrollBar();
        bar->triggerAction(QAbstractSlider::SliderPageStepSub);
        QCOMPARE(lista_->firstRow(), std::uint64_t{80});
        const auto cell = [this](std::uint64_t row) { return lista_->cellRect({row, 4}).center(); };
        drag(lista_->viewport(), {cell(82), cell(84)});
        QCOMPARE(*lista_->current(), (TraceView::Cell{84, 4}));
        QCOMPARE(lista_->selectedRows(), std::uint64_t{3});
        const QPoint above(cell(82).x(), -30);
        drag(lista_->viewport(), {cell(82), above, above + QPoint(1, 0)});
        QCOMPARE(lista_->firstRow(), std::uint64_t{78});  // a row for each move
        const QPoint below(cell(82).x(), lista_->viewport()->height() + 30);
        drag(lista_->viewport(), {cell(82), below, below + QPoint(1, 0)});
        QCOMPARE(lista_->firstRow(), std::uint64_t{80});
        QCOMPARE(*lista_->current(), (TraceView::Cell{89, 4}));
        QCOMPARE(lista_->selectedRows(), std::uint64_t{8});
    }

    void aTextTooLongForItsColumnIsCutShort() {
        QVERIFY(showActive(window_.get()));
        record(3);
        constexpr int columnC = 5;
        traced_->type(2, "a text that the user types");
        record(1);
        QVERIFY(lista_->cells(4)[columnC].size() > 2);
        const auto picture = [this](std::uint64_t row, int column) {
            return lista_->viewport()->grab(lista_->cellRect({row, column})).toImage();
        };
        QVERIFY(picture(4, columnC) != picture(0, columnC));
        QCOMPARE(picture(4, columnC + 1), picture(0, columnC + 1));  // both are "00"
    }

    void copiesTheSelectedRowsAsText() {
        QVERIFY(showActive(window_.get()));
        record(29);
        clickCell(21, 0);
        press(Qt::Key_Down, Qt::ShiftModifier);
        press(Qt::Key_C, Qt::ControlModifier);
        QCOMPARE(QApplication::clipboard()->text(), naiveLine(21) + "\n" + naiveLine(22) + "\n");
        press(Qt::Key_A, Qt::ControlModifier);
        QCOMPARE(lista_->selectedRows(), std::uint64_t{30});
    }

    void withoutASelectionNothingIsCopied() {
        QVERIFY(showActive(window_.get()));
        QApplication::clipboard()->setText("before");
        press(Qt::Key_A, Qt::ControlModifier);  // of no rows
        record(9);
        press(Qt::Key_C, Qt::ControlModifier);
        QCOMPARE(QApplication::clipboard()->text(), QString("before"));
    }

    void theMenuIsAboutTheSelectionItIsOpenedOn() {
        QVERIFY(showActive(window_.get()));
        record(29);
        clickCell(21, 0);
        clickCell(23, 0, Qt::ShiftModifier);
        chooseAt(22, "Copiar");
        QCOMPARE(QApplication::clipboard()->text(),
                 naiveLine(21) + "\n" + naiveLine(22) + "\n" + naiveLine(23) + "\n");
        chooseAt(25, "Copiar");
        QCOMPARE(QApplication::clipboard()->text(), naiveLine(25) + "\n");
        chooseAt(25, "Seleccionar todo");
        QCOMPARE(lista_->selectedRows(), std::uint64_t{30});
    }

    void refusesToCopyMoreThanTheComputerHolds() {
        traced_->recordOnlyCompact();
        QVERIFY(showActive(window_.get()));
        record(static_cast<int>(TraceView::mostRowsToCopy));
        QApplication::clipboard()->setText("before");
        DialogAnswerer dialogs;
        dialogs.expectMessage("Demasiadas filas para copiarlas. Puede salvar el listado.");
        press(Qt::Key_A, Qt::ControlModifier);
        press(Qt::Key_C, Qt::ControlModifier);
        QTRY_VERIFY(dialogs.allCame());
        QCOMPARE(QApplication::clipboard()->text(), QString("before"));
    }

    void copiesNothingWithoutMemory() {
        QVERIFY(showActive(window_.get()));
        record(9);
        QApplication::clipboard()->setText("before");
        DialogAnswerer dialogs;
        dialogs.expectMessage("Memoria insuficiente");
        press(Qt::Key_A, Qt::ControlModifier);
        const test::MemoryLimit limit;
        press(Qt::Key_C, Qt::ControlModifier);
        QTRY_VERIFY(dialogs.allCame());
        QCOMPARE(QApplication::clipboard()->text(), QString("before"));
    }

    void theWheelAndTheBarScroll() {
        QVERIFY(showActive(window_.get()));
        record(99);
        QScrollBar* bar = lista_->verticalScrollBar();
        QCOMPARE(bar->maximum(), 90);
        QCOMPARE(bar->value(), 90);
        turnWheel(lista_->viewport(), 1);
        const auto notch = static_cast<std::uint64_t>(QApplication::wheelScrollLines());
        QCOMPARE(lista_->firstRow(), 90 - notch);
        QCOMPARE(bar->value(), static_cast<int>(90 - notch));
        bar->triggerAction(QAbstractSlider::SliderPageStepSub);
        QCOMPARE(lista_->firstRow(), 80 - notch);
        bar->triggerAction(QAbstractSlider::SliderSingleStepAdd);
        QCOMPARE(lista_->firstRow(), 81 - notch);
        bar->triggerAction(QAbstractSlider::SliderPageStepAdd);
        QCOMPARE(lista_->firstRow(), 91 - notch);
        bar->triggerAction(QAbstractSlider::SliderSingleStepSub);
        QCOMPARE(lista_->firstRow(), 90 - notch);
        bar->triggerAction(QAbstractSlider::SliderToMinimum);
        QCOMPARE(lista_->firstRow(), std::uint64_t{0});
        bar->setValue(45);  // as an assistive tool does
        QCOMPARE(lista_->firstRow(), std::uint64_t{45});
    }

    void theWheelScrollsTheColumnsOfANarrowWindow() {
        QVERIFY(showActive(window_.get()));
        record(99);
        window_->resize(window_->minimumSizeHint());
        const QScrollBar* bar = lista_->horizontalScrollBar();
        QTRY_VERIFY(bar->isVisible());
        const std::uint64_t first = lista_->firstRow();
        const int second = lista_->cellRect({first, 1}).left();
        turnWheel(lista_->viewport(), -1, Qt::Horizontal);
        QVERIFY(bar->value() > 0);
        QCOMPARE(lista_->cellRect({first, 1}).left(), second - bar->value());
        QCOMPARE(lista_->firstRow(), first);
    }

    void clearsWithoutAQuestion() {
        QVERIFY(showActive(window_.get()));
        record(29);
        clickCell(25, 0);
        const DialogAnswerer dialogs;
        clickMenu("borrar");
        QCOMPARE(lista_->rowCount(), std::uint64_t{0});
        QVERIFY(!lista_->current());
        press(Qt::Key_Down);
        QVERIFY(window_->isVisible());
        record(1);
        QCOMPARE(lista_->rowCount(), std::uint64_t{2});
        QCOMPARE(lista_->cells(0)[0], std::string());
    }

    void toolsPressNothingBehindAModalWindow() {
        QVERIFY(showActive(window_.get()));
        record(3);
        QDialog question;
        question.setModal(true);
        question.show();
        window_->findChild<QAction*>("borrar")->trigger();
        QCOMPARE(lista_->rowCount(), std::uint64_t{4});
        question.hide();
        window_->findChild<QAction*>("borrar")->trigger();
        QCOMPARE(lista_->rowCount(), std::uint64_t{0});
    }

    void closesAnEmptyListWithoutAQuestion() {
        QVERIFY(showActive(window_.get()));
        const DialogAnswerer dialogs;
        clickMenu("cerrar");
        QVERIFY(!window_->isVisible());
    }

    void asksBeforeClosingRows_data() {
        QTest::addColumn<QMessageBox::StandardButton>("answer");
        QTest::newRow("no") << QMessageBox::No;
        QTest::newRow("escape") << QMessageBox::NoButton;
        QTest::newRow("yes") << QMessageBox::Yes;
    }
    void asksBeforeClosingRows() {
        QFETCH(QMessageBox::StandardButton, answer);
        const bool closes = answer == QMessageBox::Yes;
        QVERIFY(showActive(window_.get()));
        record(5);
        for (const bool byMenu : {true, false}) {
            if (!window_->isVisible()) break;
            DialogAnswerer dialogs;
            dialogs.expectQuestion(closeQuestion, yesNo, answer);
            if (byMenu) {
                clickMenu("cerrar");
            } else {
                window_->close();
            }
            QVERIFY(dialogs.allCame());
            QCOMPARE(window_->isVisible(), !closes);
            QCOMPARE(lista_->rowCount(), std::uint64_t{closes ? 0U : 6U});
        }
        if (!closes) return;
        record(1);
        QVERIFY(!window_->isVisible());
        QCOMPARE(lista_->rowCount(), std::uint64_t{2});  // a fresh list, with its state row
    }

    void closedAndOpenedAgainNothingIsSelected() {
        QVERIFY(showActive(window_.get()));
        record(29);
        clickCell(25, 3);
        DialogAnswerer dialogs;
        dialogs.expectQuestion(closeQuestion, yesNo, QMessageBox::Yes);
        clickMenu("cerrar");
        record(40);
        window_->open();
        QVERIFY(!lista_->current());
        QCOMPARE(lista_->selectedRows(), std::uint64_t{0});
        QCOMPARE(lista_->rowCount(), std::uint64_t{41});
    }

    void hiddenItKeepsItsRows() {
        QVERIFY(showActive(window_.get()));
        record(5);
        window_->hide();
        record(20);
        window_->open();
        QCOMPARE(lista_->rowCount(), std::uint64_t{26});
        QCOMPARE(lista_->firstRow(), std::uint64_t{16});
    }
};

QTEST_MAIN(ListapasosTest)
#include "ListapasosTest.moc"
