#pragma once

#include <cstdint>
#include <memory>
#include <random>
#include <vector>

#include "history/History.h"
#include "history/Moment.h"

namespace tavinor::test {

/// A machine that records its history as the program does: batches, single steps, and changes from outside in
/// between. Beside it whole copies at many positions, to compare with.
class RecordedMachine {
  public:
    struct Copy {
        Position at;
        std::unique_ptr<Moment> moment;
    };

    explicit RecordedMachine(unsigned seed, std::size_t mostBytes = History::usualBytes);

    /// Executes about `count` instructions; HLTs are answered, and copies are taken where batches end.
    void run(std::int64_t count);
    /// Something that the user may do between two instructions: edits, a reset, an interrupt, a load.
    void changeSomething();
    /// Back to `at`, which `moment` is the machine of; all that came after is forgotten.
    void goBackTo(const Position& at, const Moment& moment);
    /// Begins anew here.
    void clear();

    [[nodiscard]] History& history() { return history_; }
    [[nodiscard]] const Moment& now() const { return *now_; }
    [[nodiscard]] const std::vector<Copy>& copies() const { return copies_; }
    [[nodiscard]] std::mt19937& random() { return random_; }

  private:
    void runBatchOf(std::int64_t most);
    void stepAlone();
    void act();
    void storeAnything(std::int32_t address);
    void storeAnythingInPort(std::int32_t number);
    void copy();
    std::int32_t any(std::uint32_t below) { return static_cast<std::int32_t>(random_() % below); }

    std::mt19937 random_;
    std::unique_ptr<Moment> now_;
    History history_;
    std::unique_ptr<Breakpoints> noBreakpoints_ = std::make_unique<Breakpoints>();
    Written written_;
    TouchedCells touched_;
    std::vector<Copy> copies_;
};

}  // namespace tavinor::test
