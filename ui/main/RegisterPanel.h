#pragma once

#include <QGroupBox>
#include <array>
#include <cstdint>

#include "machine/MachineState.h"
#include "trace/RegisterColumns.h"
#include "ui/common/Commands.h"
#include "ui/common/HexBox.h"
#include "ui/main/ShownState.h"

class QGridLayout;

namespace tavinor {

/// The group "Registros": fourteen boxes and eight flag boxes. An edit is announced when its box is left; the
/// boxes that show the same bits follow at once.
class RegisterPanel : public QGroupBox {
    Q_OBJECT

  public:
    RegisterPanel(const MachineState& machine, const ShownValues& shown, QWidget* parent);

    /// Writes the shown values into the boxes; what was being typed is gone.
    void bringUpToDate();
    /// The flag byte as the flag boxes show it, bit i from box i.
    [[nodiscard]] int shownFlags() const;
    /// Whether a box holds text that was typed and not left yet.
    [[nodiscard]] bool edited() const { return editedBoxes_ > 0; }
    /// The texts of the boxes as they stand, edited or not.
    [[nodiscard]] RegisterTexts texts() const;

  signals:
    /// A box was left, or a flag box clicked: the registers as they are to be. Their pairs are not.
    void registersEntered(const tavinor::Registers& registers);
    /// A box of H, L or HL was left: M shows the memory at the new HL from now on.
    void pointerEntered();
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

    /// The boxes that the trace has columns of.
    using ColumnBoxes = std::array<HexBox*, boxColumns.size()>;
    /// In the order of `boxColumns`.
    [[nodiscard]] ColumnBoxes columnBoxes() const;

    HexBox* makeBox(const QString& name, const QString& accessibleName, int digits);
    void layOut();
    void placeBox(QGridLayout* grid, int row, int column, const QString& caption, HexBox* box);
    QWidget* makeFlagBoxes();
    [[nodiscard]] CommandCheckBox* flagBox(int bit) const { return chkF[static_cast<std::size_t>(bit)]; }
    void connectBoxes();
    void connectPair(const PairBoxes& pair);
    void halfLeft(const PairBoxes& pair, const HexBox* half, std::uint8_t Registers::*own);
    void pairLeft(const PairBoxes& pair);
    /// Announces the machine's registers with one of them changed.
    template <typename Value>
    void enter(Value Registers::*own, int value) {
        Registers registers = machine_.registers();
        registers.*own = static_cast<Value>(value);
        emit registersEntered(registers);
    }
    void pointerLeft();
    void showFlags();
    void chkF_Click();

    const MachineState& machine_;
    const ShownValues& shown_;
    int editedBoxes_ = 0;

    HexBox *txtA = nullptr, *txtF = nullptr;
    std::array<CommandCheckBox*, 8> chkF{};
    HexBox *txtB = nullptr, *txtC = nullptr, *txtBC = nullptr, *txtPC = nullptr;
    HexBox *txtD = nullptr, *txtE = nullptr, *txtDE = nullptr, *txtSP = nullptr;
    HexBox *txtH = nullptr, *txtL = nullptr, *txtHL = nullptr, *txtM = nullptr;
};

}  // namespace tavinor
