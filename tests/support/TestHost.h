#pragma once

#include <cstdint>
#include <functional>
#include <ostream>
#include <vector>

#include "machine/MachineState.h"
#include "tests/support/PlainHost.h"

namespace tavinor::test {

/// A byte that went out through the host.
struct Write {
    std::int32_t dir = 0;
    std::int32_t dat = 0;

    friend bool operator==(const Write&, const Write&) = default;
    friend std::ostream& operator<<(std::ostream& out, const Write& write) {
        return out << '[' << write.dir << "]=" << write.dat;
    }
};

/// Stores what the machine hands out and remembers it. Like the window's grid it has no cell for the mirror
/// addresses: a byte written there is stored, and then the write fails.
class TestHost final : public PlainHost {
  public:
    using PlainHost::PlainHost;

    void savmem(std::int32_t dir, std::int32_t dat) override {
        PlainHost::savmem(dir, dat);
        memoryWrites.push_back({dir, dat});
        asIndex(dir, memorySize);
    }

    void savport(std::int32_t dir, std::int32_t dat) override {
        PlainHost::savport(dir, dat);
        portWrites.push_back({dir, dat});
    }

    void halt() override {
        PlainHost::halt();
        if (onHalt) onHalt();
    }

    std::vector<Write> memoryWrites;
    std::vector<Write> portWrites;
    std::function<void()> onHalt;  ///< What the user chooses in the halt dialog.
};

}  // namespace tavinor::test
