#pragma once

#include <cstdint>
#include <string_view>

#include "machine/Host.h"
#include "machine/MachineState.h"

/// Interrupts, the serial lines and reset. The machine samples no lines by itself: an interrupt happens when
/// the user asks for one, and is served at once.
namespace tavinor {

/// Where TRAP and the RST x.5 lines jump to.
namespace vector {
constexpr std::int32_t trap = 0x24;
constexpr std::int32_t rst55 = 0x2C;
constexpr std::int32_t rst65 = 0x34;
constexpr std::int32_t rst75 = 0x3C;
}  // namespace vector

/// RIM: A gets M55, M65, M75, IE, R75 in bits 0 to 4 and SID in bit 7; bits 5 and 6 are 0. The chip reports
/// its pending lines in bits 4 to 6 instead: see behaviour.md, Machine: interrupts.
void OPRIM(MachineState& m) noexcept;

/// SIM: with bit 6 of A, SOD := bit 7; with bit 3, the masks := bits 0 to 2; with bit 4, the RST 7.5 latch is
/// cleared.
void OPSIM(MachineState& m) noexcept;

/// Registers, pairs, PC and SP to 0, interrupts off, the three lines masked, the latch clear. Memory, ports,
/// SID and SOD stay: see behaviour.md, Machine: registers.
void reset(MachineState& m) noexcept;

/// Accepts TRAP, RST 5.5 or RST 6.5: interrupts off and a call to the line's vector.
/// @throws RuntimeError as `OPCALL`.
void acceptInterrupt(MachineState& m, Host& host, std::int32_t address);

/// Accepts RST 7.5. The latch is set, where the chip clears it: only SIM with bit 4 and a reset do, and until
/// then every unmasking or enabling by the user serves RST 7.5 again: see behaviour.md, Machine: interrupts.
/// @throws RuntimeError as `OPCALL`.
void acceptRst75(MachineState& m, Host& host);

/// INTR: interrupts off, then the instruction whose opcode the device supplies (`vectorText`, hexadecimal)
/// executes once in the place of the byte at PC, with PC left where it is. The borrowed byte is shown
/// nowhere, and it is put back whatever the instruction wrote there: see behaviour.md, Machine: interrupts.
/// Returns the T-states of the instruction. @throws RuntimeError overflow when the vector is above 255
/// (nothing executed), or as the instruction.
int requestIntr(MachineState& m, Host& host, std::string_view vectorText);

}  // namespace tavinor
