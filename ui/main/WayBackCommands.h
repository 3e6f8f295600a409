#pragma once

#include <QString>
#include <cstdint>
#include <optional>

class QWidget;

namespace tavinor {

struct Position;
class Simulation;

/// The ways back as commands of a window: each goes back, and says what the status line is to tell. A search
/// that takes long can be cancelled; then nothing has changed, and there is nothing to tell. Only where one
/// can go back.
class WayBackCommands {
  public:
    WayBackCommands(Simulation& simulation, QWidget* window) : simulation_(simulation), window_(window) {}

    QString oneStep();
    std::optional<QString> toBreakpoint();
    /// `address` is 0..65535. Stays where nothing has written there.
    std::optional<QString> toLastWrite(std::int32_t address);
    QString toBeginning();

  private:
    Simulation& simulation_;
    QWidget* window_ = nullptr;
};

}  // namespace tavinor
