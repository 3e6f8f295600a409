#include <QApplication>
#include <QClipboard>
#include <QProgressDialog>
#include <QPushButton>
#include <QSet>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>
#include <utility>

#include "tests/support/DialogAnswerer.h"
#include "tests/support/Dragging.h"
#include "tests/support/MemoryLimit.h"
#include "tests/support/RealInput.h"
#include "ui/editor/SourceEdit.h"

using namespace tavinor;

namespace {

/// Lines that tell their number, enough of them for several portions.
QString linesWith(const QString& instruction) {
    QStringList lines;
    for (int i = 0; i < 25'000; ++i) lines += instruction + QString::number(i);
    return lines.join('\n') + '\n';
}
const QString& manyLines() {
    static const QString text = linesWith("MVI A,");
    return text;
}
const QString& otherLines() {
    static const QString text = linesWith("MVI B,");
    return text;
}

/// What the user sees and would type at.
struct Shown {
    QString text;
    int anchor, position;
    bool operator==(const Shown&) const = default;
};

Shown shownIn(const QPlainTextEdit& box) {
    return {box.toPlainText(), box.textCursor().anchor(), box.textCursor().position()};
}

void select(QPlainTextEdit& box, int anchor, int position) {
    QTextCursor cursor = box.textCursor();
    cursor.setPosition(anchor);
    cursor.setPosition(position, QTextCursor::KeepAnchor);
    box.setTextCursor(cursor);
}

/// A key that changes much, and what is selected when it is pressed.
struct Change {
    int anchor, position;
    Qt::Key key;
    Qt::KeyboardModifiers modifiers;
};

class Fixture {
  public:
    explicit Fixture(const QString& text = manyLines()) : box("texto", "Texto", nullptr) {
        ready = showActive(&box);
        box.setSource(text);
        if (box.source() != text) qFatal("the text has not arrived");
        QObject::connect(&timer_, &QTimer::timeout, &box, [this] { look(); });
    }

    SourceEdit box;
    bool ready = false;
    QSet<int> seen;  ///< How many lines there were, between the first and the last, when events were served.
    std::function<void()> meanwhile;  ///< Done once, when a part of a change has been made.

    void press(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
        lines_ = box.blockCount();
        seen.clear();
        timer_.start(0);
        pressKey(&box, key, modifiers);
        timer_.stop();
        seen.remove(box.blockCount());
    }
    void make(const Change& change) {
        select(box, change.anchor, change.position);
        press(change.key, change.modifiers);
    }
    void undo() { press(Qt::Key_Z, Qt::ControlModifier); }
    void redo() { press(Qt::Key_Y, Qt::ControlModifier); }
    void paste() { press(Qt::Key_V, Qt::ControlModifier); }

    /// Cancels the next change as soon as it shows how far it is.
    void cancelIn(DialogAnswerer& dialogs) {
        box.setPatience(std::chrono::milliseconds(0));
        dialogs.expectWindow("progreso", [this](QWidget* dialog) {
            box.setPatience(std::chrono::hours(1));
            QVERIFY(dialog->isModal());
            QCOMPARE(qobject_cast<QProgressDialog*>(dialog)->labelText(), QString("Cambiando el texto..."));
            auto* cancel = dialog->findChild<QPushButton*>();
            QCOMPARE(cancel->text(), QString("Cancelar"));
            clickIn(cancel);
        });
    }

  private:
    void look() {
        if (box.blockCount() == lines_) return;
        seen.insert(box.blockCount());
        if (meanwhile) std::exchange(meanwhile, nullptr)();
    }

    QTimer timer_;
    int lines_ = 0;
};

}  // namespace

Q_DECLARE_METATYPE(Change)

/// What changes many lines at once is done in portions, and does what Qt would do.
class LargeEditsTest : public QObject {
    Q_OBJECT

