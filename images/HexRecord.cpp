#include "images/HexRecord.h"

#include "machine/HexText.h"

namespace tavinor {

namespace {

/// The part of `text` that a field has left of it, however short the line.
std::string_view field(std::string_view text, std::size_t position, std::size_t length) {
    return position < text.size() ? text.substr(position, length) : std::string_view{};
}

}  // namespace

RecordHeader recordHeader(std::string_view text) {
    return {
        .count = dec(field(text, 0, 2)), .address = dec(field(text, 2, 4)), .type = dec(field(text, 6, 2))};
}

std::int32_t recordByte(std::string_view text, std::size_t position) {
    return dec(field(text, position, 2));
}

std::string recordText(const RecordHeader& header, std::span<const std::uint8_t> data) {
    std::string text(1, ':');
    text += hexa(header.count, 2);
    text += hexa(header.address, 4);
    text += hexa(header.type, 2);
    std::int32_t sum = header.sum();
    for (const std::uint8_t byte : data) {
        text += hexa(byte, 2);
        sum += byte;
    }
    return text + hexa(-sum, 2);
}

}  // namespace tavinor
