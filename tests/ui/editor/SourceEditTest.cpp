#include <QAccessible>
#include <QApplication>
#include <QClipboard>
#include <QContextMenuEvent>
#include <QKeyEvent>
#include <QMenu>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTest>
#include <QTextBlock>
#include <QTextLayout>
#include <QTimer>

#include "tests/support/Dragging.h"
#include "tests/support/RealInput.h"
#include "ui/editor/SourceEdit.h"

using namespace tavinor;

namespace {

/// Lines that tell their number, enough of them for several pieces.
QString longText(const QString& lineEnd = "\n") {
    QString text;
    for (int i = 0; i < 50'000; ++i) text += "\tMVI A," + QString::number(i) + "\t; línea" + lineEnd;
    return text;
}

class Fixture {
  public:
    Fixture() : box("texto", "Texto", nullptr) { ready = showActive(&box); }

    SourceEdit box;
    bool ready = false;

    [[nodiscard]] QString shown() const { return box.toPlainText(); }
    void setLongText() {
        box.setSource(longText());
        if (!box.isFilling()) qFatal("the text is too short for these tests");
    }
    void waitForAll() { QTRY_VERIFY(!box.isFilling()); }
};

}  // namespace

/// A long text comes into the box by pieces, and only the scroll bar tells.
class SourceEditTest : public QObject {
    Q_OBJECT

  private slots:
    void aShortTextIsThereAtOnce() {
        Fixture f;
        f.box.setSource("MVI A,1\r\nHLT\r\n");
        QVERIFY(!f.box.isFilling());
        QCOMPARE(f.shown(), QString("MVI A,1\nHLT\n"));
    }

    void theBeginningOfALongTextIsThereAtOnce() {
        Fixture f;
        f.setLongText();
        QVERIFY(longText().startsWith(f.shown()));
        QVERIFY(f.shown().endsWith('\n'));
        QCOMPARE(f.box.textCursor().position(), 0);
    }

