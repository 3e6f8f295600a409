#include <QApplication>
#include <QClipboard>
#include <QDir>
#include <QProgressDialog>
#include <QPushButton>
#include <QTest>
#include <optional>

#include "tests/support/OddFiles.h"
#include "tests/ui/editor/EditorFixture.h"
#include "ui/common/Paths.h"

using namespace tavinor;

namespace {

constexpr auto yesNo = QMessageBox::Yes | QMessageBox::No;
constexpr auto saveButtons = QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel;

}  // namespace

/// How files come and go: opening, saving, and the questions before anything is lost.
class EditorFilesTest : public QObject {
    Q_OBJECT

  private slots:
    void opensFromTheMainWindow() {
        EditorFixture f;
        QVERIFY(f.open(f.put("prog.asm", "MVI A,1\r\nHLT\r\n")));
        QCOMPARE(f.editor.windowTitle(), QString("Tavinor - prog.asm"));
        QCOMPARE(f.text(), QString("MVI A,1\nHLT\n"));
        QCOMPARE(f.filename(), f.path("prog.asm"));
        QCOMPARE(f.editor.windowModality(), Qt::NonModal);
        QVERIFY(f.texto()->hasFocus());
    }

    void aLongTextIsSavedWholeBeforeAllOfItCame() {
        EditorFixture f;
        const QByteArray bytes = QByteArray("\tMVI A,1\t; uno\r\n").repeated(100'000);
        QVERIFY(f.open(f.put("short.asm", "HLT\r\n")));
        f.put("long.asm", bytes);
        DialogAnswerer dialogs;
        dialogs.expectFileDialog(EditorFixture::dialog("Cargar fichero .ASM"), f.path("long.asm"));
        f.action("Abrir")->trigger();
        QVERIFY(f.text().size() < bytes.size() / 2);
        f.action("guardar")->trigger();
        QCOMPARE(f.get("long.asm"), bytes + "\r\n");
        QVERIFY(dialogs.allCame());
        QVERIFY(f.editor.close());  // nothing has changed
    }

    void cancellingTheFirstDialogShowsNothing() {
        EditorFixture f;
        DialogAnswerer dialogs;
        dialogs.expectFileDialog(EditorFixture::dialog("Editar fichero .ASM"), {});
        f.editor.openFromPrincipal(&f.principal);
        QVERIFY(!f.editor.isVisible());
    }

    void anOpenEditorIsBroughtForward() {
        EditorFixture f;
        QVERIFY(f.openUnnamed("text"));
        f.editor.showMinimized();
        QVERIFY(f.editor.isMinimized());
        {
            const DialogAnswerer noDialog;
            f.editor.openFromPrincipal(&f.principal);
        }
        QVERIFY(!f.editor.isMinimized());
        QVERIFY(waitActive(&f.editor));
        QCOMPARE(f.text(), QString("text"));
        f.discard();
    }

    void aMissingFileIsCreatedByTheNextSave() {
        EditorFixture f;
        DialogAnswerer dialogs;
        dialogs.expectFileDialog(EditorFixture::dialog("Editar fichero .ASM"), f.path("new.asm"));
        dialogs.expectQuestion("El fichero " + f.path("new.asm") + " no existe\r\n¿Desea crearlo?", yesNo,
                               QMessageBox::Yes);
        f.editor.openFromPrincipal(&f.principal);
        QVERIFY(showActive(&f.editor));
        QCOMPARE(f.editor.windowTitle(), QString("Tavinor - new.asm"));
        QCOMPARE(f.text(), QString());
        QVERIFY(!QFile::exists(f.path("new.asm")));
        typeText(&f.editor, "HLT");
        pressKey(&f.editor, Qt::Key_G, Qt::ControlModifier);
        QCOMPARE(f.get("new.asm"), QByteArray("HLT\r\n"));
    }

    void aCancelledSaveKeepsTheOldFileAndTheChange() {
        EditorFixture f;
        f.editor.setPatience(std::chrono::milliseconds(0));
        QVERIFY(f.open(f.put("prog.asm", "HLT\r\n")));
        typeText(&f.editor, "X");
        {
            DialogAnswerer dialogs;
            dialogs.expectWindow("progreso", [&f](QWidget* dialog) {
                QVERIFY(dialog->isModal());
                QCOMPARE(dialog->parentWidget(), &f.editor);
                QCOMPARE(qobject_cast<QProgressDialog*>(dialog)->labelText(),
                         QString("Guardando el fichero..."));
                clickIn(dialog->findChild<QPushButton*>());
            });
            pressKey(&f.editor, Qt::Key_G, Qt::ControlModifier);
            QCOMPARE(dialogs.count(), 1);  // no box
        }
        QCOMPARE(f.get("prog.asm"), QByteArray("HLT\r\n"));
        QCOMPARE(QDir(f.folder.path()).entryList(QDir::Files | QDir::Hidden), QStringList("prog.asm"));
        DialogAnswerer dialogs;
        dialogs.expectQuestion(" prog.asm ha cambiado\r\n¿Desea guardarlo?", yesNo | QMessageBox::Cancel,
                               QMessageBox::Yes);
        QVERIFY(f.editor.close());  // its progress is left alone
        QCOMPARE(f.get("prog.asm").left(4), QByteArray("XHLT"));
    }

    void aMissingFileThatIsNotWantedLeavesNoName() {
        EditorFixture f;
        QVERIFY(f.openUnnamed());
        QCOMPARE(f.editor.windowTitle(), QString("Tavinor - [Sin nombre]"));
        QCOMPARE(f.filename(), QString());
        QVERIFY(!QFile::exists(f.path("none.asm")));
    }

    void lineEnds_data() {
        QTest::addColumn<QByteArray>("file");
        QTest::addColumn<QString>("text");
        QTest::newRow("pairs") << QByteArray("A\r\nB\r\n") << "A\nB\n";
        QTest::newRow("line feeds") << QByteArray("A\nB\n") << "A\nB\n";
        QTest::newRow("carriage returns") << QByteArray("A\rB\r") << "A\nB\n";
        QTest::newRow("no end") << QByteArray("A\r\nB") << "A\nB\n";
        QTest::newRow("one end alone") << QByteArray("\r\n") << "\n";
        QTest::newRow("empty lines") << QByteArray("\n\n\r\n") << "\n\n\n";
        QTest::newRow("byte-order mark") << QByteArray("\xEF\xBB\xBF\x41") << "A\n";
        QTest::newRow("utf-16") << QByteArray("\xFE\xFF\0A\0\r\0\n\0B", 10) << "A\nB\n";
        QTest::newRow("line separator") << QByteArray("A\xE2\x80\xA8") << "A\n";
        QTest::newRow("nothing but a mark") << QByteArray("\xEF\xBB\xBF") << "\n";
    }

    void lineEnds() {
        QFETCH(QByteArray, file);
        QFETCH(QString, text);
        EditorFixture f;
        QVERIFY(f.open(f.put("prog.asm", file)));
        QCOMPARE(f.text(), text);
    }

    void theMarkOfAFileIsSavedToo() {
        EditorFixture f;
        QVERIFY(f.open(f.put("prog.asm", "\xEF\xBB\xBF\xC3\xB1\r\n")));
        pressKey(&f.editor, Qt::Key_G, Qt::ControlModifier);
        QCOMPARE(f.get("prog.asm"), QByteArray("\xEF\xBB\xBF\xC3\xB1\r\n\r\n"));
        f.action("Nuevo")->trigger();
        DialogAnswerer dialogs;
        dialogs.expectFileDialog(EditorFixture::dialog("Salvar fichero .ASM", true), f.path("new.asm"));
        f.action("guardarcomo")->trigger();
        QCOMPARE(f.get("new.asm"), QByteArray("\r\n"));
        QVERIFY(dialogs.allCame());
    }

    void tooLargeAFileIsRefusedWithTheLimit() {
        EditorFixture f;
        const QString file = f.put("long.asm", QByteArray(128 * 1024 + 1, 'x'));
        DialogAnswerer dialogs;
        dialogs.expectFileDialog(EditorFixture::dialog("Editar fichero .ASM"), file);
        dialogs.expectMessage("Línea demasiado larga. El editor admite hasta 128 KiB en cada una.");
        f.editor.openFromPrincipal(&f.principal);
        QVERIFY(dialogs.allCame());
        QCOMPARE(f.filename(), QString());
        QCOMPARE(f.text(), QString());
    }

    void tooLargeAPasteIsRefusedWithTheLimit() {
        EditorFixture f;
        QVERIFY(f.open(f.put("prog.asm", "HLT\r\n")));
        QApplication::clipboard()->setText(QString(2'000'001, '\n'));
        DialogAnswerer dialogs;
        dialogs.expectMessage("Demasiadas líneas. El editor admite hasta dos millones.");
        pressKey(&f.editor, Qt::Key_V, Qt::ControlModifier);
        QTRY_VERIFY(dialogs.allCame());
        QCOMPARE(f.text(), QString("HLT\n"));
        QVERIFY(f.editor.close());  // nothing has changed
    }

    void everySaveAddsALineEnd() {
        EditorFixture f;
        QVERIFY(f.open(f.put("prog.asm", "A\r\nB\r\n")));
        pressKey(&f.editor, Qt::Key_G, Qt::ControlModifier);
        QCOMPARE(f.get("prog.asm"), QByteArray("A\r\nB\r\n\r\n"));
        QVERIFY(f.editor.close());
        QVERIFY(f.open(f.path("prog.asm")));
        QCOMPARE(f.text(), QString("A\nB\n\n"));
        pressKey(&f.editor, Qt::Key_G, Qt::ControlModifier);
        QCOMPARE(f.get("prog.asm"), QByteArray("A\r\nB\r\n\r\n\r\n"));
    }

    /// The text goes into a new file, which then takes the old one's name: a save that is interrupted loses
    /// nothing. Another program that still has the old file open goes on reading the old text.
    void theOldFileIsNotWrittenInto() {
        EditorFixture f;
        QVERIFY(f.open(f.put("prog.asm", "A\r\n")));
        QFile old(f.path("prog.asm"));
        QVERIFY(old.open(QIODevice::ReadOnly | QIODevice::Unbuffered));
        typeText(&f.editor, "B");
        pressKey(&f.editor, Qt::Key_G, Qt::ControlModifier);
        QCOMPARE(f.get("prog.asm"), QByteArray("BA\r\n\r\n"));
        QCOMPARE(old.readAll(), QByteArray("A\r\n"));
    }

    void anEmptyFileCannotBeRead() {
        EditorFixture f;
        const QString file = f.put("empty.asm", {});
        DialogAnswerer dialogs;
        dialogs.expectFileDialog(EditorFixture::dialog("Editar fichero .ASM"), file);
        dialogs.expectMessage("Error abriendo fichero");
        f.editor.openFromPrincipal(&f.principal);
        QVERIFY(dialogs.allCame());
        QVERIFY(f.editor.isVisible());
        QCOMPARE(f.editor.windowTitle(), QString("Tavinor - empty.asm"));
        QVERIFY(f.editor.close());  // nothing to save
    }

    /// A text box that shows nothing must not be saved over a file that could not be read.
    void anUnreadableFileLeavesNoName() {
        EditorFixture f;
        QVERIFY(f.openUnnamed());
        DialogAnswerer dialogs;
        dialogs.expectFileDialog(EditorFixture::dialog("Cargar fichero .ASM"), "/dev/zero");
        dialogs.expectMessage("Error abriendo fichero");
        pressKey(&f.editor, Qt::Key_A, Qt::ControlModifier);
        QCOMPARE(f.editor.windowTitle(), QString("Tavinor - [Sin nombre]"));
    }

    void whatIsNoFileIsNotRead() {
        test::OddFiles().each([](const std::string& what, const std::filesystem::path& odd) {
            if (what == "folder") return;  // the dialog enters it
            const QString path = fromPath(odd);
            EditorFixture f;
            DialogAnswerer dialogs;
            dialogs.expectFileDialog(EditorFixture::dialog("Editar fichero .ASM"), path);
            if (QFile::exists(path)) {
                dialogs.expectMessage("Error abriendo fichero");
            } else {
                dialogs.expectQuestion("El fichero " + path + " no existe\r\n¿Desea crearlo?", yesNo,
                                       QMessageBox::No);
            }
            f.editor.openFromPrincipal(&f.principal);
            QVERIFY2(dialogs.allCame(), what.c_str());
            QCOMPARE(f.filename(), QString());
        });
    }

    void whatIsNoFileIsNotWritten() {
        test::OddFiles().each([](const std::string& what, const std::filesystem::path& odd) {
            if (what == "folder") return;  // the dialog enters it
            const QString path = fromPath(odd);
            EditorFixture f;
            QVERIFY(f.openUnnamed("HLT"));
            std::optional<DialogAnswerer> dialogs(std::in_place);
            dialogs->expectFileDialog(EditorFixture::dialog("Salvar fichero .ASM", true), path);
            if (QFile::exists(path)) {
                dialogs->expectQuestion("El fichero " + path + " ya existe\r\n¿Desea sobreescribirlo?", yesNo,
                                        QMessageBox::Yes);
            }
            dialogs->expectMessage("Error guardando fichero");
            pressKey(&f.editor, Qt::Key_M, Qt::ControlModifier);
            QVERIFY2(dialogs->allCame(), what.c_str());
            dialogs.reset();
            f.discard();
        });
    }

    void encodingsAreKept() {
        EditorFixture f;
        QVERIFY(f.open(f.put("old.asm", "; a\xF1o \x80\r\n")));
        QCOMPARE(f.text(), QString("; año €\n"));
        f.texto()->insertPlainText("“ú”");
        pressKey(&f.editor, Qt::Key_G, Qt::ControlModifier);
        QCOMPARE(f.get("old.asm"), QByteArray("\x93\xFA\x94; a\xF1o \x80\r\n\r\n"));
        QVERIFY(f.editor.close());

        QVERIFY(f.open(f.put("new.asm", "; a\xC3\xB1o\r\n")));
        f.texto()->insertPlainText("Ω");
        pressKey(&f.editor, Qt::Key_G, Qt::ControlModifier);
        QCOMPARE(f.get("new.asm"), QByteArray("\xCE\xA9; a\xC3\xB1o\r\n\r\n"));
    }

    void nothingOfTheTextIsTouched() {
        EditorFixture f;
        const QByteArray text = QByteArrayLiteral("a\xE2\x80\x89thin\tx \xE2\x80\x8B \0 \x0C \xCC\x81  \r\n");
        QVERIFY(f.open(f.put("odd.asm", text)));
        pressKey(&f.editor, Qt::Key_G, Qt::ControlModifier);
        QCOMPARE(f.get("odd.asm"), text + "\r\n");
        f.texto()->selectAll();
        pressKey(&f.editor, Qt::Key_X, Qt::ControlModifier);
        QCOMPARE(f.text(), QString());
        pressKey(&f.editor, Qt::Key_V, Qt::ControlModifier);
        pressKey(&f.editor, Qt::Key_G, Qt::ControlModifier);
        QCOMPARE(f.get("odd.asm"), text + "\r\n");
    }

    void charactersThatTheEncodingLacks() {
        EditorFixture f;
        QVERIFY(f.open(f.put("old.asm", "\xF1\r\n")));
        f.texto()->insertPlainText("Ω");
        const QString question =
            "El texto contiene caracteres que no existen en la codificación del fichero "
            "(Windows-1252)\r\n¿Desea guardarlo en UTF-8?";
        {
            DialogAnswerer dialogs;
            dialogs.expectQuestion(question, yesNo, QMessageBox::No);
            pressKey(&f.editor, Qt::Key_G, Qt::ControlModifier);
        }
        QCOMPARE(f.get("old.asm"), QByteArray("\xF1\r\n"));
        {
            DialogAnswerer dialogs;  // closing, saving refused: the editor stays
            dialogs.expectQuestion(" old.asm ha cambiado\r\n¿Desea guardarlo?", saveButtons,
                                   QMessageBox::Yes);
            dialogs.expectQuestion(question, yesNo, QMessageBox::No);
            QVERIFY(!f.editor.mayClose());
        }
        DialogAnswerer dialogs;
        dialogs.expectQuestion(question, yesNo, QMessageBox::Yes);
        pressKey(&f.editor, Qt::Key_G, Qt::ControlModifier);
        QCOMPARE(f.get("old.asm"), QByteArray("\xCE\xA9\xC3\xB1\r\n\r\n"));
        f.texto()->insertPlainText("Ω");
        pressKey(&f.editor, Qt::Key_G, Qt::ControlModifier);  // Unicode from now on
        QCOMPARE(f.get("old.asm"), QByteArray("\xCE\xA9\xCE\xA9\xC3\xB1\r\n\r\n"));
    }

    void saveAsAsksForAName() {
        EditorFixture f;
        QVERIFY(f.openUnnamed("HLT"));
        {
            DialogAnswerer dialogs;
            dialogs.expectFileDialog(EditorFixture::dialog("Salvar fichero .ASM", true), {});
            pressKey(&f.editor, Qt::Key_G, Qt::ControlModifier);  // no name yet, and none given
        }
        QCOMPARE(f.editor.windowTitle(), QString("Tavinor - [Sin nombre]"));
        {
            DialogAnswerer dialogs;
            dialogs.expectFileDialog(EditorFixture::dialog("Salvar fichero .ASM", true), f.path("<b>"));
            pressKey(&f.editor, Qt::Key_G, Qt::ControlModifier);
        }
        QCOMPARE(f.editor.windowTitle(), QString("Tavinor - <b>.asm"));
        QCOMPARE(f.get("<b>.asm"), QByteArray("HLT\r\n"));
        QCOMPARE(f.text(), QString("HLT"));  // renamed, not read again
        QVERIFY(f.editor.close());
    }

    void saveAsAsksBeforeItReplaces() {
        EditorFixture f;
        QVERIFY(f.openUnnamed("HLT"));
        const QString other = f.put("other.asm", "old");
        const QString question = "El fichero " + other + " ya existe\r\n¿Desea sobreescribirlo?";
        {
            DialogAnswerer dialogs;
            dialogs.expectFileDialog(EditorFixture::dialog("Salvar fichero .ASM", true), other);
            dialogs.expectQuestion(question, yesNo, QMessageBox::No);
            pressKey(&f.editor, Qt::Key_M, Qt::ControlModifier);
        }
        QCOMPARE(f.get("other.asm"), QByteArray("old"));
        QCOMPARE(f.filename(), QString());
        {
            DialogAnswerer dialogs;
            dialogs.expectFileDialog(EditorFixture::dialog("Salvar fichero .ASM", true), other);
            dialogs.expectWindow("messageBox", [](QWidget* box) { pressKey(box, Qt::Key_Return); });
            pressKey(&f.editor, Qt::Key_M, Qt::ControlModifier);
        }
        QCOMPARE(f.get("other.asm"), QByteArray("old"));
        DialogAnswerer dialogs;
        dialogs.expectFileDialog(EditorFixture::dialog("Salvar fichero .ASM", true), other);
        dialogs.expectQuestion(question, yesNo, QMessageBox::Yes);
        pressKey(&f.editor, Qt::Key_M, Qt::ControlModifier);
        QCOMPARE(f.get("other.asm"), QByteArray("HLT\r\n"));
        QCOMPARE(f.filename(), other);
        QVERIFY(f.editor.close());
    }

    void aSaveThatFailsLosesNothing() {
        EditorFixture f;
        QVERIFY(QDir(f.folder.path()).mkdir("sub"));
        QVERIFY(f.open(f.put("sub/prog.asm", "A\r\n")));
        f.texto()->insertPlainText("B");
        QVERIFY(QDir(f.path("sub")).removeRecursively());
        {
            DialogAnswerer dialogs;
            dialogs.expectMessage("Error guardando fichero");
            pressKey(&f.editor, Qt::Key_G, Qt::ControlModifier);
        }
        {
            DialogAnswerer dialogs;
            dialogs.expectQuestion(" prog.asm ha cambiado\r\n¿Desea guardarlo?", saveButtons,
                                   QMessageBox::Yes);
            dialogs.expectMessage("Error guardando fichero");
            QVERIFY(!f.editor.mayClose());
        }
        QVERIFY(f.editor.isVisible());
        QCOMPARE(f.text(), QString("BA\n"));
        {
            DialogAnswerer dialogs;  // under a name that cannot be: the old name stays
            dialogs.expectFileDialog(EditorFixture::dialog("Salvar fichero .ASM", true), "/proc/prog.asm");
            dialogs.expectMessage("Error guardando fichero");
            pressKey(&f.editor, Qt::Key_M, Qt::ControlModifier);
        }
        QCOMPARE(f.editor.windowTitle(), QString("Tavinor - prog.asm"));
        f.discard();
    }

    void closingAsksFirst_data() {
        QTest::addColumn<int>("answer");
        QTest::addColumn<bool>("closes");
        QTest::addColumn<QByteArray>("file");
        QTest::newRow("yes") << int(QMessageBox::Yes) << true << QByteArray("BA\r\n\r\n");
        QTest::newRow("no") << int(QMessageBox::No) << true << QByteArray("A\r\n");
        QTest::newRow("cancel") << int(QMessageBox::Cancel) << false << QByteArray("A\r\n");
        QTest::newRow("esc") << int(QMessageBox::NoButton) << false << QByteArray("A\r\n");
    }

    void closingAsksFirst() {
        QFETCH(int, answer);
        QFETCH(bool, closes);
        QFETCH(QByteArray, file);
        EditorFixture f;
        QVERIFY(f.open(f.put("prog.asm", "A\r\n")));
        typeText(&f.editor, "B");
        {
            DialogAnswerer dialogs;
            dialogs.expectQuestion(" prog.asm ha cambiado\r\n¿Desea guardarlo?", saveButtons,
                                   static_cast<QMessageBox::StandardButton>(answer));
            pressKey(&f.editor, Qt::Key_S, Qt::ControlModifier);
        }
        QCOMPARE(f.editor.isVisible(), !closes);
        QCOMPARE(f.get("prog.asm"), file);
        QCOMPARE(f.text(), closes ? QString() : QString("BA\n"));
        f.discard();
    }

    void closingWithoutChangesAsksNothing() {
        EditorFixture f;
        QVERIFY(f.open(f.put("prog.asm", "A\r\n")));
        {
            const DialogAnswerer noDialog;
            QVERIFY(f.editor.mayClose());
            QVERIFY(f.editor.mayClose());  // closed already
        }
        QVERIFY(f.open(f.path("prog.asm")));
        QCOMPARE(f.text(), QString("A\n"));
    }

    /// A question that belongs to a minimised window may be nowhere on the screen.
    void closingAMinimisedEditorShowsWhatTheQuestionIsAbout() {
        EditorFixture f;
        QVERIFY(f.openUnnamed("A"));
        f.editor.showMinimized();
        QVERIFY(f.editor.isMinimized());
        {
            DialogAnswerer dialogs;
            dialogs.expectQuestion(f.saveQuestion(), saveButtons, QMessageBox::Cancel);
            QVERIFY(!f.editor.mayClose());
        }
        QVERIFY(!f.editor.isMinimized());
        f.discard();
    }

    void newAsksFirst() {
        EditorFixture f;
        QVERIFY(f.openUnnamed("A"));
        {
            DialogAnswerer dialogs;
            dialogs.expectQuestion(" [Sin nombre] ha cambiado\r\n¿Desea guardarlo?", saveButtons,
                                   QMessageBox::Cancel);
            pressKey(&f.editor, Qt::Key_N, Qt::ControlModifier);
        }
        QCOMPARE(f.text(), QString("A"));
        {
            DialogAnswerer dialogs;  // Yes, but no name: nothing is saved, nothing is lost
            dialogs.expectQuestion(" [Sin nombre] ha cambiado\r\n¿Desea guardarlo?", saveButtons,
                                   QMessageBox::Yes);
            dialogs.expectFileDialog(EditorFixture::dialog("Salvar fichero .ASM", true), {});
            pressKey(&f.editor, Qt::Key_N, Qt::ControlModifier);
        }
        QCOMPARE(f.text(), QString("A"));
        {
            DialogAnswerer dialogs;
            dialogs.expectQuestion(" [Sin nombre] ha cambiado\r\n¿Desea guardarlo?", saveButtons,
                                   QMessageBox::Yes);
            dialogs.expectFileDialog(EditorFixture::dialog("Salvar fichero .ASM", true), f.path("a.asm"));
            pressKey(&f.editor, Qt::Key_N, Qt::ControlModifier);
        }
        QCOMPARE(f.get("a.asm"), QByteArray("A\r\n"));
        QCOMPARE(f.text(), QString());
        QCOMPARE(f.editor.windowTitle(), QString("Tavinor - [Sin nombre]"));
        const DialogAnswerer noDialog;
        pressKey(&f.editor, Qt::Key_N, Qt::ControlModifier);
    }

    void openAsksFirst() {
        EditorFixture f;
        QVERIFY(f.openUnnamed("A"));
        const QString other = f.put("other.asm", "B\n");
        {
            DialogAnswerer dialogs;
            dialogs.expectQuestion(" [Sin nombre] ha cambiado\r\n¿Desea guardarlo?", saveButtons,
                                   QMessageBox::Cancel);
            pressKey(&f.editor, Qt::Key_A, Qt::ControlModifier);
        }
        {
            DialogAnswerer dialogs;  // given up, but then no file chosen: the text is still there
            dialogs.expectQuestion(" [Sin nombre] ha cambiado\r\n¿Desea guardarlo?", saveButtons,
                                   QMessageBox::No);
            dialogs.expectFileDialog(EditorFixture::dialog("Cargar fichero .ASM"), {});
            pressKey(&f.editor, Qt::Key_A, Qt::ControlModifier);
        }
        QCOMPARE(f.text(), QString("A"));
        {
            DialogAnswerer dialogs;
            dialogs.expectQuestion(" [Sin nombre] ha cambiado\r\n¿Desea guardarlo?", saveButtons,
                                   QMessageBox::No);
            dialogs.expectFileDialog(EditorFixture::dialog("Cargar fichero .ASM"), other);
            pressKey(&f.editor, Qt::Key_A, Qt::ControlModifier);
        }
        QCOMPARE(f.text(), QString("B\n"));
        QCOMPARE(f.editor.windowTitle(), QString("Tavinor - other.asm"));
        typeText(&f.editor, "x");
        DialogAnswerer dialogs;  // the same file again: as it is on disk
        dialogs.expectQuestion(" other.asm ha cambiado\r\n¿Desea guardarlo?", saveButtons, QMessageBox::No);
        dialogs.expectFileDialog(EditorFixture::dialog("Cargar fichero .ASM"), other);
        pressKey(&f.editor, Qt::Key_A, Qt::ControlModifier);
        QCOMPARE(f.text(), QString("B\n"));
        QVERIFY(f.editor.close());
    }

    void aNameWithQtsMarkShowsWhole() {
        EditorFixture f;
        f.editor.openDropped(f.put("a[*].asm", "A"), &f.principal);  // no name to be typed in a dialog
        QVERIFY(showActive(&f.editor));
        typeText(&f.editor, "x");
        DialogAnswerer dialogs;
        dialogs.expectQuestion(" a[*].asm ha cambiado\r\n¿Desea guardarlo?", saveButtons, QMessageBox::No);
        QVERIFY(f.editor.close());
    }

    void bigFilesAndLongLines() {
        EditorFixture f;
        QByteArray big;
        while (big.size() < 2'000'000) big += "LABEL:\tMVI A,0FFH ; comment\r\n";
        QVERIFY(f.open(f.put("big.asm", big)));
        typeText(&f.editor, "x");
        pressKey(&f.editor, Qt::Key_G, Qt::ControlModifier);
        QCOMPARE(f.get("big.asm"), "x" + big + "\r\n");
        QVERIFY(f.editor.close());

        const QByteArray line(120'000, 'y');
        QVERIFY(f.open(f.put("long.asm", line)));
        typeText(&f.editor, "x");
        pressKey(&f.editor, Qt::Key_G, Qt::ControlModifier);
        QCOMPARE(f.get("long.asm"), "x" + line + "\r\n\r\n");
    }
};

QTEST_MAIN(EditorFilesTest)
#include "EditorFilesTest.moc"
