#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>

#include "machine/Host.h"
#include "machine/MachineState.h"

namespace tavinor::fuzz {

/// Ends the fuzzer with a finding unless `holds`.
inline void expect(bool holds, const char* what) {
    if (holds) return;
    std::fprintf(stderr, "violated: %s\n", what);
    std::abort();
}

/// Keeps what the loader stores.
struct Machine final : Host {
    void savmem(std::int32_t dir, std::int32_t dat) override {
        machine.storeMemory(static_cast<std::int32_t>(asIndex(dir, memorySize)), dat);
        ++stored;
    }
    void savport(std::int32_t, std::int32_t) override {}
    void halt() override {}

    MachineState machine;
    std::size_t stored = 0;
};

}  // namespace tavinor::fuzz
