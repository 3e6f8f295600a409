#include <QDir>
#include <QTest>
#include <QTextBlock>

#include "tests/ui/editor/EditorFixture.h"

using namespace tavinor;

namespace {

constexpr auto yesNo = QMessageBox::Yes | QMessageBox::No;

}  // namespace

/// Another program changes the file that is in the editor.
class EditorChangedFileTest : public QObject {
    Q_OBJECT

  private:
    static QString question(const EditorFixture& f) {
        return "El fichero " + f.path("a.asm") + " ha cambiado en el disco\r\n¿Desea sobreescribirlo?";
    }
    /// The user looks at another window and comes back.
    static void comeBack(EditorFixture& f) {
        QVERIFY(showActive(&f.principal));
        QVERIFY(showActive(&f.editor));
    }

  private slots:
    void savingAsksFirst() {
        EditorFixture f;
        QVERIFY(f.open(f.put("a.asm", "A\r\n")));
        typeText(&f.editor, "x");
        f.put("a.asm", "B\r\n");
        {
            DialogAnswerer dialogs;
            dialogs.expectQuestion(question(f), yesNo, QMessageBox::No);
            pressKey(&f.editor, Qt::Key_G, Qt::ControlModifier);
        }
        QCOMPARE(f.get("a.asm"), QByteArray("B\r\n"));
        QCOMPARE(f.text(), QString("xA\n"));
        {
            DialogAnswerer dialogs;  // still changed; and saving on the way out asks as well
            dialogs.expectQuestion(f.saveQuestion(), EditorFixture::saveButtons(), QMessageBox::Yes);
            dialogs.expectQuestion(question(f), yesNo, QMessageBox::No);
            QVERIFY(!f.editor.mayClose());
        }
        {
            DialogAnswerer dialogs;
            dialogs.expectQuestion(question(f), yesNo, QMessageBox::Yes);
            pressKey(&f.editor, Qt::Key_G, Qt::ControlModifier);
        }
        QCOMPARE(f.get("a.asm"), QByteArray("xA\r\n\r\n"));
        QVERIFY(f.editor.close());
    }

    /// Enter must not overwrite.
    void noIsTheDefault() {
        EditorFixture f;
        QVERIFY(f.open(f.put("a.asm", "A\r\n")));
        typeText(&f.editor, "x");
        f.put("a.asm", "B\r\n");
        {
            DialogAnswerer dialogs;
            dialogs.expectWindow("messageBox", [](QWidget* box) { pressKey(box, Qt::Key_Return); });
            pressKey(&f.editor, Qt::Key_G, Qt::ControlModifier);
        }
        QCOMPARE(f.get("a.asm"), QByteArray("B\r\n"));
        f.discard();
    }

    void ownSavesAreNoChange() {
        EditorFixture f;
        QVERIFY(f.open(f.put("a.asm", "A\r\n")));
        const DialogAnswerer noDialog;
        for (int times = 0; times < 3; ++times) {
            typeText(&f.editor, "x");
            pressKey(&f.editor, Qt::Key_G, Qt::ControlModifier);
        }
        QCOMPARE(f.get("a.asm"), QByteArray("xxxA\r\n\r\n"));
    }

    /// The text on the screen is not the file's any more, whether it was edited or not.
    void noLeavesTheTextChanged() {
        EditorFixture f;
        QVERIFY(f.open(f.put("a.asm", "A\r\n")));
        f.put("a.asm", "B\r\n");
        {
            DialogAnswerer dialogs;
            dialogs.expectQuestion(question(f), yesNo, QMessageBox::No);
            pressKey(&f.editor, Qt::Key_G, Qt::ControlModifier);
        }
        comeBack(f);
        QCOMPARE(f.text(), QString("A\n"));
        f.discard();
    }

    /// The program may end while the question is open, and nothing but the editor has the old text any more.
    void theTextIsRescuedWhileItAsks() {
        EditorFixture f;
        QVERIFY(f.open(f.put("a.asm", "A\r\n")));
        f.put("a.asm", "B\r\n");
        {
            DialogAnswerer dialogs;
            dialogs.expectWindow("messageBox", [&f](QWidget* box) {
                f.editor.rescue();
                pressKey(box, Qt::Key_Escape);
            });
            pressKey(&f.editor, Qt::Key_G, Qt::ControlModifier);
        }
        QCOMPARE(f.get("a.asm.rescate"), QByteArray("A\r\n"));
        f.discard();
    }

    void aNewFileThatHasComeMeanwhile() {
        EditorFixture f;
        DialogAnswerer dialogs;
        dialogs.expectFileDialog(EditorFixture::dialog("Editar fichero .ASM"), f.path("a.asm"));
        dialogs.expectQuestion("El fichero " + f.path("a.asm") + " no existe\r\n¿Desea crearlo?", yesNo,
                               QMessageBox::Yes);
        f.editor.openFromPrincipal(&f.principal);
        QVERIFY(showActive(&f.editor));
        typeText(&f.editor, "x");
        f.put("a.asm", "B\r\n");
        dialogs.expectQuestion(question(f), yesNo, QMessageBox::Yes);
        pressKey(&f.editor, Qt::Key_G, Qt::ControlModifier);
        QVERIFY(dialogs.allCame());
        QCOMPARE(f.get("a.asm"), QByteArray("x\r\n"));
    }

