#pragma once

#include <filesystem>

namespace tavinor {

/// Where an assembly writes to.
struct OutputPaths {
    std::filesystem::path hex;
    std::filesystem::path listing;
};

/// The files beside a source: prog.asm gives prog.HEX and prog.LST, any other name has ".HEX" and ".LST"
/// appended. The last three characters of the path decide, in either case, with or without a dot before them.
/// See behaviour.md, Assembler: HEX and listing files.
OutputPaths outputPaths(const std::filesystem::path& source);

}  // namespace tavinor
