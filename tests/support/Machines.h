#pragma once

#include <cstdint>
#include <initializer_list>
#include <random>

#include "machine/MachineState.h"

namespace tavinor::test {

/// Puts bytes into memory from `address` on, round the top to 0000; the mirror stays as it is.
inline void place(MachineState& m, std::int32_t address, std::initializer_list<int> bytes) {
    for (const int byte : bytes) m.storeMemory(address++ & 0xFFFF, byte);
}

/// Random memory (mirror cells included and out of date), ports, registers and interrupt state. PC and SP are
/// in range and the pairs agree with the registers.
inline void randomise(MachineState& m, std::mt19937& random) {
    const auto byte = [&random] { return static_cast<std::uint8_t>(random() & 255); };
    const auto bit = [&random] { return (random() & 1) != 0; };
    for (std::uint8_t& cell : m.mem) cell = byte();
    for (std::uint8_t& cell : m.port) cell = byte();
    m.A = byte(), m.B = byte(), m.C = byte(), m.D = byte();
    m.E = byte(), m.F = byte(), m.H = byte(), m.L = byte();
    m.recomputePairs();
    m.PC = static_cast<std::int32_t>(random() & 0xFFFF);
    m.SP = static_cast<std::int32_t>(random() & 0xFFFF);
    m.intState = {bit(), bit(), bit(), bit(), bit()};
    m.SID = bit();
    m.SOD = bit();
}

}  // namespace tavinor::test
