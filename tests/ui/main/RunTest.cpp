#include <QApplication>
#include <QCheckBox>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>

#include "tests/support/RealInput.h"
#include "tests/ui/main/ListedPace.h"
#include "tests/ui/main/Simulator.h"
#include "tests/ui/main/ViewsCheck.h"

using namespace tavinor;

namespace {

const QString overflowError = QStringLiteral("Error 6: desbordamiento");
const QString subscriptError = QStringLiteral("Error 9: subíndice fuera del intervalo");

}  // namespace

/// Running and stopping: the caption of `Ejecutar` is the state, and handlers work between two instructions.
class RunTest : public QObject {
    Q_OBJECT

  private:
    std::unique_ptr<Simulator> s_;

    [[nodiscard]] QString difference() const { return ViewsCheck(*s_).difference(); }
    void setBreakpointAt(int address) const {
        s_->enter("txtDIR", hexDigits(address, 4));
        s_->clickRow(s_->rowOf(address));
        pressKey(&s_->window, Qt::Key_F9);
    }
    /// INX B; JMP 0000: counts, and touches nothing else.
    void loadCounter() const { s_->load(0, QByteArray::fromHex("03C30000")); }
    void runWith(const QList<std::function<void()>>& actions) const { s_->runWith(actions); }

  private slots:
    void init() { s_ = std::make_unique<Simulator>(); }
    void cleanup() { s_.reset(); }

    void aStepExecutesOneInstruction() {
        s_->load(0, QByteArray::fromHex("3E05063A80"));  // MVI A,05; MVI B,3A; ADD B
        s_->press("Eje_paso");
        QCOMPARE(s_->machine().PC, 2);
        QCOMPARE(difference(), QString());
        pressKey(&s_->window, Qt::Key_P, Qt::AltModifier);
        pressKey(&s_->window, Qt::Key_P, Qt::AltModifier);
        QCOMPARE(int(s_->machine().A), 0x3F);
        QCOMPARE(difference(), QString());
    }

    void aStepIgnoresBreakpoints() {
        setBreakpointAt(0);
        setBreakpointAt(1);
        s_->press("Eje_paso");
        s_->press("Eje_paso");
        QCOMPARE(s_->machine().PC, 2);
    }

    void runsUntilStopped() {
        loadCounter();
        s_->runWith([this] {
            QVERIFY(s_->running());
            QCOMPARE(s_->button("Ejecutar")->accessibleName(), "Parar");
            QVERIFY(!s_->enabled("Eje_paso"));
            QCOMPARE(difference(), QString());
            QVERIFY(s_->machine().BC > 0);
        });
        QVERIFY(!s_->running());
        QCOMPARE(s_->button("Ejecutar")->text(), "E&jecutar");
        QCOMPARE(s_->button("Ejecutar")->accessibleName(), "Ejecutar");
        QVERIFY(s_->enabled("Eje_paso"));
        QCOMPARE(difference(), QString());
    }

    void runsAndStopsByItsAccessKeys() {
        loadCounter();
        QTimer::singleShot(10, &s_->window, [this] {
            QVERIFY(s_->running());
            pressKey(&s_->window, Qt::Key_P, Qt::AltModifier);
            QVERIFY(!s_->running());
        });
        pressKey(&s_->window, Qt::Key_J, Qt::AltModifier);
        QVERIFY(!s_->running());
        QVERIFY(s_->machine().BC > 0);
    }

    void stopsAtTheNextStateTest() {
        loadCounter();
        int atTheStop = -1;
        s_->runWith([&] {
            s_->press("Ejecutar");
            atTheStop = s_->machine().BC;
        });
        QCOMPARE(s_->machine().BC, atTheStop);
    }

    void aBreakpointStops() {
        loadCounter();
        setBreakpointAt(1);
        s_->press("Ejecutar");
        QVERIFY(!s_->running());
        QCOMPARE(s_->machine().PC, 1);
        QCOMPARE(s_->machine().BC, 1);
        QCOMPARE(s_->selectedAddress(), 1);
        QCOMPARE(s_->rows().at(1), "0001*C3 00 00  JMP 0000");
        QVERIFY(s_->enabled("Eje_paso"));
        QCOMPARE(difference(), QString());
    }

    void aBreakpointDoesNotKeepFromStarting() {
        loadCounter();
        setBreakpointAt(0);
        for (int round = 1; round <= 3; ++round) {
            s_->press("Ejecutar");
            QVERIFY(!s_->running());
            QCOMPARE(s_->machine().PC, 0);
            QCOMPARE(s_->machine().BC, round);
        }
    }

    void aBreakpointSetInTheRunStops() {
        loadCounter();
        s_->runWith([this] {
            s_->clickRow(s_->rowOf(1));
            pressKey(&s_->window, Qt::Key_F9);
        });
        QVERIFY(!s_->running());
        // runWith itself stops the run unless the breakpoint does so first; here both may have.
        s_->press("Ejecutar");
        QCOMPARE(s_->machine().PC, 1);
    }

