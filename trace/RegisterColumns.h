#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "machine/MachineState.h"

namespace tavinor {

/// What the register boxes showed at one moment, as values.
class RegisterImage {
  public:
    RegisterImage() = default;
    /// `M` is the byte shown for HL.
    RegisterImage(const Registers& r, std::uint8_t M)
        : pairs_(pair(r.A, r.F) | pair(r.B, r.C) << 16 | pair(r.D, r.E) << 32 | pair(r.H, r.L) << 48),
          others_((static_cast<std::uint64_t>(r.PC) & 0xFFFF) |
                  (static_cast<std::uint64_t>(r.SP) & 0xFFFF) << 16 | std::uint64_t{M} << 32) {}

    [[nodiscard]] int A() const { return byte(pairs_, 1); }
    [[nodiscard]] int F() const { return byte(pairs_, 0); }
    [[nodiscard]] int B() const { return byte(pairs_, 3); }
    [[nodiscard]] int C() const { return byte(pairs_, 2); }
    [[nodiscard]] int D() const { return byte(pairs_, 5); }
    [[nodiscard]] int E() const { return byte(pairs_, 4); }
    [[nodiscard]] int H() const { return byte(pairs_, 7); }
    [[nodiscard]] int L() const { return byte(pairs_, 6); }
    [[nodiscard]] int M() const { return byte(others_, 4); }
    [[nodiscard]] int PC() const { return static_cast<int>(others_ & 0xFFFF); }
    [[nodiscard]] int SP() const { return static_cast<int>(others_ >> 16 & 0xFFFF); }

    friend bool operator==(const RegisterImage&, const RegisterImage&) = default;

  private:
    static constexpr std::uint64_t pair(unsigned high, unsigned low) { return high << 8 | low; }
    static constexpr int byte(std::uint64_t bytes, unsigned index) {
        return static_cast<int>(bytes >> 8 * index & 255);
    }

    std::uint64_t pairs_ = 0;   // AF, BC, DE, HL from the lowest bits up
    std::uint64_t others_ = 0;  // PC, SP, M
};

/// A column of the trace that shows a register, and the box of that register. The flags have no box: their
/// column says in digits what F says.
struct RegisterColumn {
    std::string_view header;  ///< Its trailing blanks give the column its width.
    int digits;               ///< Of the hexadecimal text, 2 or 4; 0 for the flags.
    int (RegisterImage::*get)() const;

    [[nodiscard]] int value(const RegisterImage& image) const { return (image.*get)(); }
};

/// In the order of the trace.
inline constexpr auto registerColumns = std::to_array<RegisterColumn>({
    {"A ", 2, &RegisterImage::A},
    {"B ", 2, &RegisterImage::B},
    {"C ", 2, &RegisterImage::C},
    {"D ", 2, &RegisterImage::D},
    {"E ", 2, &RegisterImage::E},
    {"F ", 2, &RegisterImage::F},
    {"szapc", 0, &RegisterImage::F},
    {"H ", 2, &RegisterImage::H},
    {"L ", 2, &RegisterImage::L},
    {"M ", 2, &RegisterImage::M},
    {"PC  ", 4, &RegisterImage::PC},
    {"SP  ", 4, &RegisterImage::SP},
});

/// The columns that have a box, by their places in `registerColumns`.
inline constexpr auto boxColumns = [] {
    std::array<std::size_t, registerColumns.size() - 1> columns{};
    std::size_t box = 0;
    for (std::size_t i = 0; i < registerColumns.size(); ++i) {
        if (registerColumns[i].digits > 0) columns[box++] = i;
    }
    return columns;
}();

/// The texts of the register boxes, in the order of `boxColumns`; they differ from the values while the user
/// is typing. UTF-8.
using RegisterTexts = std::array<std::string, boxColumns.size()>;

/// Which of them is that of PC.
inline constexpr std::size_t pcText = [] {
    std::size_t box = 0;
    while (registerColumns[boxColumns[box]].header != "PC  ") ++box;
    return box;
}();

}  // namespace tavinor
