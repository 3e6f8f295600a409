#include "ui/trace/Listapasos.h"

#include <QAccessible>
#include <QApplication>
#include <QClipboard>
#include <QMenuBar>
#include <QProgressDialog>
#include <QPushButton>
#include <QScrollBar>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <QWheelEvent>
#include <memory>

#include "tests/support/DialogAnswerer.h"
#include "tests/support/RealInput.h"
#include "tests/ui/trace/NaiveTrace.h"
#include "tests/ui/trace/TracedMachine.h"
#include "ui/trace/TraceView.h"

using namespace tavinor;

namespace {

const QString overwriteQuestion = QStringLiteral("El fichero %1 ya existe\n¿Desea sobreescribirlo?");
const QString closeQuestion = QStringLiteral("Todo el listado se perderá.\n¿Desea cerrar de todas formas?");
constexpr auto yesNo = QMessageBox::Yes | QMessageBox::No;

const ExpectedFileDialog saveDialog{
    "Salvar fichero .TXT", {"Fichero de texto (*.txt)", "Todos los ficheros (*.*)"}, "*.txt", true};

const QString headerLine =
    QStringLiteral("DIR \tDAT      \tINS         \tA \tB \tC \tD \tE \tF \tszapc\tH \tL \tM \tPC  \tSP  ");

QByteArray contents(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("no such file");
}

}  // namespace

class ListapasosTest : public QObject {
    Q_OBJECT

  private:
    std::unique_ptr<Listapasos> window_;
    std::unique_ptr<NaiveTrace> naive_;
    std::unique_ptr<TracedMachine> traced_;
    TraceView* lista_ = nullptr;
    QTemporaryDir folder_;

    void record(int steps) {
        traced_->steps(steps);
        window_->bringUpToDate();
    }
    void clickMenu(const QString& name) {
        auto* action = window_->findChild<QAction*>(name);
        QVERIFY(action != nullptr);
        clickAt(window_->menuBar(), window_->menuBar()->actionGeometry(action).center());
    }
    void press(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
        pressKey(lista_, key, modifiers);
    }
    void clickCell(std::uint64_t row, int column, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
        clickAt(lista_->viewport(), lista_->cellRect({row, column}).center(), Qt::LeftButton, modifiers);
    }
    [[nodiscard]] QString naiveLine(std::size_t row) const {
        return QString::fromStdString(naive_->line(row));
    }
    [[nodiscard]] QByteArray expectedFile(std::size_t rows) const {
        std::string text = headerLine.toStdString() + "\r\n";
        for (std::size_t row = 0; row < rows; ++row) text += naive_->line(row) + "\r\n";
        return QByteArray::fromStdString(text);
    }
    [[nodiscard]] QAccessibleTableInterface* table() const {
        return QAccessible::queryAccessibleInterface(lista_)->tableInterface();
    }

  private slots:
    void init() {
        window_ = std::make_unique<Listapasos>();
        naive_ = std::make_unique<NaiveTrace>();
        traced_ = std::make_unique<TracedMachine>(window_->recorder(), naive_.get());
        traced_->load({0x01, 0xFF, 0xFF, 0x0B, 0x78, 0xB1, 0xC2, 0x03, 0x00, 0xC3, 0x00, 0x00});
        lista_ = window_->findChild<TraceView*>("lista");
        QVERIFY(lista_ != nullptr);
    }
    void cleanup() { window_.reset(); }

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

