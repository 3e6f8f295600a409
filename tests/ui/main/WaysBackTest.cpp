// The menu "Historial": ways back by their keys, with all views behind them.

#include <QAction>
#include <QLabel>
#include <QProgressDialog>
#include <QPushButton>
#include <QTest>
#include <QThread>
#include <QTimer>

#include "tests/support/Differences.h"
#include "tests/support/RealInput.h"
#include "tests/ui/main/ListedPace.h"
#include "tests/ui/main/Simulator.h"
#include "tests/ui/main/ViewsCheck.h"

using namespace tavinor;

class WaysBackTest : public QObject {
    Q_OBJECT

  private:
    std::unique_ptr<Simulator> s_;

    [[nodiscard]] QString difference() const { return ViewsCheck(*s_).difference(); }
    [[nodiscard]] QString told() const { return s_->find<QLabel>("estado")->text(); }
    [[nodiscard]] bool allowed() const { return s_->window.findChild<QAction*>("pasoAtras")->isEnabled(); }
    [[nodiscard]] std::uint64_t traceRows() const { return s_->window.trace().size(); }
    void stepBack() const { pressKey(&s_->window, Qt::Key_F7); }
    void toBreakpoint() const { pressKey(&s_->window, Qt::Key_F5, Qt::ShiftModifier); }
    void toLastWrite() const { pressKey(&s_->window, Qt::Key_F7, Qt::ShiftModifier); }
    void steps(int count) const {
        for (int i = 0; i < count; ++i) s_->press("Eje_paso");
    }
    void setBreakpointAt(int address) const {
        s_->enter("txtDIR", hexDigits(address, 4));
        s_->clickRow(s_->rowOf(address));
        pressKey(&s_->window, Qt::Key_F9);
    }
    /// MVI A,05; STA 2000; INR A; JMP 0002, with nothing before it that could be undone.
    void loadProgram() const {
        s_->load(0, QByteArray::fromHex("3E053200203CC30200"));
        QAction* clear = nullptr;
        for (QWidget* window : QApplication::topLevelWidgets()) {
            if (clear == nullptr) clear = window->findChild<QAction*>("borrar");
        }
        QVERIFY(clear != nullptr);
        clear->trigger();
    }
    /// A loop of 25 million instructions up to a breakpoint at its end; another one is at the second
    /// instruction.
    void runLong() {
        s_.reset();  // there is one of them at a time
        s_ = std::make_unique<Simulator>(
            std::make_unique<ListedPace>(QList<std::int64_t>{1'000'000}, RunPace::Due::events));
        // MVI D,60; 0002: NOP; 0003: LXI B,0; 0006: DCX B; MOV A,B; ORA C; JNZ 0006; DCR D; JNZ 0003; HLT
        s_->load(0, QByteArray::fromHex("1660000100000B78B1C2060015C2030076"));
        steps(2);
        setBreakpointAt(2);
        setBreakpointAt(0x10);
        s_->press("Ejecutar");
        QCOMPARE(s_->text("txtPC"), QString("0010"));
        QVERIFY(traceRows() > 25'000'000);
    }
    /// A way back, in the middle of which more time passes than a search may take without showing it.
    void searchLong(const QString& action) const {
        QTimer::singleShot(0, &s_->window, [] { QThread::msleep(1500); });  // served by the search
        s_->window.findChild<QAction*>(action)->trigger();
    }

  private slots:
    void init() { s_ = std::make_unique<Simulator>(); }
    void cleanup() { s_.reset(); }

    void aStepBackUndoesAnInstruction() {
        loadProgram();
        QVERIFY(!allowed());
        steps(3);
        QCOMPARE(s_->text("txtA"), QString("06"));
        QCOMPARE(s_->cell("grdmem", 0x2000), QString("05"));
        stepBack();
        QCOMPARE(s_->text("txtA"), QString("05"));
        QCOMPARE(told(), QString("Deshecho: INR A"));
        QCOMPARE(difference(), QString());
        stepBack();
        QCOMPARE(s_->cell("grdmem", 0x2000), QString("00"));
        QCOMPARE(difference(), QString());
        QCOMPARE(traceRows(), std::uint64_t{2});
        stepBack();
        QCOMPARE(told(), QString("Deshecho: MVI A,05"));
        QCOMPARE(traceRows(), std::uint64_t{0});
        QVERIFY(!allowed());
        stepBack();  // nothing is left
        QCOMPARE(difference(), QString());
        steps(3);
        QCOMPARE(s_->text("txtA"), QString("06"));
        QCOMPARE(traceRows(), std::uint64_t{4});
    }

    void nothingIsThereToUndoAtFirst() {
        QVERIFY(!allowed());
        QVERIFY(s_->machine().intState.M55);
        steps(1);
        QVERIFY(allowed());
        stepBack();
        QVERIFY(!allowed());
        QVERIFY(s_->machine().intState.M55);
    }

