#pragma once

#include <cstdint>

#include "machine/Flags.h"
#include "machine/Host.h"
#include "machine/MachineState.h"

/// Arithmetic, logic, stack and pair operations of the machine, with its own flag rules. They differ from the
/// chip in three places, on purpose: a compare never sets AC, `DCR` leaves AC clear, and `DAA` never clears a
/// flag.
///
/// Operands are 0..255 (0..65535 for pairs and addresses). The operations that return a byte leave A alone:
/// the stepper stores it. All of it is inline because the run loop lives on it.
namespace tavinor {

namespace detail {

inline void assignFlags(MachineState& m, int bits) {
    m.F = static_cast<std::uint8_t>(bits);
}
inline int carry(const MachineState& m) {
    return m.F & flag::CY;
}

/// A + operand + carryIn, with S, Z, AC, P and CY from the sum.
inline std::uint8_t add(MachineState& m, int operand, int carryIn) {
    const int ac = (m.A & 15) + (operand & 15) + carryIn >= 16 ? flag::AC : 0;
    int r = m.A + operand + carryIn;
    const int cy = r > 255 ? flag::CY : 0;
    r &= 255;
    assignFlags(m, flags(r) | ac | cy);
    return static_cast<std::uint8_t>(r);
}

/// A - operand - borrowIn. CY is the borrow; AC is set when there is no borrow from the low nibble.
inline std::uint8_t subtract(MachineState& m, int operand, int borrowIn) {
    const int ac = (m.A & 15) - (operand & 15) - borrowIn >= 0 ? flag::AC : 0;
    int r = m.A - operand - borrowIn;
    const int cy = r < 0 ? flag::CY : 0;
    r &= 255;
    assignFlags(m, flags(r) | ac | cy);
    return static_cast<std::uint8_t>(r);
}

}  // namespace detail

/// A + operand.
inline std::uint8_t OPADD(MachineState& m, int operand) {
    return detail::add(m, operand, 0);
}

/// A + operand + CY.
inline std::uint8_t OPADC(MachineState& m, int operand) {
    return detail::add(m, operand, detail::carry(m));
}

/// A - operand.
inline std::uint8_t OPSUB(MachineState& m, int operand) {
    return detail::subtract(m, operand, 0);
}

/// A - operand - CY.
inline std::uint8_t OPSBB(MachineState& m, int operand) {
    return detail::subtract(m, operand, detail::carry(m));
}

/// A and operand; AC set, CY clear.
inline std::uint8_t OPAND(MachineState& m, int operand) {
    const int r = m.A & operand;
    detail::assignFlags(m, flag::AC | flags(r));
    return static_cast<std::uint8_t>(r);
}

/// A or operand; AC and CY clear.
inline std::uint8_t OPOR(MachineState& m, int operand) {
    const int r = m.A | operand;
    detail::assignFlags(m, flags(r));
    return static_cast<std::uint8_t>(r);
}

/// A xor operand; AC and CY clear.
inline std::uint8_t OPXOR(MachineState& m, int operand) {
    const int r = m.A ^ operand;
    detail::assignFlags(m, flags(r));
    return static_cast<std::uint8_t>(r);
}

/// Sets the flags of A - operand and leaves A alone. AC is clear whatever the nibbles, unlike the chip and
/// unlike `OPSUB`.
inline void OPCMP(MachineState& m, int operand) {
    detail::subtract(m, operand, 0);
    detail::assignFlags(m, m.F & ~flag::AC);
}

/// cell + 1 in place. CY stays, AC tells that the low nibble was 15; the unused bits of F are cleared.
inline void OPINR(MachineState& m, std::uint8_t& cell) {
    const int ac = (cell & 15) == 15 ? flag::AC : 0;
    ++cell;
    detail::assignFlags(m, detail::carry(m) | ac | flags(cell));
}

/// cell - 1 in place. CY stays and AC is always clear afterwards, unlike the chip; the unused bits of F are
/// cleared.
inline void OPDCR(MachineState& m, std::uint8_t& cell) {
    --cell;
    detail::assignFlags(m, detail::carry(m) | flags(cell));
}

/// A 16-bit value + 1 in place; 65535 becomes 0. No flag changes.
inline void OPINX(std::int32_t& cell) {
    ++cell;
    if (cell > 65535) cell = 0;
}

/// A 16-bit value - 1 in place; 0 becomes 65535. No flag changes.
inline void OPDCX(std::int32_t& cell) {
    --cell;
    if (cell < 0) cell = 65535;
}

/// HL + value into HL, H and L; CY is the carry out of bit 15, no other flag changes.
inline void OPDAD(MachineState& m, std::int32_t value) {
    m.HL += value;
    detail::assignFlags(m, m.F & ~flag::CY);
    if (m.HL > 65535) {
        m.HL -= 65536;
        detail::assignFlags(m, m.F | flag::CY);
    }
    m.H = static_cast<std::uint8_t>(m.HL / 256);
    m.L = static_cast<std::uint8_t>(m.HL % 256);
}

/// A adjusted to two decimal digits. Only ever sets flags, unlike the chip: an S, Z, AC, P or CY left over
/// from an earlier operation stays set, and AC never changes.
inline std::uint8_t OPDAA(MachineState& m) {
    int lo = m.A & 15;
    int hi = (m.A & 240) / 16;
    if ((m.F & flag::AC) != 0 || lo > 9) {
        if (lo > 9) ++hi;
        lo = (lo + 6) & 15;
    }
    int set = 0;
    if ((m.F & flag::CY) != 0 || hi > 9) {
        hi = (hi + 6) & 15;
        set = flag::CY;
    }
    const int r = hi * 16 + lo;
    detail::assignFlags(m, m.F | set | flags(r));
    return static_cast<std::uint8_t>(r);
}

/// Pushes PC, high byte first and so at the higher address, and jumps to `address`.
/// @throws RuntimeError overflow when PC is 65536 or more; SP has then been decreased once.
inline void OPCALL(MachineState& m, Host& host, std::int32_t address) {
    const std::int32_t hi = m.PC / 256;
    const std::int32_t lo = m.PC - hi * 256;
    OPDCX(m.SP);
    host.savmem(m.SP, hi);
    OPDCX(m.SP);
    host.savmem(m.SP, lo);
    m.PC = address;
}

/// Pops PC.
inline void OPRET(MachineState& m) {
    const std::int32_t lo = m.mem[static_cast<std::size_t>(m.SP)];
    OPINX(m.SP);
    const std::int32_t hi = m.mem[static_cast<std::size_t>(m.SP)];
    OPINX(m.SP);
    m.PC = hi * 256 + lo;
}

}  // namespace tavinor
