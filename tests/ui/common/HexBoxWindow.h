#pragma once

#include <QListWidget>
#include <QMainWindow>
#include <QTableWidget>
#include <vector>

#include "ui/common/Commands.h"
#include "ui/common/HexBox.h"

namespace tavinor {

/// A window with hexadecimal boxes and one of everything that can take the focus from them.
class HexBoxWindow : public QMainWindow {
    Q_OBJECT

  public:
    HexBoxWindow();

    /// Gives the focus to a box as a click does, and types `text` in it in place of what it held.
    void typeInto(HexBox* box, const QString& text);
    /// Whether nothing at all has reacted since the window was shown.
    [[nodiscard]] bool untouched() const;

    HexBox *before, *byte, *word, *kept;
    CommandButton* button;
    CommandCheckBox* checkBox;
    DisplayCheckBox* display;
    QTableWidget* grid;
    QListWidget* list;
    int commands = 0, changes = 0, cells = 0, rows = 0, menuActions = 0;
};

/// A way of leaving a box that has the focus.
struct WayOut {
    const char* name;
    void (*go)(HexBoxWindow&);
    /// Whether what was to happen at the other end has happened, once.
    bool (*arrived)(const HexBoxWindow&);
};

const std::vector<WayOut>& waysOut();

}  // namespace tavinor
