#pragma once

#include <array>
#include <bit>

/// Arithmetic one bit at a time, as the gates of an adder do it: a second opinion on the machine's sums. And
/// the opcodes as fields of bits.
namespace tavinor::test {

/// The codes that the processor leaves undefined.
inline constexpr std::array undefinedOpcodes{0x08, 0x10, 0x18, 0x28, 0x38, 0xCB, 0xD9, 0xDD, 0xED, 0xFD};

struct Sum {
    int value = 0;
    bool carry = false;      ///< Out of bit 7.
    bool halfCarry = false;  ///< Out of bit 3.
};

constexpr Sum rippleAdd(int a, int b, bool carry) {
    Sum sum;
    for (int bit = 0; bit < 8; ++bit) {
        const bool x = ((a >> bit) & 1) != 0;
        const bool y = ((b >> bit) & 1) != 0;
        if ((x != y) != carry) sum.value |= 1 << bit;
        carry = (x && y) || (x && carry) || (y && carry);
        if (bit == 3) sum.halfCarry = carry;
    }
    sum.carry = carry;
    return sum;
}

/// a - b - borrow by adding the complement: a carry out means that nothing was borrowed.
constexpr Sum rippleSubtract(int a, int b, bool borrow) {
    return rippleAdd(a, b ^ 0xFF, !borrow);
}

/// S, Z and P of a result, in their places.
constexpr int resultBits(int value) {
    const int sign = value >= 128 ? 0x80 : 0;
    const int zero = value == 0 ? 0x40 : 0;
    const int parity = std::popcount(static_cast<unsigned>(value)) % 2 == 0 ? 0x04 : 0;
    return sign + zero + parity;
}

/// The bit fields of an opcode: xx yyy zzz, with yyy = ppq.
struct OpcodeFields {
    explicit constexpr OpcodeFields(int opcode)
        : x(opcode >> 6), y((opcode >> 3) & 7), z(opcode & 7), p(y >> 1), q(y & 1) {}
    int x, y, z, p, q;
};

}  // namespace tavinor::test