    void aFileThatHasGoneIsWrittenAgain() {
        EditorFixture f;
        QVERIFY(f.open(f.put("a.asm", "A\r\n")));
        typeText(&f.editor, "x");
        QVERIFY(QFile::remove(f.path("a.asm")));
        const DialogAnswerer noDialog;
        pressKey(&f.editor, Qt::Key_G, Qt::ControlModifier);
        QCOMPARE(f.get("a.asm"), QByteArray("xA\r\n\r\n"));
    }

    void savingUnderANameAsksItsOwnQuestionOnly() {
        EditorFixture f;
        QVERIFY(f.open(f.put("a.asm", "A\r\n")));
        typeText(&f.editor, "x");
        f.put("a.asm", "B\r\n");
        DialogAnswerer dialogs;
        dialogs.expectFileDialog(EditorFixture::dialog("Salvar fichero .ASM", true), f.path("a.asm"));
        dialogs.expectQuestion("El fichero " + f.path("a.asm") + " ya existe\r\n¿Desea sobreescribirlo?",
                               yesNo, QMessageBox::Yes);
        pressKey(&f.editor, Qt::Key_M, Qt::ControlModifier);
        QCOMPARE(f.get("a.asm"), QByteArray("xA\r\n\r\n"));
        pressKey(&f.editor, Qt::Key_G, Qt::ControlModifier);  // what it has written itself is known
        QVERIFY(f.editor.close());
    }

    void anUnchangedTextFollowsItsFile() {
        EditorFixture f;
        QVERIFY(f.open(f.put("a.asm", "A\r\n")));
        f.put("a.asm", "; a\xF1o\r\n");
        QCOMPARE(f.text(), QString("A\n"));
        comeBack(f);
        QCOMPARE(f.text(), QString("; año\n"));
        {
            const DialogAnswerer noDialog;
            f.texto()->insertPlainText("x");
            pressKey(&f.editor, Qt::Key_G, Qt::ControlModifier);
        }
        QCOMPARE(f.get("a.asm"), QByteArray("x; a\xF1o\r\n\r\n"));
        QVERIFY(f.editor.close());
    }

    void aChangedTextDoesNot() {
        EditorFixture f;
        QVERIFY(f.open(f.put("a.asm", "A\r\n")));
        typeText(&f.editor, "x");
        f.put("a.asm", "B\r\n");
        comeBack(f);
        QCOMPARE(f.text(), QString("xA\n"));
        f.discard();
    }

    void thePlaceIsKept() {
        EditorFixture f;
        QByteArray lines;
        for (int i = 0; i < 500; ++i) lines += "; " + QByteArray::number(i) + QByteArray(300, '.') + "\r\n";
        QVERIFY(f.open(f.put("a.asm", lines)));
        QTextCursor cursor = f.texto()->textCursor();
        cursor.setPosition(f.texto()->document()->findBlockByNumber(100).position() + 5);
        cursor.setPosition(f.texto()->document()->findBlockByNumber(102).position() + 7,
                           QTextCursor::KeepAnchor);
        f.texto()->setTextCursor(cursor);
        f.texto()->verticalScrollBar()->setValue(90);
        f.texto()->horizontalScrollBar()->setValue(40);
        const auto line = [&f](int position) {
            return f.texto()->document()->findBlock(position).blockNumber();
        };
        f.put("a.asm", "; otra\r\n" + lines);  // one more in front
        comeBack(f);
        QVERIFY(f.text().startsWith("; otra\n"));
        QCOMPARE(line(f.texto()->textCursor().anchor()), 100);
        QCOMPARE(line(f.texto()->textCursor().position()), 102);
        QCOMPARE(f.texto()->textCursor().positionInBlock(), 7);
        QCOMPARE(f.texto()->verticalScrollBar()->value(), 90);
        QCOMPARE(f.texto()->horizontalScrollBar()->value(), 40);

        f.put("a.asm", "; 1\r\n; 2\r\n");  // no such place any more
        comeBack(f);
        QCOMPARE(f.text(), QString("; 1\n; 2\n"));
        QCOMPARE(line(f.texto()->textCursor().position()), 2);
        QVERIFY(f.editor.close());
    }

    void whatCannotBeReadRaisesNothing_data() {
        QTest::addColumn<QString>("become");
        QTest::newRow("gone") << "gone";
        QTest::newRow("a folder") << "folder";
        QTest::newRow("empty") << "empty";
        QTest::newRow("a line too long") << "long";
    }

    void whatCannotBeReadRaisesNothing() {
        QFETCH(QString, become);
        EditorFixture f;
        QVERIFY(f.open(f.put("a.asm", "A\r\n")));
        QVERIFY(QFile::remove(f.path("a.asm")));
        if (become == "folder") QVERIFY(QDir(f.folder.path()).mkdir("a.asm"));
        if (become == "empty") f.put("a.asm", {});
        if (become == "long") f.put("a.asm", QByteArray(2'000'000, 'x'));
        const DialogAnswerer noDialog;
        comeBack(f);
        QCOMPARE(f.text(), QString("A\n"));
        QCOMPARE(f.filename(), f.path("a.asm"));
        QVERIFY(f.editor.close());
    }
};

QTEST_MAIN(EditorChangedFileTest)
#include "EditorChangedFileTest.moc"
