// The other windows: trace, assembler, editor, start-up.

#include <QAbstractButton>
#include <QProgressDialog>
#include <QTest>

#include "tests/assembler/window/AssemblerUser.h"
#include "tests/support/RealInput.h"
#include "tests/ui/editor/EditorFixture.h"
#include "tests/ui/everywhere/Scenes.h"
#include "tests/ui/trace/TraceWindowTest.h"
#include "ui/startup/Cabecera.h"

namespace tavinor {

namespace {

class TraceScene : private TraceWindowTest {
  public:
    /// A trace of `steps` instructions.
    explicit TraceScene(int steps) {
        setUp();
        QVERIFY(showActive(window_.get()));
        traced_->recordOnlyCompact();
        record(steps);
    }

    void lookAtWindow(const Look& look) { look(*window_); }

    void lookAtSelection(const Look& look) {
        clickCell(1, 2);
        look(*window_);
    }

    void lookAtProgress(const Look& look) {
        window_->setPatience(std::chrono::milliseconds(0));
        const QTemporaryDir folder;
        DialogAnswerer dialogs;
        dialogs.expectFileDialog(
            {"Salvar fichero .TXT", {"Fichero de texto (*.txt)", "Todos los ficheros (*.*)"}, "*.txt", true},
            folder.filePath("listado.txt"));
        dialogs.expectWindow("progreso", [&look](QWidget* dialog) {
            look(*dialog);
            clickIn(dialog->findChild<QAbstractButton*>());
        });
        clickMenu("salvar");
    }
};

/// What stands in the window when an assembly of `source` has ended.
void assembled(const QByteArray& source, const QStringList& boxes, const Look& look) {
    AssemblerUser user;
    user.write("programa.asm", source);
    user.afterwards = [&look](QDialog& window) { look(window); };
    user.assemble("programa.asm", boxes);
}

void assembledWithErrors(const Look& look) {
    assembled("INI: MVI A,1\r\nINI: XYZ 3\r\n JMP NADA\r\n", {"Ensamblado incorrecto"}, look);
}

void emptyEditor(const Look& look) {
    EditorFixture fixture;
    QVERIFY(fixture.openUnnamed());
    look(fixture.editor);
}

void editorWithSelection(const Look& look) {
    EditorFixture fixture;
    QVERIFY(fixture.open(fixture.put("programa.asm", "INI: MVI A,1 ; carga\r\n HLT\r\n")));
    fixture.selectText(0, 3);
    look(fixture.editor);
}

/// The find dialog; `pattern` is typed in it.
void findDialog(const QString& pattern, const Look& look) {
    EditorFixture fixture;
    QVERIFY(fixture.openUnnamed());
    fixture.action("Buscar")->trigger();
    auto* dialog = fixture.editor.findChild<QDialog*>("Busqueda");
    QVERIFY(waitActive(dialog));
    if (!pattern.isEmpty()) typeText(dialog, pattern);
    look(*dialog);
    dialog->hide();
}

/// The start-up window asks for no updates.
struct QuietCabecera : Cabecera {
    QuietCabecera() : Cabecera(Version{1, 5, 7}, UpdateSource{}) {}
};

void splash(const Look& look) {
    QuietCabecera window;
    window.showSplash();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    look(window);
}

void about(const Look& look) {
    QuietCabecera window;
    lookAtModal(
        "Cabecera", [&window] { window.showAbout(); }, look,
        [](QWidget& dialog) { clickIn(dialog.findChild<QAbstractButton*>("OK")); });
}

void farewell(const Look& look) {
    QuietCabecera window;
    window.showFarewell();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    look(window);
}

}  // namespace

std::vector<Scene> toolScenes() {
    constexpr int manySteps = 400'000;  // more than is saved before the dialog has been looked at
    return {
        {"trace, empty", [](const Look& look) { TraceScene(0).lookAtWindow(look); }},
        {"trace, with rows", [](const Look& look) { TraceScene(50).lookAtSelection(look); }},
        {"trace being saved", [](const Look& look) { TraceScene(manySteps).lookAtProgress(look); }},
        {"assembler, good", [](const Look& look) { assembled(" MVI A,1\r\n HLT\r\n", {}, look); }},
        {"assembler, errors", assembledWithErrors},
        {"editor, empty", emptyEditor},
        {"editor, selection", editorWithSelection},
        {"find dialog, empty", [](const Look& look) { findDialog({}, look); }},
        {"find dialog, typed", [](const Look& look) { findDialog("uno", look); }},
        {"splash", splash},
        {"about", about},
        {"farewell", farewell},
    };
}

}  // namespace tavinor
