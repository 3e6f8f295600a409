#pragma once

#include <QDialog>
#include <QList>
#include <QPoint>
#include <QRect>
#include <QString>
#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>

#include "ui/common/Commands.h"
#include "ui/common/HexBox.h"
#include "ui/main/ShownState.h"

class QEventLoop;
class QLabel;
class QRadioButton;

namespace tavinor {

/// The dialog that a HLT opens: it is left with "Aceptar" alone, after a way out has been chosen. See
/// behaviour.md, Main window: halt dialog.
class Halt : public QDialog {
    Q_OBJECT

  public:
    /// The ways out, in the order of their options.
    enum class WayOut : std::uint8_t { reset, trap, rst55, rst65, rst75, intr };
    static constexpr std::array waysOut{WayOut::reset, WayOut::trap,  WayOut::rst55,
                                        WayOut::rst65, WayOut::rst75, WayOut::intr};

    explicit Halt(QWidget* parent);

    /// Shows the dialog and returns when the chosen way out has been carried out. It may be called again
    /// while the way out runs, when that executes another HLT. The first time it stands over the lower part
    /// of `listing`, which tells least while the processor is halted, or at the bottom left where that is
    /// empty; and beside what is `readable`, if there is any such place. Both are what can be seen of them on
    /// the screen.
    void ask(const QRect& listing, const QList<QRect>& readable);

    /// Enables the options of the requests that the machine allows; RESET and TRAP always are.
    void allow(const RequestsAllowed& allowed);
    /// A run ticks and enables "Continuar ejecución"; its end unticks and disables it.
    void setRunning(bool running);
    /// Whether a run goes on after the dialog.
    [[nodiscard]] bool continues() const;

  signals:
    /// The vector box was left: its text is the main window's vector from now on.
    void vectorLeft(const QString& text);
    /// "Aceptar" was pressed and the dialog is hidden: the way out is to be carried out now.
    void chosen(tavinor::Halt::WayOut wayOut);

  protected:
    void showEvent(QShowEvent* event) override;
    void closeEvent(QCloseEvent* event) override;
    void reject() override {}  // Esc chooses nothing

  private:
    void layOut();
    [[nodiscard]] QPoint firstPlace(const QRect& listing, const QList<QRect>& readable) const;
    void aceptar_Click();
    void opt_Click(WayOut wayOut);
    /// Selects an option without any question.
    void select(WayOut wayOut);
    QRadioButton* makeOption(WayOut wayOut);
    [[nodiscard]] QRadioButton* option(WayOut wayOut) const { return opt[static_cast<std::size_t>(wayOut)]; }

    QLabel *Label1 = nullptr, *Label2 = nullptr, *Label33 = nullptr;
    std::array<QRadioButton*, waysOut.size()> opt{};
    WayOut selected_ = WayOut::reset;
    HexBox* txtVec = nullptr;
    CommandCheckBox* eje = nullptr;
    CommandButton* aceptar = nullptr;
    QEventLoop* showing_ = nullptr;
    std::optional<QPoint> place_;  // where it was left: it comes back there
};

}  // namespace tavinor
