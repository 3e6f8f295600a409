#include <QAccessible>
#include <QInputMethodEvent>
#include <QTest>
#include <QTimer>
#include <cmath>

#include "tests/support/RealInput.h"
#include "tests/ui/main/Simulator.h"
#include "ui/main/CellBox.h"

using namespace tavinor;

namespace {

/// What a box says while leaving it would change its cell.
QString warning(const QString& held, const QString& written) {
    return "La casilla contiene " + held + "; al salir de este cuadro se escribirá " + written;
}

double contrast(const QColor& a, const QColor& b) {
    const auto luminance = [](const QColor& colour) {
        const auto part = [](double v) {
            return v <= 0.03928 ? v / 12.92 : std::pow((v + 0.055) / 1.055, 2.4);
        };
        return 0.2126 * part(colour.redF()) + 0.7152 * part(colour.greenF()) + 0.0722 * part(colour.blueF());
    };
    const auto [low, high] = std::minmax({luminance(a), luminance(b)});
    return (high + 0.05) / (low + 0.05);
}

}  // namespace

/// The boxes that write a cell when they are left: "Dato:" of both grids, and the bytes of the entry row.
/// They tell when that would change the cell, and typing on a cell brings the user there.
class CellBoxesTest : public QObject {
    Q_OBJECT

  private:
    std::unique_ptr<Simulator> s_;

    [[nodiscard]] int memory(int address) const {
        return s_->machine().mem[static_cast<std::size_t>(address)];
    }
    [[nodiscard]] CellBox* cellBox(const QString& name) const { return s_->find<CellBox>(name); }
    void key(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) const {
        pressKey(&s_->window, key, modifiers);
    }
    /// The warning of a box, the same for the eye and the ear; empty when it has none.
    [[nodiscard]] QString warningOf(const QString& name) const {
        const CellBox* box = cellBox(name);
        const QString spoken = box->accessibleDescription();
        if (box->differs() != !spoken.isEmpty()) return "the frame tells otherwise";
        if (box->toolTip() != (box->differs() ? spoken : box->accessibleName())) return "the tooltip differs";
        return spoken;
    }
    /// How often the frame's upper edge changes between the text's colour and others.
    [[nodiscard]] static int dashes(QWidget* box) {
        const QImage picture = box->grab().toImage();
        const QRgb ink = box->palette().color(QPalette::Text).rgb();
        int changes = 0;
        for (int x = 1; x < picture.width(); ++x) {
            changes += (picture.pixel(x, 1) == ink) != (picture.pixel(x - 1, 1) == ink) ? 1 : 0;
        }
        return changes;
    }

  private slots:
    void init() { s_ = std::make_unique<Simulator>(); }
    void cleanup() { s_.reset(); }

    void aDigitOnACellIsTypedInItsDataBox_data() {
        QTest::addColumn<QString>("typed");
        QTest::addColumn<int>("byte");
        for (const QChar digit : QStringLiteral("0123456789abcdefABCDEF")) {
            QTest::newRow(qPrintable(QString(digit))) << QString(digit) << QString(digit).toInt(nullptr, 16);
        }
        QTest::newRow("two") << QStringLiteral("c7") << 0xC7;
    }

    void aDigitOnACellIsTypedInItsDataBox() {
        QFETCH(QString, typed);
        QFETCH(int, byte);
        s_->load(0x0010, QByteArray::fromHex("55"));
        s_->load(0x8000, QByteArray::fromHex("3000112233445566778899AABBCCDDEEFF"));
        s_->clickCell("grdmem", 0x0010);
        typeText(&s_->window, typed);
        QVERIFY(s_->box("txtDatMem")->hasFocus());
        QCOMPARE(s_->text("txtDatMem"), typed);
        QCOMPARE(s_->text("txtDirMem"), "0010");
        QCOMPARE(s_->currentAddress("grdmem"), 0x0010);
        QCOMPARE(memory(0x0010), 0x55);
        key(Qt::Key_Tab);
        QCOMPARE(memory(0x0010), byte);
        QCOMPARE(s_->currentAddress("grdmem"), 0x0010);
        QVERIFY(s_->grid("grdmem")->hasFocus());  // on to the next cell
    }

