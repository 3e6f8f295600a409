#include <QGroupBox>
#include <QLabel>
#include <QPaintEvent>
#include <QScrollBar>
#include <QTest>

#include "tests/support/RealInput.h"
#include "tests/ui/main/Simulator.h"
#include "tests/ui/main/ViewsCheck.h"

using namespace tavinor;

namespace {

/// Notes what of a widget is painted.
class PaintedRegion : public QObject {
  public:
    explicit PaintedRegion(QWidget* widget) { widget->installEventFilter(this); }
    QRegion region;

  protected:
    bool eventFilter(QObject* /*watched*/, QEvent* event) override {
        if (event->type() == QEvent::Paint) region += static_cast<const QPaintEvent*>(event)->region();
        return false;
    }
};

}  // namespace

/// The memory and the port grid with their address and data boxes.
class BytePanelsTest : public QObject {
    Q_OBJECT

  private:
    std::unique_ptr<Simulator> s_;

    [[nodiscard]] QString difference() const { return ViewsCheck(*s_).difference(); }
    [[nodiscard]] int firstVisibleRow(const QString& grid) const { return s_->grid(grid)->rowAt(0); }

    void checkHeaders(const QString& name, int rowCount, int digits) const {
        const QAbstractItemModel* model = s_->grid(name)->model();
        QCOMPARE(model->rowCount(), rowCount);
        QCOMPARE(model->columnCount(), 16);
        for (int column = 0; column < 16; ++column) {
            QCOMPARE(model->headerData(column, Qt::Horizontal).toString(), " " + hexDigits(column, 1));
            const int alignment = model->headerData(column, Qt::Horizontal, Qt::TextAlignmentRole).toInt();
            QVERIFY((alignment & Qt::AlignRight) != 0);
        }
        for (int row = 0; row < rowCount; ++row) {
            QCOMPARE(model->headerData(row, Qt::Vertical).toString(), hexDigits(16 * row, digits));
        }
        QVERIFY((model->index(0, 0).data(Qt::TextAlignmentRole).toInt() & Qt::AlignRight) != 0);
    }

  private slots:
    void init() { s_ = std::make_unique<Simulator>(); }
    void cleanup() { s_.reset(); }

    void headers() {
        checkHeaders("grdmem", 4096, 4);
        checkHeaders("grdport", 16, 2);
        QVERIFY(!s_->grid("grdmem")->isCornerButtonEnabled());
    }

    void captions() {
        QStringList titles;
        for (const QString& name : {QString("grdmem"), QString("grdport")}) {
            const auto* group = qobject_cast<QGroupBox*>(s_->grid(name)->parentWidget());
            QVERIFY(group != nullptr);
            titles.append(group->title());
            QStringList labels;
            for (const QLabel* label : group->findChildren<QLabel*>()) labels.append(label->text());
            QCOMPARE(labels, QStringList({"Dirección:", "Dato:"}));
        }
        QCOMPARE(titles, QStringList({"Memoria", "Puertos de E/S"}));
    }

    void theyTellWhereTheKeyboardIs() {
        for (const QString& name : {QString("grdmem"), QString("grdport")}) {
            const QTableView* grid = s_->grid(name);
            const QRect cell = grid->visualRect(grid->currentIndex());
            const QRect told = grid->inputMethodQuery(Qt::ImCursorRectangle).toRect();
            QCOMPARE(told, QRect(grid->viewport()->mapTo(grid, cell.topLeft()), cell.size()));
        }
    }

    void startsAtZero() {
        QCOMPARE(difference(), QString());
        for (const char* box : {"txtDirMem", "txtDirPort", "txtDatMem", "txtDatPort"}) {
            QCOMPARE(s_->box(box)->value(), 0);
        }
        QCOMPARE(s_->currentAddress("grdmem"), 0);
        QCOMPARE(s_->currentAddress("grdport"), 0);
    }

    void aClickSelectsAMemoryCell() {
        s_->load(0xABC0, QByteArray::fromHex("00000000007E"));
        s_->clickCell("grdmem", 0xABC5);
        QCOMPARE(s_->text("txtDirMem"), "ABC5");
        QCOMPARE(s_->text("txtDatMem"), "7E");
        QCOMPARE(s_->currentAddress("grdmem"), 0xABC5);
    }

