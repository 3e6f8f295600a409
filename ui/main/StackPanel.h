#pragma once

#include <QGroupBox>
#include <QListWidget>

#include "machine/MachineState.h"
#include "ui/main/ShownState.h"

namespace tavinor {

/// The list "PILA": the eight words on top of the stack, the top first.
class StackPanel : public QGroupBox {
    Q_OBJECT

  public:
    StackPanel(const MachineState& machine, const ShownValues& shown, QWidget* parent);

    /// Rebuilds the words from the shown stack pointer on.
    void regenpila();

  private:
    void fitWords();

    const MachineState& machine_;
    const ShownValues& shown_;
    QListWidget* pila = nullptr;
};

}  // namespace tavinor
