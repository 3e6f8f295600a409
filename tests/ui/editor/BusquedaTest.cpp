#include <QCheckBox>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>
#include <QUrl>

#include "tests/support/Dragging.h"
#include "tests/ui/editor/EditorFixture.h"
#include "ui/editor/Busqueda.h"

using namespace tavinor;

namespace {

constexpr auto yesNo = QMessageBox::Yes | QMessageBox::No;

class Fixture : public EditorFixture {
  public:
    explicit Fixture(const QString& text) : ready(openUnnamed(text)) { caretAt(0); }
    ~Fixture() { discard(); }

    bool ready;

    QDialog* dialog() { return editor.findChild<QDialog*>("Busqueda"); }
    QLineEdit* cadena() { return dialog()->findChild<QLineEdit*>("cadena"); }
    QCheckBox* may() { return dialog()->findChild<QCheckBox*>("may"); }
    QPushButton* Buscar() { return dialog()->findChild<QPushButton*>("Buscar"); }
    QPushButton* cancel() { return dialog()->findChild<QPushButton*>("cancel"); }
    QString dirini() { return dialog()->findChild<QLabel*>("dirini")->text(); }

    void caretAt(int position) { selectText(position, 0); }

    bool openDialog() {
        pressKey(&editor, Qt::Key_B, Qt::ControlModifier);
        return waitActive(dialog());
    }

    /// Types the pattern into the dialog and presses Enter.
    bool search(const QString& pattern) {
        if (!openDialog()) return false;
        typeText(dialog(), pattern);
        pressKey(dialog(), Qt::Key_Return);
        return !dialog()->isVisible();
    }

    void next() { pressKey(&editor, Qt::Key_F3); }

    /// Selection as start and length, counted from 0.
    QPair<int, int> selection() {
        const QTextCursor cursor = texto()->textCursor();
        return {cursor.selectionStart(), cursor.selectionEnd() - cursor.selectionStart()};
    }
};

using Selection = QPair<int, int>;

QString wrapQuestion(const QString& pattern) {
    return pattern + " no encontrada\r\n¿Desea buscar desde el principio del documento?";
}

}  // namespace

class BusquedaTest : public QObject {
    Q_OBJECT

  private slots:
    void texts() {
        Fixture f("A");
        QVERIFY(f.openDialog());
        QCOMPARE(f.dialog()->windowTitle(), QString("Tavinor - Buscar"));
        QCOMPARE(f.may()->text(), QString("Coincidir mayúsculas y minúsculas"));
        QCOMPARE(f.Buscar()->text(), QString("&Buscar"));
        QCOMPARE(f.cancel()->text(), QString("&Cancelar"));
        QVERIFY(f.cadena()->hasFocus());
        QVERIFY(!f.may()->isChecked());
        QVERIFY(!f.cadena()->accessibleName().isEmpty());
        QVERIFY(!f.dialog()->findChild<QLabel*>("dirini")->isVisible());
    }

    void findsFromTheCaret() {
        Fixture f("MVI A\nMVI B\nMVI C");
        f.caretAt(1);
        QVERIFY(f.search("mvi"));
        QVERIFY(!f.dialog()->isVisible());
        QCOMPARE(f.selection(), Selection(6, 3));
        QCOMPARE(f.dirini(), QString("7"));
        QVERIFY(f.action("Buscarsiguiente")->isEnabled());
        QVERIFY(f.action("Cortar")->isEnabled());
        f.next();
        QCOMPARE(f.selection(), Selection(12, 3));
    }

    void startsAtTheSelection() {
        Fixture f("MVI A\nMVI B");
        f.selectText(0, 3);
        QVERIFY(f.search("MVI"));
        QCOMPARE(f.selection(), Selection(0, 3));
    }

    void caseMatters() {
        Fixture f("mvi MVI ñ Ñ");
        QVERIFY(f.openDialog());
        clickIn(f.may());
        QVERIFY(f.may()->isChecked());
        clickIn(f.cadena());
        typeText(f.dialog(), "MVI");
        clickIn(f.Buscar());
        QCOMPARE(f.selection(), Selection(4, 3));
        QVERIFY(f.search("Ñ"));
        QCOMPARE(f.selection(), Selection(10, 1));
        QVERIFY(f.openDialog());
        clickIn(f.may());
        DialogAnswerer dialogs;
        dialogs.expectQuestion(wrapQuestion("Ñ"), yesNo, QMessageBox::Yes);
        pressKey(f.dialog(), Qt::Key_Return);  // the default button
        QCOMPARE(f.selection(), Selection(8, 1));
    }

    void overlappingOccurrencesAreAllFound() {
        Fixture f("aaaa");
        QVERIFY(f.search("aa"));
        QCOMPARE(f.selection(), Selection(0, 2));
        f.next();
        QCOMPARE(f.selection(), Selection(1, 2));
        f.next();
        QCOMPARE(f.selection(), Selection(2, 2));
        DialogAnswerer dialogs;
        dialogs.expectQuestion(wrapQuestion("aa"), yesNo, QMessageBox::Yes);
        f.next();
        QCOMPARE(f.selection(), Selection(0, 2));
        QCOMPARE(f.dirini(), QString("1"));
    }

