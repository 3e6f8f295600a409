#pragma once

#include <QWidget>

#include "ui/common/Commands.h"

class QBoxLayout;

namespace tavinor {

/// The command buttons of the main window, in one row, or in two where the window has no room for one. The
/// caption of `Ejecutar` is the run state of the program.
class CommandBar : public QWidget {
    Q_OBJECT

  public:
    explicit CommandBar(QWidget* parent);

    /// Whether a run is going: `Ejecutar` reads "&Parar".
    [[nodiscard]] bool running() const;
    /// Shows the run state: caption of `Ejecutar`, `Eje_paso` enabled while stopped.
    void showRunning(bool running);

    [[nodiscard]] QSize minimumSizeHint() const override;

    CommandButton *Ejecutar = nullptr, *Eje_paso = nullptr, *CargarHEX = nullptr, *Ensamblar = nullptr,
                  *Editar = nullptr, *about = nullptr, *Reset = nullptr;

  protected:
    void resizeEvent(QResizeEvent* event) override;
    bool event(QEvent* event) override;

  private:
    QBoxLayout* addRow();
    [[nodiscard]] int singleRowWidth() const;
    void fold();

    QBoxLayout* rows_ = nullptr;
};

}  // namespace tavinor
