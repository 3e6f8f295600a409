#include "machine/Flags.h"
#include "ui/main/RegisterPanel.h"

#include <QTest>

#include "tests/support/RealInput.h"
#include "tests/ui/main/Simulator.h"
#include "tests/ui/main/ViewsCheck.h"

using namespace tavinor;

namespace {

/// A pair, its halves and where the machine keeps them.
struct Pair {
    const char *high, *low, *pair;
    std::uint8_t Registers::*highRegister;
    std::uint8_t Registers::*lowRegister;
    std::int32_t Registers::*pairRegister;
};
const Pair pairs[] = {
    {"txtB", "txtC", "txtBC", &Registers::B, &Registers::C, &Registers::BC},
    {"txtD", "txtE", "txtDE", &Registers::D, &Registers::E, &Registers::DE},
    {"txtH", "txtL", "txtHL", &Registers::H, &Registers::L, &Registers::HL},
};

const char* const boxes[] = {"txtA", "txtF",  "txtB",  "txtC", "txtBC", "txtPC", "txtD",
                             "txtE", "txtDE", "txtSP", "txtH", "txtL",  "txtHL", "txtM"};

}  // namespace

class RegisterPanelTest : public QObject {
    Q_OBJECT

  private:
    std::unique_ptr<Simulator> s_;

    [[nodiscard]] QString difference() const { return ViewsCheck(*s_).quickDifference(); }

  private slots:
    void init() { s_ = std::make_unique<Simulator>(); }
    void cleanup() { s_.reset(); }

    void startsReset() {
        const MachineState& m = s_->machine();
        QVERIFY(static_cast<const Registers&>(m) == Registers{});
        QVERIFY((m.intState == InterruptState{.IE = false, .M55 = true, .M65 = true, .M75 = true}));
        QVERIFY(!m.SID && !m.SOD);
        QVERIFY(std::all_of(m.mem.begin(), m.mem.end(), [](auto byte) { return byte == 0; }));
        QVERIFY(std::all_of(m.port.begin(), m.port.end(), [](auto byte) { return byte == 0; }));
        QCOMPARE(ViewsCheck(*s_).difference(), QString());
        QCOMPARE(s_->window.windowTitle(), "Tavinor");
    }

    void accumulator() {
        s_->enter("txtA", "5");
        QCOMPARE(s_->text("txtA"), "05");
        QCOMPARE(int(s_->machine().A), 5);
        QCOMPARE(s_->machine().PSW, 0x0500);
        s_->enter("txtA", "  ab");
        QCOMPARE(int(s_->machine().A), 0xAB);
        QCOMPARE(difference(), QString());
    }

    void nothingReachesTheMachineBeforeTheBoxIsLeft() {
        s_->type("txtA", "7F");
        QCOMPARE(int(s_->machine().A), 0);
        s_->type("txtB", "12");
        QCOMPARE(int(s_->machine().A), 0x7F);
        QCOMPARE(int(s_->machine().B), 0);
        QCOMPARE(s_->text("txtBC"), "0000");
    }

    void halvesMakeThePair() {
        for (const Pair& pair : pairs) {
            s_->enter(pair.high, "1");
            QCOMPARE(s_->text(pair.pair), "0100");
            s_->enter(pair.low, "f3");
            QCOMPARE(s_->text(pair.pair), "01F3");
            QCOMPARE(int(s_->machine().*pair.highRegister), 0x01);
            QCOMPARE(int(s_->machine().*pair.lowRegister), 0xF3);
            QCOMPARE(s_->machine().*pair.pairRegister, 0x01F3);
            QCOMPARE(difference(), QString());
        }
    }

    void aPairMakesItsHalves() {
        for (const Pair& pair : pairs) {
            s_->enter(pair.pair, "12");
            QCOMPARE(s_->text(pair.pair), "0012");
            QCOMPARE(s_->text(pair.high), "00");
            QCOMPARE(s_->text(pair.low), "12");
            s_->enter(pair.pair, "a5b6");
            QCOMPARE(int(s_->machine().*pair.highRegister), 0xA5);
            QCOMPARE(int(s_->machine().*pair.lowRegister), 0xB6);
            QCOMPARE(s_->machine().*pair.pairRegister, 0xA5B6);
            QCOMPARE(difference(), QString());
        }
    }

    /// E alone has its pair shown as soon as the text is accepted; the machine follows when E is left.
    void onlyEChangesItsPairEarly() {
        for (const Pair& pair : pairs) {
            for (const char* half : {pair.high, pair.low}) {
                QString early;
                int valueThen = -1;
                connect(s_->box(half), &HexBox::validated, this, [&] {
                    early = s_->text(pair.pair);
                    valueThen = s_->machine().*pair.pairRegister;
                });
                s_->enter(half, "99");
                s_->box(half)->disconnect(this);
                const bool isE = QByteArray(half) == "txtE";
                QCOMPARE(early == s_->text(pair.pair), isE);
                QVERIFY(valueThen != s_->machine().*pair.pairRegister);
            }
        }
    }

    void theMemoryByteFollowsHL() {
        s_->load(0x1234, QByteArray::fromHex("A1B2"));
        s_->enter("txtH", "12");
        QCOMPARE(s_->text("txtM"), "00");
        s_->enter("txtL", "34");
        QCOMPARE(s_->text("txtM"), "A1");
        s_->enter("txtHL", "1235");
        QCOMPARE(s_->text("txtM"), "B2");
        QCOMPARE(difference(), QString());
    }

