#pragma once

#include "machine/Host.h"
#include "machine/MachineState.h"

namespace tavinor {

/// Whether a step moves PC past its instruction first. `stay` is for INTR, whose instruction is not part of
/// the program: what it calls returns to where the program was interrupted.
enum class Advance : bool { past, stay };

/// Executes exactly one instruction; returns the T-states that it takes.
///
/// Opcode and both operand bytes are fetched before anything else; the mirror cells are refreshed after the
/// fetch, so operands at the very top of memory may be stale by one write. PC is not wrapped: an instruction
/// that ends at the top of memory leaves 65536 or more. The undefined codes do nothing. The pairs are
/// recomputed at the end, whatever the instruction. See behaviour.md, Machine: instructions.
/// @throws RuntimeError subscript when PC is above 65535 (nothing changes); overflow when a call would push
///     a return address of 65536 or more (PC advanced, SP decreased once, nothing stored).
int EjecutaPASO(MachineState& m, Host& host, Advance advance = Advance::past);

}  // namespace tavinor
