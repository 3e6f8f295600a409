#include "assembler/HexWriter.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

#include "assembler/Messages.h"
#include "files/ReplacedFile.h"
#include "images/HexRecord.h"

namespace tavinor {

namespace {

constexpr std::int32_t bytesPerRecord = 16;
constexpr RecordHeader endRecord{.type = RecordHeader::endOfFile};

/// The bytes of the record at `address`, and the count that it claims.
struct RecordData {
    std::array<std::uint8_t, bytesPerRecord> bytes{};
    std::size_t size = 0;
    std::int32_t count = 0;
};

RecordData collect(const ImageBuffer& image, std::int32_t address) {
    RecordData data;
    for (; data.count < bytesPerRecord; ++data.count) {
        const auto cell = static_cast<std::size_t>(address + data.count);
        if (cell >= image.size()) continue;  // the count runs on past FFFF
        if (image[cell] == noByte) break;
        data.bytes[data.size++] = static_cast<std::uint8_t>(image[cell]);
    }
    return data;
}

}  // namespace

std::string hexRecords(const ImageBuffer& image) {
    std::string records;
    for (std::int32_t address = 0; address < static_cast<std::int32_t>(image.size());) {
        if (image[static_cast<std::size_t>(address)] == noByte) {
            ++address;
            continue;
        }
        const RecordData data = collect(image, address);
        records +=
            recordText({.count = data.count, .address = address}, std::span(data.bytes).first(data.size));
        records += lineEnd;
        address += data.count;
    }
    records += recordText(endRecord, {});
    records += lineEnd;
    return records;
}

bool creafilehex(const ImageBuffer& image, const std::filesystem::path& path, PaneText& report,
                 AssemblyObserver& observer) {
    report.clear();
    const std::string records = hexRecords(image);
    ReplacedFile file(path);
    if (file.created()) report.append(records);
    const bool written = file.write(records) && file.commit();
    if (!written) observer.message(message::cannotCreate);
    return written;
}

}  // namespace tavinor