    void theMemoryByteIsWrittenAtHL() {
        s_->enter("txtHL", "0003");
        s_->enter("txtSP", "0002");
        s_->clickCell("grdmem", 0x0020);
        s_->enter("txtM", "c9");
        QCOMPARE(int(s_->machine().mem[3]), 0xC9);
        QCOMPARE(s_->cell("grdmem", 3), "C9");
        QCOMPARE(s_->stackLines().first(), "C900");
        QVERIFY(s_->rows().contains("0003 C9        RET"));
        QCOMPARE(ViewsCheck(*s_).difference(), QString());
        // Only the memory panel's own data box takes the current cell along.
        QCOMPARE(s_->currentAddress("grdmem"), 0x0020);
        QCOMPARE(s_->text("txtDirMem"), "0020");
    }

    void programCounter() {
        s_->load(0, QByteArray::fromHex("3E050607"));
        const QStringList entry = s_->entryRow();
        s_->enter("txtPC", "4");
        QCOMPARE(s_->machine().PC, 4);
        QCOMPARE(s_->rows().first(), "0000 3E 05     MVI A,05");
        QCOMPARE(s_->listing()->currentRow(), 2);
        QCOMPARE(s_->entryRow(), entry);
        QCOMPARE(difference(), QString());
    }

    void leavingTheProgramCounterUntouchedShowsItAgain() {
        s_->enter("txtDIR", "4000");
        QCOMPARE(s_->selectedAddress(), 0x4000);
        clickIn(s_->box("txtPC"));
        s_->leaveBox();
        QCOMPARE(difference(), QString());
    }

    void stackPointer() {
        s_->load(0x8000, QByteArray::fromHex("3412"));
        s_->enter("txtSP", "8000");
        QCOMPARE(s_->machine().SP, 0x8000);
        QCOMPARE(s_->stackLines().first(), "1234");
        QCOMPARE(difference(), QString());
        s_->enter("txtSP", "");
        QCOMPARE(s_->text("txtSP"), "0000");
        QCOMPARE(s_->machine().SP, 0);
    }

    void flagByte() {
        for (const int f : {0xFF, 0x44, 0x2A, 0x01, 0x00}) {
            s_->enter("txtF", hexDigits(f, 2));
            QCOMPARE(int(s_->machine().F), f);
            QCOMPARE(s_->machine().PSW, f);
            QCOMPARE(difference(), QString());
        }
    }

    void everyFlagBoxIsABitOfF() {
        int f = 0;
        for (int round = 0; round < 2; ++round) {
            for (const int bit : {6, 0, 5, 3, 7, 1, 4, 2}) {
                s_->press(QStringLiteral("chkF%1").arg(bit));
                f ^= 1 << bit;
                QCOMPARE(int(s_->machine().F), f);
                QCOMPARE(s_->text("txtF"), hexDigits(f, 2));
                QCOMPARE(difference(), QString());
            }
            QCOMPARE(f, round == 0 ? 0xFF : 0);
        }
    }

    void aToolSetsAFlag() {
        QVERIFY(pressByAssistiveTool(s_->button("chkF6")));
        QCOMPARE(int(s_->machine().F), 0x40);
        QCOMPARE(difference(), QString());
    }

    void flagText() {
        QCOMPARE(txtflags(0xD5), std::string("11111"));
        QCOMPARE(txtflags(0x44), std::string("01010"));
        QCOMPARE(txtflags(0x2A), std::string("00000"));
        QCOMPARE(txtflags(0x80), std::string("10000"));
        QCOMPARE(txtflags(0x11), std::string("00101"));
    }

    void aRefusedTextChangesNothing_data() {
        QTest::addColumn<QString>("name");
        for (const char* box : boxes) QTest::newRow(box) << box;
    }

    void aRefusedTextChangesNothing() {
        QFETCH(QString, name);
        const Registers before = s_->machine();
        for (const QString& text : {QString("G"), QString("AB "), QString("12345")}) {
            s_->type(name, text);
            s_->dialogs.expectMessage("Valor incorrecto");
            s_->leaveBox();
            QTRY_VERIFY(s_->box(name)->hasFocus());
            QCOMPARE(s_->box(name)->selectedText(), text);
            QVERIFY(static_cast<const Registers&>(s_->machine()) == before);
        }
        s_->enter(name, "");
        QCOMPARE(difference(), QString());
    }

    void aByteBoxTakesTwoDigitsOnly() {
        for (const char* box : boxes) {
            if (s_->box(box)->digits() == 4) continue;
            s_->type(box, "123");
            s_->dialogs.expectMessage("Valor incorrecto");
            s_->leaveBox();
            QTRY_VERIFY(s_->box(box)->hasFocus());
            s_->enter(box, "00");
        }
    }

    void aRefusedTextStopsAStep() {
        s_->type("txtA", "xy");
        s_->dialogs.expectMessage("Valor incorrecto");
        s_->press("Eje_paso");
        QCOMPARE(s_->machine().PC, 0);
        s_->enter("txtA", "1");
        s_->press("Eje_paso");
        QCOMPARE(s_->machine().PC, 1);
    }
};

QTEST_MAIN(RegisterPanelTest)
#include "RegisterPanelTest.moc"