    void theWheelAndTheBarScroll() {
        QVERIFY(showActive(window_.get()));
        record(99);
        QScrollBar* bar = lista_->verticalScrollBar();
        QCOMPARE(bar->maximum(), 90);
        QCOMPARE(bar->value(), 90);
        const QPoint middle = lista_->viewport()->rect().center();
        QWheelEvent up(middle, lista_->viewport()->mapToGlobal(middle), {}, {0, 120}, Qt::NoButton,
                       Qt::NoModifier, Qt::NoScrollPhase, false);
        QApplication::sendEvent(lista_->viewport(), &up);
        const auto notch = static_cast<std::uint64_t>(QApplication::wheelScrollLines());
        QCOMPARE(lista_->firstRow(), 90 - notch);
        QCOMPARE(bar->value(), static_cast<int>(90 - notch));
        bar->triggerAction(QAbstractSlider::SliderPageStepSub);
        QCOMPARE(lista_->firstRow(), 80 - notch);
        bar->triggerAction(QAbstractSlider::SliderSingleStepAdd);
        QCOMPARE(lista_->firstRow(), 81 - notch);
        bar->triggerAction(QAbstractSlider::SliderToMinimum);
        QCOMPARE(lista_->firstRow(), std::uint64_t{0});
        bar->setValue(45);  // as an assistive tool does
        QCOMPARE(lista_->firstRow(), std::uint64_t{45});
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
        naive_->clear();
        record(1);
        QCOMPARE(lista_->rowCount(), std::uint64_t{2});
        QCOMPARE(lista_->cells(0)[0], std::string());
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

    void hiddenItKeepsItsRows() {
        QVERIFY(showActive(window_.get()));
        record(5);
        window_->hide();
        record(20);
        window_->open();
        QCOMPARE(lista_->rowCount(), std::uint64_t{26});
        QCOMPARE(lista_->firstRow(), std::uint64_t{16});
    }

    void savesNothingOfAnEmptyList() {
        QVERIFY(showActive(window_.get()));
        const DialogAnswerer dialogs;
        clickMenu("salvar");
        QCOMPARE(dialogs.count(), 0);
    }

    void cancelledItSavesNothing() {
        QVERIFY(showActive(window_.get()));
        record(1);
        DialogAnswerer dialogs;
        dialogs.expectFileDialog(saveDialog, {});
        clickMenu("salvar");
        QCOMPARE(dialogs.count(), 1);
    }

    void savesToTheByte() {
        QVERIFY(showActive(window_.get()));
        record(1);
        const QString path = folder_.filePath("dos.txt");
        DialogAnswerer dialogs;
        dialogs.expectFileDialog(saveDialog, path);
        pressKey(lista_, Qt::Key_S, Qt::AltModifier);
        QVERIFY(dialogs.allCame());
        QCOMPARE(contents(path),
                 QByteArray("DIR \tDAT      \tINS         \tA \tB \tC \tD \tE \tF \tszapc\tH \tL \tM \tPC  "
                            "\tSP  \r\n"
                            "\t\t\t00\t00\t00\t00\t00\t00\t00000\t00\t00\t01\t0000\t0000\r\n"
                            "0000\t01 FF FF \tLXI B,FFFF\t00\tFF\tFF\t00\t00\t00\t00000\t00\t00\t01\t0003"
                            "\t0000\r\n"));
    }

    void savesEveryRow_data() {
        QTest::addColumn<int>("patience");
        QTest::newRow("at once") << 100'000;
        QTest::newRow("with its progress shown") << 0;
    }
    void savesEveryRow() {
        QFETCH(int, patience);
        window_->setPatience(std::chrono::milliseconds(patience));
        QVERIFY(showActive(window_.get()));
        for (int i = 0; i < 10; ++i) {
            record(14'000);
            traced_->machine().D = static_cast<std::uint8_t>(i + 1);
            traced_->machine().recomputePairs();
            traced_->refresh();
            traced_->type(0, "1x");
        }
        const QString path = folder_.filePath("todo.txt");
        DialogAnswerer dialogs;
        dialogs.expectFileDialog(saveDialog, path);
        if (patience == 0) dialogs.expectWindow("progreso", [](QWidget*) {});
        if (QFile::exists(path)) QVERIFY(QFile::remove(path));
        clickMenu("salvar");
        QVERIFY(dialogs.allCame());
        QCOMPARE(contents(path), expectedFile(naive_->rows().size()));
    }

    void cancelsALongSave() {
        window_->setPatience(std::chrono::milliseconds(0));
        traced_->recordOnlyCompact();
        QVERIFY(showActive(window_.get()));
        record(3'000'000);
        const QString path = folder_.filePath("parte.txt");
        DialogAnswerer dialogs;
        dialogs.expectFileDialog(saveDialog, path);
        dialogs.expectWindow("progreso", [](QWidget* dialog) {
            QVERIFY(dialog->isModal());
            QCOMPARE(dialog->windowTitle(), QString("Tavinor"));
            QCOMPARE(qobject_cast<QProgressDialog*>(dialog)->labelText(), QString("Guardando el listado..."));
            auto* cancel = dialog->findChild<QPushButton*>();
            QCOMPARE(cancel->text(), QString("Cancelar"));
            clickIn(cancel);
        });
        clickMenu("salvar");
        QCOMPARE(dialogs.count(), 2);  // and no error
        const QByteArray written = contents(path);
        QVERIFY(written.startsWith(headerLine.toLatin1()));
        QVERIFY(written.size() < 100'000'000);
        QCOMPARE(lista_->rowCount(), std::uint64_t{3'000'001});
    }

    void asksBeforeOverwriting() {
        QVERIFY(showActive(window_.get()));
        record(1);
        const QString path = folder_.filePath("viejo <b>.txt");
        QFile old(path);
        QVERIFY(old.open(QIODevice::WriteOnly));
        old.write("viejo");
        old.close();
        for (const auto answer : {QMessageBox::No, QMessageBox::NoButton, QMessageBox::Yes}) {
            QCOMPARE(contents(path), QByteArray("viejo"));
            DialogAnswerer dialogs;
            dialogs.expectFileDialog(saveDialog, path);
            dialogs.expectQuestion(overwriteQuestion.arg(path), yesNo, answer);
            clickMenu("salvar");
        }
        QCOMPARE(contents(path), expectedFile(2));
    }

    void reportsAFullDisk_data() {
        QTest::addColumn<int>("patience");
        QTest::newRow("at once") << 100'000;
        QTest::newRow("with its progress shown") << 0;
    }
    void reportsAFullDisk() {
        if (!QFile::exists("/dev/full")) QSKIP("this system has no full disk to offer");
        QFETCH(int, patience);
        window_->setPatience(std::chrono::milliseconds(patience));
        QVERIFY(showActive(window_.get()));
        record(100);
        DialogAnswerer dialogs;
        dialogs.expectFileDialog(saveDialog, "/dev/full");
        dialogs.expectQuestion(overwriteQuestion.arg("/dev/full"), yesNo, QMessageBox::Yes);
        dialogs.expectMessage("Error guardando fichero");
        clickMenu("salvar");
        QVERIFY(dialogs.allCame());
        QCOMPARE(lista_->rowCount(), std::uint64_t{101});
    }

    void reportsAFileThatCannotBeCreated() {
        QVERIFY(showActive(window_.get()));
        record(1);
        const QString path = folder_.filePath("no/hay.txt");
        DialogAnswerer dialogs;
        dialogs.expectFileDialog(saveDialog, path);
        dialogs.expectMessage("Error guardando fichero");
        clickMenu("salvar");
    }

    void assistiveToolsReadTheRowsAround() {
        QVERIFY(showActive(window_.get()));
        record(99);
        QAccessibleInterface* view = QAccessible::queryAccessibleInterface(lista_);
        QCOMPARE(view->role(), QAccessible::Table);
        QVERIFY(table() != nullptr);
        QCOMPARE(table()->columnCount(), 15);
        QCOMPARE(table()->columnDescription(9), QString("szapc"));
        QCOMPARE(table()->rowCount(), 20);  // one screen before, the visible one, and there it ends
        QCOMPARE(table()->rowDescription(0), QString("81"));
        for (const int row : {0, 10, 19}) {
            for (int column = 0; column < 15; ++column) {
                QAccessibleInterface* cell = table()->cellAt(row, column);
                QVERIFY(cell != nullptr && cell->isValid());
                const auto& expected = naive_->rows()[static_cast<std::size_t>(80 + row)];
                QCOMPARE(cell->text(QAccessible::Name),
                         QString::fromStdString(expected[static_cast<std::size_t>(column)]).trimmed());
                QCOMPARE(cell->tableCellInterface()->rowIndex(), row);
                QCOMPARE(cell->tableCellInterface()->columnIndex(), column);
                QCOMPARE(cell->tableCellInterface()->columnHeaderCells().first()->text(QAccessible::Name),
                         table()->columnDescription(column));
                QCOMPARE(view->indexOfChild(cell), 15 * (row + 1) + column);
                QCOMPARE(static_cast<bool>(cell->state().offscreen), row < 10);
            }
        }
        QCOMPARE(view->childCount(), 15 * 21);
        QVERIFY(view->child(15 * 21) == nullptr);
    }

    void assistiveToolsFollowTheKeyboard() {
        QVERIFY(showActive(window_.get()));
        record(99);
        clickCell(95, 2);
        QAccessibleInterface* view = QAccessible::queryAccessibleInterface(lista_);
        QAccessibleInterface* focused = view->focusChild();
        QVERIFY(focused != nullptr);
        QCOMPARE(focused->text(QAccessible::Name), QString::fromStdString(naive_->rows()[95][2]));
        QVERIFY(focused->state().focused && focused->state().selected);
        QCOMPARE(table()->selectedRows(), QList<int>{15});
        const QPoint middle = focused->rect().center();
        QCOMPARE(view->childAt(middle.x(), middle.y()), focused);
        QVERIFY(table()->selectRow(3));
        QCOMPARE(lista_->current()->row, std::uint64_t{83});
    }
};

QTEST_MAIN(ListapasosTest)
#include "ListapasosTest.moc"
