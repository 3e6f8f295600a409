#include <QTest>

#include "tests/support/RealInput.h"
#include "tests/ui/main/Simulator.h"
#include "tests/ui/main/ViewsCheck.h"

using namespace tavinor;

/// Masks, enable, requests, the serial lines and reset, as the user works with them.
class InterruptPanelTest : public QObject {
    Q_OBJECT

  private:
    std::unique_ptr<Simulator> s_;

    [[nodiscard]] QString difference() const { return ViewsCheck(*s_).quickDifference(); }
    [[nodiscard]] const InterruptState& state() const { return s_->machine().intState; }
    [[nodiscard]] int memory(int address) const {
        return s_->machine().mem[static_cast<std::size_t>(address)];
    }
    [[nodiscard]] int wordOnStack() const {
        return memory(s_->machine().SP + 1) * 256 + memory(s_->machine().SP);
    }
    /// A stack at 8000, PC at 0100, and every line enabled.
    void openAllLines() const {
        s_->enter("txtSP", "8000");
        s_->enter("txtPC", "0100");
        for (const char* mask : {"CHK55", "CHK65", "CHK75", "CHKEI"}) s_->press(mask);
    }
    /// With RST 7.5 latched, served once, and all lines open again except for 7.5.
    void latchRst75() const {
        openAllLines();
        s_->press("CHK75");  // masked, so that enabling serves nothing
        s_->press("CHK75");
        s_->press("Rst75");
        s_->press("CHK75");
        s_->press("CHKEI");
        QVERIFY(state().R75 && state().IE && state().M75);
        QCOMPARE(s_->machine().PC, 0x3C);
        QCOMPARE(s_->machine().SP, 0x7FFE);
    }

  private slots:
    void init() { s_ = std::make_unique<Simulator>(); }
    void cleanup() { s_.reset(); }

    void everyCombinationOfMasks() {
        const char* const names[] = {"CHKEI", "CHK55", "CHK65", "CHK75"};
        // A Gray code: each press changes one box.
        for (int i = 1; i < 32; ++i) {
            const int bit = (i & 1) != 0 ? 0 : (i & 2) != 0 ? 1 : (i & 4) != 0 ? 2 : 3;
            s_->press(names[bit]);
            QCOMPARE(difference(), QString());
        }
    }

    void boxesChangeTheMachine() {
        s_->press("CHKEI");
        QVERIFY((state() == InterruptState{.IE = true, .M55 = true, .M65 = true, .M75 = true}));
        s_->press("CHK65");
        QVERIFY(!state().M65 && state().M55 && state().M75);
        s_->press("CHKEI");
        QVERIFY(!state().IE);
    }

    void aToolUnmasksALine() {
        QVERIFY(pressByAssistiveTool(s_->button("CHKEI")));
        QVERIFY(pressByAssistiveTool(s_->button("CHK55")));
        QVERIFY(state().IE && !state().M55);
        QCOMPARE(difference(), QString());
    }

    void requests_data() {
        QTest::addColumn<QString>("button");
        QTest::addColumn<int>("vector");
        QTest::newRow("Trap") << "Trap" << 0x24;
        QTest::newRow("Rst55") << "Rst55" << 0x2C;
        QTest::newRow("Rst65") << "Rst65" << 0x34;
        QTest::newRow("Rst75") << "Rst75" << 0x3C;
    }

    void requests() {
        QFETCH(QString, button);
        QFETCH(int, vector);
        openAllLines();
        s_->press(button);
        QCOMPARE(s_->machine().PC, vector);
        QCOMPARE(s_->machine().SP, 0x7FFE);
        QCOMPARE(wordOnStack(), 0x0100);
        QVERIFY(!state().IE);
        QCOMPARE(state().R75, button == "Rst75");
        QVERIFY(!s_->checked("CHKEI"));
        QVERIFY(!s_->enabled("Rst55") && !s_->enabled("Intr"));
        QCOMPARE(difference(), QString());
    }

    void trapAsksNothing() {
        s_->enter("txtSP", "8000");
        s_->press("Trap");
        QCOMPARE(s_->machine().PC, 0x24);
        QCOMPARE(difference(), QString());
    }

    void aDisabledRequestDoesNothing() {
        for (const char* button : {"Rst55", "Rst65", "Rst75", "Intr"}) s_->press(button);
        QCOMPARE(s_->machine().PC, 0);
        QCOMPARE(s_->machine().SP, 0);
    }

