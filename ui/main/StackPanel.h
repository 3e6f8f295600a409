#pragma once

#include <QGroupBox>
#include <QListWidget>
#include <cstdint>

#include "machine/MachineState.h"

namespace tavinor {

/// The list "PILA": the eight words on top of the stack, the top first.
class StackPanel : public QGroupBox {
    Q_OBJECT

  public:
    StackPanel(MachineState& machine, QWidget* parent);

    /// Notes the stack pointer at the last refresh. Cheap: no widget is touched.
    void note(std::int32_t stackPointer) { stackPointer_ = stackPointer; }
    /// Rebuilds the words from the noted stack pointer.
    void regenpila();

  private:
    void fitWords();

    MachineState& machine_;
    std::int32_t stackPointer_ = 0;
    QListWidget* pila;
};

}  // namespace tavinor
