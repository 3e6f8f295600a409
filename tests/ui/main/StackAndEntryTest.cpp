#include <QTest>

#include "tests/support/RealInput.h"
#include "tests/ui/main/Simulator.h"
#include "tests/ui/main/ViewsCheck.h"

using namespace tavinor;

namespace {
const QString subscriptError = QStringLiteral("Error 9: subíndice fuera del intervalo");
}

/// The stack view, and the row in which an instruction is typed straight into memory.
class StackAndEntryTest : public QObject {
    Q_OBJECT

  private:
    std::unique_ptr<Simulator> s_;

    [[nodiscard]] QString difference() const { return ViewsCheck(*s_).difference(); }
    [[nodiscard]] int memory(int address) const {
        return s_->machine().mem[static_cast<std::size_t>(address)];
    }

  private slots:
    void init() { s_ = std::make_unique<Simulator>(); }
    void cleanup() { s_.reset(); }

    void stackWrapsRound() {
        s_->load(0xFFFE, QByteArray::fromHex("3412"));
        s_->load(0x0000, QByteArray::fromHex("7856"));
        s_->enter("txtSP", "FFFE");
        QCOMPARE(s_->stackLines().mid(0, 3), QStringList({"1234", "5678", "0000"}));
        QCOMPARE(s_->stackLines().size(), 8);
        s_->enter("txtSP", "FFFF");
        QCOMPARE(s_->stackLines().mid(0, 2), QStringList({"7812", "0056"}));
        QCOMPARE(difference(), QString());
    }

    void theStackFollowsAPush() {
        s_->load(0, QByteArray::fromHex("31009001CDABC5C1"));  // LXI SP,9000; LXI B,ABCD; PUSH B; POP B
        for (int i = 0; i < 3; ++i) s_->press("Eje_paso");
        QCOMPARE(s_->stackLines().first(), "ABCD");
        s_->press("Eje_paso");
        QCOMPARE(s_->stackLines().first(), "0000");
        QCOMPARE(difference(), QString());
    }

    void entryRowAtTheStart() { QCOMPARE(s_->entryRow(), QStringList({"0000", "00", "00", "00", ""})); }

    void theAddressPositionsTheListing() {
        s_->load(0, QByteArray::fromHex("3E050607"));
        s_->enter("txtDIR", "4");
        QCOMPARE(s_->text("txtDIR"), "0004");
        QCOMPARE(s_->rowAddress(0), 0);
        QCOMPARE(s_->selectedAddress(), 4);
        s_->enter("txtDIR", "0020");
        QCOMPARE(s_->rowAddress(0), 0x14);
        QCOMPARE(s_->selectedAddress(), 0x20);
        QCOMPARE(s_->machine().PC, 0);
        QCOMPARE(s_->text("INSCO"), "00");  // the program's own selection copies nothing
    }

    void typesAnInstruction() {
        s_->enter("txtDIR", "0100");
        const int first = s_->rowAddress(0);
        s_->enter("INSCO", "c3");
        QCOMPARE(memory(0x100), 0xC3);
        s_->enter("INSOP1", "34");
        s_->enter("INSOP2", "12");
        QCOMPARE(memory(0x101), 0x34);
        QCOMPARE(memory(0x102), 0x12);
        QVERIFY(s_->rows().contains("0100 C3 34 12  JMP 1234"));
        QCOMPARE(s_->cell("grdmem", 0x100), "C3");
        QCOMPARE(s_->cell("grdmem", 0x102), "12");
        QCOMPARE(s_->rowAddress(0), first);
        QCOMPARE(s_->selectedAddress(), 0x100);
        QCOMPARE(s_->entryRow(), QStringList({"0100", "C3", "34", "12", ""}));
        QCOMPARE(s_->currentAddress("grdmem"), 0);
    }

    void mAndStackFollowAtTheNextRefresh() {
        s_->enter("txtHL", "0100");
        s_->enter("txtSP", "0100");
        s_->enter("txtDIR", "0100");
        s_->enter("INSCO", "C9");
        QCOMPARE(memory(0x100), 0xC9);
        QCOMPARE(s_->text("txtM"), "00");
        QCOMPARE(s_->stackLines().first(), "0000");
        s_->press("Eje_paso");
        QCOMPARE(s_->text("txtM"), "C9");
        QCOMPARE(s_->stackLines().first(), "00C9");
    }

    void typesAnInstructionByKeysAlone() {
        clickIn(s_->box("txtDIR"));
        for (const char* text : {"0200", "21", "cd", "ab"}) {
            typeText(&s_->window, text);
            pressKey(&s_->window, Qt::Key_Tab);
        }
        QVERIFY(s_->rows().contains("0200 21 CD AB  LXI H,ABCD"));
    }