    void whatWasUndoneIsToldUntilSomethingElseHappens() {
        loadProgram();
        steps(2);
        stepBack();
        QCOMPARE(told(), QString("Deshecho: STA 2000"));
        steps(1);
        QCOMPARE(told(), QString());
    }

    void notBehindAModalWindow() {
        loadProgram();
        steps(1);
        QVERIFY(allowed());
        bool allowedBehind = true;
        s_->dialogs.expectWindow("Halt", [&](QWidget* dialog) {
            allowedBehind = allowed();
            clickIn(dialog->findChild<QWidget*>("aceptar"));
        });
        s_->enter("txtDirMem", "0002");
        s_->enter("txtDatMem", "76");  // HLT
        steps(1);
        QVERIFY(!allowedBehind);
        QVERIFY(allowed());
    }

    void whatWasChangedByHandIsUndoneAsOne() {
        loadProgram();
        steps(1);
        s_->enter("txtA", "77");
        s_->enter("txtDirMem", "3000");
        s_->enter("txtDatMem", "AA");
        steps(1);
        QCOMPARE(traceRows(), std::uint64_t{4});
        stepBack();
        QCOMPARE(told(), QString("Deshecho: STA 2000"));
        QCOMPARE(s_->text("txtA"), QString("77"));
        stepBack();
        QCOMPARE(told(), QString("Deshecho: cambios hechos a mano"));
        QCOMPARE(s_->text("txtA"), QString("05"));
        QCOMPARE(s_->cell("grdmem", 0x3000), QString("00"));
        QCOMPARE(traceRows(), std::uint64_t{2});
        QCOMPARE(difference(), QString());
    }

    void aResetIsUndoneAndALoadToo() {
        loadProgram();
        steps(2);
        s_->press("Reset");
        QCOMPARE(s_->machine().PC, 0);
        stepBack();
        QCOMPARE(s_->machine().PC, 5);
        setBreakpointAt(5);
        s_->load(0, QByteArray::fromHex("7676"));
        QCOMPARE(int(s_->machine().mem[0]), 0x76);
        QCOMPARE(int(s_->window.breakpoints()[5]), 0);
        stepBack();
        QCOMPARE(int(s_->machine().mem[0]), 0x3E);
        QCOMPARE(int(s_->window.breakpoints()[5]), 0);  // they are not undone
        QCOMPARE(difference(), QString());
    }

    void theWayOutOfAHaltIsUndoneWithIt() {
        s_->load(0, QByteArray::fromHex("3E0776"));  // MVI A,07; HLT
        steps(1);
        s_->dialogs.expectWindow("Halt",
                                 [](QWidget* dialog) { clickIn(dialog->findChild<QWidget*>("aceptar")); });
        steps(1);
        QCOMPARE(s_->text("txtA"), QString("00"));  // by the RESET
        stepBack();
        QCOMPARE(told(), QString("Deshecho: HLT"));
        QCOMPARE(s_->text("txtA"), QString("07"));
        QCOMPARE(s_->text("txtPC"), QString("0002"));
        QCOMPARE(difference(), QString());
    }

    void backToTheBreakpointThatWasPassedLast() {
        loadProgram();
        setBreakpointAt(5);
        s_->press("Ejecutar");  // stops there
        QCOMPARE(s_->text("txtPC"), QString("0005"));
        steps(4);
        QCOMPARE(s_->text("txtA"), QString("07"));
        toBreakpoint();
        QCOMPARE(s_->text("txtA"), QString("06"));
        QCOMPARE(s_->text("txtPC"), QString("0005"));
        QCOMPARE(told(), QString("Atrás, en el punto de ruptura de 0005"));
        toBreakpoint();  // the present one does not count
        QCOMPARE(s_->text("txtA"), QString("05"));
        toBreakpoint();
        QCOMPARE(told(), QString("Al principio del historial"));
        QCOMPARE(s_->text("txtPC"), QString("0000"));
        QCOMPARE(difference(), QString());
    }

    void backToTheLastWriteOfTheCell() {
        loadProgram();
        steps(7);  // past two of them
        s_->clickCell("grdmem", 0x2001);
        toLastWrite();
        QCOMPARE(told(), QString("Nada ha escrito en 2001"));
        QCOMPARE(s_->text("txtA"), QString("07"));
        s_->clickCell("grdmem", 0x2000);
        toLastWrite();
        QCOMPARE(told(), QString("Atrás, antes de la última escritura en 2000"));
        QCOMPARE(s_->cell("grdmem", 0x2000), QString("05"));
        QCOMPARE(s_->text("txtPC"), QString("0002"));
        QCOMPARE(s_->text("txtA"), QString("06"));
        QCOMPARE(difference(), QString());
    }

