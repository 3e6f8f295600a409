#pragma once

#include <QWidget>

#include "ui/common/Commands.h"

namespace tavinor {

/// The row of command buttons of the main window. The caption of `Ejecutar` is the run state of the program.
class CommandBar : public QWidget {
    Q_OBJECT

  public:
    explicit CommandBar(QWidget* parent);

    /// Whether a run is going: `Ejecutar` reads "&Parar".
    [[nodiscard]] bool running() const;
    /// Shows the run state: caption of `Ejecutar`, `Eje_paso` enabled while stopped.
    void showRunning(bool running);

    CommandButton *Ejecutar, *Eje_paso, *CargarHEX, *Ensamblar, *Editar, *about, *Reset;
};

}  // namespace tavinor
