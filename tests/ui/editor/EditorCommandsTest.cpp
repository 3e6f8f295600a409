#include <QAccessible>
#include <QApplication>
#include <QClipboard>
#include <QContextMenuEvent>
#include <QDialog>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QMimeData>
#include <QTest>
#include <QTimer>
#include <array>
#include <functional>
#include <vector>

#include "tests/ui/editor/EditorFixture.h"
#include "ui/common/Fonts.h"

using namespace tavinor;

/// Menus, their keys and their enabling rules, and what the text box looks like.
class EditorCommandsTest : public QObject {
    Q_OBJECT

  private:
    static void pressAndWriteBehind(EditorFixture& f) {
        for (const char* name : {"Nuevo", "Abrir", "guardar", "guardarcomo", "Salir", "Cortar", "Copiar",
                                 "Pegar", "Buscar", "Buscarsiguiente"}) {
            f.action(name)->setEnabled(true);
            f.action(name)->trigger();
            QVERIFY2(f.text() == "AB CD" && f.editor.isVisible(), name);
        }
        QCOMPARE(QApplication::clipboard()->text(), QString("xyz"));
        QVERIFY(!f.editor.findChild<QDialog*>("Busqueda")->isVisible());

        auto* tool = QAccessible::queryAccessibleInterface(f.texto())->editableTextInterface();
        const std::vector<std::function<void()>> writes{
            [tool] { tool->insertText(5, "E"); },
            [tool] { tool->insertText(0, "E"); },
            [tool] { tool->deleteText(1, 3); },
            [tool] { tool->replaceText(0, 5, "otro"); },
        };
        for (const std::function<void()>& write : writes) {
            write();
            QCOMPARE(f.text(), QString("AB CD"));
        }
        auto* pattern = f.editor.findChild<QLineEdit*>("cadena");
        QAccessible::queryAccessibleInterface(pattern)->setText(QAccessible::Value, "uno");
        QCOMPARE(pattern->text(), QString());
    }

  private slots:
    void init() { QApplication::clipboard()->clear(); }

    void menus_data() {
        QTest::addColumn<QString>("menu");
        QTest::addColumn<QString>("caption");
        QTest::addColumn<QString>("key");
        QTest::addColumn<bool>("enabled");
        struct Item {
            const char *menu, *name, *caption, *key;
            bool enabled;
        };
        constexpr std::array items{
            Item{"Archivo", "Nuevo", "&Nuevo", "Ctrl+N", true},
            Item{"Archivo", "Abrir", "&Abrir ...", "Ctrl+A", true},
            Item{"Archivo", "guardar", "&Guardar", "Ctrl+G", true},
            Item{"Archivo", "guardarcomo", "Guardar co&mo", "Ctrl+M", true},
            Item{"Archivo", "Salir", "&Salir", "Ctrl+S", true},
            Item{"Edicion", "Cortar", "Cor&tar", "Ctrl+X", false},
            Item{"Edicion", "Copiar", "&Copiar", "Ctrl+C", false},
            Item{"Edicion", "Pegar", "&Pegar", "Ctrl+V", false},
            Item{"Buscarvacio", "Buscar", "&Buscar", "Ctrl+B", true},
            Item{"Buscarvacio", "Buscarsiguiente", "&Buscar siguiente", "F3", false},
        };
        for (const Item& item : items) {
            QTest::newRow(item.name) << QString(item.menu) << QString(item.caption) << QString(item.key)
                                     << item.enabled;
        }
    }

    void menus() {
        QFETCH(QString, menu);
        EditorFixture f;
        QVERIFY(f.openUnnamed());
        const QAction* action = f.action(QTest::currentDataTag());
        QTEST(action->text(), "caption");
        QTEST(action->shortcut().toString(QKeySequence::PortableText), "key");
        QTEST(action->isEnabled(), "enabled");
        QVERIFY(f.editor.findChild<QMenu*>(menu)->actions().contains(f.action(QTest::currentDataTag())));
    }