    void aDigitOnAPortIsTypedInItsDataBox() {
        s_->clickCell("grdport", 0x2A);
        key(Qt::Key_Right);
        typeText(&s_->window, "9");
        QVERIFY(s_->box("txtDatPort")->hasFocus());
        key(Qt::Key_Tab);
        QCOMPARE(int(s_->machine().port[0x2B]), 9);
        QCOMPARE(int(s_->machine().port[0x2A]), 0);
        QCOMPARE(memory(0x2B), 0);
    }

    void aDigitIsMeantForTheCurrentCell() {
        s_->load(0x0150, QByteArray::fromHex("77"));
        s_->clickCell("grdmem", 0x0150);
        s_->box("txtDirMem")->showText("3000");
        typeText(&s_->window, "4");
        QCOMPARE(s_->text("txtDirMem"), "0150");
        QCOMPARE(s_->text("txtDatMem"), "4");
        key(Qt::Key_Escape);
        QCOMPARE(s_->text("txtDatMem"), "77");
        // A cell that became current by its address: the data box still has the text of another one.
        s_->enter("txtDirMem", "0000");
        while (!s_->grid("grdmem")->hasFocus()) key(Qt::Key_Backtab, Qt::ShiftModifier);
        typeText(&s_->window, "8");
        key(Qt::Key_Tab);
        QCOMPARE(memory(0x0000), 8);
        QCOMPARE(memory(0x0150), 0x77);
    }

    void otherKeysOnACellDoNothing() {
        s_->load(0x8000, QByteArray::fromHex("33"));
        s_->clickCell("grdmem", 0x0010);
        for (const char* typed : {"g", " ", "z", "+", "ñ", "33"}) {
            s_->grid("grdmem")->keyboardSearch(typed);
        }
        typeText(&s_->window, "gz+ .");
        key(Qt::Key_Space);
        key(Qt::Key_3, Qt::ControlModifier);
        key(Qt::Key_3, Qt::AltModifier);
        key(Qt::Key_3, Qt::MetaModifier);
        QVERIFY(s_->grid("grdmem")->hasFocus());
        QCOMPARE(s_->currentAddress("grdmem"), 0x0010);
        QCOMPARE(s_->text("txtDatMem"), "00");
    }

    void anInputMethodsDigitIsTypedToo() {
        s_->clickCell("grdmem", 0x0010);
        QInputMethodEvent event;
        event.setCommitString("b");
        QCoreApplication::sendEvent(s_->grid("grdmem"), &event);
        QVERIFY(s_->box("txtDatMem")->hasFocus());
        QCOMPARE(s_->text("txtDatMem"), "b");
    }

    void theListingKeepsItsSearch() {
        s_->clickRow(0);
        typeText(&s_->window, "0009");
        QCOMPARE(s_->selectedAddress(), 9);
        QVERIFY(s_->listing()->hasFocus());
    }

    void aDigitIsTypedInARunToo() {
        s_->load(0, QByteArray::fromHex("03C30000"));
        s_->runWith([this] {
            s_->clickCell("grdmem", 0x0140);
            typeText(&s_->window, "5a");
            QVERIFY(s_->box("txtDatMem")->hasFocus());
            s_->leaveBox();
        });
        QCOMPARE(memory(0x0140), 0x5A);
    }

    /// Load, look at an address, Tab, Tab: the box still writes what it held, but tells so before.
    void tabbingThroughWarns() {
        s_->load(0, QByteArray::fromHex("3A0040"));
        QCOMPARE(warningOf("txtDatMem"), warning("3A", "00"));
        clickIn(s_->box("txtDirMem"));
        key(Qt::Key_Tab);
        QVERIFY(s_->box("txtDatMem")->hasFocus());
        QCOMPARE(warningOf("txtDatMem"), warning("3A", "00"));
        const auto* spoken = QAccessible::queryAccessibleInterface(s_->box("txtDatMem"));
        QCOMPARE(spoken->text(QAccessible::Description), warning("3A", "00"));
        key(Qt::Key_Escape);
        QCOMPARE(s_->text("txtDatMem"), "3A");
        QCOMPARE(s_->box("txtDatMem")->selectedText(), "3A");
        QVERIFY(!s_->box("txtDatMem")->edited());
        QCOMPARE(warningOf("txtDatMem"), QString());
        key(Qt::Key_Tab);
        QCOMPARE(memory(0), 0x3A);
        s_->enter("txtDirMem", "0001");
        QCOMPARE(warningOf("txtDatMem"), warning("00", "3A"));
        clickIn(s_->box("txtDatMem"));
        s_->leaveBox();
        QCOMPARE(memory(1), 0x3A);  // the rule stays
        QCOMPARE(warningOf("txtDatMem"), QString());
    }

