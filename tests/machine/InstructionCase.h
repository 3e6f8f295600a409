#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "machine/MachineState.h"

namespace tavinor::test {

/// One instruction: its bytes, what it meets and what it leaves behind.
///
/// Before `before`, every register, port and cell has a value of its own, PC is 1000, SP 3000 and F holds the
/// three unused bits. `after` makes of a copy of the machine what the instruction should have made of it; PC
/// is past the instruction then. Whatever `after` leaves alone, the instruction must leave alone too.
struct InstructionCase {
    using Change = std::function<void(MachineState&)>;

    std::string name;
    std::vector<int> code;
    Change before = [](MachineState&) {};
    Change after = [](MachineState&) {};
};

/// The 8-bit registers in the order of their codes; code 6 is memory.
struct NamedRegister {
    const char* name;
    std::uint8_t Registers::*cell;
};
inline constexpr int memoryCode = 6;
inline constexpr std::array<NamedRegister, 8> registersByCode{{{"B", &Registers::B},
                                                               {"C", &Registers::C},
                                                               {"D", &Registers::D},
                                                               {"E", &Registers::E},
                                                               {"H", &Registers::H},
                                                               {"L", &Registers::L},
                                                               {"M", nullptr},
                                                               {"A", &Registers::A}}};

/// MOV, MVI, LXI, loads and stores, exchanges, stack, ports.
std::vector<InstructionCase> transferCases();
/// Everything that calculates.
std::vector<InstructionCase> arithmeticCases();
/// Jumps, calls, returns, restarts, interrupts, HLT and the codes that do nothing.
std::vector<InstructionCase> controlCases();

}  // namespace tavinor::test