    void menuTitles() {
        EditorFixture f;
        QCOMPARE(f.editor.findChild<QMenu*>("Archivo")->title(), QString("&Archivo"));
        QCOMPARE(f.editor.findChild<QMenu*>("Edicion")->title(), QString("&Edición"));
        QCOMPARE(f.editor.findChild<QMenu*>("Buscarvacio")->title(), QString("&Buscar"));
    }

    void menusOpenByTheirAccessKeys() {
        EditorFixture f;
        QVERIFY(f.openUnnamed("A"));
        pressKey(&f.editor, Qt::Key_A, Qt::AltModifier);
        auto* archivo = f.editor.findChild<QMenu*>("Archivo");
        QTRY_VERIFY(archivo->isVisible());
        DialogAnswerer dialogs;
        dialogs.expectFileDialog(EditorFixture::dialog("Salvar fichero .ASM", true), f.path("a.asm"));
        QTest::keyClick(archivo->windowHandle(), Qt::Key_M);
        QCOMPARE(f.get("a.asm"), QByteArray("A\r\n"));
    }

    void textBoxLooksLikeACodeEditor() {
        EditorFixture f;
        QVERIFY(f.openUnnamed());
        const QPlainTextEdit& texto = *f.texto();
        QCOMPARE(texto.font().family(), fixedFont().family());
        QCOMPARE(texto.lineWrapMode(), QPlainTextEdit::NoWrap);
        QCOMPARE(texto.tabStopDistance(), 8 * QFontMetricsF(texto.font()).horizontalAdvance(' '));
        QVERIFY(texto.verticalScrollBar()->isVisible());
        QVERIFY(texto.horizontalScrollBar()->isVisible());
        QVERIFY(!texto.accessibleName().isEmpty());
        QCOMPARE(texto.mapTo(&f.editor, QPoint()), QPoint(0, f.editor.menuBar()->height()));
        QCOMPARE(texto.width(), f.editor.width());
    }

    void selectionEnablesCutAndCopy() {
        EditorFixture f;
        QVERIFY(f.openUnnamed("MVI A"));
        QVERIFY(!f.action("Cortar")->isEnabled());
        pressKey(&f.editor, Qt::Key_Home, Qt::ShiftModifier);
        QVERIFY(f.action("Cortar")->isEnabled());
        QVERIFY(f.action("Copiar")->isEnabled());
        pressKey(&f.editor, Qt::Key_End);
        QVERIFY(!f.action("Cortar")->isEnabled());
        QVERIFY(!f.action("Copiar")->isEnabled());

        const QRect caret = f.texto()->cursorRect();
        QWidget* view = f.texto()->viewport();
        const QPoint end = view->mapTo(&f.editor, caret.center());
        const QPoint start = view->mapTo(&f.editor, QPoint(1, caret.center().y()));
        QTest::mousePress(f.editor.windowHandle(), Qt::LeftButton, {}, end);
        QTest::mouseMove(f.editor.windowHandle(), start);
        QTest::mouseRelease(f.editor.windowHandle(), Qt::LeftButton, {}, start);
        QCOMPARE(f.texto()->textCursor().selectedText(), QString("MVI A"));
        QVERIFY(f.action("Cortar")->isEnabled());
        QVERIFY(f.action("Copiar")->isEnabled());
        f.discard();
    }

    void cutCopyAndPaste() {
        EditorFixture f;
        QVERIFY(f.openUnnamed("uno dos"));
        QVERIFY(!f.action("Pegar")->isEnabled());
        f.selectText(0, 4);
        pressKey(&f.editor, Qt::Key_X, Qt::ControlModifier);
        QCOMPARE(f.text(), QString("dos"));
        QCOMPARE(QApplication::clipboard()->text(), QString("uno "));
        QVERIFY(!QApplication::clipboard()->mimeData()->hasHtml());
        QVERIFY(f.action("Pegar")->isEnabled());
        QVERIFY(!f.action("Cortar")->isEnabled());

        f.selectText(0, 1);
        pressKey(&f.editor, Qt::Key_C, Qt::ControlModifier);
        QCOMPARE(QApplication::clipboard()->text(), QString("d"));
        f.selectText(1, 2);
        pressKey(&f.editor, Qt::Key_V, Qt::ControlModifier);
        QCOMPARE(f.text(), QString("dd"));
        f.discard();
    }

