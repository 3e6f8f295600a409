#include <QDir>
#include <QTemporaryDir>
#include <QTest>

#include "tests/support/Dragging.h"
#include "tests/support/RealInput.h"
#include "tests/ui/main/Simulator.h"
#include "tests/ui/main/ViewsCheck.h"
#include "ui/editor/Editor.h"

using namespace tavinor;

/// Files that are dropped on the main window.
class DropsTest : public QObject {
    Q_OBJECT

  private:
    std::unique_ptr<Simulator> s_;

    QString image(const QByteArray& bytes) const {
        return s_->writeFile("b.HEX", hexRecords(0x100, bytes) + endRecord);
    }
    [[nodiscard]] int memory(int address) const {
        return s_->machine().mem[static_cast<std::size_t>(address)];
    }
    static Editor* shownEditor() {
        for (QWidget* window : QApplication::topLevelWidgets()) {
            auto* editor = qobject_cast<Editor*>(window);
            if (editor != nullptr && editor->isVisible()) return editor;
        }
        return nullptr;
    }

  private slots:
    void init() { s_ = std::make_unique<Simulator>(); }
    void cleanup() { s_.reset(); }

    void anImageIsLoaded() {
        const DraggedFiles file({image("\x5A")});
        s_->dialogs.expectMessage("Carga correcta");
        QCOMPARE(dropOn(&s_->window, file), DragEnd::copied);
        QVERIFY(s_->dialogs.allCame());
        QCOMPARE(memory(0x100), 0x5A);
        QCOMPARE(ViewsCheck(*s_).difference(), QString());
    }

    void whereverItIsDropped() {
        const DraggedFiles file({image("\x5A")});
        for (const char* control : {"prg", "grdmem", "txtA", "Ejecutar", "pila"}) {
            auto* widget = s_->window.findChild<QWidget*>(control);
            QVERIFY2(widget != nullptr, control);
            s_->dialogs.expectMessage("Carga correcta");
            const QPoint place = widget->mapTo(&s_->window, widget->rect().center());
            QCOMPARE(dropOn(&s_->window, place, file), DragEnd::copied);
            QVERIFY2(s_->dialogs.allCame(), control);
            QVERIFY(waitActive(&s_->window));
        }
    }

    void aBadImageSaysWhatTheCommandSays() {
        const QString path = s_->writeFile("bad.hex", "x");
        s_->dialogs.expectMessage("Error en fichero " + path + ".\rFormato incorrecto.", Qt::AlignRight);
        dropOn(&s_->window, DraggedFiles({path}));
    }

    void aSourceIsOpenedInTheEditor() {
        QCOMPARE(shownEditor(), nullptr);
        QCOMPARE(dropOn(&s_->window, DraggedFiles({s_->writeFile("a.asm", "HLT\r\n")})), DragEnd::copied);
        Editor* editor = shownEditor();
        QVERIFY(editor != nullptr);
        QVERIFY(waitActive(editor));
        QCOMPARE(editor->windowTitle(), QString("Tavinor - a.asm"));

        typeText(editor, "x");
        const QString other = s_->writeFile("other.asm", "NOP\r\n");
        constexpr auto buttons = QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel;
        const QString question = " a.asm ha cambiado\r\n¿Desea guardarlo?";
        s_->dialogs.expectQuestion(question, buttons, QMessageBox::Cancel);
        dropOn(&s_->window, DraggedFiles({other}));
        QCOMPARE(editor->windowTitle(), QString("Tavinor - a.asm"));
        s_->dialogs.expectQuestion(question, buttons, QMessageBox::No);
        dropOn(&s_->window, DraggedFiles({other}));
        QCOMPARE(editor->windowTitle(), QString("Tavinor - other.asm"));
    }

    void allElseIsRefused() {
        QTemporaryDir folder;
        QVERIFY(QDir(folder.path()).mkdir("x.hex"));
        const QString hex = image("\x5A");
        const QString source = s_->writeFile("a.asm", "HLT\r\n");
        QCOMPARE(dropOn(&s_->window, DraggedFiles({s_->writeFile("a.txt", "x")})), DragEnd::refused);
        QCOMPARE(dropOn(&s_->window, DraggedFiles({hex, source})), DragEnd::refused);
        QCOMPARE(dropOn(&s_->window, DraggedFiles({hex, hex})), DragEnd::refused);
        QCOMPARE(dropOn(&s_->window, DraggedFiles({folder.filePath("x.hex")})), DragEnd::refused);
        QCOMPARE(dropOn(&s_->window, DraggedText(hex)), DragEnd::refused);
        QCOMPARE(memory(0x100), 0);
        QCOMPARE(shownEditor(), nullptr);
    }

    /// As a button does.
    void theBoxIsLeftFirst() {
        const DraggedFiles file({image("\x5A")});
        s_->type("txtA", "9");
        s_->dialogs.expectMessage("Carga correcta");
        dropOn(&s_->window, file);
        QCOMPARE(int(s_->machine().A), 9);
        QVERIFY(waitActive(&s_->window));

        const DraggedFiles other({s_->writeFile("c.hex", hexRecords(0x100, "\x11") + endRecord)});
        s_->type("txtA", "99q");
        s_->dialogs.expectMessage("Valor incorrecto");
        dropOn(&s_->window, other);
        QTRY_VERIFY(s_->box("txtA")->hasFocus() && s_->dialogs.allCame());
        QCOMPARE(memory(0x100), 0x5A);
        s_->box("txtA")->showText("09");
    }

    void duringARun() {
        s_->load(0, QByteArray::fromHex("C30000"));  // JMP 0000
        const DraggedFiles file({image("\x5A")});
        s_->runWith([&] {
            s_->dialogs.expectMessage("Carga correcta");
            QCOMPARE(dropOn(&s_->window, file), DragEnd::copied);
            QVERIFY(s_->dialogs.allCame());
            QVERIFY(s_->running());
        });
        QCOMPARE(memory(0x100), 0x5A);
    }

    void notBehindAModalWindow() {
        s_->load(0, QByteArray::fromHex("76"));  // HLT
        const DraggedFiles file({image("\x5A")});
        s_->dialogs.expectWindow("Halt", [&](QWidget* halt) {
            QCOMPARE(dropOn(&s_->window, file), DragEnd::refused);
            pressKey(halt, Qt::Key_Return);
        });
        s_->press("Eje_paso");
        QCOMPARE(memory(0x100), 0);
    }
};

QTEST_MAIN(DropsTest)
#include "DropsTest.moc"
