// The main window and what it alone opens.

#include "tests/support/RealInput.h"
#include "tests/ui/everywhere/Scenes.h"
#include "tests/ui/main/Simulator.h"

namespace tavinor {

namespace {

/// On a small screen the dialog scrolls, and the focus brings a button into view.
void press(const QWidget& dialog, const char* name) {
    auto* button = dialog.findChild<QAbstractButton*>(QString::fromLatin1(name));
    button->setFocus();
    clickIn(button);
}

void emptySimulator(const Look& look) {
    Simulator s;
    look(s.window);
}

/// A program with its longest instruction selected, a breakpoint, and all interrupts allowed.
void loadedSimulator(const Look& look) {
    Simulator s;
    s.load(0, QByteArray::fromHex("31CDABFB3E08C30300"));
    s.press(QStringLiteral("CHKEI"));
    s.clickRow(s.rowOf(3));
    pressKey(s.listing(), Qt::Key_F9);
    s.clickRow(0);
    look(s.window);
}

void runningSimulator(const Look& look) {
    Simulator s;
    s.load(0, QByteArray::fromHex("FBC30000"));
    s.runWith([&] { look(s.window); });
}

void haltAfterAStep(const Look& look) {
    Simulator s;
    s.load(0, QByteArray::fromHex("76"));
    s.dialogs.expectWindow(QStringLiteral("Halt"), [&look](QWidget* dialog) {
        look(*dialog);
        press(*dialog, "aceptar");
    });
    s.press(QStringLiteral("Eje_paso"));
}

/// Every way out is open, and the run may go on.
void haltInARun(const Look& look) {
    Simulator s;
    s.load(0, QByteArray::fromHex("FB76"));
    s.dialogs.expectWindow(QStringLiteral("Halt"), [&look](QWidget* dialog) {
        look(*dialog);
        press(*dialog, "eje");
        press(*dialog, "aceptar");
    });
    s.press(QStringLiteral("Ejecutar"));
}

void refusedBox(const Look& look) {
    Simulator s;
    s.dialogs.expectWindow(QStringLiteral("messageBox"), [&look](QWidget* box) {
        look(*box);
        pressKey(box, Qt::Key_Return);
    });
    s.type(QStringLiteral("txtA"), QStringLiteral("xyz"));
    pressKey(s.box(QStringLiteral("txtA")), Qt::Key_Tab);
    s.enter(QStringLiteral("txtA"), QStringLiteral("00"));
}

}  // namespace

std::vector<Scene> simulatorScenes() {
    return {
        {"main window, empty", emptySimulator},     {"main window, a program", loadedSimulator},
        {"main window, running", runningSimulator}, {"halt dialog after a step", haltAfterAStep},
        {"halt dialog in a run", haltInARun},       {"message of a refused box", refusedBox},
    };
}

}  // namespace tavinor
