#pragma once

#include <cstddef>
#include <cstdint>

#include "machine/Batch.h"
#include "machine/MachineState.h"

namespace tavinor {

/// What has been executed since the last reset.
struct Counters {
    std::int64_t instructions = 0;
    std::int64_t tStates = 0;

    friend bool operator==(const Counters&, const Counters&) = default;
};

/// A machine, its counters and what is shown of it, between two instructions.
struct Moment {
    MachineState machine;
    Counters counters;
    /// What the box M shows: the byte that HL pointed to when the box was brought up to date. Each
    /// instruction does that; some edits do not: see behaviour.md, Simulation: between instructions.
    std::uint8_t shownM = 0;

    void showM() noexcept { shownM = machine.mem[static_cast<std::size_t>(machine.HL)]; }
    /// Shows the machine as it is after an instruction or a command. PC is taken back from the four digits of
    /// its box.
    void bringUpToDate() noexcept {
        machine.synmem();
        machine.PC &= memorySize - 1;
        showM();
    }
    /// An instruction of so many T-states has been executed.
    void count(int states) noexcept {
        ++counters.instructions;
        counters.tStates += states;
    }
    /// What a batch on the machine counts and shows; the rest it has done.
    void add(const BatchResult& batch) noexcept {
        counters.instructions += batch.instructions;
        counters.tStates += batch.tStates;
        showM();
    }
};

/// What a machine has besides memory and ports, without the cached pairs.
struct Processor {
    std::uint8_t A = 0, B = 0, C = 0, D = 0, E = 0, F = 0, H = 0, L = 0;
    std::uint16_t PC = 0, SP = 0;
    bool IE : 1 = false, M55 : 1 = false, M65 : 1 = false, M75 : 1 = false, R75 : 1 = false;
    bool SID : 1 = false, SOD : 1 = false;

    Processor() = default;
    /// Of PC the last four digits count.
    explicit Processor(const MachineState& m);

    void putInto(MachineState& m) const;

    friend bool operator==(const Processor&, const Processor&) = default;
};

/// The memory and the ports of a machine as pages of 256 bytes: those of memory, the ports behind them.
constexpr std::size_t portPage = pageCount;
constexpr std::size_t cellPages = pageCount + 1;

/// The bytes of a page.
inline std::uint8_t* bytesOf(MachineState& m, std::size_t page) {
    return page == portPage ? m.port.data() : m.mem.data() + page * pageSize;
}
inline const std::uint8_t* bytesOf(const MachineState& m, std::size_t page) {
    return page == portPage ? m.port.data() : m.mem.data() + page * pageSize;
}

}  // namespace tavinor