    void whatIsTypedCounts() {
        s_->load(0x0020, QByteArray::fromHex("05"));
        s_->clickCell("grdmem", 0x0020);
        QCOMPARE(warningOf("txtDatMem"), QString());
        const QString refused = "La casilla contiene 05; este texto no se puede escribir";
        for (const auto& [text, expected] : {std::pair<QString, QString>{"7", warning("05", "07")},
                                             {" a", warning("05", "0A")},
                                             {"5", QString()},
                                             {"", warning("05", "00")},
                                             {"zz", refused},
                                             {"005", refused}}) {
            s_->type("txtDatMem", text);
            QCOMPARE(warningOf("txtDatMem"), expected);
        }
        key(Qt::Key_Escape);
        QCOMPARE(s_->text("txtDatMem"), "05");
        s_->leaveBox();
        QCOMPARE(memory(0x0020), 5);
    }

    void theAddressCounts() {
        s_->load(0x1234, QByteArray::fromHex("AB"));
        s_->type("txtDirMem", "1234");
        QCOMPARE(warningOf("txtDatMem"), warning("AB", "00"));
        s_->type("txtDirMem", "123");
        QCOMPARE(warningOf("txtDatMem"), QString());
        s_->type("txtDirMem", "12345");  // no address, no cell
        QCOMPARE(warningOf("txtDatMem"), QString());
        s_->enter("txtDirMem", "1234");
        s_->enter("txtDatMem", "AB");
        QCOMPARE(warningOf("txtDatMem"), QString());
    }

    void portsWarnToo() {
        s_->load(0, QByteArray::fromHex("3E5AD377"));  // MVI A,5A; OUT 77
        s_->clickCell("grdport", 0x77);
        for (int i = 0; i < 2; ++i) s_->press("Eje_paso");
        QCOMPARE(warningOf("txtDatPort"), warning("5A", "00"));
        clickIn(s_->box("txtDatPort"));
        key(Qt::Key_Escape);
        s_->leaveBox();
        QCOMPARE(int(s_->machine().port[0x77]), 0x5A);
        s_->enter("txtDatPort", "11");
        QCOMPARE(warningOf("txtDatPort"), QString());
        s_->enter("txtDirPort", "78");
        QCOMPARE(warningOf("txtDatPort"), warning("00", "11"));
    }

    void theEntryRowWarnsToo() {
        s_->load(0x100, QByteArray::fromHex("C33412"));
        s_->enter("txtDIR", "0100");
        QCOMPARE(warningOf("INSCO"), warning("C3", "00"));
        QCOMPARE(warningOf("INSOP1"), warning("34", "00"));
        QCOMPARE(warningOf("INSOP2"), warning("12", "00"));
        clickIn(s_->box("INSCO"));
        key(Qt::Key_Escape);
        key(Qt::Key_Tab);
        key(Qt::Key_Escape);
        QCOMPARE(s_->text("INSOP1"), "34");
        key(Qt::Key_Tab);
        s_->type("INSOP2", " ");  // writes nothing
        QCOMPARE(warningOf("INSOP2"), QString());
        key(Qt::Key_Escape);
        QCOMPARE(s_->text("INSOP2"), " ");
        s_->leaveBox();
        QCOMPARE(s_->rows().at(s_->rowOf(0x100)), "0100 C3 34 12  JMP 1234");
        s_->enter("INSOP1", "56");
        for (const char* box : {"INSCO", "INSOP1", "INSOP2"}) QCOMPARE(warningOf(box), QString());
        s_->type("txtDIR", "0200");
        QCOMPARE(warningOf("INSCO"), warning("00", "C3"));
        s_->enter("txtDIR", "0100");
        s_->enter("txtDirMem", "0101");
        s_->enter("txtDatMem", "99");
        QCOMPARE(warningOf("INSOP1"), warning("99", "56"));
        s_->clickRow(s_->rowOf(0x100));
        QCOMPARE(warningOf("INSOP1"), QString());
    }

