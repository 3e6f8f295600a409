#pragma once

#include <array>
#include <cstdint>

#include "machine/Host.h"
#include "machine/MachineState.h"
#include "machine/Stepper.h"
#include "ui/trace/InstructionCode.h"
#include "ui/trace/TraceRow.h"

namespace tavinor {

/// In what a row deviates from its prediction, one bit each.
namespace deviation {
constexpr unsigned state = 1;        ///< It is a state row.
constexpr unsigned noRegisters = 2;  ///< Its instruction failed.
constexpr unsigned address = 4;
constexpr unsigned code = 8;
constexpr unsigned M = 16;
constexpr unsigned word(unsigned index) {
    return 32U << index;
}
}  // namespace deviation

/// Predicts each row of a trace from the rows before it, by executing the same instructions on a machine of
/// its own. That machine begins empty and learns from the rows that it did not predict: what an instruction
/// consists of, what lay in the memory or the port that it read. After a short time a row is a surprise only
/// after a change from outside the program.
///
/// Recorder and reader each follow the same rows with a predictor, so both always know the same.
class RowPredictor final : private Host {
  public:
    // What happens for every row is inline: the run loop lives on it.

    /// Forgets everything.
    void reset() { machine_ = {}; }

    /// Goes on to `row` and returns its deviations; 0 means that the row was predicted to the last bit.
    unsigned follow(const TraceRow& row) {
        const bool foreseen =
            row.hasInstruction && row.hasRegisters && row.address == address() && row.code == code();
        if (!foreseen) return followOther(row);
        execute();
        return row.registers == registers() ? 0 : takeOver(row);
    }

    /// The next row, as predicted.
    TraceRow predict();

    // The parts of a row that was not predicted, in this order.
    [[nodiscard]] std::uint16_t address() const { return static_cast<std::uint16_t>(machine_.PC); }
    void setAddress(std::uint16_t address) { machine_.PC = address; }
    [[nodiscard]] std::uint32_t code() const { return instructionCode(machine_, machine_.PC); }
    void setCode(std::uint32_t code);
    void execute() {
        machine_.synmem();
        try {
            EjecutaPASO(machine_, *this);
        } catch (const RuntimeError&) {
            // Where the recorded instruction went on all the same, the row's registers say how.
        }
        machine_.PC &= 0xFFFF;
    }
    [[nodiscard]] RegisterImage registers() const {
        return {machine_, machine_.mem[static_cast<std::size_t>(machine_.HL)]};
    }
    /// The row's registers were others: takes them over and learns from them.
    void adopt(const TraceRow& row);

  private:
    void savmem(std::int32_t dir, std::int32_t dat) override { machine_.storeMemory(dir, dat); }
    void savport(std::int32_t dir, std::int32_t dat) override { machine_.storePort(dir, dat); }
    void halt() override {}

    unsigned followOther(const TraceRow& row);
    unsigned takeOver(const TraceRow& row);
    void set(std::int32_t address, int byte);
    void learn(const TraceRow& row);

    MachineState machine_;
};

}  // namespace tavinor
