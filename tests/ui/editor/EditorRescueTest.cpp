#include <QDateTime>
#include <QDir>
#include <QTest>

#include "tests/ui/editor/EditorFixture.h"

using namespace tavinor;

namespace {

constexpr auto yesNo = QMessageBox::Yes | QMessageBox::No;
constexpr char offer[] = "Hay una copia de rescate más reciente.\r\n¿Desea abrirla?";

}  // namespace

/// The copy of unsaved text that the editor leaves when it cannot ask, and offers the next time.
class EditorRescueTest : public QObject {
    Q_OBJECT

  private:
    static QStringList filesOf(const EditorFixture& f) {
        return QDir(f.folder.path()).entryList(QDir::Files | QDir::Hidden);
    }
    static void open(EditorFixture& f, const QString& file, QMessageBox::StandardButton answer) {
        DialogAnswerer dialogs;
        dialogs.expectFileDialog(EditorFixture::dialog("Editar fichero .ASM"), file);
        dialogs.expectQuestion(offer, yesNo, answer);
        f.editor.openFromPrincipal(&f.principal);
        QVERIFY(dialogs.allCame());
        QVERIFY(showActive(&f.editor));
    }
    static void setTime(const QString& path, const QDateTime& time) {
        QFile file(path);
        QVERIFY(file.open(QIODevice::ReadWrite));
        QVERIFY(file.setFileTime(time, QFileDevice::FileModificationTime));
    }

  private slots:
    void unsavedTextIsLeftBesideItsSource() {
        EditorFixture f;
        QVERIFY(f.open(f.put("a.asm", "; a\xF1o\r\n")));
        f.texto()->insertPlainText("ñ\n");
        f.editor.rescue();
        QCOMPARE(f.get("a.asm.rescate"), QByteArray("\xF1\r\n; a\xF1o\r\n"));
        QCOMPARE(f.get("a.asm"), QByteArray("; a\xF1o\r\n"));
        QCOMPARE(f.text(), QString("ñ\n; año\n"));
        f.discard();
        QCOMPARE(filesOf(f), QStringList({"a.asm", "a.asm.rescate"}));
    }

