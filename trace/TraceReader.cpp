#include "trace/TraceReader.h"

#include <algorithm>

#include "machine/Instruction.h"

namespace tavinor {

bool TraceReader::read(std::uint64_t first, std::uint64_t count, const Visitor& visitor, std::int64_t most) {
    if (first >= trace_.size()) return true;
    const std::uint64_t end = first + std::min(count, trace_.size() - first);
    std::uint64_t states = trace_.stateRowsBefore(first);
    for (std::uint64_t row = first; row < end; ++row) {
        const bool isState = states < trace_.stateRows() && trace_.rowOfState(states) == row;
        const Position target = isState ? trace_.positionOfState(states) : beforeInstruction(row - states);
        if (row == first) {
            if (!replay_.seek(target, most)) return false;
        } else if (replay_.at() != target) {
            replay_.seek(target);
        }
        const Trace::TypedRow* typed = trace_.typed(row);
        visitor(isState ? stateRow() : instructionRow(row, typed),
                typed != nullptr ? &typed->texts : nullptr);
        if (isState) ++states;
    }
    return true;
}

/// Behind the last change there is nothing to look for.
Position TraceReader::beforeInstruction(std::uint64_t number) const {
    const History& history = trace_.history();
    const std::uint64_t changes = history.end().changes;
    const bool behindAll = changes == 0 || history.instructionsBefore(changes - 1) <= number;
    return {number, behindAll ? changes : history.changesUpTo(number)};
}

TraceRow TraceReader::stateRow() const {
    TraceRow row;
    row.registers = RegisterImage(replay_.machine(), replay_.moment().shownM);
    row.hasRegisters = true;
    return row;
}

TraceRow TraceReader::instructionRow(std::uint64_t number, const Trace::TypedRow* typed) {
    TraceRow row;
    row.hasInstruction = true;
    if (typed != nullptr) {
        row.address = typed->address;
        row.code = typed->code;
    } else {
        row.address = static_cast<std::uint16_t>(replay_.machine().PC);
        row.code = instructionCode(replay_.machine(), row.address);
    }
    const bool isOpen = trace_.open() && number == trace_.size() - 1;
    row.hasRegisters = !isOpen && replay_.step();
    if (row.hasRegisters) row.registers = RegisterImage(replay_.machine(), replay_.moment().shownM);
    return row;
}

}  // namespace tavinor
