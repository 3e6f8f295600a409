#include "images/HexLoader.h"

#include <array>
#include <exception>
#include <new>
#include <optional>
#include <string_view>

#include "images/RecordReader.h"
#include "machine/HexText.h"

namespace tavinor {

namespace {

constexpr int dataRecord = 0;
constexpr int endOfFileRecord = 1;
constexpr std::size_t headerLength = 8;  // count, address and type, behind the colon
constexpr std::size_t checksumLength = 2;
constexpr std::size_t maximumCount = 255;

constexpr std::string_view noEndReason = "No hay código de fin.";

/// The part of `text` that the field has left of it, however short the line.
std::string_view field(std::string_view text, std::size_t position, std::size_t length) {
    return position < text.size() ? text.substr(position, length) : std::string_view{};
}

std::int32_t dataByte(std::string_view data, std::int32_t index) {
    return dec(field(data, static_cast<std::size_t>(index) * 2, 2));
}

bool sumsToZero(std::int32_t sum) {
    return (sum & 255) == 0;
}

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
    const std::int32_t count = dec(field(cad, 0, 2));
    const std::int32_t address = dec(field(cad, 2, 4));
    const std::int32_t type = dec(field(cad, 6, 2));
    const std::size_t tail = cad.size() < checksumLength ? 0 : cad.size() - checksumLength;
    const std::int32_t checksum = dec(field(cad, tail, checksumLength));
    std::int32_t sum = count + address / 256 + address % 256 + type;
    cad.erase(0, headerLength);

    if (type == endOfFileRecord) {
        return sumsToZero(sum + checksum) ? RecordCode::endRecord : RecordCode::badChecksum;
    }
    if (type != dataRecord) return RecordCode::formatError;

    if (cad.size() < checksumLength) throw RuntimeError(RuntimeError::Number::subscript);
    cad.resize(cad.size() - checksumLength);
    std::array<std::int32_t, maximumCount> data{};
    for (std::int32_t i = 0; i < count; ++i) sum += data[static_cast<std::size_t>(i)] = dataByte(cad, i);
    for (std::int32_t i = 0; i < count; ++i) host.savmem(address + i, data[static_cast<std::size_t>(i)]);
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
