#pragma once

#include <QString>

#include "ui/main/Principal.h"

namespace tavinor::monkey {

/// The rules that hold whatever was done. Each question is answered by a complaint, which is empty when all
/// is well.
class Inspector {
  public:
    explicit Inspector(Principal& principal);

    /// Between two steps, with nothing going on: no run, no dialog, no menu.
    [[nodiscard]] QString whenIdle() const;
    /// Between two instructions of a run.
    [[nodiscard]] QString inARun() const;
    /// With nothing going on: the memory grid shows memory. Takes a moment.
    [[nodiscard]] QString memory() const;

    /// Whether the run button reads its stop caption.
    [[nodiscard]] bool running() const;

  private:
    [[nodiscard]] QString runState(bool running) const;
    [[nodiscard]] QString registers() const;
    [[nodiscard]] QString flags() const;
    [[nodiscard]] QString interrupts() const;
    [[nodiscard]] QString leftovers() const;

    Principal& principal_;
    qsizetype windowsAtFirst_;
    bool gridMayDiffer_ = false;  // INTR takes its vector back without the grid showing it
};

}  // namespace tavinor::monkey
