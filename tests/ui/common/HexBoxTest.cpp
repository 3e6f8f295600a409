#include <QAccessible>
#include <QApplication>
#include <QClipboard>
#include <QDialog>
#include <QMenu>
#include <QMenuBar>
#include <QSignalSpy>
#include <QTest>
#include <memory>

#include "tests/support/DialogAnswerer.h"
#include "tests/support/RealInput.h"
#include "tests/ui/common/HexBoxWindow.h"
#include "ui/common/MessageBoxes.h"

using namespace tavinor;

namespace {

const QString refusal = QStringLiteral("Valor incorrecto");

void addWaysOut() {
    QTest::addColumn<std::size_t>("index");
    for (std::size_t i = 0; i < waysOut().size(); ++i) QTest::newRow(waysOut()[i].name) << i;
}

}  // namespace

/// The hexadecimal box: what it takes, and that leaving it is the only way by which an edit gets out.
class HexBoxTest : public QObject {
    Q_OBJECT

  private:
    std::unique_ptr<HexBoxWindow> window_;
    std::unique_ptr<DialogAnswerer> dialogs_;  // fails a test in which a message comes unasked, or does not
    HexBox* byte_ = nullptr;

    /// The window gets the focus back from a message box in its own time.
    static void checkKept(const HexBox* box, const QString& text) {
        QTRY_VERIFY(box->hasFocus());
        QCOMPARE(box->text(), text);
        QCOMPARE(box->selectedText(), text);
    }