    /// The machine kept before is near, and neither the step nor the rows of the open trace go farther back.
    void aStepBackCostsFewInstructions() {
        runLong();
        s_->window.findChild<QAction*>("listains")->trigger();
        QVERIFY(QTest::qWaitForWindowActive(QApplication::activeWindow()));
        const History& history = s_->window.trace().history();
        for (int step = 0; step < 6; ++step) {
            const std::uint64_t before = history.executedAgain();
            const std::uint64_t rows = traceRows();
            stepBack();
            QCoreApplication::processEvents();
            QCOMPARE(traceRows(), rows - 1);
            const std::uint64_t again = history.executedAgain() - before;
            QVERIFY2(again > 0 && again <= 4 * Checkpoints::densest, qPrintable(QString::number(again)));
        }
    }

    void toTheBeginning() {
        loadProgram();
        steps(5);
        s_->window.findChild<QAction*>("alPrincipio")->trigger();
        QCOMPARE(s_->text("txtPC"), QString("0000"));
        QCOMPARE(traceRows(), std::uint64_t{0});
        QVERIFY(!allowed());
    }

    void disabledInARun() {
        s_->load(0, QByteArray::fromHex("03C30000"));  // INX B; JMP 0000
        s_->runWith([this] {
            QVERIFY(!allowed());
            stepBack();
            QVERIFY(s_->running());
        });
        QVERIFY(allowed());
        const int B = s_->machine().BC;
        stepBack();
        stepBack();
        QCOMPARE(s_->machine().BC, (B - 1) & 0xFFFF);
        QCOMPARE(difference(), QString());
    }

    void aBoxThatIsBeingTypedInIsLeftFirst() {
        loadProgram();
        steps(1);
        s_->type("txtB", "12");
        stepBack();  // of what was typed
        QCOMPARE(s_->text("txtB"), QString("00"));
        QCOMPARE(s_->machine().PC, 2);
        s_->type("txtB", "xyz");
        s_->dialogs.expectMessage("Valor incorrecto");
        stepBack();
        QCOMPARE(s_->machine().PC, 2);
        QTRY_VERIFY(s_->dialogs.allCame());
    }

    /// "Dato:" writes when it is left, also where nothing was typed: it would change the cell at each press.
    void aBoxThatWasOnlyEnteredIsLeftAlone() {
        loadProgram();
        steps(2);
        s_->clickCell("grdmem", 0x2000);
        steps(1);
        clickIn(s_->box("txtDatMem"));
        stepBack();
        stepBack();
        QCOMPARE(s_->machine().PC, 2);
        QVERIFY(s_->box("txtDatMem")->hasFocus());
    }

    void aSearchThatTakesLongShowsItAndCanBeCancelled() {
        runLong();
        s_->clickCell("grdmem", 0x2001);  // nothing has ever written there
        const auto before = std::make_unique<MachineState>(s_->machine());
        const std::uint64_t revision = s_->window.trace().revision();
        const QString toldBefore = told();
        for (const char* action : {"atrasPunto", "atrasCasilla"}) {
            s_->dialogs.expectWindow("progreso", [](QWidget* dialog) {
                QVERIFY(dialog->isModal());
                QCOMPARE(dialog->windowTitle(), QString("Tavinor"));
                QCOMPARE(qobject_cast<QProgressDialog*>(dialog)->labelText(),
                         QString("Buscando hacia atrás..."));
                auto* cancel = dialog->findChild<QPushButton*>();
                QCOMPARE(cancel->text(), QString("Cancelar"));
                clickIn(cancel);
            });
            searchLong(action);
            QVERIFY2(s_->dialogs.allCame(), action);
            QCOMPARE(test::differences(s_->machine(), *before), std::string());
            QCOMPARE(s_->window.trace().revision(), revision);
            QCOMPARE(told(), toldBefore);
            QCOMPARE(difference(), QString());
        }
        s_->dialogs.expectWindow("progreso", [](QWidget*) {});  // and waits
        searchLong("atrasPunto");
        QVERIFY(s_->dialogs.allCame());
        QCOMPARE(told(), QString("Atrás, en el punto de ruptura de 0002"));
        QCOMPARE(s_->text("txtPC"), QString("0002"));
        QCOMPARE(s_->text("txtD"), QString("60"));
        QCOMPARE(traceRows(), std::uint64_t{2});
        QCOMPARE(difference(), QString());
    }

    void clearedTraceCannotBeUndone() {
        loadProgram();
        steps(2);
        QVERIFY(allowed());
        for (QWidget* window : QApplication::topLevelWidgets()) {
            if (auto* clear = window->findChild<QAction*>("borrar")) clear->trigger();
        }
        QVERIFY(!allowed());
    }
};

QTEST_MAIN(WaysBackTest)
#include "WaysBackTest.moc"
