#pragma once

#include <cstdint>
#include <filesystem>
#include <string>

#include "files/WorkObserver.h"
#include "machine/Host.h"
#include "machine/MachineState.h"

/// Loads Intel HEX files into the machine. The format is read leniently: by fixed positions, any character is
/// accepted in a field, and the byte count is not compared with the length of the line. See behaviour.md,
/// Images: HEX files.
namespace tavinor {

/// What a line of a HEX file turned out to be.
enum class RecordCode : std::uint8_t {
    stored = 0,        ///< A data record, checksum correct.
    formatError = 1,   ///< No ":" in front, or a type other than 00 and 01.
    badChecksum = 2,   ///< Checksum wrong; a data record is stored all the same.
    badOperation = 3,  ///< Never produced; see behaviour.md, Images: HEX files.
    badAddress = 4,    ///< The same.
    endRecord = 5,     ///< The end record, checksum correct.
};

/// How a load ended, and the box that the user sees after a failure; a success brings no text, and neither
/// does a load that was cancelled.
struct LoadResult {
    bool loaded = false;
    std::string message;           ///< UTF-8; a CR alone separates its two lines.
    bool rightAlignedBox = false;  ///< The box shows its text to the right.
};

/// Decodes one line (without blanks around it) and stores its bytes through `host`.
///
/// `cad` is consumed: colon, header and checksum are cut off while the procedure works. After a data record
/// the mirror cells are refreshed.
/// @throws RuntimeError subscript when a data record is too short for its checksum (nothing stored) or runs
///     past FFFF (the bytes before stay stored).
RecordCode extlinfic(std::string& cad, MachineState& m, Host& host);

/// Loads a file up to its end record. Every byte is stored as it is read, and a failure takes none of them
/// back. Only a successful load clears the breakpoints, and it is successful whatever the checksums of the
/// data records were.
/// `observer` can cancel it; what is stored by then stays too.
/// @throws std::bad_alloc
LoadResult carga(const std::filesystem::path& path, MachineState& m, Breakpoints& breakpoints, Host& host,
                 WorkObserver& observer);

}  // namespace tavinor
