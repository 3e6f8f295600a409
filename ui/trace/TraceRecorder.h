#pragma once

#include <cstdint>
#include <string>
#include <utility>

#include "machine/MachineState.h"
#include "ui/trace/TraceRow.h"
#include "ui/trace/TraceStore.h"

namespace tavinor {

/// Records the instructions that are executed: one row each, and a state row wherever the boxes have changed
/// between two of them. Shows nothing and asks nothing: when memory runs out, rows are missing at the end.
class TraceRecorder {
  public:
    explicit TraceRecorder(TraceStore::MemoryProbe memory = availableMemory) : store_(std::move(memory)) {}

    /// To be called just before the instruction at PC is executed.
    void listainstru(const MachineState& machine, const ShownBoxes& boxes);
    /// To be called just after it, once the boxes have been refreshed.
    void listareg(const ShownBoxes& boxes);

    [[nodiscard]] const TraceStore& store() const { return store_; }
    void clear() { store_.clear(); }

  private:
    [[nodiscard]] bool lastRowShows(RegisterImage image, const ShownBoxes& boxes) const {
        const TraceRow& last = store_.last();
        if (boxes.texts != nullptr || store_.lastTexts() != nullptr) return lastTextsShow(image, boxes);
        return last.hasRegisters && last.registers == image;
    }
    [[nodiscard]] bool lastTextsShow(RegisterImage image, const ShownBoxes& boxes) const;
    bool addStateRow(RegisterImage image, const ShownBoxes& boxes);
    bool addInstructionRow(const MachineState& machine, const ShownBoxes& boxes);
    bool addTypedInstructionRow(const MachineState& machine, const std::string& typed);
    void writeTexts(const ShownBoxes& boxes);

    TraceStore store_;
    bool lastRowIsOurs_ = false;  // the row meant by `listareg` could be added
};

}  // namespace tavinor
