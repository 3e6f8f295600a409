#pragma once

#include <array>
#include <string>
#include <vector>

#include "machine/MachineState.h"

namespace tavinor {

/// The texts that the main window shows at one moment.
struct BoxTexts {
    std::string A, B, C, D, E, F, H, L, M, PC, SP;
    std::string flags;  ///< As `txtflags` gives them.
};

/// The trace as a grid of texts, written down as plainly as possible: what the compact one must equal.
class NaiveTrace {
  public:
    using Row = std::array<std::string, 15>;

    void listainstru(const MachineState& machine, const BoxTexts& boxes);
    void listareg(const BoxTexts& boxes);
    void clear() { rows_.clear(); }
    /// Leaves the first `rows` of them.
    void cut(std::size_t rows) { rows_.resize(rows); }

    [[nodiscard]] const std::vector<Row>& rows() const { return rows_; }
    [[nodiscard]] std::string line(std::size_t row) const;

  private:
    std::vector<Row> rows_;
};

}  // namespace tavinor