    void unmaskingServesALatchedRequestAgain() {
        latchRst75();
        s_->press("CHK75");
        QCOMPARE(s_->machine().SP, 0x7FFC);
        QCOMPARE(wordOnStack(), 0x3C);
        QVERIFY(!state().IE && state().R75);
        QCOMPARE(difference(), QString());
    }

    void enablingServesALatchedRequestAgain() {
        latchRst75();
        s_->press("CHKEI");  // off
        s_->press("CHK75");  // unmasked while disabled: nothing
        QCOMPARE(s_->machine().SP, 0x7FFE);
        s_->press("CHKEI");
        QCOMPARE(s_->machine().SP, 0x7FFC);
        QVERIFY(!state().IE);
        QCOMPARE(difference(), QString());
    }

    void theProgramServesNoLatchedRequest() {
        latchRst75();
        s_->load(0x3C, QByteArray::fromHex("F3"
                                           "3E08"
                                           "30"
                                           "FB"
                                           "00"));  // DI; MVI A,8; SIM; EI; NOP
        for (int i = 0; i < 5; ++i) s_->press("Eje_paso");
        QVERIFY(state().IE && !state().M75 && state().R75);
        QCOMPARE(s_->machine().SP, 0x7FFE);
        QCOMPARE(s_->machine().PC, 0x42);
        QVERIFY(s_->enabled("Rst75"));
        QCOMPARE(difference(), QString());
    }

    void otherClicksServeNoLatchedRequest() {
        latchRst75();
        s_->press("CHK55");
        s_->press("chkSID");
        s_->press("CHK65");
        QCOMPARE(s_->machine().SP, 0x7FFE);
    }

    void simClearsTheLatch() {
        latchRst75();
        s_->load(0x3C, QByteArray::fromHex("20"
                                           "3E10"
                                           "30"));  // RIM; MVI A,10; SIM
        s_->press("Eje_paso");
        QCOMPARE(int(s_->machine().A) & 0x10, 0x10);
        s_->press("Eje_paso");
        s_->press("Eje_paso");
        QVERIFY(!state().R75);
        s_->press("CHK75");
        QCOMPARE(s_->machine().SP, 0x7FFE);
    }

    void intrCallsARestart() {
        openAllLines();
        s_->enter("txtVec", "FF");
        s_->press("Intr");
        QCOMPARE(s_->machine().PC, 0x38);
        QCOMPARE(wordOnStack(), 0x0100);
        QVERIFY(!state().IE);
        QCOMPARE(memory(0x100), 0);
        QCOMPARE(ViewsCheck(*s_).difference(), QString());
    }

    void intrExecutesInPlace() {
        openAllLines();
        s_->type("txtVec", "3c");  // INR A, and the press leaves the box
        s_->press("Intr");
        QCOMPARE(int(s_->machine().A), 1);
        QCOMPARE(s_->machine().PC, 0x100);
        QCOMPARE(s_->text("txtVec"), "3C");
        QCOMPARE(difference(), QString());
    }

    void intrTakesItsOperandsFromMemory() {
        openAllLines();
        s_->load(0x101, QByteArray::fromHex("3412"));
        s_->enter("txtVec", "C3");
        s_->press("Intr");
        QCOMPARE(s_->machine().PC, 0x1234);
    }

    /// However they came there.
    void intrTakesItsOperandsRoundTheTop() {
        openAllLines();
        s_->load(0, QByteArray::fromHex("3412"));
        s_->enter("txtPC", "FFFF");
        s_->enter("txtVec", "C3");
        s_->press("Intr");
        QCOMPARE(s_->machine().PC, 0x1234);
        s_->enter("txtPC", "FFFF");
        s_->enter("txtDirMem", "0000");
        s_->enter("txtDatMem", "56");
        s_->press("CHKEI");
        s_->press("Intr");
        QCOMPARE(s_->machine().PC, 0x1256);
        s_->enter("txtPC", "FFFF");
        s_->enter("txtDIR", "0001");
        s_->enter("INSCO", "78");
        s_->press("CHKEI");
        s_->press("Intr");
        QCOMPARE(s_->machine().PC, 0x7856);
        s_->enter("txtPC", "FFFF");
        s_->enter("txtDIR", "0000");
        s_->enter("INSOP1", "9A");
        s_->press("CHKEI");
        s_->press("Intr");
        QCOMPARE(s_->machine().PC, 0x9A56);
    }

