#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>

#include "machine/MachineState.h"
#include "tests/support/PlainHost.h"

namespace tavinor::fuzz {

/// Ends the fuzzer with a finding unless `holds`.
inline void expect(bool holds, const char* what) {
    if (holds) return;
    std::fprintf(stderr, "violated: %s\n", what);
    std::abort();
}

/// Counts what the loader stores.
struct Machine final : test::PlainHost {
    Machine() : PlainHost(machine) {}

    void savmem(std::int32_t dir, std::int32_t dat) override {
        PlainHost::savmem(static_cast<std::int32_t>(asIndex(dir, memorySize)), dat);
        ++stored;
    }

    MachineState machine;
    std::size_t stored = 0;
};

}  // namespace tavinor::fuzz
