#include <QDir>
#include <QTest>
#include <QUrl>

#include "tests/support/Dragging.h"
#include "tests/ui/editor/EditorFixture.h"

using namespace tavinor;

/// What is dropped on the editor: a source is opened, a text goes into the text, all else is refused.
class EditorDropsTest : public QObject {
    Q_OBJECT

  private slots:
    void aSourceIsOpened_data() {
        QTest::addColumn<QString>("name");
        QTest::newRow("small letters") << "b.asm";
        QTest::newRow("capital letters") << "B.ASM";
        QTest::newRow("blanks and accents") << "mi programa ñ.asm";
    }

    void aSourceIsOpened() {
        QFETCH(QString, name);
        EditorFixture f;
        QVERIFY(f.open(f.put("a.asm", "A\r\n")));
        f.put(name, "B\r\n");
        QCOMPARE(dropOn(&f.editor, DraggedFiles({f.path(name)})), DragEnd::copied);
        QCOMPARE(f.text(), QString("B\n"));
        QCOMPARE(f.filename(), f.path(name));
        QVERIFY(f.editor.close());  // nothing has changed
    }

    void changesAreAskedForFirst() {
        EditorFixture f;
        QVERIFY(f.openUnnamed("A"));
        f.put("b.asm", "B\r\n");
        {
            DialogAnswerer dialogs;
            dialogs.expectQuestion(f.saveQuestion(), EditorFixture::saveButtons(), QMessageBox::Cancel);
            dropOn(&f.editor, DraggedFiles({f.path("b.asm")}));
        }
        QCOMPARE(f.text(), QString("A"));
        QCOMPARE(f.filename(), QString());
        DialogAnswerer dialogs;
        dialogs.expectQuestion(f.saveQuestion(), EditorFixture::saveButtons(), QMessageBox::No);
        dropOn(&f.editor, DraggedFiles({f.path("b.asm")}));
        QCOMPARE(f.text(), QString("B\n"));
    }

    void allElseIsRefused() {
        EditorFixture f;
        QVERIFY(f.open(f.put("a.asm", "A\r\n")));
        const DialogAnswerer noDialogs;
        f.put("b.asm", "B\r\n");
        QVERIFY(QDir(f.folder.path()).mkdir("folder.asm"));
        QCOMPARE(dropOn(&f.editor, DraggedFiles({f.put("b.hex", ":00000001FF")})), DragEnd::refused);
        QCOMPARE(dropOn(&f.editor, DraggedFiles({f.put("b.txt", "B")})), DragEnd::refused);
        QCOMPARE(dropOn(&f.editor, DraggedFiles({f.put("asm", "B")})), DragEnd::refused);
        QCOMPARE(dropOn(&f.editor, DraggedFiles({f.path("folder.asm")})), DragEnd::refused);
        QCOMPARE(dropOn(&f.editor, DraggedFiles({f.path("a.asm"), f.path("b.asm")})), DragEnd::refused);
        QCOMPARE(f.text(), QString("A\n"));
        QVERIFY(f.editor.close());
    }

    /// A file manager deletes a file that was "moved".
    void aFileIsNeverMoved() {
        EditorFixture f;
        QVERIFY(f.open(f.put("a.asm", "A\r\n")));
        const DraggedFiles b({f.put("b.asm", "B\r\n")});
        QCOMPARE(dropOn(&f.editor, b, Qt::MoveAction), DragEnd::refused);
        QCOMPARE(f.text(), QString("A\n"));
        QCOMPARE(dropOn(&f.editor, b, Qt::MoveAction | Qt::LinkAction), DragEnd::linked);
        QCOMPARE(f.text(), QString("B\n"));
    }

    void aTextIsInserted() {
        EditorFixture f;
        QVERIFY(f.open(f.put("a.asm", "A\r\n")));
        QVERIFY(dropOn(&f.editor, DraggedText("HLT")) != DragEnd::refused);
        QVERIFY2(f.text().contains("HLT"), qPrintable(f.text()));
        QCOMPARE(f.filename(), f.path("a.asm"));
        f.discard();
    }

    /// Characters that look like a line end or a blank are these from then on.
    void aTextsForeignCharactersAreReplaced() {
        EditorFixture f;
        QVERIFY(f.openUnnamed());
        QVERIFY(dropOn(&f.editor, DraggedText(QStringLiteral(u"MVI\u00A0A,1\u2028;\u2029HLT\u0085NOP"))) !=
                DragEnd::refused);
        QCOMPARE(f.text(), QString("MVI A,1\n;\nHLT\nNOP"));
        QCOMPARE(f.texto()->blockCount(), 4);
        f.discard();
    }

    /// File managers drag files of other computers, browsers links.
    void anAddressIsNoText_data() {
        QTest::addColumn<QStringList>("addresses");
        QTest::newRow("source on another computer") << QStringList{"sftp://example.org/b.asm"};
        QTest::newRow("page") << QStringList{"http://example.org/"};
        QTest::newRow("two") << QStringList{"sftp://example.org/b.asm", "sftp://example.org/c.asm"};
        QTest::newRow("one here") << QStringList{"sftp://example.org/b.asm", "file:///tmp/b.asm"};
    }

    void anAddressIsNoText() {
        QFETCH(const QStringList, addresses);
        EditorFixture f;
        QVERIFY(f.open(f.put("a.asm", "A\r\n")));
        QMimeData dragged;
        dragged.setUrls(QUrl::fromStringList(addresses));
        dragged.setText(addresses.join('\n'));
        QCOMPARE(dropOn(&f.editor, dragged), DragEnd::refused);
        QCOMPARE(f.text(), QString("A\n"));
        QVERIFY(f.editor.close());  // nothing has changed
    }

    void aQuestionOverTheEditorComesFirst() {
        EditorFixture f;
        QVERIFY(f.openUnnamed("A"));
        const DraggedFiles b({f.put("b.asm", "B\r\n")});
        {
            DialogAnswerer dialogs;
            dialogs.expectWindow("messageBox", [&](QWidget* box) {
                QCOMPARE(dropOn(&f.editor, b), DragEnd::refused);
                pressKey(box, Qt::Key_Escape);
            });
            QVERIFY(!f.editor.close());
        }
        QCOMPARE(f.text(), QString("A"));
        f.discard();
    }
};

QTEST_MAIN(EditorDropsTest)
#include "EditorDropsTest.moc"