    /// The instruction writes the very cell that its opcode borrows: memory gets its old byte back, and the
    /// grid keeps what was written.
    void intrOverTheBorrowedCell() {
        openAllLines();
        s_->load(0x100, QByteArray::fromHex("AA"));
        s_->enter("txtHL", "0100");
        s_->enter("txtA", "5A");
        s_->enter("txtVec", "77");  // MOV M,A
        s_->press("Intr");
        QCOMPARE(memory(0x100), 0xAA);
        QCOMPARE(s_->cell("grdmem", 0x100), "5A");
        QCOMPARE(s_->text("txtM"), "AA");
    }

    void intrIsNotShownToTheGrid() {
        openAllLines();
        s_->load(0x100, QByteArray::fromHex("AA"));
        s_->enter("txtVec", "00");
        s_->press("Intr");
        QCOMPARE(s_->cell("grdmem", 0x100), "AA");
        QCOMPARE(memory(0x100), 0xAA);
    }

    void aRefusedVectorStopsIntr() {
        openAllLines();
        s_->type("txtVec", "100");
        s_->dialogs.expectMessage("Valor incorrecto");
        s_->press("Intr");
        QTRY_VERIFY(s_->box("txtVec")->hasFocus());
        QVERIFY(state().IE);
        QCOMPARE(s_->machine().PC, 0x100);
        s_->box("txtVec")->showText("00");
    }

    void serialInput() {
        s_->load(0, QByteArray::fromHex("2020"));  // RIM; RIM
        s_->press("Eje_paso");
        QCOMPARE(int(s_->machine().A), 7);
        s_->press("chkSID");
        QVERIFY(s_->machine().SID);
        s_->press("Eje_paso");
        QCOMPARE(int(s_->machine().A), 135);
        s_->press("Reset");
        QVERIFY(s_->machine().SID);
        QCOMPARE(difference(), QString());
    }

    void serialOutput() {
        s_->load(0, QByteArray::fromHex("3EC030"));  // MVI A,C0; SIM
        s_->press("Eje_paso");
        s_->press("Eje_paso");
        QVERIFY(s_->machine().SOD && s_->checked("ChkSOD"));
        s_->press("Reset");
        QVERIFY(s_->machine().SOD && s_->checked("ChkSOD"));
    }

    void serialOutputOnlyShows() {
        s_->press("ChkSOD");
        s_->button("ChkSOD")->setFocus();
        pressKey(&s_->window, Qt::Key_Space);
        pressByAssistiveTool(s_->button("ChkSOD"));
        QVERIFY(!s_->checked("ChkSOD"));
        QVERIFY(!s_->machine().SOD);
    }

    void reset() {
        s_->load(0x200, QByteArray::fromHex("A5"));
        s_->enter("txtDirPort", "10");
        s_->enter("txtDatPort", "66");
        openAllLines();
        s_->press("Rst75");
        s_->enter("txtA", "12");
        s_->enter("txtF", "FF");
        s_->enter("txtHL", "0200");
        s_->press("Reset");
        QVERIFY(static_cast<const Registers&>(s_->machine()) == Registers{});
        QVERIFY((state() == InterruptState{.IE = false, .M55 = true, .M65 = true, .M75 = true}));
        QCOMPARE(memory(0x200), 0xA5);
        QCOMPARE(int(s_->machine().port[0x10]), 0x66);
        QCOMPARE(ViewsCheck(*s_).difference(), QString());
    }

    void resetByItsAccessKeyLeavesTheBox() {
        s_->type("txtA", "5");
        pressKey(&s_->window, Qt::Key_R, Qt::AltModifier);
        QCOMPARE(int(s_->machine().A), 0);
        QCOMPARE(s_->text("txtA"), "00");
        QVERIFY(s_->button("Reset")->hasFocus());
        s_->type("txtA", "hh");
        s_->enter("txtA", "7");
        s_->type("txtB", "hh");
        s_->dialogs.expectMessage("Valor incorrecto");
        pressKey(&s_->window, Qt::Key_R, Qt::AltModifier);
        QTRY_VERIFY(s_->box("txtB")->hasFocus());
        QCOMPARE(int(s_->machine().A), 7);
        s_->enter("txtB", "0");
    }
};

QTEST_MAIN(InterruptPanelTest)
#include "InterruptPanelTest.moc"
