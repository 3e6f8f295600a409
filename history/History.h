#pragma once

#include <bitset>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <vector>

#include "history/Checkpoints.h"
#include "history/Moment.h"
#include "history/TouchedCells.h"

namespace tavinor {

/// All that a machine did since the history began, in memory that has a bound however long it is: how many
/// instructions were executed, what was changed from outside between two of them, and whole machines here and
/// there. What lies between is executed again when it is asked for (`Replay`).
///
/// A change is all that was done from outside between two instructions, however many acts of the user it was.
/// The way out of a HLT is a change of its own; it belongs to the instruction. See behaviour.md, History:
/// what is kept.
class History {
  public:
    enum class Kind : std::uint8_t {
        outside,  ///< Edits, buttons, a reset, a load: undone by itself.
        wayOut,   ///< Of the HLT just before: undone with it.
    };

    /// What the checkpoints may take, unless something else is said. With what is reserved for more of them
    /// it stays below 64 MiB.
    static constexpr std::size_t usualBytes = std::size_t{62} * 1024 * 1024;

    /// Begins at `now`.
    explicit History(const Moment& now, std::size_t mostBytes = usualBytes);

    /// Forgets all, and begins at `now`. @throws std::bad_alloc: nothing is recorded until it is called
    /// again.
    void begin(const Moment& now);

    /// Whether it goes on recording: it does not, once there was no memory for a change.
    [[nodiscard]] bool recording() const { return recording_; }
    /// The end of what was recorded.
    [[nodiscard]] Position end() const { return {instructions_, changes_.size()}; }
    /// Changes whenever something has been cut off or forgotten: then what was read may no longer be there.
    [[nodiscard]] std::uint64_t revision() const { return revision_; }

    /// How many instructions may be executed before `executed` has to be told: 1 or more.
    [[nodiscard]] std::int64_t untilCheckpoint() const;
    /// `count` instructions, at most `untilCheckpoint()`, have led to `now`.
    void executed(std::int64_t count, const Moment& now);
    /// Whether something differs between the two; every cell that does is among `touched`.
    [[nodiscard]] static bool differ(const Moment& before, const Moment& now, const TouchedCells& touched);
    /// Something from outside has led from `before`, which is where the history ends, to `now`, and has
    /// written the cells `touched`. Where the two do not differ it is no change, whatever was written.
    void changed(const Moment& before, const Moment& now, const TouchedCells& touched, Kind kind);

    /// Forgets what came after `last`.
    void cutBehind(const Position& last);
    /// The position before the newest instruction, or before all that was changed after it: what one step
    /// back leads to. There has to be one: `end()` is not the beginning.
    [[nodiscard]] Position beforeNewest() const;

    /// The instructions after which the change number `index` was made.
    [[nodiscard]] std::uint64_t instructionsBefore(std::uint64_t index) const {
        return changes_[index].instructions;
    }
    [[nodiscard]] Kind kindOf(std::uint64_t index) const { return changes_[index].kind; }
    /// Where undoing the change number `index` leads to: before all changes of its group, or before the HLT
    /// that it is the way out of.
    [[nodiscard]] Position undoneBy(std::uint64_t index) const;
    /// How many changes were made before the instruction that follows the first `instructions`.
    [[nodiscard]] std::uint64_t changesUpTo(std::uint64_t instructions) const;
    /// Whether the user changed something at `at`, after the last instruction before it.
    [[nodiscard]] bool endsGroup(const Position& at) const;
    /// Whether the change number `index` wrote the memory cell `address` (0..65535).
    [[nodiscard]] bool wrote(std::uint64_t index, std::int32_t address) const;
    /// Makes the change number `index` on a machine that stands just before it.
    void apply(std::uint64_t index, Moment& moment) const;

    [[nodiscard]] const Checkpoints& checkpoints() const { return checkpoints_; }
    /// Keeps a machine that was executed again up to `at`, as long as there is room. It changes nothing of
    /// what was recorded, only how quickly it is reached.
    void keep(const Position& at, const Moment& moment) const;

    /// The instructions that all readers together have executed again: what looking and going back have cost.
    [[nodiscard]] std::uint64_t executedAgain() const { return executedAgain_; }
    /// A reader has executed `count` more.
    void noteExecutedAgain(std::uint64_t count) const { executedAgain_ += count; }

    /// The memory that changes take.
    [[nodiscard]] std::size_t bytesOfChanges() const;

  private:
    /// A cell of memory, or a port.
    struct Cell {
        std::uint16_t address;
        std::uint8_t byte;
        bool port;
    };
    /// Of a change that writes many cells: a page as it is afterwards, the ports behind those of memory.
    struct Page {
        std::uint16_t number;
        std::array<std::uint8_t, pageSize> bytes;
        std::bitset<pageSize> written;
    };
    /// Counters after a change: what they were before and a little more, or little anew.
    struct CountersChange {
        std::int32_t instructions;
        std::int32_t tStates;
    };
    struct Change {
        std::uint64_t instructions;
        CountersChange counters;
        Processor processor;  // afterwards, as all that follows
        std::uint8_t shownM;
        Kind kind : 1;
        bool countersAnew : 1;
        std::uint32_t firstCell;
        std::uint32_t firstPage;
    };

    void recordChange(const Moment& before, const Moment& now, const TouchedCells& touched, Kind kind);
    void noteCells(const Moment& now, const TouchedCells& touched);
    void noteCellsOf(std::uint16_t page, const std::uint8_t* now, const TouchedCells& touched);
    /// How many cells and pages there are, or shall be.
    struct Kept {
        std::size_t cells;
        std::size_t pages;
    };
    void keepCells(Kept kept);
    [[nodiscard]] std::size_t endOfCells(std::uint64_t index) const;
    [[nodiscard]] std::size_t endOfPages(std::uint64_t index) const;

    mutable Checkpoints checkpoints_;
    mutable std::uint64_t executedAgain_ = 0;
    std::uint64_t instructions_ = 0;
    std::deque<Change> changes_;
    std::deque<Cell> cells_;
    std::deque<Page> pages_;
    std::uint64_t revision_ = 0;
    bool recording_ = true;
};

}  // namespace tavinor