    void aClickSelectsAPortCell() {
        s_->enter("txtDirPort", "2a");
        s_->enter("txtDatPort", "99");
        s_->clickCell("grdport", 0);
        s_->clickCell("grdport", 0x2A);
        QCOMPARE(s_->grid("grdport")->currentIndex().row(), 2);
        QCOMPARE(s_->grid("grdport")->currentIndex().column(), 10);
        QCOMPARE(s_->text("txtDirPort"), "2A");
        QCOMPARE(s_->text("txtDatPort"), "99");
    }

    void aClickOnTheCurrentCellSelectsItAgain() {
        s_->enter("txtDirMem", "0010");  // the cell becomes current, the data box keeps its text
        s_->enter("txtDatMem", "12");
        s_->enter("txtDirMem", "0020");
        QCOMPARE(s_->text("txtDatMem"), "12");
        s_->clickCell("grdmem", 0x0020);
        QCOMPARE(s_->text("txtDatMem"), "00");
    }

    void arrowsSelect() {
        s_->load(0, QByteArray::fromHex("0011223344556677"));
        s_->clickCell("grdmem", 0);
        pressKey(&s_->window, Qt::Key_Right);
        pressKey(&s_->window, Qt::Key_Right);
        QCOMPARE(s_->text("txtDirMem"), "0002");
        QCOMPARE(s_->text("txtDatMem"), "22");
        pressKey(&s_->window, Qt::Key_Down);
        QCOMPARE(s_->text("txtDirMem"), "0012");
        QCOMPARE(s_->text("txtDatMem"), "00");
        pressKey(&s_->window, Qt::Key_End, Qt::ControlModifier);
        QCOMPARE(s_->text("txtDirMem"), "FFFF");
        s_->clickCell("grdport", 0);
        pressKey(&s_->window, Qt::Key_Down);
        QCOMPARE(s_->text("txtDirPort"), "10");
    }

    /// The program changes a cell in view and one far below.
    void onlyWhatChangedIsPainted() {
        s_->load(0, QByteArray::fromHex("3E01320010322500"));  // MVI A,1; STA 1000; STA 0025
        const QTableView* grid = s_->grid("grdmem");
        const QRect rowOf0025(0, grid->rowViewportPosition(2), grid->viewport()->width(), grid->rowHeight(2));
        PaintedRegion painted(grid->viewport());
        QTest::qWait(100);  // whatever was still to be painted
        for (const QRect& expected : {QRect(), QRect(), rowOf0025}) {
            painted.region = {};
            s_->press("Eje_paso");
            QTest::qWait(100);
            QCOMPARE(painted.region.boundingRect(), expected);
        }
    }

    void tabGoesOn() {
        s_->clickCell("grdmem", 0x0010);
        pressKey(&s_->window, Qt::Key_Tab);
        QVERIFY(!s_->grid("grdmem")->hasFocus());
        QCOMPARE(s_->currentAddress("grdmem"), 0x0010);
    }

    void theAddressBoxMovesTheCurrentCell() {
        s_->enter("txtDatMem", "00");
        s_->enter("txtDirMem", "1234");
        QCOMPARE(s_->currentAddress("grdmem"), 0x1234);
        QCOMPARE(firstVisibleRow("grdmem"), 0x122);
        s_->enter("txtDirMem", "0005");
        QCOMPARE(s_->currentAddress("grdmem"), 5);
        QCOMPARE(firstVisibleRow("grdmem"), 0);
        s_->enter("txtDirMem", "0015");
        QCOMPARE(firstVisibleRow("grdmem"), 0);
        s_->enter("txtDirMem", "ffff");
        QCOMPARE(s_->currentAddress("grdmem"), 0xFFFF);
        QVERIFY(s_->grid("grdmem")->rowAt(s_->grid("grdmem")->viewport()->height() - 1) == 0xFFF ||
                s_->grid("grdmem")->visualRect(s_->grid("grdmem")->currentIndex()).isValid());
        s_->enter("txtDirPort", "f1");
        QCOMPARE(s_->currentAddress("grdport"), 0xF1);
    }

    /// The data box keeps its text until a cell is selected.
    void theAddressBoxLeavesTheDataBoxAlone() {
        s_->load(0x2000, QByteArray::fromHex("55"));
        s_->enter("txtDirMem", "2000");
        QCOMPARE(s_->text("txtDatMem"), "00");
        s_->enter("txtDirPort", "20");
        QCOMPARE(s_->text("txtDatPort"), "00");
    }

