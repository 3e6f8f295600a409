#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace tavinor {

enum class ByteOrder : std::uint8_t { littleEndian, bigEndian };

/// The UTF-8 text of UTF-16 bytes; nothing where they are malformed (half a unit, half a surrogate pair).
std::optional<std::string> utf16ToUtf8(std::string_view bytes, ByteOrder order);

/// The UTF-16 bytes of UTF-8 `text`. What is malformed in it becomes U+FFFD.
std::string utf8ToUtf16(std::string_view text, ByteOrder order);

}  // namespace tavinor
