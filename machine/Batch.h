#pragma once

#include <array>
#include <cstdint>

#include "machine/MachineState.h"

namespace tavinor {

constexpr std::int32_t pageSize = 256;
constexpr std::int32_t pageCount = memorySize / pageSize;

/// What a batch wrote: the pages of memory, 256 bytes each, and whether any port.
struct Written {
    std::array<bool, pageCount> pages{};
    bool ports = false;
};

/// How far a batch may go: it ends with the instruction that reaches either number. Both are at least 1.
struct BatchLimit {
    std::int64_t instructions;
    std::int64_t tStates = std::int64_t{1} << 62;
};

struct BatchResult {
    enum class End : std::uint8_t {
        limit,
        breakpoint,  ///< PC has arrived at one; told before `limit` where both hold.
        singleStep,  ///< Next is a HLT or an instruction that would fail: it is for `EjecutaPASO` alone.
    };

    std::int64_t instructions = 0;
    std::int64_t tStates = 0;
    End end = End::limit;

    friend bool operator==(const BatchResult&, const BatchResult&) = default;
};

/// Executes instructions from PC (0..65535) on, with the same results as as many single steps of the window:
/// mirror cells refreshed, `EjecutaPASO`, mirror cells refreshed, PC cut to four digits. The mirror cells
/// have to be equal to cells 0 and 1 before, and are so afterwards. Memory and ports are written directly;
/// what was is added to `written`. A breakpoint at the first instruction does not count.
BatchResult runBatch(MachineState& machine, const Breakpoints& breakpoints, const BatchLimit& limit,
                     Written& written);

}  // namespace tavinor
