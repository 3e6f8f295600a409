#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "simulation/WayBack.h"
#include "tests/simulation/Twins.h"

namespace tavinor::test {

/// Twins that play, and a whole copy kept aside for each step back. Every function returns in what the twins
/// differ afterwards; empty when in nothing.
class KeptCopies {
  public:
    /// What one step back leads to.
    struct Entry {
        Position position;
        PlainSimulation copy;
        std::size_t rows = 0;              ///< that are left then
        std::vector<std::int32_t> stores;  ///< of what is undone
    };

    explicit KeptCopies(Twins::Chance chance) : twins(std::move(chance)) {
        twins.fillMemory();
        clear();
    }

    /// An instruction, and at times something that the user does before it.
    std::string play();
    std::string oneStepBack();
    /// `index` is that of an entry.
    std::string goBackTo(std::size_t index);

    Twins twins;
    std::vector<Entry> entries;

  private:
    std::string disturb();
    std::string step();
    void clear();
    Entry remembered();
    [[nodiscard]] const History& history() { return twins.simulation.history(); }
};

}  // namespace tavinor::test