    void pasteFollowsTheClipboard() {
        EditorFixture f;
        QVERIFY(f.openUnnamed());
        QVERIFY(!f.action("Pegar")->isEnabled());
        QApplication::clipboard()->setText("x");
        pressKey(&f.editor, Qt::Key_Left);
        QVERIFY(f.action("Pegar")->isEnabled());
        auto* image = new QMimeData;
        image->setData("application/octet-stream", "x");
        QApplication::clipboard()->setMimeData(image);
        pressKey(&f.editor, Qt::Key_Left);
        QVERIFY(!f.action("Pegar")->isEnabled());
    }

    void pasteTakesPlainText() {
        EditorFixture f;
        QVERIFY(f.openUnnamed());
        auto* rich = new QMimeData;
        rich->setHtml("<b>uno</b>");
        rich->setText("<b>a\r\nb");
        QApplication::clipboard()->setMimeData(rich);
        pressKey(&f.editor, Qt::Key_V, Qt::ControlModifier);
        QCOMPARE(f.text(), QString("<b>a\nb"));
        f.discard();
    }

    void keysOfDisabledCommandsDoNothing() {
        EditorFixture f;
        QVERIFY(f.openUnnamed("A"));
        for (const Qt::Key key : {Qt::Key_X, Qt::Key_C, Qt::Key_V}) {
            pressKey(&f.editor, key, Qt::ControlModifier);
        }
        {
            const DialogAnswerer noDialog;
            pressKey(&f.editor, Qt::Key_F3);
        }
        QCOMPARE(f.text(), QString("A"));
        f.discard();
    }

    void undoAndRedo() {
        EditorFixture f;
        QVERIFY(f.open(f.put("a.asm", "A\r\n")));
        pressKey(&f.editor, Qt::Key_Z, Qt::ControlModifier);
        QCOMPARE(f.text(), QString("A\n"));  // loading is nothing to undo
        typeText(&f.editor, "xyz");
        QCOMPARE(f.text(), QString("xyzA\n"));
        pressKey(&f.editor, Qt::Key_Z, Qt::ControlModifier);
        QCOMPARE(f.text(), QString("A\n"));
        pressKey(&f.editor, Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier);
        QCOMPARE(f.text(), QString("xyzA\n"));
        f.discard();
    }

    /// An assistive tool reaches what the user cannot.
    void nothingHappensBehindAModalWindow() {
        EditorFixture f;
        QVERIFY(f.openUnnamed("AB CD"));
        pressKey(f.texto(), Qt::Key_End);
        f.selectText(0, 1);
        QApplication::clipboard()->setText("xyz");
        {
            DialogAnswerer dialogs;  // fails where a question comes
            dialogs.expectWindow("inTheWay", [&f](QWidget* dialog) {
                pressAndWriteBehind(f);
                dialog->close();
            });
            QDialog inTheWay(&f.editor);
            inTheWay.setObjectName("inTheWay");
            inTheWay.exec();
            QVERIFY(dialogs.allCame());
        }
        QVERIFY(showActive(&f.editor));
        f.texto()->undo();
        QCOMPARE(f.text(), QString());
        f.texto()->redo();
        QCOMPARE(f.text(), QString("AB CD"));
        f.discard();
    }

    void contextMenuPromisesNoKeyThatOpensAFile() {
        EditorFixture f;
        QVERIFY(f.openUnnamed("A"));
        QStringList texts;
        QTimer::singleShot(0, &f.editor, [&texts] {
            if (auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget())) {
                for (const QAction* action : menu->actions()) texts.append(action->text());
                menu->close();
            }
        });
        QContextMenuEvent event(QContextMenuEvent::Keyboard, QPoint(5, 5), QPoint(5, 5));
        QApplication::sendEvent(f.texto()->viewport(), &event);
        QVERIFY(texts.size() > 5);
        QVERIFY(texts.filter("Ctrl+A").isEmpty());
        f.discard();
    }
};

QTEST_MAIN(EditorCommandsTest)
#include "EditorCommandsTest.moc"