    /// A pace without a clock: which instructions lie between two looks at the event queue is the test's say.
    void looksAfterListedInstructions() {
        s_ = std::make_unique<Simulator>(std::make_unique<ListedPace>(QList<std::int64_t>{1, 7, 4096}));
        loadCounter();
        QList<int> counts;
        QTimer everyLook;
        connect(&everyLook, &QTimer::timeout, this, [&] {
            if (counts.size() == 5) return;
            counts.append(2 * s_->machine().BC - s_->machine().PC);
            if (counts.size() == 5) s_->press("Ejecutar");
        });
        everyLook.start(0);
        s_->press("Ejecutar");
        everyLook.stop();
        QCOMPARE(counts, (QList<int>{1, 8, 4104, 4105, 4112}));
        QCOMPARE(2 * s_->machine().BC - s_->machine().PC, counts.last());
        QCOMPARE(difference(), QString());
    }

    void aTightLoopRuns() {
        s_->load(0, QByteArray::fromHex("C30000"));
        s_->runWith([this] { QCOMPARE(difference(), QString()); });
        QCOMPARE(difference(), QString());
    }

    void twoPressesWithinOneYield() {
        loadCounter();
        int before = 0;
        runWith({[&] {
                     for (int i = 0; i < 2; ++i) {
                         QMetaObject::invokeMethod(s_->button("Ejecutar"), &QAbstractButton::click,
                                                   Qt::QueuedConnection);
                     }
                     before = s_->machine().BC;
                 },
                 [&] {
                     QVERIFY(s_->running());
                     QVERIFY(s_->machine().BC != before);
                 }});
        QVERIFY(!s_->running());
        QCOMPARE(difference(), QString());
    }

    /// The second press returns at once: the loop that is still on the stack goes on, none is nested in it.
    void stopAndStartKeepOneLoop() {
        loadCounter();
        int before = 0;
        runWith({[&] {
                     for (int i = 0; i < 4; ++i) {
                         s_->press("Ejecutar");
                         QVERIFY(!s_->running());
                         s_->press("Ejecutar");
                         QVERIFY(s_->running());
                     }
                     before = s_->machine().BC;
                     QVERIFY(!s_->enabled("Eje_paso"));
                 },
                 [&] { QVERIFY(s_->machine().BC != before); }});
        QVERIFY(!s_->running());
        QCOMPARE(difference(), QString());
    }

    void noStepInARun() {
        loadCounter();
        s_->runWith([this] {
            const Registers before = s_->machine();
            s_->press("Eje_paso");
            QVERIFY(static_cast<const Registers&>(s_->machine()) == before);
            QVERIFY(s_->running());
        });
    }

    void resetInARun() {
        s_->load(0, QByteArray::fromHex("C30001"));        // JMP 0100
        s_->load(0x100, QByteArray::fromHex("04C30001"));  // INR B; JMP 0100
        runWith({[&] {
                     s_->press("Reset");
                     QVERIFY(s_->running());
                     QCOMPARE(s_->machine().PC, 0);
                     QCOMPARE(s_->text("txtPC"), "0000");
                     QCOMPARE(difference(), QString());
                 },
                 [&] { QVERIFY(s_->machine().PC >= 0x100); }});
    }

    void editsInARun() {
        loadCounter();
        runWith({[&] {
                     s_->enter("txtD", "5a");
                     s_->enter("txtDirMem", "4000");
                     s_->enter("txtDatMem", "77");
                     s_->press("chkF7");
                 },
                 [&] {
                     QCOMPARE(int(s_->machine().D), 0x5A);
                     QCOMPARE(int(s_->machine().mem[0x4000]), 0x77);
                     QCOMPARE(int(s_->machine().F), 0x80);
                     QCOMPARE(difference(), QString());
                     s_->enter("txtPC", "0200");  // nothing but NOP up to the top, and round to the counter
                 },
                 [&] { QCOMPARE(difference(), QString()); }});
        QCOMPARE(int(s_->machine().D), 0x5A);
        QCOMPARE(difference(), QString());
    }

    void theCodeCanBeChangedInARun() {
        loadCounter();
        runWith({[&] {
                     s_->enter("txtDirMem", "0000");
                     s_->enter("txtDatMem", "13");  // INX D instead of INX B
                 },
                 [&] { QVERIFY(s_->machine().DE > 0); }});
        QVERIFY(s_->machine().DE > 0);
    }

    /// The next refresh overwrites a register that is being typed; other boxes are left alone.
    void aHalfTypedRegisterIsOverwritten() {
        loadCounter();
        runWith({[&] {
                     s_->type("txtD", "7");
                     QCOMPARE(s_->text("txtD"), "7");
                 },
                 [&] {
                     QCOMPARE(s_->text("txtD"), "00");
                     QVERIFY(s_->box("txtD")->hasFocus());
                     s_->type("txtDirMem", "12");
                 },
                 [&] { QCOMPARE(s_->text("txtDirMem"), "12"); }});
        QCOMPARE(int(s_->machine().D), 0);
        QCOMPARE(s_->text("txtDirMem"), "0012");
    }