    /// Leaves the window for another one and comes back.
    void visitAnotherWindow() {
        QWidget other;
        QVERIFY(showActive(&other));
        other.close();
        window_->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(window_.get()));
    }

  private slots:
    void init() {
        window_ = std::make_unique<HexBoxWindow>();
        QVERIFY(showActive(window_.get()));
        dialogs_ = std::make_unique<DialogAnswerer>();
        byte_ = window_->byte;
        window_->before->setFocus();
    }

    void cleanup() {
        dialogs_.reset();
        window_.reset();
    }

    void startsWithZeros() {
        QCOMPARE(byte_->text(), "00");
        QCOMPARE(window_->word->text(), "0000");
        QCOMPARE(window_->kept->text(), "00");
    }

    void tabSelectsAll() {
        pressKey(window_.get(), Qt::Key_Tab);
        checkKept(byte_, "00");
        typeText(byte_, "7");
        QCOMPARE(byte_->text(), "7");
    }

    void clickSelectsAll() {
        clickAt(window_->word, QPoint(6, window_->word->height() / 2));
        checkKept(window_->word, "0000");
    }

    void aSecondClickPlacesTheCaret() {
        clickIn(window_->word);
        QTest::qWait(QApplication::doubleClickInterval() + 50);
        clickAt(window_->word, QPoint(window_->word->width() - 3, window_->word->height() / 2));
        QCOMPARE(window_->word->selectedText(), "");
        QCOMPARE(window_->word->cursorPosition(), 4);
    }

    void comingBackSelectsAllAgain() {
        clickIn(window_->word);
        clickIn(byte_);
        clickIn(window_->word);
        checkKept(window_->word, "0000");
    }

    void accepts_data() {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("asByte");
        QTest::addColumn<QString>("asWord");
        QTest::newRow("one digit") << "5"
                                   << "05"
                                   << "0005";
        QTest::newRow("leading blanks") << "  ab"
                                        << "AB"
                                        << "00AB";
        QTest::newRow("empty") << ""
                               << "00"
                               << "0000";
        QTest::newRow("blanks") << "   "
                                << "00"
                                << "0000";
        QTest::newRow("mixed case") << "fF"
                                    << "FF"
                                    << "00FF";
        QTest::newRow("two digits") << "12"
                                    << "12"
                                    << "0012";
        QTest::newRow("many blanks") << QString(50, ' ') + "7"
                                     << "07"
                                     << "0007";
        QTest::newRow("three digits") << "123" << QString() << "0123";
        QTest::newRow("four digits") << "89ab" << QString() << "89AB";
        QTest::newRow("zeros") << "0000" << QString() << "0000";
        QTest::newRow("five digits") << "12345" << QString() << QString();
        QTest::newRow("leading zero too many") << "00001" << QString() << QString();
        QTest::newRow("trailing blank") << "AB " << QString() << QString();
        QTest::newRow("blank inside") << "A B" << QString() << QString();
        QTest::newRow("no digit") << "G" << QString() << QString();
        QTest::newRow("minus") << "-1" << QString() << QString();
        QTest::newRow("prefix") << "0x1" << QString() << QString();
        QTest::newRow("suffix") << "5h" << QString() << QString();
        QTest::newRow("tabulator") << "\t5" << QString() << QString();
        QTest::newRow("hard blank") << QStringLiteral(u"\u00A05") << QString() << QString();
        QTest::newRow("ligature") << QStringLiteral(u"\uFB00") << QString() << QString();
        QTest::newRow("full-width digit") << QStringLiteral(u"\uFF11") << QString() << QString();
        QTest::newRow("Arabic digit") << QStringLiteral(u"\u0661") << QString() << QString();
        QTest::newRow("Cyrillic A") << QStringLiteral(u"\u0410") << QString() << QString();
    }

    /// A null result means refused.
    void accepts() {
        QFETCH(QString, text);
        QFETCH(QString, asByte);
        QFETCH(QString, asWord);
        const std::pair<HexBox*, QString> expected[] = {{byte_, asByte}, {window_->word, asWord}};
        for (const auto& [box, result] : expected) {
            const QSignalSpy left(box, &HexBox::left);
            if (result.isNull()) dialogs_->expectMessage(refusal);
            window_->typeInto(box, "");
            box->setText(text);
            pressKey(box, Qt::Key_Tab);
            QCOMPARE(left.count(), result.isNull() ? 0 : 1);
            if (result.isNull()) {
                checkKept(box, text);
                box->showText("00");
            } else {
                QVERIFY(!box->hasFocus());
                QCOMPARE(box->text(), result);
                QCOMPARE(box->cursorPosition(), 0);
            }
        }
    }

    void keepsABlankTextWhereThatIsAllowed_data() {
        QTest::addColumn<QString>("text");
        QTest::newRow("empty") << "";
        QTest::newRow("one") << " ";
        QTest::newRow("three") << "   ";
    }

    void keepsABlankTextWhereThatIsAllowed() {
        QFETCH(QString, text);
        const QSignalSpy left(window_->kept, &HexBox::left);
        window_->typeInto(window_->kept, text);
        pressKey(window_.get(), Qt::Key_Tab);
        QCOMPARE(window_->kept->text(), text);
        QCOMPARE(left.count(), 1);
        window_->typeInto(window_->kept, " 5");
        pressKey(window_.get(), Qt::Key_Tab);
        QCOMPARE(window_->kept->text(), "05");
    }

    void everyWayOutLeavesOnce_data() { addWaysOut(); }

    void everyWayOutLeavesOnce() {
        QFETCH(std::size_t, index);
        const QSignalSpy validated(byte_, &HexBox::validated);
        const QSignalSpy left(byte_, &HexBox::left);
        window_->typeInto(byte_, "a");
        waysOut()[index].go(*window_);
        QVERIFY(waysOut()[index].arrived(*window_));
        QVERIFY(!byte_->hasFocus());
        QCOMPARE(byte_->text(), "0A");
        QCOMPARE(validated.count(), 1);
        QCOMPARE(left.count(), 1);
    }

    void everyWayOutLeavesAlsoWhenNothingWasTyped_data() { addWaysOut(); }

    void everyWayOutLeavesAlsoWhenNothingWasTyped() {
        QFETCH(std::size_t, index);
        const QSignalSpy left(byte_, &HexBox::left);
        clickIn(byte_);
        waysOut()[index].go(*window_);
        QVERIFY(waysOut()[index].arrived(*window_));
        QCOMPARE(left.count(), 1);
    }

    void aRefusalStopsEveryWayOut_data() { addWaysOut(); }

    void aRefusalStopsEveryWayOut() {
        QFETCH(std::size_t, index);
        const QSignalSpy left(byte_, &HexBox::left);
        window_->typeInto(byte_, "12g");
        for (int attempt = 0; attempt < 2; ++attempt) {
            dialogs_->expectMessage(refusal);
            waysOut()[index].go(*window_);
            QTRY_VERIFY(dialogs_->allCame());
            checkKept(byte_, "12g");
            QCOMPARE(left.count(), 0);
            QVERIFY(window_->untouched());
        }
        typeText(byte_, "34");
        pressKey(window_.get(), Qt::Key_Tab);
        QCOMPARE(byte_->text(), "34");
        QCOMPARE(left.count(), 1);
    }

    /// An assistive tool writes without moving the focus: what it wrote counts like what was typed.
    void aToolThatWritesEntersTheBox() {
        window_->typeInto(byte_, "7");
        const QSignalSpy leftByte(byte_, &HexBox::left);
        const QSignalSpy leftWord(window_->word, &HexBox::left);
        // As in the main window, where leaving a box refreshes the others.
        connect(byte_, &HexBox::left, window_->word, [this] { window_->word->showText("0000"); });
        writeByAssistiveTool(window_->word, "12a");
        QCOMPARE(leftByte.count(), 1);
        QCOMPARE(byte_->text(), "07");
        QVERIFY(window_->word->entered() && window_->word->hasFocus());
        QCOMPARE(window_->word->text(), "12a");
        clickIn(window_->button);
        QCOMPARE(leftWord.count(), 1);
        QCOMPARE(window_->word->text(), "012A");
    }

    void aToolThatWritesMeetsARefusal() {
        window_->typeInto(byte_, "12g");
        dialogs_->expectMessage(refusal);
        writeByAssistiveTool(window_->word, "34");
        QCOMPARE(window_->word->text(), "0000");
        QVERIFY(!window_->word->entered());
        QTRY_VERIFY(dialogs_->allCame());
        checkKept(byte_, "12g");
    }

    /// An assistive tool that moves the focus waits for an answer: it could not read a message before.
    void aToolIsAnsweredBeforeTheRefusalIsShown() {
        window_->typeInto(byte_, "12g");
        dialogs_->expectMessage(refusal);
        window_->word->setFocus();
        QCOMPARE(dialogs_->count(), 0);
        QVERIFY(byte_->hasFocus());
        QTRY_VERIFY(dialogs_->allCame());
        checkKept(byte_, "12g");
    }

    /// What is done with the value may itself show a message, which takes the focus for a while.
    void aMessageFromTheLeavingComesOnce_data() { addWaysOut(); }

    void aMessageFromTheLeavingComesOnce() {
        QFETCH(std::size_t, index);
        const QSignalSpy left(byte_, &HexBox::left);
        connect(byte_, &HexBox::left, this, [this] { showMessage(window_.get(), "Atención"); });
        window_->typeInto(byte_, "7");
        dialogs_->expectMessage("Atención");
        waysOut()[index].go(*window_);
        QTest::qWait(20);
        QVERIFY(QTest::qWaitForWindowActive(window_.get()));
        QVERIFY(window_->focusWidget() != byte_);
        QCOMPARE(left.count(), 1);
        // A click whose release went to the message presses nothing; everything else has gone on.
        const bool byMouse = QByteArray(waysOut()[index].name).contains("click");
        QVERIFY(byMouse || waysOut()[index].arrived(*window_));
        QVERIFY(!window_->button->isDown());
        QVERIFY(!window_->checkBox->isDown());
    }

    void aClickThatTakesNoFocusIsNoLeaving() {
        const QSignalSpy left(byte_, &HexBox::left);
        window_->typeInto(byte_, "zz");
        clickIn(window_->findChild<QWidget*>("label"));
        QVERIFY(byte_->hasFocus());
        QCOMPARE(left.count(), 0);
    }

    void theWheelTakesNoFocus() {
        window_->typeInto(byte_, "zz");
        turnWheel(window_->grid->viewport(), -1);
        turnWheel(window_->list->viewport(), -1);
        turnWheel(window_->button, -1);
        QVERIFY(byte_->hasFocus());
        QCOMPARE(byte_->text(), "zz");
    }

    void anotherWindowIsNoLeaving() {
        const QSignalSpy left(byte_, &HexBox::left);
        window_->typeInto(byte_, "zz");
        pressKey(byte_, Qt::Key_Home);
        visitAnotherWindow();
        QTRY_VERIFY(byte_->hasFocus());
        QCOMPARE(byte_->text(), "zz");
        QCOMPARE(byte_->selectedText(), "");  // it was not entered again
        QCOMPARE(byte_->cursorPosition(), 0);
        QCOMPARE(left.count(), 0);
    }

    /// The press that brings a window back may arrive before the window is active.
    void aClickInAnInactiveWindowLeaves() {
        const QSignalSpy left(byte_, &HexBox::left);
        window_->typeInto(byte_, "7");
        QWidget other;
        QVERIFY(showActive(&other));
        clickIn(window_->button);
        QCOMPARE(left.count(), 1);
        QCOMPARE(byte_->text(), "07");
        QCOMPARE(window_->commands, 1);
    }

    void aMenuIsNoLeaving() {
        const QSignalSpy left(byte_, &HexBox::left);
        window_->typeInto(byte_, "zz");
        auto* menu = window_->findChild<QMenu*>("menu");
        pressKey(window_.get(), Qt::Key_M, Qt::AltModifier);
        QTRY_VERIFY(menu->isVisible());
        pressKey(menu, Qt::Key_Escape);
        pressKey(window_.get(), Qt::Key_Escape);
        QTRY_VERIFY(!menu->isVisible());
        QTRY_VERIFY(byte_->hasFocus());
        clickAt(window_->menuBar(), window_->menuBar()->actionGeometry(menu->menuAction()).center());
        QTRY_VERIFY(menu->isVisible());
        menu->close();
        QTRY_VERIFY(byte_->hasFocus());
        QCOMPARE(byte_->text(), "zz");
        QCOMPARE(left.count(), 0);
    }

    void aContextMenuIsNoLeaving() {
        const QSignalSpy left(byte_, &HexBox::left);
        window_->typeInto(byte_, "zz");
        clickAt(byte_, byte_->rect().center(), Qt::RightButton);
        QTRY_VERIFY(QApplication::activePopupWidget() != nullptr);
        QApplication::activePopupWidget()->close();
        QTRY_VERIFY(byte_->hasFocus());
        QCOMPARE(byte_->text(), "zz");
        QCOMPARE(left.count(), 0);
    }

    void aMenusCommandLeavesTheBox() {
        const QSignalSpy left(byte_, &HexBox::left);
        const auto choose = [this] {
            pressKey(window_.get(), Qt::Key_M, Qt::AltModifier);
            auto* menu = window_->findChild<QMenu*>("menu");
            QTRY_VERIFY(menu->isVisible());
            pressKey(menu, Qt::Key_Return);
            QTRY_VERIFY(!menu->isVisible());
        };
        window_->typeInto(byte_, "9");
        choose();
        QCOMPARE(window_->menuActions, 1);
        QCOMPARE(byte_->text(), "09");
        QCOMPARE(left.count(), 1);

        QTRY_VERIFY(byte_->hasFocus());  // nothing has taken the focus: the box counts as entered again
        window_->typeInto(byte_, "zz");
        dialogs_->expectMessage(refusal);
        choose();
        QCOMPARE(window_->menuActions, 1);
        QCOMPARE(left.count(), 1);
        checkKept(byte_, "zz");
    }

    void closingDoesNotAsk() {
        const QSignalSpy left(byte_, &HexBox::left);
        window_->typeInto(byte_, "zz");
        window_->close();
        QTest::qWait(20);
        QVERIFY(!window_->isVisible());
        QCOMPARE(left.count(), 0);
    }

    void typingHasNoLimit() {
        window_->typeInto(byte_, QString(500, '1'));
        QCOMPARE(byte_->text().size(), 500);
        dialogs_->expectMessage(refusal);
        pressKey(window_.get(), Qt::Key_Tab);
        checkKept(byte_, QString(500, '1'));
    }

    void pastes() {
        QApplication::clipboard()->setText("  c3");
        clickIn(byte_);
        pressKey(byte_, Qt::Key_V, Qt::ControlModifier);
        QCOMPARE(byte_->text(), "  c3");  // in place of what was selected on entry
        pressKey(window_.get(), Qt::Key_Tab);
        QCOMPARE(byte_->text(), "C3");
    }

    void showingIsSilent() {
        const QSignalSpy left(byte_, &HexBox::left);
        clickIn(byte_);
        typeText(byte_, "1");
        QVERIFY(byte_->edited());
        byte_->showValue(0xA5);
        QVERIFY(!byte_->edited());
        QCOMPARE(byte_->text(), "A5");
        QVERIFY(byte_->hasFocus());
        QCOMPARE(left.count(), 0);
    }

    void showingKeepsAWholeTextSelected() {
        clickIn(byte_);
        byte_->showText("77");
        checkKept(byte_, "77");
    }

    void aDisabledTakerTakesNothing() {
        window_->button->setEnabled(false);
        window_->typeInto(byte_, "zz");
        clickIn(window_->button);
        pressKey(window_.get(), Qt::Key_O, Qt::AltModifier);
        QVERIFY(byte_->hasFocus());
        QVERIFY(window_->untouched());
    }

    /// By an assistive tool, which reaches what the user cannot.
    void nothingIsWrittenBehindAModalWindow() {
        window_->typeInto(byte_, "1");
        const auto write = [](HexBox* box, const QString& text) {
            QAccessible::queryAccessibleInterface(box)->setText(QAccessible::Value, text);
        };
        dialogs_->expectWindow("inTheWay", [&](QWidget* dialog) {
            write(byte_, "7");
            write(window_->word, "7");
            QCOMPARE(byte_->text(), QString("1"));
            QCOMPARE(window_->word->text(), QString("0000"));
            window_->word->showText("1234");
            QCOMPARE(window_->word->text(), QString("1234"));
            QVERIFY(window_->untouched());
            dialog->close();
        });
        QDialog inTheWay(window_.get());
        inTheWay.setObjectName("inTheWay");
        inTheWay.exec();
        QVERIFY(showActive(window_.get()));
        write(byte_, "7");
        QCOMPARE(byte_->text(), QString("7"));
    }

    /// Of two boxes, one whose value the other's leaving has just corrected: each leaves by itself.
    void boxAfterBox() {
        const QSignalSpy byteLeft(byte_, &HexBox::left);
        const QSignalSpy wordLeft(window_->word, &HexBox::left);
        window_->typeInto(byte_, "1");
        window_->typeInto(window_->word, "2");
        clickIn(window_->button);
        QCOMPARE(byteLeft.count(), 1);
        QCOMPARE(wordLeft.count(), 1);
        QCOMPARE(window_->commands, 1);
    }
};

QTEST_MAIN(HexBoxTest)
#include "HexBoxTest.moc"