  private:
    /// Qt's keys that change a selection, or `few` of them.
    static void addChanges(bool few = false) {
        QTest::addColumn<Change>("change");
        const int end = static_cast<int>(manyLines().size()) - 3;
        const auto control = Qt::ControlModifier;
        const auto shift = Qt::ShiftModifier;
        QTest::newRow("pasted in a line") << Change{5, 5, Qt::Key_V, control};
        QTest::newRow("pasted over a selection") << Change{3, end, Qt::Key_V, control};
        QTest::newRow("Del") << Change{3, end, Qt::Key_Delete, {}};
        QTest::newRow("a letter") << Change{3, end, Qt::Key_B, {}};
        if (few) return;
        QTest::newRow("pasted with Shift+Ins") << Change{0, 0, Qt::Key_Insert, shift};
        QTest::newRow("Del, selected backwards") << Change{end, 3, Qt::Key_Delete, {}};
        QTest::newRow("Del, of all") << Change{0, end + 3, Qt::Key_Delete, {}};
        QTest::newRow("Backspace") << Change{3, end, Qt::Key_Backspace, {}};
        QTest::newRow("Shift+Backspace") << Change{3, end, Qt::Key_Backspace, shift};
        QTest::newRow("Ctrl+Del") << Change{3, end, Qt::Key_Delete, control};
        QTest::newRow("Ctrl+Backspace") << Change{3, end, Qt::Key_Backspace, control};
        QTest::newRow("Ctrl+X") << Change{3, end, Qt::Key_X, control};
        QTest::newRow("Shift+Del") << Change{3, end, Qt::Key_Delete, shift};
        QTest::newRow("a capital") << Change{3, end, Qt::Key_B, shift};
        QTest::newRow("Tab") << Change{3, end, Qt::Key_Tab, {}};
        QTest::newRow("Enter") << Change{3, end, Qt::Key_Return, {}};
    }

  private slots:
    void init() { QApplication::clipboard()->setText(otherLines()); }

    void aChangeIsTheSameAsQts_data() { addChanges(); }
    void aChangeIsTheSameAsQts() {
        QFETCH(const Change, change);
        Fixture f;
        QVERIFY(f.ready);
        QPlainTextEdit qts;
        qts.setPlainText(manyLines());
        QVERIFY(showActive(&qts));
        select(qts, change.anchor, change.position);
        pressKey(&qts, change.key, change.modifiers);
        const QString copied = QApplication::clipboard()->text();
        QApplication::clipboard()->setText(otherLines());
        const Shown changed = shownIn(qts);
        QVERIFY(changed.text != manyLines());
        qts.hide();
        QVERIFY(showActive(&f.box));

        f.make(change);
        QVERIFY(shownIn(f.box) == changed);
        QVERIFY(QApplication::clipboard()->text() == copied);
        QVERIFY(!f.seen.isEmpty());
        f.undo();
        QVERIFY(f.box.toPlainText() == manyLines());
        QVERIFY(!f.seen.isEmpty());
        f.redo();
        QVERIFY(shownIn(f.box) == changed);
        QVERIFY(!f.seen.isEmpty());
        f.undo();
        f.undo();
        QVERIFY(f.box.toPlainText() == manyLines());
    }

    void aCancelledChangeLeavesTheText_data() { addChanges(true); }
    void aCancelledChangeLeavesTheText() {
        QFETCH(const Change, change);
        Fixture f;
        typeText(&f.box, "x");
        const QString before = f.box.toPlainText();
        DialogAnswerer dialogs;
        f.cancelIn(dialogs);
        f.make(change);
        QVERIFY(f.box.toPlainText() == before);
        QVERIFY(!f.box.document()->isRedoAvailable());
        f.undo();
        QVERIFY(f.box.toPlainText() == manyLines());
    }

    void aCancelledUndoOrRedoLeavesTheText() {
        Fixture f;
        DialogAnswerer dialogs;
        f.paste();
        const QString pasted = f.box.toPlainText();
        f.cancelIn(dialogs);
        f.undo();
        QVERIFY(f.box.toPlainText() == pasted);
        f.undo();
        QVERIFY(f.box.toPlainText() == manyLines());
        f.cancelIn(dialogs);
        f.redo();
        QVERIFY(f.box.toPlainText() == manyLines());
        f.redo();
        QVERIFY(f.box.toPlainText() == pasted);
    }

