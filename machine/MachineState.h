#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "machine/RuntimeError.h"

namespace tavinor {

/// The registers of the simulated 8085: seven 8-bit registers, the flag byte, the cached pairs and the two
/// 16-bit registers.
///
/// `PSW`, `BC`, `DE` and `HL` repeat the 8-bit registers (high*256 + low). The stepper recomputes them after
/// every instruction; a caller that changes a register outside it calls `recomputePairs`.
struct Registers {
    std::uint8_t A = 0, B = 0, C = 0, D = 0, E = 0, F = 0, H = 0, L = 0;
    std::int32_t PSW = 0, BC = 0, DE = 0, HL = 0;  ///< 0..65535
    /// Program counter. Wider than 16 bits: an instruction that ends at the top of memory leaves 65536 to
    /// 65538 here, and the next fetch fails. See behaviour.md, Machine: registers.
    std::int32_t PC = 0;
    std::int32_t SP = 0;  ///< Stack pointer, 0..65535.

    void recomputePairs() noexcept {
        PSW = A * 256 + F;
        BC = B * 256 + C;
        DE = D * 256 + E;
        HL = H * 256 + L;
    }

    friend bool operator==(const Registers&, const Registers&) = default;
};

inline std::int32_t pairBC(const Registers& r) noexcept {
    return r.BC;
}
inline std::int32_t pairDE(const Registers& r) noexcept {
    return r.DE;
}
inline std::int32_t pairHL(const Registers& r) noexcept {
    return r.HL;
}
/// `pair` (0..65535) into HL, H and L.
inline void assignHL(Registers& r, std::int32_t pair) noexcept {
    r.HL = pair;
    r.H = static_cast<std::uint8_t>(pair / 256);
    r.L = static_cast<std::uint8_t>(pair % 256);
}

/// Interrupt enable, the three RST masks (true = masked) and the RST 7.5 request latch.
struct InterruptState {
    bool IE = false;
    bool M55 = false, M65 = false, M75 = false;
    bool R75 = false;

    friend bool operator==(const InterruptState&, const InterruptState&) = default;
};

constexpr std::int32_t memorySize = 65536;
constexpr std::int32_t mirroredMemorySize = memorySize + 2;
constexpr std::int32_t portCount = 256;

/// `value` as the content of a byte cell. @throws RuntimeError overflow outside 0..255.
inline std::uint8_t asByte(std::int32_t value) {
    if (value < 0 || value > 255) throw RuntimeError(RuntimeError::Number::overflow);
    return static_cast<std::uint8_t>(value);
}

/// `index` as an index into an array of `size` elements. @throws RuntimeError subscript outside 0..size-1.
inline std::size_t asIndex(std::int32_t index, std::int32_t size) {
    if (index < 0 || index >= size) throw RuntimeError(RuntimeError::Number::subscript);
    return static_cast<std::size_t>(index);
}

/// The one simulated Intel 8085: registers, memory, ports, interrupt controls and serial lines.
///
/// All zero when created, memory and ports included; `reset` gives the state after power-up. The cells 65536
/// and 65537 mirror cells 0 and 1, so that operands of an instruction at FFFE or FFFF wrap round when it is
/// executed. The mirror is brought up to date by `synmem`, not after every write: within an instruction it
/// may lag (see behaviour.md, Machine: mirror cells). What only shows memory reads round the top without it
/// (`wrapped`).
struct MachineState : Registers {
    std::array<std::uint8_t, mirroredMemorySize> mem{};
    std::array<std::uint8_t, portCount> port{};  ///< `IN` and `OUT` share this array.
    InterruptState intState;
    bool SID = false;  ///< Serial input line, set by the user.
    bool SOD = false;  ///< Serial output line, set by `SIM`.

    /// The registers alone.
    [[nodiscard]] const Registers& registers() const noexcept { return *this; }

    /// The byte in memory cell `dir` (0..65537, not checked).
    [[nodiscard]] std::uint8_t at(std::int32_t dir) const noexcept {
        return mem[static_cast<std::size_t>(dir)];
    }

    /// The byte in memory cell `dir` (0 or more), counted round from FFFF to 0000; the mirror cells play no
    /// part.
    [[nodiscard]] std::uint8_t wrapped(std::int32_t dir) const noexcept {
        return mem[static_cast<std::size_t>(dir & 0xFFFF)];
    }

    /// Copies memory cells 0 and 1 into the mirror cells 65536 and 65537.
    void synmem() noexcept {
        mem[memorySize] = mem[0];
        mem[memorySize + 1] = mem[1];
    }

    /// Stores a byte in memory cell `dir` (0..65537, the mirror cells included).
    /// @throws RuntimeError overflow when `dat` is outside 0..255, else subscript when `dir` is outside.
    // Where, then what, as in every procedure that stores.
    // NOLINTNEXTLINE(bugprone-easily-swappable-parameters)
    void storeMemory(std::int32_t dir, std::int32_t dat) {
        const std::uint8_t byte = asByte(dat);
        mem[asIndex(dir, mirroredMemorySize)] = byte;
    }

    /// Stores a byte in port `dir` (0..255).
    /// @throws RuntimeError as `storeMemory`.
    // NOLINTNEXTLINE(bugprone-easily-swappable-parameters): the same
    void storePort(std::int32_t dir, std::int32_t dat) {
        const std::uint8_t byte = asByte(dat);
        port[asIndex(dir, portCount)] = byte;
    }
};

/// One flag for each memory address: 0 = no breakpoint, -1 = breakpoint. They lie beside the machine, which
/// never reads them.
using Breakpoints = std::array<std::int16_t, memorySize>;

}  // namespace tavinor
