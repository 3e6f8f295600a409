#pragma once

#include <QAbstractButton>
#include <QByteArray>
#include <QHash>
#include <QString>
#include <QStringList>
#include <QTableView>
#include <QTemporaryDir>
#include <functional>
#include <memory>

#include "tests/support/DialogAnswerer.h"
#include "ui/common/HexBox.h"
#include "ui/main/Halt.h"
#include "ui/main/ListingPanel.h"
#include "ui/main/Principal.h"

namespace tavinor {

/// The digits of `value` as every view shows them.
QString hexDigits(int value, int digits);

/// Intel HEX records for `bytes` from `address` on, without the end record.
QByteArray hexRecords(int address, const QByteArray& bytes);
inline const QByteArray endRecord = ":00000001FF\r\n";

/// The main window in the user's hands: controls are found by their names and used by real clicks and keys.
/// A control that does not exist ends the test program.
class Simulator {
  public:
    /// Shows the window and waits until it is active.
    explicit Simulator(std::unique_ptr<RunPace> pace = std::make_unique<ClockPace>());

    Principal window;
    /// What the window is expected to ask and say meanwhile.
    DialogAnswerer dialogs;

    [[nodiscard]] const MachineState& machine() const { return window.machine(); }

    /// A control of the main window itself; the halt dialog has some of the same names.
    template <typename Control>
    [[nodiscard]] Control* find(const QString& name) const {
        auto* control = qobject_cast<Control*>(findWidget(name));
        if (control == nullptr) qFatal("the main window has no such control: %s", qPrintable(name));
        return control;
    }
    [[nodiscard]] HexBox* box(const QString& name) const { return find<HexBox>(name); }
    [[nodiscard]] QAbstractButton* button(const QString& name) const { return find<QAbstractButton>(name); }
    [[nodiscard]] QString text(const QString& boxName) const { return box(boxName)->text(); }
    [[nodiscard]] bool checked(const QString& name) const { return button(name)->isChecked(); }
    [[nodiscard]] bool enabled(const QString& name) const { return button(name)->isEnabled(); }
    [[nodiscard]] Halt* halt() const { return window.findChild<Halt*>(); }

    void press(const QString& buttonName) const;
    /// Types `text` in place of what a box holds, and stays there.
    void type(const QString& boxName, const QString& text) const;
    /// Types `text` and moves the focus to the stack view, where it does nothing.
    void enter(const QString& boxName, const QString& text) const;
    /// Moves the focus to the stack view.
    void leaveBox() const;

    [[nodiscard]] QTableView* grid(const QString& name) const { return find<QTableView>(name); }
    [[nodiscard]] QString cell(const QString& gridName, int address) const;
    /// The address of the grid's current cell.
    [[nodiscard]] int currentAddress(const QString& gridName) const;
    /// Scrolls the address into view and clicks on its cell.
    void clickCell(const QString& gridName, int address) const;

    [[nodiscard]] ListingView* listing() const { return find<ListingView>("prg"); }
    [[nodiscard]] QStringList rows() const;
    /// The address of a listing row, by its text.
    [[nodiscard]] int rowAddress(int row) const { return rows().at(row).left(4).toInt(nullptr, 16); }
    /// The row of an address; -1 when it has none.
    [[nodiscard]] int rowOf(int address) const;
    [[nodiscard]] int selectedAddress() const;
    /// The middle of a row, within the list's viewport.
    [[nodiscard]] QPoint placeOfRow(int row) const;
    void clickRow(int row) const;
    [[nodiscard]] QStringList stackLines() const;
    /// The four boxes of the entry row and the instruction's text beside them.
    [[nodiscard]] QStringList entryRow() const;

    /// Writes a file for the window to load, and returns its path.
    QString writeFile(const QString& name, const QByteArray& content) const;
    /// Loads `bytes` at `address` as a HEX file; breakpoints are gone then.
    void load(int address, const QByteArray& bytes);

    [[nodiscard]] bool running() const;
    /// Runs, and does the actions one after the other in the middle of it, instructions between each two of
    /// them; then stops.
    void runWith(const QList<std::function<void()>>& actions);
    /// Starts a run, does `during` in the middle of it, and stops it if it is still going. Returns when it
    /// has ended.
    void runWith(const std::function<void()>& during) const;

  private:
    void doNext(const QList<std::function<void()>>& actions);
    [[nodiscard]] QWidget* findWidget(const QString& name) const;

    mutable QHash<QString, QWidget*> found_;  // controls live as long as their window
    QTemporaryDir folder_;
};

}  // namespace tavinor