    void everyChangeIsUndoneByItself() {
        Fixture f("HLT\n");
        typeText(&f.box, "x");
        f.paste();
        const QString first = f.box.toPlainText();
        f.paste();
        const QString second = f.box.toPlainText();
        pressKey(&f.box, Qt::Key_Home);
        typeText(&f.box, "y");
        const QString third = f.box.toPlainText();
        for (int times = 0; times < 2; ++times) {
            for (const QString& text : {second, first, QString("xHLT\n"), QString("HLT\n")}) {
                f.undo();
                QVERIFY(f.box.toPlainText() == text);
            }
            for (const QString& text : {QString("xHLT\n"), first, second, third}) {
                f.redo();
                QVERIFY(f.box.toPlainText() == text);
            }
        }
    }

    void whatIsTypedAfterAnUndoIsNoPartOfWhatWasUndone() {
        Fixture f("HLT\n");
        f.paste();
        f.undo();
        typeText(&f.box, "x");
        pressKey(&f.box, Qt::Key_End);
        typeText(&f.box, "y");
        f.undo();
        QCOMPARE(f.box.toPlainText(), QString("xHLT\n"));
    }

    void whatComesInBetweenFindsAllOfIt() {
        Fixture f("HLT\n");
        QString found;
        f.meanwhile = [&] { found = f.box.source(); };
        f.paste();
        QVERIFY(found == otherLines() + "HLT\n");
        QVERIFY(f.box.toPlainText() == found);
        f.undo();
        QCOMPARE(f.box.toPlainText(), QString("HLT\n"));
    }

    void aKeyInBetweenComesAfterIt() {
        Fixture f("HLT\n");
        f.meanwhile = [&] { typeText(&f.box, "x"); };
        f.paste();
        QVERIFY(f.box.toPlainText() == otherLines() + "xHLT\n");
        f.undo();
        QCOMPARE(f.box.toPlainText(), QString("HLT\n"));
    }

    void anotherTextInBetweenIsNotChanged() {
        Fixture f;
        f.meanwhile = [&] { f.box.setSource("RET\n"); };
        f.paste();
        QCOMPARE(f.box.toPlainText(), QString("RET\n"));
        typeText(&f.box, "x");
        f.undo();
        QCOMPARE(f.box.toPlainText(), QString("RET\n"));
    }

    void aWriterInBetweenLosesNothing() {
        Fixture f;
        f.meanwhile = [&] { QTextCursor(f.box.document()).insertText("x"); };
        select(f.box, 4, 4);
        f.paste();
        QVERIFY(f.box.toPlainText() == "x" + QString(manyLines()).insert(4, otherLines()));
        f.undo();
        QVERIFY(f.box.toPlainText() == manyLines());
    }

    void nothingIsLostWithoutMemory_data() { addChanges(true); }
    void nothingIsLostWithoutMemory() {
        QFETCH(const Change, change);
        Fixture f;
        QSignalSpy refused(&f.box, &SourceEdit::refused);
        {
            const test::MemoryLimit limit;
            f.make(change);
        }
        QVERIFY(f.box.toPlainText() == manyLines());
        QCOMPARE(refused.count(), 1);
        QCOMPARE(refused[0][0].toString(), QString("Memoria insuficiente"));
        f.make(change);
        QVERIFY(f.box.toPlainText() != manyLines());
    }

    void aLargeTextIsDropped() {
        Fixture f("HLT\n");
        dropOn(&f.box, QPoint(2, 2), DraggedText(otherLines()));
        QTRY_VERIFY(f.box.toPlainText() == otherLines() + "HLT\n");
        f.undo();
        QCOMPARE(f.box.toPlainText(), QString("HLT\n"));
    }
};

QTEST_MAIN(LargeEditsTest)
#include "LargeEditsTest.moc"
