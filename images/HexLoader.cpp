#include "images/HexLoader.h"

#include <array>
#include <exception>
#include <new>
#include <optional>
#include <span>
#include <string_view>

#include "images/HexRecord.h"
#include "images/RecordReader.h"

namespace tavinor {

namespace {

constexpr std::string_view noEndReason = "No hay código de fin.";

std::string reasonText(RecordCode code) {
    switch (code) {
        case RecordCode::formatError: return "Formato incorrecto.";
        case RecordCode::badOperation: return "Código de operación no valido.";
        case RecordCode::badAddress: return "Dirección no valida.";
        default: return {};
    }
}

LoadResult failure(const std::filesystem::path& path, std::string_view reason) {
    const std::u8string name = path.u8string();
    std::string message = "Error en fichero " + std::string(name.begin(), name.end()) + ".\r";
    message += reason;
    return {.loaded = false, .message = message, .rightAlignedBox = true};
}

LoadResult success(Breakpoints& breakpoints) {
    breakpoints.fill(0);
    return {.loaded = true, .message = {}, .rightAlignedBox = false};
}

/// The end of a file without an end record. A last code of 5 cannot arrive here, but has its two outcomes:
/// see behaviour.md, Images: HEX files.
LoadResult endWithoutRecord(RecordCode last, bool checksumError, const std::filesystem::path& path,
                            Breakpoints& breakpoints) {
    if (last != RecordCode::endRecord) return failure(path, noEndReason);
    if (checksumError) return failure(path, "Error de checksum.");
    return success(breakpoints);
}

LoadResult loadRecords(const std::filesystem::path& path, MachineState& m, Breakpoints& breakpoints,
                       Host& host, WorkObserver& observer) {
    RecordReader reader(path, observer);
    bool checksumError = false;
    RecordCode code = RecordCode::stored;
    while (std::optional<std::string> line = reader.next()) {
        code = extlinfic(*line, m, host);
        switch (code) {
            case RecordCode::stored: break;
            case RecordCode::badChecksum: checksumError = true; break;
            case RecordCode::endRecord: return success(breakpoints);
            default: return failure(path, reasonText(code));
        }
    }
    return endWithoutRecord(code, checksumError, path, breakpoints);
}

}  // namespace

RecordCode extlinfic(std::string& cad, MachineState& m, Host& host) {
    if (!cad.starts_with(':')) return RecordCode::formatError;
    cad.erase(0, 1);
    const RecordHeader header = recordHeader(cad);
    const std::size_t tail = cad.size() < record::checksumLength ? 0 : cad.size() - record::checksumLength;
    const std::int32_t checksum = recordByte(cad, tail);
    std::int32_t sum = header.sum();
    cad.erase(0, record::headerLength);

    if (header.type == RecordHeader::endOfFile) {
        return sumsToZero(sum + checksum) ? RecordCode::endRecord : RecordCode::badChecksum;
    }
    if (header.type != RecordHeader::data) return RecordCode::formatError;

    if (cad.size() < record::checksumLength) throw RuntimeError(RuntimeError::Number::subscript);
    cad.resize(cad.size() - record::checksumLength);
    std::array<std::int32_t, record::maximumCount> bytes{};
    const auto data = std::span(bytes).first(static_cast<std::size_t>(header.count));
    for (std::size_t i = 0; i < data.size(); ++i) sum += data[i] = recordByte(cad, 2 * i);
    for (std::int32_t address = header.address; const std::int32_t byte : data) host.savmem(address++, byte);
    m.synmem();
    return sumsToZero(sum + checksum) ? RecordCode::stored : RecordCode::badChecksum;
}

LoadResult carga(const std::filesystem::path& path, MachineState& m, Breakpoints& breakpoints, Host& host,
                 WorkObserver& observer) {
    try {
        return loadRecords(path, m, breakpoints, host, observer);
    } catch (const Cancelled&) {
        return {};
    } catch (const std::bad_alloc&) {
        throw;  // it says nothing about the file
    } catch (const std::exception&) {
        // Whatever stopped the reading, the file or a record past FFFF: what is stored stays.
        return {.loaded = false, .message = "Error en lectura", .rightAlignedBox = false};
    }
}

}  // namespace tavinor
