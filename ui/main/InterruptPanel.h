#pragma once

#include <QGroupBox>
#include <QString>

#include "machine/MachineState.h"
#include "ui/common/Commands.h"
#include "ui/common/HexBox.h"
#include "ui/main/ShownState.h"

class QLayout;

namespace tavinor {

/// The group "Interrupciones": masks, enable, serial lines, the request buttons and the INTR vector. What the
/// user clicks is announced and carried out by the window.
class InterruptPanel : public QGroupBox {
    Q_OBJECT

  public:
    InterruptPanel(const MachineState& machine, QWidget* parent);

    /// Shows the machine's interrupt state and lines, and allows the requests that it allows. Serves nothing.
    void bringUpToDate();
    /// The text of the vector box.
    [[nodiscard]] QString vector() const { return txtVec->text(); }
    void setVector(const QString& text) { txtVec->showText(text); }

  signals:
    /// A mask or IE was clicked: the interrupt state as it is to be.
    void interruptsEntered(const tavinor::InterruptState& state);
    void serialInputEntered(bool SID);
    void intrRequested();
    void rst55Requested();
    void rst65Requested();
    void rst75Requested();
    void trapRequested();
    /// The buttons have been enabled and disabled: the halt dialog's options follow.
    void allowedChanged(const tavinor::RequestsAllowed& allowed);

  private:
    QLayout* makeMaskBoxes();
    QLayout* makeLineBoxes();
    QLayout* makeButtons();
    QLayout* makeVectorRow();
    void enter(bool InterruptState::*own, bool checked);
    void allow();
    void serveLatchedRst75();
    void CHK55_Click(bool checked);
    void CHK65_Click(bool checked);
    void CHK75_Click(bool checked);
    void CHKEI_Click(bool checked);

    const MachineState& machine_;
    CommandCheckBox *CHK55 = nullptr, *CHK65 = nullptr, *CHK75 = nullptr, *CHKEI = nullptr, *chkSID = nullptr;
    DisplayCheckBox* ChkSOD = nullptr;
    CommandButton *Rst55 = nullptr, *Rst65 = nullptr, *Rst75 = nullptr, *Trap = nullptr, *Intr = nullptr;
    HexBox* txtVec = nullptr;
};

}  // namespace tavinor
