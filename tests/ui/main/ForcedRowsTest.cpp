// What decides rarely whether the trace gets a state row, done by hand in the main window: its rows beside
// those that the boxes tell.

#include <QAction>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <limits>

#include "tests/support/RealInput.h"
#include "tests/ui/main/BoxTrace.h"
#include "tests/ui/main/Simulator.h"

using namespace tavinor;

class ForcedRowsTest : public QObject {
    Q_OBJECT

  private:
    std::unique_ptr<Simulator> s_;
    std::unique_ptr<BoxTrace> boxTrace_;
    Listapasos* trace_ = nullptr;
    QTemporaryDir folder_;

    void step() const { s_->press("Eje_paso"); }
    void clear() const { trace_->findChild<QAction*>("borrar")->trigger(); }
    /// A byte at HL, which the box M does not show yet.
    void enterAtHL(const QString& byte) const {
        s_->enter("txtDIR", s_->text("txtHL"));
        s_->enter("INSCO", byte);
        QVERIFY(s_->text("txtM") != byte);
    }
    void expectRows(std::uint64_t count) const {
        boxTrace_->somethingElseComes();
        QCOMPARE(boxTrace_->difference(std::numeric_limits<std::uint64_t>::max()), QString());
        QCOMPARE(s_->window.trace().size(), count);
    }
    void expectHalt(const char* wayOut, const std::function<void()>& before) const {
        s_->dialogs.expectWindow("Halt", [this, wayOut, before](QWidget* dialog) {
            boxTrace_->windowShown(dialog);
            before();
            clickIn(dialog->findChild<QAbstractButton*>(wayOut));
            clickIn(dialog->findChild<QWidget*>("aceptar"));
        });
    }

  private slots:
    /// INR A; JMP 0000, with HL at 2000.
    void init() {
        s_ = std::make_unique<Simulator>(std::make_unique<EachInstruction>(boxTrace_));
        for (QWidget* window : QApplication::topLevelWidgets()) {
            if (auto* found = qobject_cast<Listapasos*>(window)) trace_ = found;
        }
        boxTrace_ = std::make_unique<BoxTrace>(s_->window, *trace_);
        s_->load(0, QByteArray::fromHex("3CC30000"));
        s_->enter("txtHL", "2000");
        clear();
        step();
        expectRows(2);
    }
    void cleanup() {
        boxTrace_.reset();
        s_.reset();
    }

    /// The entry row refreshes nothing: M is seen with the next instruction, or with a refresh before it.
    void anEntryRowAtHL() {
        enterAtHL("5A");
        step();
        expectRows(3);
        enterAtHL("5B");
        s_->enter("txtDirMem", "3000");
        s_->enter("txtDatMem", "77");
        QCOMPARE(s_->text("txtM"), "5B");
        step();
        expectRows(5);
        enterAtHL("5C");
        s_->enter("txtHL", "2000");  // shows M, and refreshes nothing else
        step();
        expectRows(7);
    }

    /// Each box is left again, "Dato:" by writing what it has: that is no change, but it refreshes M.
    void tabbingThroughTheBoxes() {
        constexpr int allOfThem = 80;
        enterAtHL("5A");
        clickIn(s_->box("txtDirMem"));
        for (int press = 0; press < allOfThem; ++press) pressKey(&s_->window, Qt::Key_Tab);
        QCOMPARE(s_->text("txtM"), "5A");
        step();
        expectRows(4);
        clickIn(s_->box("txtDirMem"));
        for (int press = 0; press < allOfThem; ++press) pressKey(&s_->window, Qt::Key_Tab);
        step();
        expectRows(5);
        for (const std::uint64_t rows : {4U, 3U, 2U}) {  // the instruction, the one before it, the entry
            pressKey(&s_->window, Qt::Key_F7);
            expectRows(rows);
        }
        QCOMPARE(s_->text("txtM"), "00");
        QCOMPARE(s_->text("txtA"), "01");
    }

    /// The views are refreshed when its window has closed.
    void assembling() {
        QFile source(folder_.filePath("prueba.asm"));
        QVERIFY(source.open(QIODevice::WriteOnly));
        source.write(" nop\n");
        source.close();
        enterAtHL("5A");
        s_->dialogs.expectFileDialog({.title = "Ensamblar fichero .ASM",
                                      .filters = {"Fichero ensamblador (*.asm)", "Todos los ficheros (*.*)"},
                                      .presetName = "*.asm"},
                                     source.fileName());
        s_->dialogs.expectWindow("Ensamblador", [](QWidget* window) {
            auto* close = window->findChild<QAbstractButton*>("cerrar");
            auto* poll = new QTimer(window);
            connect(poll, &QTimer::timeout, close, &QAbstractButton::click);  // disabled until it has ended
            poll->start(1);
        });
        s_->press("Ensamblar");
        QCOMPARE(s_->text("txtM"), "5A");
        step();
        expectRows(4);
    }

    /// In a run: the next instruction has the typed address and a state row, the one behind it again.
    void aHalfTypedProgramCounter() {
        s_->runWith({[this] { s_->type("txtPC", "2"); }, [this] { s_->type("txtPC", "12345"); },
                     [this] { s_->type("txtA", "zz"); }});
        QVERIFY(!s_->running());
        expectRows(s_->window.trace().size());
        step();
        expectRows(s_->window.trace().size());
    }

    /// Its menu is out of reach then, but a window can be told to close.
    void clearedDuringAHalt() {
        s_->enter("txtDirMem", "0001");
        s_->enter("txtDatMem", "76");
        for (const char* wayOut : {"opt1", "opt0"}) {  // TRAP, RESET
            s_->enter("txtPC", "0001");
            expectHalt(wayOut, [this] {
                trace_->close();
                QCOMPARE(s_->window.trace().size(), std::uint64_t{0});
            });
            s_->dialogs.expectQuestion(
                QStringLiteral("Todo el listado se perderá.\n¿Desea cerrar de todas formas?"),
                QMessageBox::Yes | QMessageBox::No, QMessageBox::Yes);
            step();
            expectRows(1);
            step();
            expectRows(2);
        }
    }

    void anEditAfterAHaltsWayOut() {
        s_->enter("txtDirMem", "0001");
        s_->enter("txtDatMem", "76");
        expectHalt("opt1", [this] { QVERIFY(s_->window.trace().open()); });
        step();
        expectRows(3);
        s_->enter("txtB", "77");
        step();
        expectRows(5);
        pressKey(&s_->window, Qt::Key_F7);
        expectRows(4);
        pressKey(&s_->window, Qt::Key_F7);
        expectRows(3);
        QCOMPARE(s_->text("txtPC"), "0024");
        pressKey(&s_->window, Qt::Key_F7);
        expectRows(2);
    }
};

QTEST_MAIN(ForcedRowsTest)
#include "ForcedRowsTest.moc"
