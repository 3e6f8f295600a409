#pragma once

#include <cstdint>

namespace tavinor {

/// What the machine needs from the place it runs in: the only way in which an instruction reaches anything
/// outside the `MachineState`. The simulation implements it, and notes what the grids have to show; a test
/// needs five lines.
class Host {
  public:
    /// Stores `dat` (0..255) in memory cell `dir` (0..65535) and shows it.
    /// @throws RuntimeError overflow (nothing stored) or subscript. A byte for a mirror cell (65536, 65537)
    ///     is stored first and fails then, because no view has a place for it.
    virtual void savmem(std::int32_t dir, std::int32_t dat) = 0;

    /// Stores `dat` (0..255) in port `dir` (0..255) and shows it.
    /// @throws RuntimeError overflow (nothing stored) or subscript.
    virtual void savport(std::int32_t dir, std::int32_t dat) = 0;

    /// Carries out a HLT: lets the user choose how the processor goes on, which may change the machine, and
    /// returns when the choice has been carried out.
    virtual void halt() = 0;

  protected:
    Host() = default;
    Host(const Host&) = default;
    Host& operator=(const Host&) = default;
    ~Host() = default;
};

}  // namespace tavinor
