#pragma once

#include <cstdint>

#include "machine/Host.h"
#include "machine/MachineState.h"

namespace tavinor::test {

/// The least that a machine needs around it: stores what it is told, and goes on after a HLT. Needs no memory
/// of its own.
class PlainHost : public Host {
  public:
    explicit PlainHost(MachineState& machine) : machine_(machine) {}
    virtual ~PlainHost() = default;

    void savmem(std::int32_t dir, std::int32_t dat) override { machine_.storeMemory(dir, dat); }
    void savport(std::int32_t dir, std::int32_t dat) override { machine_.storePort(dir, dat); }
    void halt() override { ++halts; }

    int halts = 0;

  private:
    MachineState& machine_;
};

}  // namespace tavinor::test
