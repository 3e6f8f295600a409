#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

/// A program as a cell for each address, and the records of Intel HEX that carry one in a file: a colon, then
/// in hexadecimal the count of data bytes, the address, the type, the data and a checksum.
namespace tavinor {

inline constexpr std::size_t imageSize = 65536;

/// An assembled program: a cell for each address, 0..255, or `noByte`.
using ImageBuffer = std::array<std::int16_t, imageSize>;

inline constexpr std::int16_t noByte = -1;

namespace record {
inline constexpr std::size_t headerLength = 8;  ///< Characters of count, address and type, behind the colon.
inline constexpr std::size_t checksumLength = 2;
inline constexpr std::size_t maximumCount = 255;
/// Characters of the longest record.
inline constexpr std::size_t maximumLength = 1 + headerLength + 2 * maximumCount + checksumLength;
}  // namespace record

struct RecordHeader {
    static constexpr std::int32_t data = 0;
    static constexpr std::int32_t endOfFile = 1;

    std::int32_t count = 0;    ///< 0..255
    std::int32_t address = 0;  ///< 0..65535
    std::int32_t type = data;  ///< 0..255

    /// The sum of its bytes.
    [[nodiscard]] std::int32_t sum() const { return count + address / 256 + address % 256 + type; }
};

/// The header of a record without its colon. What the text is too short for counts as 0, and so do characters
/// that are no digits.
RecordHeader recordHeader(std::string_view text);

/// The byte whose two digits stand at `position`; with less than two there, what there is of it.
std::int32_t recordByte(std::string_view text, std::size_t position);

/// Whether the bytes of a record, checksum included, add up as they should.
constexpr bool sumsToZero(std::int32_t sum) {
    return (sum & 255) == 0;
}

/// The text of a record, without a line end. Its count is the header's, however many bytes `data` has.
std::string recordText(const RecordHeader& header, std::span<const std::uint8_t> data);

}  // namespace tavinor
