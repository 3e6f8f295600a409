#pragma once

#include <algorithm>
#include <cstdint>
#include <vector>

#include "machine/MachineState.h"

namespace tavinor::benchmarks {

/// A program that never ends, placed at 0000.
struct Program {
    const char* name;
    std::vector<std::uint8_t> bytes;
};

inline std::vector<Program> endlessPrograms() {
    return {
        {"delay loop",
         {0x01, 0xFF, 0xFF,                         // LXI B,FFFF
          0x0B,                                     // DCX B
          0x78,                                     // MOV A,B
          0xB1,                                     // ORA C
          0xC2, 0x03, 0x00,                         // JNZ 0003
          0xC3, 0x00, 0x00}},                       // JMP 0000
        {"copy and sum", {0x21, 0x00, 0x10,         // LXI H,1000
                          0x11, 0x00, 0x20,         // LXI D,2000
                          0x0E, 0x80,               // MVI C,80
                          0x7E,                     // MOV A,M
                          0x12,                     // STAX D
                          0x80,                     // ADD B
                          0x47,                     // MOV B,A
                          0x23,                     // INX H
                          0x13,                     // INX D
                          0x0D,                     // DCR C
                          0xC2, 0x08, 0x00,         // JNZ 0008
                          0xC3, 0x00, 0x00}},       // JMP 0000
        {"multiply subroutine", {0x31, 0x00, 0x80,  // LXI SP,8000
                                 0x06, 0x55,        // MVI B,55
                                 0x0E, 0x33,        // MVI C,33
                                 0xCD, 0x10, 0x00,  // CALL 0010
                                 0xC3, 0x03, 0x00,  // JMP 0003
                                 0x00, 0x00, 0x00,  //
                                 0x21, 0x00, 0x00,  // LXI H,0000
                                 0x16, 0x00,        // MVI D,00
                                 0x58,              // MOV E,B
                                 0x79,              // MOV A,C
                                 0x0E, 0x08,        // MVI C,08
                                 0x29,              // DAD H
                                 0x07,              // RLC
                                 0xD2, 0x1F, 0x00,  // JNC 001F
                                 0x19,              // DAD D
                                 0x0D,              // DCR C
                                 0xC2, 0x19, 0x00,  // JNZ 0019
                                 0xC9}},            // RET
    };
}

inline void place(const Program& program, MachineState& machine) {
    std::copy(program.bytes.begin(), program.bytes.end(), machine.mem.begin());
}

}  // namespace tavinor::benchmarks