    void theDataBoxWritesMemoryAndRefreshes() {
        s_->enter("txtHL", "0010");
        s_->enter("txtSP", "0010");
        s_->enter("txtDirMem", "0010");
        const int row = firstVisibleRow("grdmem");
        s_->enter("txtDatMem", "7f");
        QCOMPARE(int(s_->machine().mem[0x10]), 0x7F);
        QCOMPARE(s_->cell("grdmem", 0x10), "7F");
        QCOMPARE(s_->text("txtM"), "7F");
        QCOMPARE(s_->stackLines().first(), "007F");
        QVERIFY(s_->rows().contains("0010 7F        MOV A,A"));
        QCOMPARE(s_->text("txtDatMem"), "7F");
        QCOMPARE(firstVisibleRow("grdmem"), row);
        QCOMPARE(difference(), QString());
    }

    void theDataBoxTakesTheCurrentCellButDoesNotScroll() {
        s_->enter("txtDirMem", "3000");
        s_->grid("grdmem")->verticalScrollBar()->setValue(0x10);
        s_->clickCell("grdmem", 0x0150);
        s_->box("txtDirMem")->showText("3000");
        const int row = firstVisibleRow("grdmem");
        s_->enter("txtDatMem", "12");
        QCOMPARE(s_->currentAddress("grdmem"), 0x3000);
        QCOMPARE(firstVisibleRow("grdmem"), row);
        s_->clickCell("grdport", 0x42);
        s_->box("txtDirPort")->showText("1F");
        s_->enter("txtDatPort", "12");
        QCOMPARE(s_->currentAddress("grdport"), 0x1F);
    }

    void anUntouchedDataBoxWritesToo() {
        s_->load(0x4000, QByteArray::fromHex("AB"));
        clickIn(s_->box("txtDirMem"));
        typeText(s_->box("txtDirMem"), "4000");
        pressKey(&s_->window, Qt::Key_Tab);
        QVERIFY(s_->box("txtDatMem")->hasFocus());
        s_->leaveBox();
        QCOMPARE(int(s_->machine().mem[0x4000]), 0);
        QCOMPARE(difference(), QString());
    }

    void aPortByteRefreshesNothing() {
        s_->enter("txtDIR", "5000");  // the listing is elsewhere
        const QStringList rows = s_->rows();
        s_->enter("txtDirPort", "1f");
        s_->enter("txtDatPort", "c3");
        QCOMPARE(int(s_->machine().port[0x1F]), 0xC3);
        QCOMPARE(s_->cell("grdport", 0x1F), "C3");
        QCOMPARE(s_->currentAddress("grdport"), 0x1F);
        QCOMPARE(s_->rows(), rows);
        s_->enter("txtDatMem", "00");  // a memory byte does: the listing is back at PC
        QCOMPARE(difference(), QString());
    }

    void refusals() {
        for (const auto& [box, text] : {std::pair{"txtDirMem", "12345"},
                                        {"txtDatMem", "123"},
                                        {"txtDirPort", "100"},
                                        {"txtDatPort", "0x"}}) {
            s_->type(box, text);
            s_->dialogs.expectMessage("Valor incorrecto");
            s_->clickCell("grdport", 0x33);
            QTRY_VERIFY(s_->box(box)->hasFocus());
            QCOMPARE(s_->currentAddress("grdport"), 0);
            s_->enter(box, "0");
        }
        QCOMPARE(difference(), QString());
    }

    void theProgramsWritesMoveNoCell() {
        s_->load(0, QByteArray::fromHex("3E5A"
                                        "320090"
                                        "D377"));  // MVI A,5A; STA 9000; OUT 77
        s_->clickCell("grdmem", 0x0042);
        s_->clickCell("grdport", 0x03);
        for (int i = 0; i < 3; ++i) s_->press("Eje_paso");
        QCOMPARE(s_->cell("grdmem", 0x9000), "5A");
        QCOMPARE(s_->cell("grdport", 0x77), "5A");
        QCOMPARE(s_->currentAddress("grdmem"), 0x0042);
        QCOMPARE(s_->currentAddress("grdport"), 0x03);
        QCOMPARE(s_->text("txtDirMem"), "0042");
        QCOMPARE(difference(), QString());
    }
};

QTEST_MAIN(BytePanelsTest)
#include "BytePanelsTest.moc"
