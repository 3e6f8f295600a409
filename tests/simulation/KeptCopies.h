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
        twins.plain.onStore = [this](std::int32_t address) { done_.back().stores.push_back(address); };
        twins.beforePlainStep = [this](std::uint64_t executed) {
            note({start_.instructions + executed, start_.changes});
        };
    }
    KeptCopies(const KeptCopies&) = delete;
    KeptCopies& operator=(const KeptCopies&) = delete;
    KeptCopies(KeptCopies&&) = delete;
    KeptCopies& operator=(KeptCopies&&) = delete;
    ~KeptCopies() = default;

    /// An instruction or at most `most` of them, and at times something that the user does before that.
    std::string play(std::int64_t most = 1);
    std::string oneStepBack();
    /// `index` is that of an entry.
    std::string goBackTo(std::size_t index);
    /// The searches, for something that has happened. There have to be entries.
    std::string backToBreakpoint();
    std::string backToLastWrite();

    Twins twins;
    std::vector<Entry> entries;

  private:
    /// An instruction or a group of changes, which the plain one has made.
    struct Done {
        Position before;
        std::int32_t PC;
        std::vector<std::int32_t> stores;
    };

    std::string disturb();
    std::string step(std::int64_t most);
    template <typename Fits>
    const Done* latest(const Fits& fits) const;
    const Done& anyDone();
    std::string goBackTo(const Position& position);
    void clear();
    void note(const Position& before);
    Entry remembered();
    [[nodiscard]] const History& history() { return twins.simulation.settledHistory(); }

    std::vector<Done> done_;  // all of it, also within a batch
    Position start_;          // of the batch
};

}  // namespace tavinor::test
