// Menus and context menus of the program's own windows.

#include <QLineEdit>
#include <QMenu>
#include <QPlainTextEdit>

#include "tests/assembler/window/AssemblerUser.h"
#include "tests/support/RealInput.h"
#include "tests/ui/editor/EditorFixture.h"
#include "tests/ui/everywhere/Scenes.h"
#include "tests/ui/main/Simulator.h"
#include "tests/ui/trace/TraceWindowTest.h"

namespace tavinor {

namespace {

void editorMenu(const char* name, const Look& look) {
    EditorFixture fixture;
    QVERIFY(fixture.openUnnamed("uno dos"));
    fixture.selectText(0, 3);
    auto* menu = fixture.editor.findChild<QMenu*>(name);
    QVERIFY(menu != nullptr);
    lookAtMenu([menu] { menu->popup(QPoint(20, 20)); }, look);
    fixture.discard();
}

void editorContextMenu(const Look& look) {
    EditorFixture fixture;
    QVERIFY(fixture.openUnnamed("uno dos"));
    fixture.selectText(0, 3);
    lookAtContextMenu(fixture.texto()->viewport(), look);
    fixture.discard();
}

void patternContextMenu(const Look& look) {
    EditorFixture fixture;
    QVERIFY(fixture.openUnnamed());
    fixture.action("Buscar")->trigger();
    auto* dialog = fixture.editor.findChild<QDialog*>("Busqueda");
    QVERIFY(waitActive(dialog));
    lookAtContextMenu(dialog->findChild<QLineEdit*>("cadena"), look);
    dialog->hide();
}

void hexBoxContextMenu(const Look& look) {
    Simulator s;
    lookAtContextMenu(s.box("txtA"), look);
}

void paneContextMenu(const Look& look) {
    AssemblerUser user;
    user.write("programa.asm", " HLT\r\n");
    user.afterwards = [&look](QDialog& window) {
        lookAtContextMenu(window.findChild<QPlainTextEdit*>("filelst")->viewport(), look);
    };
    user.assemble("programa.asm");
}

void traceContextMenu(const Look& look) {
    struct Trace : TraceWindowTest {
        explicit Trace(const Look& look) {
            setUp();
            QVERIFY(showActive(window_.get()));
            record(20);
            lookAtContextMenu(lista_->viewport(), look);
        }
    };
    const Trace trace(look);
}

}  // namespace

std::vector<Scene> menuScenes() {
    std::vector<Scene> list{
        {"context menu of the editor", editorContextMenu},
        {"context menu of the text to find", patternContextMenu},
        {"context menu of a hexadecimal box", hexBoxContextMenu},
        {"context menu of an assembler's pane", paneContextMenu},
        {"context menu of the trace", traceContextMenu},
    };
    for (const char* name : {"Archivo", "Edicion", "Buscarvacio"}) {
        list.push_back({name, [name](const Look& look) { editorMenu(name, look); }});
    }
    return list;
}

}  // namespace tavinor
