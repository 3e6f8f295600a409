#include "tests/ui/common/HexBoxWindow.h"

#include <QAccessible>
#include <QAccessibleActionInterface>
#include <QLabel>
#include <QMenuBar>
#include <QVBoxLayout>

#include "tests/support/RealInput.h"
#include "ui/common/FocusGate.h"

namespace tavinor {

HexBoxWindow::HexBoxWindow() {
    auto* content = new QWidget(this);
    auto* layout = new QVBoxLayout(content);
    const auto add = [layout](auto* widget) {
        layout->addWidget(widget);
        return widget;
    };
    add(new QLabel("Etiqueta", content))->setObjectName("label");
    before = add(new HexBox("before", "Anterior", 2, content));
    byte = add(new HexBox("byte", "Byte", 2, content));
    word = add(new HexBox("word", "Palabra", 4, content));
    kept = add(new HexBox("kept", "En blanco", 2, content, HexBox::Blank::kept));
    button = add(new CommandButton("button", "Orden", "&Orden", content));
    checkBox = add(new CommandCheckBox("checkBox", "Marca", "Marca", content));
    display = add(new DisplayCheckBox("display", "Salida", "Salida", content));
    grid = add(new QTableWidget(4, 3, content));
    grid->setCurrentCell(0, 0);
    list = add(new QListWidget(content));
    list->addItems({"uno", "dos", "tres"});
    list->setCurrentRow(0);
    setCentralWidget(content);

    auto* menu = menuBar()->addMenu("&Menú");
    menu->setObjectName("menu");
    auto* action = menu->addAction("&Opción");
    connect(action, &QAction::triggered, this, [this] {
        if (FocusGate::of(this).pass()) ++menuActions;
    });
    connect(button, &CommandButton::command, this, [this] { ++commands; });
    connect(checkBox, &CommandCheckBox::changedByUser, this, [this] { ++changes; });
    connect(grid, &QTableWidget::currentCellChanged, this, [this] { ++cells; });
    connect(list, &QListWidget::currentRowChanged, this, [this] { ++rows; });
}

void HexBoxWindow::typeInto(HexBox* box, const QString& text) {
    clickIn(box);
    pressKey(box, Qt::Key_A, Qt::ControlModifier);
    pressKey(box, Qt::Key_Delete);
    typeText(box, text);
}

bool HexBoxWindow::untouched() const {
    return commands == 0 && changes == 0 && cells == 0 && rows == 0 && menuActions == 0 &&
           !checkBox->isChecked() && !button->isDown();
}

namespace {

QPoint middleOfCell(const HexBoxWindow& w) {
    return w.grid->visualRect(w.grid->model()->index(1, 1)).center();
}

QPoint middleOfRow(const HexBoxWindow& w) {
    return w.list->visualRect(w.list->model()->index(1, 0)).center();
}

}  // namespace

const std::vector<WayOut>& waysOut() {
    using W = HexBoxWindow;
    static const std::vector<WayOut> ways{
        {"Tab", [](W& w) { pressKey(&w, Qt::Key_Tab); }, [](const W& w) { return w.word->hasFocus(); }},
        {"Shift+Tab", [](W& w) { pressKey(&w, Qt::Key_Backtab, Qt::ShiftModifier); },
         [](const W& w) { return w.before->hasFocus(); }},
        {"click on a box", [](W& w) { clickIn(w.kept); }, [](const W& w) { return w.kept->hasFocus(); }},
        {"right click on a box", [](W& w) { clickAt(w.kept, w.kept->rect().center(), Qt::RightButton); },
         [](const W& w) { return w.kept->hasFocus(); }},
        {"click on a button", [](W& w) { clickIn(w.button); }, [](const W& w) { return w.commands == 1; }},
        {"click on a cell", [](W& w) { clickAt(w.grid->viewport(), middleOfCell(w)); },
         [](const W& w) { return w.cells == 1 && w.grid->currentRow() == 1; }},
        {"click on a row", [](W& w) { clickAt(w.list->viewport(), middleOfRow(w)); },
         [](const W& w) { return w.rows == 1 && w.list->currentRow() == 1; }},
        {"click on a check box", [](W& w) { clickIn(w.checkBox); },
         [](const W& w) { return w.changes == 1 && w.checkBox->isChecked(); }},
        {"click on a display", [](W& w) { clickIn(w.display); },
         [](const W& w) { return w.display->hasFocus() && !w.display->isChecked(); }},
        {"access key", [](W& w) { pressKey(&w, Qt::Key_O, Qt::AltModifier); },
         [](const W& w) { return w.commands == 1; }},
        {"tool presses a button", [](W& w) { pressByAssistiveTool(w.button); },
         [](const W& w) { return w.commands == 1; }},
        {"tool toggles a check box", [](W& w) { pressByAssistiveTool(w.checkBox); },
         [](const W& w) { return w.changes == 1 && w.checkBox->isChecked(); }},
        {"tool toggles a display",
         [](W& w) {
             w.display->setFocus();
             pressByAssistiveTool(w.display);
         },
         [](const W& w) { return !w.display->isChecked(); }},
        {"tool moves the focus",
         [](W& w) {
             QAccessibleInterface* box = QAccessible::queryAccessibleInterface(w.kept);
             box->actionInterface()->doAction(QAccessibleActionInterface::setFocusAction());
         },
         [](const W& w) { return w.kept->hasFocus(); }},
    };
    return ways;
}

}  // namespace tavinor
