#include <QAccessible>
#include <QApplication>
#include <QClipboard>
#include <QKeyEvent>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTest>

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

/// A long text comes into the box by pieces, and nobody can tell but by looking at the scroll bar.
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