    void aRefusedBoxStopsTheStop() {
        loadCounter();
        s_->dialogs.expectMessage("Valor incorrecto");
        runWith({[&] {
            s_->type("txtVec", "hh");
            s_->press("Ejecutar");
            QVERIFY(s_->running());
            s_->box("txtVec")->showText("00");
        }});
        QVERIFY(!s_->running());
    }

    void requestsInARun() {
        loadCounter();
        s_->load(0x24, QByteArray::fromHex("1CC9"));  // INR E; RET
        s_->load(0x2C, QByteArray::fromHex("14C9"));  // INR D; RET
        s_->load(0x38, QByteArray::fromHex("24C9"));  // INR H; RET
        s_->enter("txtSP", "8000");
        runWith({[&] { s_->press("Trap"); },
                 [&] {
                     QCOMPARE(int(s_->machine().E), 1);
                     s_->press("CHK55");
                     s_->press("CHKEI");
                     s_->press("Rst55");
                 },
                 [&] {
                     QCOMPARE(int(s_->machine().D), 1);
                     QVERIFY(!s_->machine().intState.IE);
                     s_->press("CHKEI");
                     s_->enter("txtVec", "FF");
                     s_->press("Intr");
                 },
                 [&] {
                     QCOMPARE(int(s_->machine().H), 1);
                     QCOMPARE(s_->machine().SP, 0x8000);
                     QCOMPARE(difference(), QString());
                 }});
        QCOMPARE(difference(), QString());
    }

    void closingIsRefusedInARun() {
        loadCounter();
        int before = 0;
        runWith({[&] {
                     QVERIFY(!s_->window.close());
                     QVERIFY(s_->window.isVisible());
                     QVERIFY(s_->running());
                     before = s_->machine().BC;
                 },
                 [&] { QVERIFY(s_->machine().BC != before); }});
    }

    void closingHidesTheWindowForGood() {
        const QSignalSpy closed(&s_->window, &Principal::closed);
        QVERIFY(!s_->window.close());  // the request is refused: the farewell screen ends the program
        QCOMPARE(closed.count(), 1);
        QVERIFY(!s_->window.isVisible());
    }

    void aHalfTypedBoxDoesNotKeepFromClosing() {
        const QSignalSpy closed(&s_->window, &Principal::closed);
        s_->type("txtA", "zz");
        s_->window.close();
        QCOMPARE(closed.count(), 1);
    }

    void error6StopsARun() {
        s_->load(0, QByteArray::fromHex("C3FDFF"));
        s_->load(0xFFFD, QByteArray::fromHex("CD3412"));  // the return address would be 10000
        s_->enter("txtSP", "8000");
        s_->dialogs.expectMessage(overflowError);
        s_->press("Ejecutar");
        QVERIFY(!s_->running());
        QVERIFY(s_->enabled("Eje_paso"));
        QCOMPARE(s_->machine().PC, 0);
        QCOMPARE(s_->machine().SP, 0x7FFF);
        QCOMPARE(difference(), QString());
        s_->press("Eje_paso");
        QCOMPARE(s_->machine().PC, 0xFFFD);
    }

    void error6EndsAStep() {
        s_->load(0xFFFF, QByteArray::fromHex("C7"));
        s_->enter("txtPC", "FFFF");
        s_->dialogs.expectMessage(overflowError);
        s_->press("Eje_paso");
        QCOMPARE(s_->machine().PC, 0);
        QCOMPARE(s_->machine().SP, 0xFFFF);
        QCOMPARE(difference(), QString());
    }

    void error9OfAnEditInARunStopsIt() {
        s_->load(0, QByteArray::fromHex("C30000"));
        s_->press("CHKEI");
        s_->dialogs.expectMessage(subscriptError);
        runWith({[&] {
            s_->enter("txtDIR", "FFFF");
            s_->enter("INSOP1", "12");  // past the top
            QVERIFY(!s_->running());
            QVERIFY(s_->enabled("Eje_paso"));
        }});
        QVERIFY(!s_->running());
        QVERIFY(s_->dialogs.allCame());
        QCOMPARE(difference(), QString());
    }

    void theProgramCounterWrapsAtTheTop() {
        s_->enter("txtPC", "FFFF");
        s_->press("Eje_paso");
        QCOMPARE(s_->machine().PC, 0);
        QCOMPARE(difference(), QString());
        s_->load(0xFFFF, QByteArray::fromHex("3E"));
        s_->load(0, QByteArray::fromHex("55"));
        s_->enter("txtPC", "FFFF");
        s_->press("Eje_paso");  // MVI A with its operand from 0000
        QCOMPARE(int(s_->machine().A), 0x55);
        QCOMPARE(s_->machine().PC, 1);
        QCOMPARE(difference(), QString());
    }

    /// A run that is stopped and started from within a breakpoint's own stop starts a loop of its own.
    void runsAgainAndAgain() {
        loadCounter();
        setBreakpointAt(0);
        for (int i = 0; i < 20; ++i) s_->press("Ejecutar");
        QCOMPARE(s_->machine().BC, 20);
    }
};

QTEST_MAIN(RunTest)
#include "RunTest.moc"