    void manyShortLinesComeByPiecesToo() {
        Fixture f;
        f.box.setSource(QString(100'000, '\n'));
        QVERIFY(f.box.isFilling());
        QVERIFY(f.box.blockCount() < 50'000);
        QCOMPARE(f.box.source().size(), qsizetype{100'000});
    }

    void theRestComesByItself_data() {
        QTest::addColumn<QString>("lineEnd");
        QTest::newRow("LF") << "\n";
        QTest::newRow("CR LF") << "\r\n";
        QTest::newRow("CR") << "\r";
    }
    void theRestComesByItself() {
        QFETCH(QString, lineEnd);
        Fixture f;
        QSignalSpy edited(&f.box, &SourceEdit::edited);
        f.box.setSource(longText(lineEnd));
        QVERIFY(f.box.isFilling());
        f.waitForAll();
        QCOMPARE(f.shown(), longText());
        QCOMPARE(edited.count(), 0);
        QCOMPARE(f.box.textCursor().position(), 0);
        QCOMPARE(f.box.verticalScrollBar()->value(), 0);
    }

    void anyKindOfLineEndIsTaken() {
        Fixture f;
        f.box.setSource("\ra\r\nb\n\r\n\rc\r\r\nd\n\ne\r");
        QCOMPARE(f.box.source(), QString("\na\nb\n\n\nc\n\nd\n\ne\n"));
    }

    void charactersThatLookLikeOthersAreThese() {
        Fixture f;
        f.box.setSource(QStringLiteral(u"a\u2028b\u2029c\u0085d\u00A0e\uFDD0f\uFDD1"));
        QCOMPARE(f.box.source(), QStringLiteral(u"a\nb\nc\nd e\uFFFDf\uFFFD"));
        QCOMPARE(f.box.blockCount(), 4);
    }

    void enterWithShiftEndsALine() {
        for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Enter}) {
            Fixture f;
            f.box.setSource("ab");
            pressKey(&f.box, Qt::Key_Right);
            pressKey(&f.box, key, Qt::ShiftModifier);
            QCOMPARE(f.box.blockCount(), 2);
            QCOMPARE(f.box.source(), QString("a\nb"));
            QCOMPARE(f.box.textCursor().position(), 2);
        }
    }

    void controlYRedoes() {
        Fixture f;
        f.box.setSource("HLT\n");
        typeText(&f.box, "x");
        pressKey(&f.box, Qt::Key_Z, Qt::ControlModifier);
        QCOMPARE(f.shown(), QString("HLT\n"));
        pressKey(&f.box, Qt::Key_Y, Qt::ControlModifier);
        QCOMPARE(f.shown(), QString("xHLT\n"));
        pressKey(&f.box, Qt::Key_Y, Qt::ControlModifier);
        QCOMPARE(f.shown(), QString("xHLT\n"));
    }

    /// Qt would throw away the layout of the lines in view, and of all others.
    void anotherWidthChangesNoLine() {
        Fixture f;
        f.setLongText();
        f.waitForAll();
        const QTextBlock line = f.box.document()->firstBlock();
        QTRY_COMPARE(line.layout()->lineCount(), 1);
        f.box.resize(f.box.width() + 100, f.box.height());
        QCOMPARE(line.layout()->lineCount(), 1);
    }

    void theMenuNamesTheKeyToRedo() {
        Fixture f;
        QString label;
        QTimer::singleShot(0, &f.box, [&label] {
            auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
            if (menu == nullptr) return;
            label = menu->findChild<QAction*>("edit-redo")->text();
            menu->close();
        });
        QContextMenuEvent event(QContextMenuEvent::Keyboard, QPoint(5, 5), f.box.mapToGlobal(QPoint(5, 5)));
        QApplication::sendEvent(f.box.viewport(), &event);
        QVERIFY2(label.endsWith("\tCtrl+Y"), qPrintable(label));
    }

    void pastedCharactersThatLookLikeOthersAreThese() {
        Fixture f;
        f.box.setSource("NOP\n");
        QApplication::clipboard()->setText(QStringLiteral(u"MVI\u00A0A,1\u2028;\u2029HLT\u0085\r\n"));
        f.box.paste();
        QCOMPARE(f.box.source(), QString("MVI A,1\n;\nHLT\n\nNOP\n"));
        QCOMPARE(f.box.textCursor().position(), 15);
        f.box.undo();
        QCOMPARE(f.box.source(), QString("NOP\n"));
    }

    void typedNoBreakSpacesAreBlanks() {
        Fixture f;
        QKeyEvent key(QEvent::KeyPress, Qt::Key_nobreakspace, Qt::NoModifier, QStringLiteral(u"\u00A0"));
        typeText(&f.box, "A");
        QApplication::sendEvent(&f.box, &key);
        typeText(&f.box, "B");
        QCOMPARE(f.box.source(), QString("A B"));
        QCOMPARE(f.box.textCursor().position(), 3);
    }

    void whatAnAssistiveToolWritesIsASource() {
        Fixture f;
        f.box.setSource("NOP\n");
        QAccessibleInterface* tool = QAccessible::queryAccessibleInterface(&f.box);
        tool->editableTextInterface()->insertText(3, QStringLiteral(u"\u2028A\u00A0B\u0085"));
        QCOMPARE(f.box.source(), QString("NOP\nA B\n\n"));
        QCOMPARE(f.box.blockCount(), 4);
        for (int i = 0; i < 2; ++i) f.box.undo();
        QCOMPARE(f.box.source(), QString("NOP\n"));
        for (int i = 0; i < 2; ++i) f.box.redo();
        QCOMPARE(f.box.source(), QString("NOP\nA B\n\n"));
        tool->setText(QAccessible::Value, QStringLiteral(u"A\u00A0\u2028B"));
        QCOMPARE(f.box.source(), QString("A \nB"));
    }

    void tooMuchIsNotPasted_data() {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("refusal");
        const QString tooLong = "Línea demasiado larga. El editor admite hasta 128 KiB en cada una.";
        // The text box holds 4 characters in 2 lines, and the caret is behind the second one.
        QTest::newRow("the longest line") << QString(128 * 1024 - 3, 'x') << QString();
        QTest::newRow("longer by one") << QString(128 * 1024 - 2, 'x') << tooLong;
        QTest::newRow("too long before the caret") << QString(128 * 1024 - 1, 'x') + "\n" << tooLong;
        QTest::newRow("too long behind the caret") << "\n" + QString(128 * 1024, 'x') << tooLong;
        QTest::newRow("in its middle") << "\n" + QString(128 * 1024 + 1, 'x') + "\n" << tooLong;
        QTest::newRow("too many lines")
            << QString(2'000'000, '\n') << "Demasiadas líneas. El editor admite hasta dos millones.";
        QTest::newRow("too many characters") << (QString(1023, 'x') + '\n').repeated(64 * 1024)
                                             << "Texto demasiado grande. El editor admite hasta 64 MiB.";
    }

    void tooMuchIsNotPasted() {
        QFETCH(QString, text);
        QFETCH(QString, refusal);
        Fixture f;
        f.box.setSource("abc\nd");
        f.box.select(2, 0);
        QSignalSpy refused(&f.box, &SourceEdit::refused);
        QApplication::clipboard()->setText(text);
        f.box.paste();
        QCOMPARE(f.box.source(), refusal.isEmpty() ? "ab" + text + "c\nd" : QString("abc\nd"));
        QCOMPARE(refused.value(0).value(0).toString(), refusal);
    }

    void whatTakesThePlaceOfEnoughIsPasted() {
        Fixture f;
        f.box.setSource("ab" + QString(128 * 1024 - 2, 'x') + "\n");
        QApplication::clipboard()->setText("yz");
        f.box.select(1, 2);
        f.box.paste();
        QVERIFY(f.box.source().startsWith("ayzx"));
    }

    void tooMuchIsNotDropped() {
        Fixture f;
        f.box.setSource("abc\n");
        QSignalSpy refused(&f.box, &SourceEdit::refused);
        for (const qsizetype length : {5, 128 * 1024}) {
            dropOn(&f.box, QPoint(2, 2), DraggedText(QString(length, 'x')));
        }
        QCOMPARE(f.box.source(), QString("xxxxxabc\n"));
        QCOMPARE(refused.count(), 1);
    }

    void theSourceIsWholeAtAnyTime() {
        Fixture f;
        f.setLongText();
        QCOMPARE(f.box.source(), longText());
        QCOMPARE(f.shown(), longText());
    }

    void aKeyFindsAllOfTheText() {
        Fixture f;
        f.setLongText();
        QKeyEvent end(QEvent::KeyPress, Qt::Key_End, Qt::ControlModifier);
        QApplication::sendEvent(&f.box, &end);
        QVERIFY(!f.box.isFilling());
        QVERIFY(f.box.textCursor().atEnd());
    }

    void theBeginningOfACommandLeavesTheRestToCome() {
        for (const Qt::Key modifier : {Qt::Key_Control, Qt::Key_Alt, Qt::Key_Shift}) {
            Fixture f;
            f.setLongText();
            QKeyEvent press(QEvent::KeyPress, modifier, Qt::NoModifier);
            QApplication::sendEvent(&f.box, &press);
            QVERIFY(f.box.isFilling());
        }
    }

    void whatIsTypedMeanwhileCanBeUndone() {
        Fixture f;
        f.setLongText();
        QSignalSpy edited(&f.box, &SourceEdit::edited);
        typeText(&f.box, "x");
        QCOMPARE(f.shown(), "x" + longText());
        QVERIFY(edited.count() > 0);
        pressKey(&f.box, Qt::Key_Z, Qt::ControlModifier);
        QCOMPARE(f.shown(), longText());
        pressKey(&f.box, Qt::Key_Z, Qt::ControlModifier);
        QCOMPARE(f.shown(), longText());  // no piece is a step of undo
    }

    void aClickFindsAllOfTheText() {
        Fixture f;
        f.setLongText();
        clickIn(f.box.viewport());
        QVERIFY(!f.box.isFilling());
        QCOMPARE(f.shown(), longText());
    }

    void pastingFindsAllOfTheText() {
        Fixture f;
        QApplication::clipboard()->setText("NOP\n");
        f.setLongText();
        f.box.paste();
        QCOMPARE(f.shown(), "NOP\n" + longText());
        f.box.undo();
        QCOMPARE(f.shown(), longText());
    }

    void selectingFindsAllOfTheText() {
        Fixture f;
        f.setLongText();
        f.box.select(longText().size() - 3, 2);
        QCOMPARE(f.box.textCursor().selectedText(), QString("ea"));
    }

    void aWriterBesideTheKeyboardLosesNothing() {
        Fixture f;
        f.setLongText();
        QTextCursor(f.box.document()).insertText("x");
        f.waitForAll();
        QCOMPARE(f.shown(), "x" + longText());
    }

    void aWriterBesideTheKeyboardCanReplaceAllOfIt() {
        Fixture f;
        f.setLongText();
        QAccessibleInterface* tool = QAccessible::queryAccessibleInterface(&f.box);
        tool->editableTextInterface()->replaceText(0, tool->textInterface()->characterCount(), "HLT\n");
        f.waitForAll();
        QCOMPARE(f.shown(), QString("HLT\n"));
        QCOMPARE(f.box.source(), QString("HLT\n"));
    }

    void anotherVersionComesByPiecesToTheSamePlace() {
        Fixture f;
        f.box.setSource(longText());
        QCOMPARE(f.box.source(), longText());
        f.box.select(longText().indexOf("40000"), 5);
        const int row = f.box.verticalScrollBar()->value();
        QVERIFY(row > 39'000);
        f.box.setSourceInPlace("; nuevo\n" + longText());
        QVERIFY(f.box.isFilling());
        QVERIFY(f.box.blockCount() < 40'000);
        f.waitForAll();
        QCOMPARE(f.shown(), "; nuevo\n" + longText());
        QCOMPARE(f.box.verticalScrollBar()->value(), row);
        QCOMPARE(f.box.textCursor().block().text().left(12), QString("\tMVI A,39999"));
        f.box.setSourceInPlace(longText());
        pressKey(&f.box, Qt::Key_Delete);  // the rest comes, and the place is the same
        QCOMPARE(f.shown(), longText().replace("A,40000", "A,"));
    }

    void anotherTextTakesThePlaceOfOneThatIsComing() {
        Fixture f;
        f.setLongText();
        f.box.setSource("HLT\n");
        QVERIFY(!f.box.isFilling());
        QTest::qWait(50);
        QCOMPARE(f.shown(), QString("HLT\n"));
        typeText(&f.box, "x");
        f.box.undo();
        QCOMPARE(f.shown(), QString("HLT\n"));
    }
};

QTEST_MAIN(SourceEditTest)
#include "SourceEditTest.moc"
