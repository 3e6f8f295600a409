#pragma once

#include <QGroupBox>
#include <array>
#include <cstdint>

#include "machine/MachineState.h"
#include "ui/common/Commands.h"
#include "ui/common/HexBox.h"
#include "ui/trace/ShownBoxes.h"

class QGridLayout;

namespace tavinor {

/// What the register boxes show: the registers at the last refresh or edit, and the memory byte at HL.
struct RegisterValues {
    Registers registers;
    std::uint8_t M = 0;
};

/// The group "Registros": fourteen boxes and eight flag boxes. An edit reaches the machine when its box is
/// left; the boxes that show the same bits follow at once.
///
/// A refresh in a run only notes the values; the widgets follow in `bringUpToDate`.
class RegisterPanel : public QGroupBox {
    Q_OBJECT

  public:
    RegisterPanel(MachineState& machine, QWidget* parent);

    /// Notes what the boxes show from now on. Cheap: no widget is touched.
    void note(const RegisterValues& values) { values_ = values; }
    /// Writes the noted values into the boxes; what was being typed is gone.
    void bringUpToDate();
    /// The flag byte as the flag boxes show it: what `comenta` speaks of.
    [[nodiscard]] int shownFlags() const;
    /// What the boxes show, edited ones apart.
    [[nodiscard]] const RegisterValues& values() const { return values_; }
    /// Whether a box holds text that was typed and not left yet.
    [[nodiscard]] bool edited() const { return editedBoxes_ > 0; }
    /// The texts of the boxes as they stand, edited or not.
    [[nodiscard]] RegisterTexts texts() const;

  signals:
    /// `txtM` was left: `data` (0..255) is meant for memory cell `address`.
    void memoryByteEntered(std::int32_t address, int data);
    void programCounterEntered();
    void stackPointerEntered();

  private:
    /// A pair and its halves: three boxes for the same bits.
    struct PairBoxes {
        HexBox* high;
        HexBox* low;
        HexBox* pair;
        std::uint8_t Registers::*highRegister;
        std::uint8_t Registers::*lowRegister;
    };

    HexBox* makeBox(const QString& name, const QString& accessibleName, int digits);
    void layOut();
    void placeBox(QGridLayout* grid, int row, int column, const QString& caption, HexBox* box);
    QWidget* makeFlagBoxes();
    [[nodiscard]] CommandCheckBox* flagBox(int bit) const { return chkF[static_cast<std::size_t>(bit)]; }
    void connectBoxes();
    void connectPair(const PairBoxes& pair);
    void halfLeft(const PairBoxes& pair, const HexBox* half, std::uint8_t Registers::*own);
    void pairLeft(const PairBoxes& pair);
    void registersEdited();
    void showMemoryByte();
    void showFlags();
    void chkF_Click();

    MachineState& machine_;
    RegisterValues values_;
    int editedBoxes_ = 0;

    HexBox *txtA, *txtF;
    std::array<CommandCheckBox*, 8> chkF{};
    HexBox *txtB, *txtC, *txtBC, *txtPC;
    HexBox *txtD, *txtE, *txtDE, *txtSP;
    HexBox *txtH, *txtL, *txtHL, *txtM;
};

}  // namespace tavinor
