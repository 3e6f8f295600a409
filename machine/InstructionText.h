#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

#include "machine/Instruction.h"

/// Instructions as text. Millions of rows of a trace are saved at once, so texts are put together from
/// tables.
namespace tavinor {

/// A text of at most 128 bytes that is written from left to right; no more is checked.
class ShortText {
  public:
    void text(std::string_view s) {
        std::memcpy(buffer_.data() + size_, s.data(), s.size());
        size_ += s.size();
    }
    void character(char c) { buffer_[size_++] = c; }
    /// Two digits (0..255).
    void byte(int value) {
        static constexpr auto pairs = [] {
            constexpr std::string_view digits = "0123456789ABCDEF";
            std::array<std::array<char, 2>, 256> all{};
            for (std::size_t i = 0; i < all.size(); ++i) all[i] = {digits[i / 16], digits[i % 16]};
            return all;
        }();
        const auto& pair = pairs[static_cast<std::size_t>(value)];
        text({pair.data(), pair.size()});
    }
    /// Four digits (0..65535).
    void word(int value) {
        byte(value >> 8);
        byte(value & 255);
    }

    [[nodiscard]] std::string_view view() const { return {buffer_.data(), size_}; }

  private:
    std::array<char, 128> buffer_;
    std::size_t size_ = 0;
};

/// The text of every opcode without its placeholder ("JMP ").
inline constexpr auto mnemonics = [] {
    std::array<std::string_view, 256> texts{};
    for (std::size_t opcode = 0; opcode < texts.size(); ++opcode) {
        const int length = instructionLength(static_cast<std::uint8_t>(opcode));
        texts[opcode] = tabla[opcode].substr(0, tabla[opcode].find(length == 2 ? byteOperand : wordOperand));
    }
    return texts;
}();

/// Writes an instruction's bytes with a blank between them ("C3 00 20"), and as many blanks as are missing to
/// the longest one's.
inline void writeBytes(ShortText& out, std::uint32_t code) {
    constexpr std::array<std::string_view, 4> missing{"        ", "      ", "   ", ""};
    const int length = lengthOf(code);
    for (int i = 0; i < length; ++i) {
        if (i > 0) out.character(' ');
        out.byte(codeByte(code, i));
    }
    out.text(missing[static_cast<std::size_t>(length)]);
}

/// Writes an instruction with its operand filled in ("JMP 2000").
inline void writeInstruction(ShortText& out, std::uint32_t code) {
    const int length = lengthOf(code);
    out.text(mnemonics[opcodeOf(code)]);
    if (length == 2) out.byte(byteOperandOf(code));
    if (length == 3) out.word(wordOperandOf(code));
}

}  // namespace tavinor