    void allOfALongTextIs() {
        EditorFixture f;
        const QByteArray bytes = QByteArray("\tMVI A,1\t; uno\r\n").repeated(100'000);
        QVERIFY(f.open(f.put("a.asm", "HLT\r\n")));
        f.put("long.asm", bytes);
        f.put("long.asm.rescate", bytes);
        {
            DialogAnswerer dialogs;
            dialogs.expectFileDialog(EditorFixture::dialog("Cargar fichero .ASM"), f.path("long.asm"));
            dialogs.expectQuestion(offer, yesNo, QMessageBox::Yes);
            f.action("Abrir")->trigger();
        }
        QVERIFY(QFile::remove(f.path("long.asm.rescate")));
        QVERIFY(f.text().size() < bytes.size() / 2);  // it is still coming
        f.editor.rescue();
        QCOMPARE(f.get("long.asm.rescate"), bytes);
        f.discard();
    }

    void savedTextIsNot() {
        EditorFixture f;
        QVERIFY(f.open(f.put("a.asm", "A\r\n")));
        f.editor.rescue();
        QCOMPARE(filesOf(f), QStringList("a.asm"));
        typeText(&f.editor, "x");
        pressKey(&f.editor, Qt::Key_G, Qt::ControlModifier);
        f.editor.rescue();
        QCOMPARE(filesOf(f), QStringList("a.asm"));
    }

    void textWithoutANameIsNot() {
        EditorFixture f;
        QVERIFY(f.openUnnamed("A"));
        f.editor.rescue();
        QCOMPARE(filesOf(f), QStringList());
        f.discard();
    }

    void aCopyIsOpenedAsAChange() {
        EditorFixture f;
        f.put("a.asm", "A\r\n");
        f.put("a.asm.rescate", "B");
        open(f, f.path("a.asm"), QMessageBox::Yes);
        QCOMPARE(f.text(), QString("B"));  // to the letter
        QCOMPARE(f.filename(), f.path("a.asm"));
        QCOMPARE(f.editor.windowTitle(), QString("Tavinor - a.asm"));
        QCOMPARE(f.get("a.asm.rescate"), QByteArray("B"));
        {
            DialogAnswerer dialogs;
            dialogs.expectQuestion(" a.asm ha cambiado\r\n¿Desea guardarlo?", EditorFixture::saveButtons(),
                                   QMessageBox::Cancel);
            QVERIFY(!f.editor.close());
        }
        QCOMPARE(f.get("a.asm.rescate"), QByteArray("B"));
        {
            const DialogAnswerer noDialog;  // the file is the one that was there
            pressKey(&f.editor, Qt::Key_G, Qt::ControlModifier);
        }
        QCOMPARE(f.get("a.asm"), QByteArray("B\r\n"));
        QCOMPARE(filesOf(f), QStringList("a.asm"));
        QVERIFY(f.editor.close());
    }

    void aCopyThatIsNotWantedStays() {
        EditorFixture f;
        f.put("a.asm", "A\r\n");
        f.put("a.asm.rescate", "B");
        open(f, f.path("a.asm"), QMessageBox::No);
        QCOMPARE(f.text(), QString("A\n"));
        QVERIFY(f.editor.close());  // nothing has changed
        QCOMPARE(f.get("a.asm.rescate"), QByteArray("B"));
    }

    /// Neither a copy that was declined nor one that was never offered goes for the next one.
    void theNextRescueKeepsIt() {
        EditorFixture f;
        f.put("a.asm", "A\r\n");
        f.put("a.asm.rescate", "B");
        open(f, f.path("a.asm"), QMessageBox::No);
        for (const char* text : {"1", "2"}) {  // the second one is the same text's
            f.texto()->insertPlainText(text);
            f.editor.rescue();
        }
        QCOMPARE(f.get("a.asm.rescate"), QByteArray("12A\r\n"));
        QCOMPARE(f.get("a.asm.rescate.1"), QByteArray("B"));
        f.discard();
        setTime(f.path("a.asm.rescate"), QDateTime::currentDateTime().addDays(-1));
        QVERIFY(f.open(f.path("a.asm")));
        f.texto()->insertPlainText("3");
        f.editor.rescue();
        QCOMPARE(f.get("a.asm.rescate"), QByteArray("3A\r\n"));
        QCOMPARE(f.get("a.asm.rescate.1"), QByteArray("B"));
        QCOMPARE(f.get("a.asm.rescate.2"), QByteArray("12A\r\n"));
        pressKey(&f.editor, Qt::Key_G, Qt::ControlModifier);
        QCOMPARE(filesOf(f), QStringList({"a.asm", "a.asm.rescate.1", "a.asm.rescate.2"}));
    }

    void aCopyThatWasOpenedIsReplaced() {
        EditorFixture f;
        f.put("a.asm", "A\r\n");
        f.put("a.asm.rescate", "B");
        open(f, f.path("a.asm"), QMessageBox::Yes);
        f.texto()->insertPlainText("1");
        f.editor.rescue();
        QCOMPARE(f.get("a.asm.rescate"), QByteArray("1B"));
        QCOMPARE(filesOf(f), QStringList({"a.asm", "a.asm.rescate"}));
        f.discard();
    }

    void anOldCopyIsNotOffered() {
        EditorFixture f;
        f.put("a.asm", "A\r\n");
        f.put("a.asm.rescate", "B");
        setTime(f.path("a.asm.rescate"), QDateTime::currentDateTime().addDays(-1));
        QVERIFY(f.open(f.path("a.asm")));
        QCOMPARE(f.text(), QString("A\n"));
    }

    void theSourceMayNotHaveBeenSavedAtAll() {
        EditorFixture f;
        f.put("a.asm.rescate", "B\r\n");
        open(f, f.path("a.asm"), QMessageBox::Yes);
        QCOMPARE(f.text(), QString("B\n"));
        QVERIFY(!QFile::exists(f.path("a.asm")));
        pressKey(&f.editor, Qt::Key_G, Qt::ControlModifier);
        QCOMPARE(filesOf(f), QStringList("a.asm"));
    }

    /// The copy is plain ASCII: it tells nothing of the encoding in which the source goes on.
    void theEncodingIsTheSources() {
        EditorFixture f;
        f.put("a.asm", "; a\xF1o\r\n");
        f.put("a.asm.rescate", "A\r\n");
        open(f, f.path("a.asm"), QMessageBox::Yes);
        f.texto()->insertPlainText("ñ");
        pressKey(&f.editor, Qt::Key_G, Qt::ControlModifier);
        QCOMPARE(f.get("a.asm"), QByteArray("\xF1"
                                            "A\r\n\r\n"));
    }

    void anEmptyTextIsAText() {
        EditorFixture f;
        QVERIFY(f.open(f.put("a.asm", "A\r\n")));
        f.texto()->selectAll();
        f.texto()->cut();
        f.editor.rescue();
        f.discard();
        open(f, f.path("a.asm"), QMessageBox::Yes);
        QCOMPARE(f.text(), QString());
        f.discard();
    }
};

QTEST_MAIN(EditorRescueTest)
#include "EditorRescueTest.moc"
