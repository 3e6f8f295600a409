#include "assembler/HexWriter.h"

#include <cstdint>

#include "assembler/Messages.h"
#include "files/ReplacedFile.h"
#include "machine/HexText.h"

namespace tavinor {

namespace {

constexpr std::int32_t bytesPerRecord = 16;
constexpr std::string_view endRecord = ":00000001FF";

/// A record's bytes: the digits, the count that it claims, and the sum of its bytes.
struct RecordData {
    std::string digits;
    std::int32_t count = 0;
    std::int32_t sum = 0;
};

RecordData collect(const ImageBuffer& image, std::int32_t address) {
    RecordData data;
    for (; data.count < bytesPerRecord; ++data.count) {
        const auto cell = static_cast<std::size_t>(address + data.count);
        if (cell >= image.size()) continue;  // the count runs on past FFFF
        if (image[cell] == noByte) break;
        data.sum += image[cell];
        data.digits += hexa(image[cell], 2);
    }
    return data;
}

void appendRecord(std::string& records, std::int32_t address, const RecordData& data) {
    const std::int32_t sum = data.sum + data.count + address % 256 + address / 256;
    records += ':';
    records += hexa(data.count, 2);
    records += hexa(address, 4);
    records += "00";
    records += data.digits;
    records += hexa((256 - sum % 256) % 256, 2);
    records += lineEnd;
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
        appendRecord(records, address, data);
        address += data.count;
    }
    records += endRecord;
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
