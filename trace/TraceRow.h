#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "machine/MachineState.h"
#include "trace/RegisterTexts.h"

namespace tavinor {

constexpr int highByte(int word) {
    return word >> 8 & 255;
}
constexpr int lowByte(int word) {
    return word & 255;
}

/// What the register boxes showed at one moment, as values.
class RegisterImage {
  public:
    enum Word : unsigned { AF, BC, DE, HL, PC, SP };

    RegisterImage() = default;
    /// `M` is the byte shown for HL.
    RegisterImage(const Registers& r, std::uint8_t M)
        : pairs_(pair(r.A, r.F) | pair(r.B, r.C) << 16 | pair(r.D, r.E) << 32 | pair(r.H, r.L) << 48),
          others_((static_cast<std::uint64_t>(r.PC) & 0xFFFF) |
                  (static_cast<std::uint64_t>(r.SP) & 0xFFFF) << 16 | std::uint64_t{M} << 32) {}

    [[nodiscard]] std::uint16_t word(unsigned index) const {
        return static_cast<std::uint16_t>((index < 4 ? pairs_ : others_) >> shift(index));
    }
    [[nodiscard]] std::uint8_t M() const { return static_cast<std::uint8_t>(others_ >> 32); }

    friend bool operator==(const RegisterImage&, const RegisterImage&) = default;

  private:
    static constexpr std::uint64_t pair(unsigned high, unsigned low) { return high << 8 | low; }
    static constexpr unsigned shift(unsigned index) { return index % 4 * 16; }

    std::uint64_t pairs_ = 0;   // AF, BC, DE, HL from the lowest bits up
    std::uint64_t others_ = 0;  // PC, SP, M
};

/// One row of the trace as values.
struct TraceRow {
    RegisterImage registers;
    std::uint16_t address = 0;
    std::uint32_t code = 0;  ///< The instruction's bytes, the opcode lowest; 0 beyond its length.
    bool hasInstruction = false;
    bool hasRegisters = false;  ///< An instruction that failed has none.

    friend bool operator==(const TraceRow&, const TraceRow&) = default;
};

/// The cells of a row that do not follow from its values, because the user was typing.
struct RowTexts {
    std::optional<std::string> address;
    std::optional<RegisterTexts> registers;
};

}  // namespace tavinor
