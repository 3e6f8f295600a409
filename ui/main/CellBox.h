#pragma once

#include <QString>
#include <cstdint>
#include <optional>

#include "ui/common/HexBox.h"

namespace tavinor {

/// A hexadecimal box that writes a cell of memory or of the ports when it is left, also when nothing was
/// typed. While that would change the cell, a dashed frame, the tooltip and the spoken description warn of
/// it, and Esc puts back what the cell holds.
class CellBox : public HexBox {
    Q_OBJECT

  public:
    CellBox(const QString& name, const QString& accessibleName, QWidget* parent, Blank blank = Blank::padded);

    /// Tells what the cell holds; nothing when the box has no cell to write. Cheap when nothing has changed.
    void showCell(std::optional<std::uint8_t> byte);
    /// Whether leaving the box would change the cell, or the text cannot be written.
    [[nodiscard]] bool differs() const { return differs_; }

  protected:
    void keyPressEvent(QKeyEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

  private:
    void compare();
    [[nodiscard]] QString warning() const;

    std::optional<std::uint8_t> cell_;
    bool differs_ = false;
};

}  // namespace tavinor
