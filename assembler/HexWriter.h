#pragma once

#include <filesystem>
#include <string>

#include "assembler/PaneText.h"
#include "images/HexRecord.h"

namespace tavinor {

/// The Intel HEX records of an image in ascending order, end record included, each with its line end.
///
/// A record holds up to 16 bytes and ends at a gap. One that begins above FFF0 and meets no gap claims 16
/// bytes all the same, in its count and its checksum, although it carries those up to FFFF only: see
/// behaviour.md, Assembler: HEX and listing files.
std::string hexRecords(const ImageBuffer& image);

/// Writes the records of `image` to a file and puts them in place of the report's text.
/// The file is whole at every moment: the old one or the new one.
/// @returns false after any error of the file, when "Error creando fichero" has been sent to the observer.
bool creafilehex(const ImageBuffer& image, const std::filesystem::path& path, PaneText& report,
                 AssemblyObserver& observer);

}  // namespace tavinor
