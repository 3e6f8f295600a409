#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <new>
#include <utility>
#include <vector>

#include "ui/common/AvailableMemory.h"
#include "ui/trace/RowPredictor.h"
#include "ui/trace/TraceBlock.h"
#include "ui/trace/TraceRow.h"

namespace tavinor {

/// The rows of the trace, as many as the memory holds. The last row can still be filled in; the ones before
/// it lie in blocks.
class TraceStore {
  public:
    using MemoryProbe = std::function<std::uint64_t()>;
    using Visitor = std::function<void(const TraceRow&, const RowTexts*)>;

    /// What is left to the rest of the system: memory beyond it counts as not to be had. Looked at once a
    /// block.
    static constexpr std::uint64_t reserve = 128 * 1024 * 1024;

    explicit TraceStore(MemoryProbe memory = availableMemory) : memory_(std::move(memory)) {}

    [[nodiscard]] std::uint64_t size() const { return size_; }
    [[nodiscard]] bool empty() const { return size_ == 0; }
    /// Changes whenever the rows do.
    [[nodiscard]] std::uint64_t revision() const { return revision_; }

    /// Adds a row. False when there is no memory for it; then the rows are what they were. After a refusal,
    /// only every so many attempts really tries again, because looking for memory costs time.
    bool append(const TraceRow& row) {
        if (size_ > 0 && !settleLast()) return false;
        last_ = row;
        if (lastTexts_ != nullptr) lastTexts_.reset();
        ++size_;
        ++revision_;
        return true;
    }
    bool append(const TraceRow& row, std::unique_ptr<RowTexts> texts);

    /// The memory that the rows in blocks take, typed texts apart.
    [[nodiscard]] std::size_t heldBytes() const;

    // The last row; there must be one.
    [[nodiscard]] const TraceRow& last() const { return last_; }
    [[nodiscard]] const RowTexts* lastTexts() const { return lastTexts_.get(); }
    void setLastRegisters(RegisterImage registers) {
        last_.registers = registers;
        last_.hasRegisters = true;
        ++revision_;
    }
    void setLastTexts(std::unique_ptr<RowTexts> texts) {
        lastTexts_ = std::move(texts);
        ++revision_;
    }

    void clear();

    /// Shows `count` rows from `first` on to `visitor`, or as many as there are. Takes a moment for a whole
    /// block, however few rows of it are wanted. The visitor must not change the store.
    void read(std::uint64_t first, std::uint64_t count, const Visitor& visitor) const;

  private:
    static constexpr std::uint32_t attemptsToSkip = TraceBlock::capacity;

    /// Puts the last row into its block, so that another one can take its place.
    bool settleLast() {
        if (skipping_ > 0) {
            --skipping_;
            return false;
        }
        try {
            if (blocks_.empty() || blocks_.back().full()) openBlock();
            blocks_.back().append(predictor_, last_, lastTexts_.get());
        } catch (const std::bad_alloc&) {
            skipping_ = attemptsToSkip;
            return false;
        }
        return true;
    }
    void openBlock();
    void readBlock(const TraceBlock& block, std::uint32_t first, std::uint32_t end,
                   const Visitor& visitor) const;

    MemoryProbe memory_;
    std::vector<TraceBlock> blocks_;
    RowPredictor predictor_;  // follows the rows of the last block
    std::uint64_t size_ = 0;  // `last_` included
    std::uint64_t revision_ = 0;
    std::uint32_t skipping_ = 0;
    TraceRow last_;
    std::unique_ptr<RowTexts> lastTexts_;
};

}  // namespace tavinor