    void blankBoxesWriteNothing() {
        s_->load(0x100, QByteArray::fromHex("112233"));
        s_->enter("txtDIR", "0100");
        for (const char* box : {"INSCO", "INSOP1", "INSOP2"}) {
            for (const char* blank : {"", "  "}) {
                s_->enter(box, blank);
                QCOMPARE(s_->text(box), blank);
            }
        }
        QCOMPARE(memory(0x100), 0x11);
        QCOMPARE(memory(0x101), 0x22);
        QCOMPARE(memory(0x102), 0x33);
    }

    void anAddressIsNeverBlank() {
        s_->enter("txtDIR", "0100");
        s_->enter("txtDIR", " ");
        QCOMPARE(s_->text("txtDIR"), "0000");
    }

    void anUntouchedBoxWritesToo() {
        s_->load(0x100, QByteArray::fromHex("11"));
        s_->enter("txtDIR", "0100");
        clickIn(s_->box("INSCO"));
        s_->leaveBox();
        QCOMPARE(memory(0x100), 0);
    }

    void refusals() {
        for (const char* box : {"txtDIR", "INSCO", "INSOP1", "INSOP2"}) {
            s_->type(box, "xyz");
            s_->dialogs.expectMessage("Valor incorrecto");
            s_->press("Eje_paso");
            QTRY_VERIFY(s_->box(box)->hasFocus());
            QCOMPARE(s_->machine().PC, 0);
            s_->enter(box, "0");
        }
    }

    void anInstructionThatSplitsTheSelectedOneLeavesNoSelection() {
        s_->enter("txtDIR", "0104");
        s_->clickRow(s_->rowOf(0x0104));
        s_->enter("txtDIR", "0103");
        s_->clickRow(s_->rowOf(0x0104));
        s_->box("txtDIR")->showText("0103");
        s_->enter("INSCO", "C3");  // swallows 0104
        QCOMPARE(s_->selectedAddress(), -1);
        const QStringList rows = s_->rows();
        pressKey(s_->listing(), Qt::Key_F9);
        QCOMPARE(s_->rows(), rows);
        s_->enter("INSCO", "00");  // no selection reads as 0000, which is not in view
        QCOMPARE(s_->selectedAddress(), -1);
    }

    void theLastByteTakesACode() {
        s_->enter("txtDIR", "FFFF");
        s_->enter("INSCO", "C9");
        QCOMPARE(memory(0xFFFF), 0xC9);
        QCOMPARE(s_->rows().last(), "FFFF C9        RET");
    }

    /// Past the last byte there is a mirror cell to store into, but none of the grid.
    void anOperandPastTheTopEndsInAnError_data() {
        QTest::addColumn<QString>("address");
        QTest::addColumn<QString>("box");
        QTest::newRow("first operand") << "FFFF"
                                       << "INSOP1";
        QTest::newRow("second operand") << "FFFE"
                                        << "INSOP2";
        QTest::newRow("second operand, two past") << "FFFF"
                                                  << "INSOP2";
    }

    void anOperandPastTheTopEndsInAnError() {
        QFETCH(QString, address);
        QFETCH(QString, box);
        s_->enter("txtDIR", address);
        s_->type(box, "55");
        s_->dialogs.expectMessage(subscriptError);
        pressKey(&s_->window, Qt::Key_Tab);
        QVERIFY(QTest::qWaitForWindowActive(&s_->window));
        QVERIFY(s_->dialogs.allCame());
        QVERIFY(s_->window.focusWidget() != s_->box(box));
        QCOMPARE(s_->text(box), "55");
        QCOMPARE(memory(0), 0);
        for (const char* byteBox : {"INSCO", "INSOP1", "INSOP2"}) s_->box(byteBox)->showText("");
        s_->press("Eje_paso");  // the program goes on
        QCOMPARE(s_->machine().PC, 1);
        QCOMPARE(difference(), QString());
    }

    void anOperandPastTheTopLeftByAClick() {
        s_->enter("txtDIR", "FFFF");
        s_->type("INSOP1", "55");
        s_->dialogs.expectMessage(subscriptError);
        s_->press("Eje_paso");
        QVERIFY(QTest::qWaitForWindowActive(&s_->window));
        QVERIFY(!s_->button("Eje_paso")->isDown());
        QVERIFY(s_->button("Eje_paso")->hasFocus());
    }

    void theVectorIsAnOrdinaryBox() {
        s_->enter("txtVec", "c");
        QCOMPARE(s_->text("txtVec"), "0C");
        s_->type("txtVec", "123");
        s_->dialogs.expectMessage("Valor incorrecto");
        s_->leaveBox();
        QTRY_VERIFY(s_->box("txtVec")->hasFocus());
        s_->enter("txtVec", "");
        QCOMPARE(s_->text("txtVec"), "00");
    }
};

QTEST_MAIN(StackAndEntryTest)
#include "StackAndEntryTest.moc"