    /// Each of the two panels follows what the other one writes.
    void theEntryRowAndTheDataBoxFollowEachOther() {
        s_->enter("txtDIR", "0300");
        s_->enter("txtDirMem", "0300");
        s_->enter("INSCO", "21");
        QCOMPARE(warningOf("txtDatMem"), warning("21", "00"));
        s_->enter("txtDatMem", "42");
        QCOMPARE(warningOf("INSCO"), warning("42", "21"));
    }

    void thereIsNoCellBeyondTheTop() {
        s_->load(0, QByteArray::fromHex("AABB"));
        s_->load(0xFFFF, QByteArray::fromHex("CC"));
        s_->enter("txtDIR", "FFFF");
        QCOMPARE(warningOf("INSCO"), warning("CC", "00"));
        QCOMPARE(warningOf("INSOP1"), QString());
        QCOMPARE(warningOf("INSOP2"), QString());
    }

    void theWarningFollowsTheProgram() {
        s_->load(0, QByteArray::fromHex("3432000078C30000"));  // INR M ...
        s_->enter("txtHL", "4000");
        s_->clickCell("grdmem", 0x4000);
        s_->enter("txtDIR", "4000");
        s_->enter("INSCO", "00");
        s_->press("Eje_paso");
        QCOMPARE(warningOf("txtDatMem"), warning("01", "00"));
        QCOMPARE(warningOf("INSCO"), warning("01", "00"));
        s_->load(0, QByteArray::fromHex("34C30000"));  // INR M; JMP 0000
        s_->runWith([this] {
            for (int i = 0; i < 3; ++i) {
                const QString held = hexDigits(memory(0x4000), 2);
                QCOMPARE(warningOf("txtDatMem"), held == "00" ? QString() : warning(held, "00"));
                QCoreApplication::processEvents();
            }
        });
        s_->enter("txtM", "EE");
        QCOMPARE(warningOf("txtDatMem"), warning("EE", "00"));
    }

    void theFrameIsDashed_data() {
        QTest::addColumn<QColor>("base");
        QTest::addColumn<QColor>("text");
        QTest::newRow("light") << QColor(Qt::white) << QColor(Qt::black);
        QTest::newRow("dark") << QColor(0x20, 0x20, 0x20) << QColor(0xF0, 0xF0, 0xF0);
    }

    void theFrameIsDashed() {
        QFETCH(QColor, base);
        QFETCH(QColor, text);
        QPalette palette = s_->window.palette();
        palette.setColor(QPalette::Base, base);
        palette.setColor(QPalette::Text, text);
        s_->window.setPalette(palette);
        s_->load(0, QByteArray::fromHex("3A0040"));
        for (const char* name : {"txtDatMem", "INSCO", "INSOP2"}) {
            QVERIFY(dashes(s_->box(name)) >= 6);
            clickIn(s_->box(name));  // with the focus, too
            QVERIFY(dashes(s_->box(name)) >= 6);
            QVERIFY(contrast(s_->box(name)->palette().color(QPalette::Text),
                             s_->box(name)->palette().color(QPalette::Base)) >= 3);
            key(Qt::Key_Escape);
            QVERIFY(dashes(s_->box(name)) <= 2);
        }
        QVERIFY(dashes(s_->box("txtDatPort")) <= 2);
        QVERIFY(dashes(s_->box("txtA")) <= 2);
    }

    void escPutsBackAlsoWhatWouldWriteTheSame() {
        s_->clickCell("grdmem", 0x0200);
        for (const char* typed : {"0", ""}) {
            s_->type("txtDatMem", typed);
            key(Qt::Key_Escape);
            QCOMPARE(s_->text("txtDatMem"), "00");
        }
    }

    void escElsewhereDoesNothing() {
        s_->type("txtA", "7");
        key(Qt::Key_Escape);
        QCOMPARE(s_->text("txtA"), "7");
        s_->clickCell("grdmem", 0);
        clickIn(s_->box("txtDatMem"));
        key(Qt::Key_Escape);
        QCOMPARE(s_->text("txtDatMem"), "00");
        QVERIFY(s_->box("txtDatMem")->hasFocus());
    }
};

QTEST_MAIN(CellBoxesTest)
#include "CellBoxesTest.moc"
