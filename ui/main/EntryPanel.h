#pragma once

#include <QGroupBox>
#include <QString>
#include <cstdint>

#include "machine/MachineState.h"
#include "ui/common/HexBox.h"
#include "ui/main/CellBox.h"

class QLabel;

namespace tavinor {

/// The group "Instrucción": an address, and the bytes of an instruction, each written to memory when its box
/// is left. A blank one writes nothing. A write leaves the boxes as they are. See behaviour.md, Main window:
/// entry row.
class EntryPanel : public QGroupBox {
    Q_OBJECT

  public:
    EntryPanel(const MachineState& machine, QWidget* parent);

    /// Copies a row of the listing into the boxes; those of bytes that the instruction lacks become empty.
    void showRow(const QString& row);
    /// Compares the byte boxes with the memory that they would write.
    void bringUpToDate();

  signals:
    void addressEntered(std::int32_t address);
    /// The code box was left with `code` (0..255), meant for `address`.
    void codeEntered(std::int32_t address, int code);
    /// An operand box was left with `operand` (0..255), meant for `address` (0..65537).
    void operandEntered(std::int32_t address, int operand);

  private:
    const MachineState& machine_;
    HexBox* txtDIR = nullptr;
    CellBox *INSCO = nullptr, *INSOP1 = nullptr, *INSOP2 = nullptr;
    QLabel* INS = nullptr;
};

}  // namespace tavinor