    void notFoundFromTheStart() {
        Fixture f("MVI A");
        DialogAnswerer dialogs;
        dialogs.expectMessage("HLT no encontrada");
        QVERIFY(f.search("HLT"));
        QVERIFY(!f.action("Buscarsiguiente")->isEnabled());
        QCOMPARE(f.dirini(), QString("1"));
    }

    void notFoundAfterTheCaret() {
        Fixture f("MVI A\nHLT");
        f.caretAt(3);
        {
            DialogAnswerer dialogs;
            dialogs.expectQuestion(wrapQuestion("MVI"), yesNo, QMessageBox::No);
            QVERIFY(f.search("MVI"));
        }
        QVERIFY(!f.action("Buscarsiguiente")->isEnabled());
        QCOMPARE(f.selection(), Selection(3, 0));
        QCOMPARE(f.dirini(), QString("4"));
        {
            DialogAnswerer dialogs;
            dialogs.expectQuestion(wrapQuestion("MVI"), yesNo, QMessageBox::Yes);
            QVERIFY(f.search("MVI"));
        }
        QCOMPARE(f.selection(), Selection(0, 3));
        QVERIFY(f.action("Buscarsiguiente")->isEnabled());
        DialogAnswerer dialogs;
        f.caretAt(3);
        dialogs.expectQuestion(wrapQuestion("RET"), yesNo, QMessageBox::Yes);
        dialogs.expectMessage("RET no encontrada");
        QVERIFY(f.search("RET"));
        QVERIFY(!f.action("Buscarsiguiente")->isEnabled());
    }

    void typingStartsAnewAtTheCaret() {
        Fixture f("uno uno uno");
        QVERIFY(f.search("uno"));
        f.next();
        QCOMPARE(f.dirini(), QString("5"));
        QVERIFY(f.openDialog());
        QCOMPARE(f.cadena()->text(), QString("uno"));
        QCOMPARE(f.cadena()->selectedText(), QString("uno"));
        typeText(f.dialog(), "n");
        QCOMPARE(f.dirini(), QString());
        clickIn(f.Buscar());
        QCOMPARE(f.selection(), Selection(5, 1));
    }

    void reopeningGoesOnAfterTheLastMatch() {
        Fixture f("uno uno uno");
        QVERIFY(f.search("uno"));
        f.caretAt(0);  // where the caret is means nothing now
        QVERIFY(f.openDialog());
        pressKey(f.dialog(), Qt::Key_Enter);
        QCOMPARE(f.selection(), Selection(4, 3));
    }

    void anEmptyPatternIsFoundNowhere() {
        Fixture f("A");
        QVERIFY(f.openDialog());
        QVERIFY(!f.Buscar()->isEnabled());
        DialogAnswerer dialogs;
        dialogs.expectMessage(" no encontrada");
        pressKey(f.dialog(), Qt::Key_Return);
        QVERIFY(!f.dialog()->isVisible());
        QVERIFY(f.openDialog());
        typeText(f.dialog(), "x");
        QVERIFY(f.Buscar()->isEnabled());
        pressKey(f.dialog(), Qt::Key_Backspace);
        QVERIFY(!f.Buscar()->isEnabled());
    }

    void repeatingWithAnEmptyPattern() {
        Fixture f("AB");
        QVERIFY(f.search("A"));
        QVERIFY(f.openDialog());
        pressKey(f.dialog(), Qt::Key_Delete);
        clickIn(f.cancel());
        QVERIFY(showActive(&f.editor));
        DialogAnswerer dialogs;
        dialogs.expectMessage(" no encontrada");
        f.next();
        QVERIFY(!f.action("Buscarsiguiente")->isEnabled());
    }

    void cancelHidesAndKeepsEverything_data() {
        QTest::addColumn<QString>("way");
        for (const char* way : {"button", "access key", "esc", "close"}) QTest::newRow(way) << way;
    }

    void cancelHidesAndKeepsEverything() {
        QFETCH(QString, way);
        Fixture f("A");
        QVERIFY(f.openDialog());
        clickIn(f.may());
        clickIn(f.cadena());
        typeText(f.dialog(), "xyz");
        if (way == "button") clickIn(f.cancel());
        if (way == "access key") pressKey(f.dialog(), Qt::Key_C, Qt::AltModifier);
        if (way == "esc") pressKey(f.dialog(), Qt::Key_Escape);
        if (way == "close") f.dialog()->close();
        QVERIFY(!f.dialog()->isVisible());
        QVERIFY(f.openDialog());
        QCOMPARE(f.cadena()->text(), QString("xyz"));
        QVERIFY(f.may()->isChecked());
        QVERIFY(f.cadena()->hasFocus());
        QCOMPARE(f.cadena()->selectedText(), QString("xyz"));
    }

