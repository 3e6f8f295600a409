#pragma once

#include <cstdint>

#include "machine/Host.h"
#include "machine/MachineState.h"

namespace tavinor::benchmarks {

/// The least that a machine needs around it: stores what it is told, and goes on after a HLT.
class PlainHost final : public Host {
  public:
    explicit PlainHost(MachineState& machine) : machine_(machine) {}
    void savmem(std::int32_t dir, std::int32_t dat) override { machine_.storeMemory(dir, dat); }
    void savport(std::int32_t dir, std::int32_t dat) override { machine_.storePort(dir, dat); }
    void halt() override {}

  private:
    MachineState& machine_;
};

}  // namespace tavinor::benchmarks
