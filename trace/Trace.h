#pragma once

#include <cstdint>
#include <deque>
#include <map>

#include "history/History.h"
#include "trace/TraceRow.h"

namespace tavinor {

/// The rows of the trace over a history: one for each instruction, and a state row wherever the register
/// boxes have changed between two of them. It holds no rows. It knows where the state rows are, and what was
/// being typed; the rest is executed again by a `TraceReader`. See behaviour.md, Trace: rows.
///
/// It is told of instructions before and after, in this order: `listainstru`, the history's `executed`,
/// `listareg`.
class Trace {
  public:
    /// What a row has besides what its instruction says, because the user was typing.
    struct TypedRow {
        RowTexts texts;
        std::uint16_t address = 0;  ///< Of an instruction row: what its typed address amounts to,
        std::uint32_t code = 0;     ///< and what lay there.
    };

    explicit Trace(const History& history) : history_(history) {}

    [[nodiscard]] std::uint64_t size() const {
        return history_.end().instructions + stateRows_.size() + (open_ ? 1U : 0U);
    }
    [[nodiscard]] bool empty() const { return size() == 0; }
    /// Changes whenever the rows do.
    [[nodiscard]] std::uint64_t revision() const { return revision_; }
    /// Whether the last row is that of a HLT that is being executed: it has no registers yet.
    [[nodiscard]] bool open() const { return open_; }

    /// Just before instructions are executed at `now`: a state row where the boxes show something else than
    /// the last row does. `typed` has the texts of the boxes while one of them is being typed in, else it is
    /// null; then only one instruction follows.
    void listainstru(const Moment& now, const RegisterTexts* typed);
    /// Just before a HLT: its row is there while it is executed.
    void openRow();
    /// The HLT was not executed after all.
    void withdrawOpenRow();
    /// Instructions have led to `now`, which their last row shows. The way out of a HLT that cleared the rows
    /// leaves a state row.
    void listareg(const Moment& now);
    /// The instruction has failed: its row has no registers.
    void listafailed();

    /// The rows are gone: the history has begun anew.
    void clear();
    /// The history was cut off; `last` is the last row that is left, if there is one.
    void cut();
    void setLast(const TraceRow& last);

    [[nodiscard]] const History& history() const { return history_; }
    [[nodiscard]] std::uint64_t stateRows() const { return stateRows_.size(); }
    /// The number of the state row with this index.
    [[nodiscard]] std::uint64_t rowOfState(std::uint64_t index) const {
        return stateRows_[index].position().instructions + index;
    }
    [[nodiscard]] Position positionOfState(std::uint64_t index) const { return stateRows_[index].position(); }
    /// How many state rows lie before a row.
    [[nodiscard]] std::uint64_t stateRowsBefore(std::uint64_t row) const;
    /// What was typed for a row; null for nearly all.
    [[nodiscard]] const TypedRow* typed(std::uint64_t row) const;

    /// The memory that the state rows take, typed texts apart.
    [[nodiscard]] std::size_t heldBytes() const { return stateRows_.size() * sizeof(StateRow); }

  private:
    /// Where a state row is, in twelve bytes.
    class StateRow {
      public:
        explicit StateRow(const Position& at)
            : low_(static_cast<std::uint32_t>(at.instructions)),
              high_(static_cast<std::uint32_t>(at.instructions >> 32)),
              changes_(static_cast<std::uint32_t>(at.changes)) {}
        [[nodiscard]] Position position() const { return {std::uint64_t{high_} << 32 | low_, changes_}; }

      private:
        std::uint32_t low_, high_, changes_;
    };

    [[nodiscard]] bool lastRowShows(const RegisterImage& image, const RegisterTexts* typed) const;
    void addStateRow(const Moment& now, const RegisterTexts* typed);
    void forgetTypedBehindTheEnd();
    void noteTyped(const MachineState& machine, const std::string& address);

    const History& history_;
    std::deque<StateRow> stateRows_;
    std::map<std::uint64_t, TypedRow> typed_;  // by the number of the row
    bool open_ = false;
    std::uint64_t revision_ = 0;

    // What the last row shows, besides typed texts.
    RegisterImage last_;
    bool lastHasRegisters_ = false;
};

}  // namespace tavinor
