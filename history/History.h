#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <vector>

#include "history/Checkpoints.h"
#include "history/Moment.h"

namespace tavinor {

/// All that a machine did since the history began, in memory that has a bound however long it is: how many
/// instructions were executed, what was changed from outside between two of them, and whole machines here and
/// there. What lies between is executed again when it is asked for (`Replay`).
///
/// A change is all that was done from outside between two instructions, however many acts of the user it was.
/// The way out of a HLT is a change of its own; it belongs to the instruction.
class History {
  public:
    enum class Kind : std::uint8_t {
        outside,  ///< Edits, buttons, a reset, a load: undone by itself.
        wayOut,   ///< Of the HLT just before: undone with it.
    };

    /// What the checkpoints may take, unless something else is said.
    static constexpr std::size_t usualBytes = std::size_t{64} * 1024 * 1024;

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
    /// Something from outside has led from `before`, which is where the history ends, to `now`. Nothing
    /// changed is no change. True when it was one.
    bool changed(const Moment& before, const Moment& now, Kind kind);

    /// Forgets what came after `last`.
    void cutBehind(const Position& last);
    /// The position before the newest instruction or change, whichever it is: what one step back leads to.
    /// There has to be one: `end()` is not the beginning.
    [[nodiscard]] Position beforeNewest() const;

    /// The instructions after which the change number `index` was made.
    [[nodiscard]] std::uint64_t instructionsBefore(std::uint64_t index) const {
        return changes_[index].instructions;
    }
    [[nodiscard]] Kind kindOf(std::uint64_t index) const { return changes_[index].kind; }
    /// Makes the change number `index` on a machine that stands just before it.
    void apply(std::uint64_t index, Moment& moment) const;

    [[nodiscard]] const Checkpoints& checkpoints() const { return checkpoints_; }
    /// Keeps a machine that was executed again up to `at`, as long as there is room.
    void keep(const Position& at, const Moment& moment);

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
    };
    struct Change {
        std::uint64_t instructions;
        Counters counters;  // afterwards, as all that follows
        Processor processor;
        Kind kind;
        std::uint32_t firstCell;
        std::uint32_t firstPage;
    };

    void noteCells(const Moment& before, const Moment& now);
    void dropCellsFrom(std::size_t cell, std::size_t page);
    [[nodiscard]] std::size_t endOfCells(std::uint64_t index) const;
    [[nodiscard]] std::size_t endOfPages(std::uint64_t index) const;

    Checkpoints checkpoints_;
    std::uint64_t instructions_ = 0;
    std::deque<Change> changes_;
    std::deque<Cell> cells_;
    std::deque<Page> pages_;
    std::uint64_t revision_ = 0;
    bool recording_ = true;
};

}  // namespace tavinor
