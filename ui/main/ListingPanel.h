#pragma once

#include <QGroupBox>
#include <QListWidget>
#include <QScrollBar>
#include <cstdint>
#include <optional>

#include "images/Listing.h"
#include "machine/MachineState.h"
#include "ui/main/ShownState.h"
#include "ui/main/SingleSelection.h"

namespace tavinor {

/// The list control of the program listing. It only tells what the user did.
class ListingView : public SingleSelection<QListWidget> {
    Q_OBJECT

  public:
    /// True for the row of the program counter, which is marked whether or not it is selected; true for no
    /// row where that address is not listed.
    static constexpr int programCounterRole = Qt::UserRole;
    /// Where a row has its "*" or a blank.
    static constexpr int breakpointColumn = 4;

    explicit ListingView(QWidget* parent);

    /// Shows the rows, the selection and the row of the program counter, without a signal.
    void showRows(const Listing& listing, std::int32_t programCounter);
    /// Selects a row as a click on it does, also when it is selected already.
    void choose(int row);
    [[nodiscard]] std::int32_t address(int row) const { return item(row)->text().left(4).toInt(nullptr, 16); }
    /// The row of `address`; -1 when it is not listed.
    [[nodiscard]] int rowOf(std::int32_t address) const;

  signals:
    /// The user selected a row by mouse, keyboard or an assistive tool.
    void prg_Click();
    /// The user double-clicked on a row, which is selected now.
    void prg_DblClick();
    void f9Pressed();
    /// An assistive tool asks for what a double-click on the row of `address` does.
    void toggleAsked(std::int32_t address);
    void enterPressed();
    /// Before the list handles the arrow itself.
    void upPressed();
    void downPressed();
    void wheelTurned(int steps);  ///< Positive is away from the user: up.

  protected:
    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;

  private:
    void fitRows();

    int wheelRest_ = 0;
};

/// The group "Programa": memory as a disassembled program that follows the program counter, with a breakpoint
/// mark for each row.
class ListingPanel : public QGroupBox {
    Q_OBJECT

  public:
    ListingPanel(const MachineState& machine, const Breakpoints& breakpoints, const ShownValues& shown,
                 QWidget* parent);

    /// Lists the program around the shown program counter and selects its row.
    void bringUpToDate();
    /// Lists the program around an address that the user asks for, and selects its row.
    void position(std::int32_t address);
    void takeFocus() { prg->setFocus(Qt::OtherFocusReason); }
    /// While a run is going, the selection follows the program counter.
    void setRunning(bool running) { running_ = running; }
    /// Rebuilds the rows from the same first one, with the same address selected.
    void rebuildInPlace();

  signals:
    /// The user selected a row; `text` is the whole row.
    void rowSelected(const QString& text);
    /// The user asks for the breakpoint at `address` (0..65535) to be set, or cleared where it is set.
    void breakpointToggled(std::int32_t address);

  private:
    void prg_Click();
    void prg_DblClick();
    void prg_KeyDown(int key);
    void prg_KeyPress();
    void f9();
    void toggle(std::int32_t address);
    void positionRows(std::int32_t address);
    void prg_Scroll();
    void scrollBarUsed(int action);
    void turnWheel(int steps);
    void showRows();
    void fitScrollBar();

    Listing listing_;
    const ShownValues& shown_;
    bool running_ = false;
    /// The address that the user selected last, whatever the program has selected since.
    std::optional<std::int32_t> chosen_;
    ListingView* prg = nullptr;
    QScrollBar* scrollBar_ = nullptr;
};

}  // namespace tavinor