    /// However it was left the last time: Qt makes a focused button the default one.
    void enterSearchesEachTime_data() {
        QTest::addColumn<QString>("way");
        for (const char* way : {"cancel", "focus on cancel, esc", "focus on cancel, close", "search"}) {
            QTest::newRow(way) << way;
        }
    }

    void enterSearchesEachTime() {
        QFETCH(QString, way);
        Fixture f("uno uno");
        QVERIFY(f.openDialog());
        typeText(f.dialog(), "uno");
        if (way == "cancel") clickIn(f.cancel());
        if (way.startsWith("focus")) {
            for (int i = 0; i < 3; ++i) pressKey(f.dialog(), Qt::Key_Tab);
            QVERIFY(f.cancel()->hasFocus() && f.cancel()->isDefault());
            way.endsWith("esc") ? pressKey(f.dialog(), Qt::Key_Escape) : void(f.dialog()->close());
        }
        if (way == "search") pressKey(f.dialog(), Qt::Key_Return);
        QVERIFY(!f.dialog()->isVisible());
        QVERIFY(f.openDialog());
        QVERIFY(f.cadena()->hasFocus());
        QVERIFY(f.Buscar()->isDefault());
        QVERIFY(!f.cancel()->isDefault());
        pressKey(f.dialog(), Qt::Key_Tab);  // to the check box, where Enter presses the default button
        QVERIFY(f.may()->hasFocus());
        pressKey(f.dialog(), Qt::Key_Return);
        QVERIFY(!f.dialog()->isVisible());
        QCOMPARE(f.selection(), way == "search" ? Selection(4, 3) : Selection(0, 3));
    }

    void comingBackFromAnotherWindowSelectsThePattern() {
        Fixture f("A");
        QVERIFY(f.openDialog());
        typeText(f.dialog(), "xyz");
        clickIn(f.may());
        QVERIFY(f.may()->hasFocus());
        QVERIFY(showActive(&f.editor));
        QVERIFY(showActive(f.dialog()));
        QVERIFY(f.cadena()->hasFocus());
        QCOMPARE(f.cadena()->selectedText(), QString("xyz"));
    }

    void aClickIntoThePatternKeepsItSelected() {
        Fixture f("A");
        QVERIFY(f.openDialog());
        typeText(f.dialog(), "xyz");
        clickIn(f.may());
        clickIn(f.cadena());
        QCOMPARE(f.cadena()->selectedText(), QString("xyz"));
        clickIn(f.cadena());
        QCOMPARE(f.cadena()->selectedText(), QString());
    }

    void controlYRedoes() {
        Fixture f("A");
        QVERIFY(f.openDialog());
        typeText(f.dialog(), "xyz");
        for (int i = 0; i < 2; ++i) {
            pressKey(f.cadena(), Qt::Key_Z, Qt::ControlModifier);
            QCOMPARE(f.cadena()->text(), QString());
            pressKey(f.cadena(), Qt::Key_Y, Qt::ControlModifier);
            QCOMPARE(f.cadena()->text(), QString("xyz"));
        }
        QCOMPARE(f.text(), QString("A"));
    }

    void aTextDroppedOnThePatternGoesIn() {
        Fixture f("A");
        QVERIFY(f.openDialog());
        const QPoint place = f.cadena()->geometry().center();
        QVERIFY(dropOn(f.dialog(), place, DraggedText("HLT")) != DragEnd::refused);
        QCOMPARE(f.cadena()->text(), QString("HLT"));
    }

    void aFileDroppedOnThePatternIsRefused_data() {
        QTest::addColumn<QUrl>("file");
        QTest::newRow("source") << QUrl("file:///tmp/a.asm");
        QTest::newRow("other file") << QUrl("file:///tmp/a.txt");
        QTest::newRow("on another computer") << QUrl("sftp://example.org/a.asm");
    }

    void aFileDroppedOnThePatternIsRefused() {
        QFETCH(const QUrl, file);
        Fixture f("A");
        QVERIFY(f.openDialog());
        QMimeData dragged;
        dragged.setUrls({file});
        dragged.setText(file.toString());  // as file managers do
        QCOMPARE(dropOn(f.dialog(), f.cadena()->geometry().center(), dragged), DragEnd::refused);
        QCOMPARE(f.cadena()->text(), QString());
        QCOMPARE(f.text(), QString("A"));
    }

    void closingTheEditorHidesTheDialogAndForgetsTheRepeat() {
        Fixture f("A A");
        QVERIFY(f.search("A"));
        QVERIFY(f.openDialog());
        f.discard();
        QVERIFY(!f.dialog()->isVisible());
        QVERIFY(f.openUnnamed());
        QVERIFY(!f.action("Buscarsiguiente")->isEnabled());
        QCOMPARE(f.cadena()->text(), QString("A"));
        f.texto()->insertPlainText("x");
    }
};

QTEST_MAIN(BusquedaTest)
#include "BusquedaTest.moc"
