#pragma once

#include <cstdint>

#include "machine/Flags.h"
#include "machine/Host.h"
#include "machine/MachineState.h"

/// Arithmetic, logic, stack and pair operations of the machine, with its own flag rules (see behaviour.md,
/// Machine: flags). They differ from the chip in three places: a compare never sets AC, `DCR` leaves AC
/// clear, and `DAA` never clears a flag.
///
/// Operands are 0..255 (0..65535 for pairs and addresses). The operations that return a byte leave A alone:
/// the stepper stores it. All of it is inline because the run loop lives on it.
namespace tavinor {

namespace detail {

template <class Cells>
void assignFlags(Cells& m, int bits) {
    m.F = static_cast<std::uint8_t>(bits);
}
template <class Cells>
int carry(const Cells& m) {
    return m.F & flag::CY;
}

/// A + operand + carryIn, with S, Z, AC, P and CY from the sum.
template <class Cells>
std::uint8_t add(Cells& m, int operand, int carryIn) {
    const int ac = (m.A & 15) + (operand & 15) + carryIn >= 16 ? flag::AC : 0;
    int r = m.A + operand + carryIn;
    const int cy = r > 255 ? flag::CY : 0;
    r &= 255;
    assignFlags(m, flags(r) | ac | cy);
    return static_cast<std::uint8_t>(r);
}

/// A - operand - borrowIn. CY is the borrow; AC is set when there is no borrow from the low nibble.
template <class Cells>
std::uint8_t subtract(Cells& m, int operand, int borrowIn) {
    const int ac = (m.A & 15) - (operand & 15) - borrowIn >= 0 ? flag::AC : 0;
    int r = m.A - operand - borrowIn;
    const int cy = r < 0 ? flag::CY : 0;
    r &= 255;
    assignFlags(m, flags(r) | ac | cy);
    return static_cast<std::uint8_t>(r);
}

}  // namespace detail

/// A + operand.
template <class Cells>
std::uint8_t OPADD(Cells& m, int operand) {
    return detail::add(m, operand, 0);
}

/// A + operand + CY.
template <class Cells>
std::uint8_t OPADC(Cells& m, int operand) {
    return detail::add(m, operand, detail::carry(m));
}

/// A - operand.
template <class Cells>
std::uint8_t OPSUB(Cells& m, int operand) {
    return detail::subtract(m, operand, 0);
}

/// A - operand - CY.
template <class Cells>
std::uint8_t OPSBB(Cells& m, int operand) {
    return detail::subtract(m, operand, detail::carry(m));
}

/// A and operand; AC set, CY clear.
template <class Cells>
std::uint8_t OPAND(Cells& m, int operand) {
    const int r = m.A & operand;
    detail::assignFlags(m, flag::AC | flags(r));
    return static_cast<std::uint8_t>(r);
}

/// A or operand; AC and CY clear.
template <class Cells>
std::uint8_t OPOR(Cells& m, int operand) {
    const int r = m.A | operand;
    detail::assignFlags(m, flags(r));
    return static_cast<std::uint8_t>(r);
}

/// A xor operand; AC and CY clear.
template <class Cells>
std::uint8_t OPXOR(Cells& m, int operand) {
    const int r = m.A ^ operand;
    detail::assignFlags(m, flags(r));
    return static_cast<std::uint8_t>(r);
}

/// Sets the flags of A - operand and leaves A alone. AC is clear whatever the nibbles, unlike the chip and
/// unlike `OPSUB`: see behaviour.md, Machine: flags.
template <class Cells>
void OPCMP(Cells& m, int operand) {
    detail::subtract(m, operand, 0);
    detail::assignFlags(m, m.F & ~flag::AC);
}

/// cell + 1 in place. CY stays, AC tells that the low nibble was 15; the unused bits of F are cleared.
template <class Cells>
void OPINR(Cells& m, std::uint8_t& cell) {
    const int ac = (cell & 15) == 15 ? flag::AC : 0;
    ++cell;
    detail::assignFlags(m, detail::carry(m) | ac | flags(cell));
}

/// cell - 1 in place. CY stays and AC is always clear afterwards, unlike the chip (see behaviour.md, Machine:
/// flags); the unused bits of F are cleared.
template <class Cells>
void OPDCR(Cells& m, std::uint8_t& cell) {
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
template <class Cells>
void OPDAD(Cells& m, std::int32_t value) {
    const std::int32_t sum = pairHL(m) + value;
    detail::assignFlags(m, (m.F & ~flag::CY) | (sum > 65535 ? flag::CY : 0));
    assignHL(m, sum & 65535);
}

/// A adjusted to two decimal digits. Only ever sets flags, unlike the chip (see behaviour.md, Machine:
/// flags): an S, Z, AC, P or CY left over from an earlier operation stays set, and AC never changes.
template <class Cells>
std::uint8_t OPDAA(Cells& m) {
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
/// @throws RuntimeError overflow when PC is 65536 or more; SP has then been decreased once: see behaviour.md,
///     Machine: instructions.
template <class Cells, class Memory>
void OPCALL(Cells& m, Memory& memory, std::int32_t address) {
    const std::int32_t hi = m.PC / 256;
    const std::int32_t lo = m.PC - hi * 256;
    OPDCX(m.SP);
    memory.savmem(m.SP, hi);
    OPDCX(m.SP);
    memory.savmem(m.SP, lo);
    m.PC = address;
}

/// Pops PC.
template <class Cells, class Memory>
void OPRET(Cells& m, const Memory& memory) {
    const std::int32_t lo = memory.at(m.SP);
    OPINX(m.SP);
    const std::int32_t hi = memory.at(m.SP);
    OPINX(m.SP);
    m.PC = hi * 256 + lo;
}

}  // namespace tavinor
