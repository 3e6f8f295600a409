#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <span>
#include <string>
#include <string_view>

#include "assembler/AssemblyObserver.h"
#include "assembler/OpcodeSources.h"
#include "images/HexRecord.h"
#include "text/TextEncoding.h"

namespace tavinor {

/// What a run of the assembler gave.
struct AssemblyResult {
    bool assembled = false;  ///< No error was found and, by `Ensambla`, the HEX file was written.
    bool cancelled = false;  ///< The observer did not let it go on; the texts end there.
    std::string listing;     ///< What the listing pane shows: UTF-8, lines end in CR LF.
    std::string report;      ///< What the report pane shows: the errors, or the HEX records.
    ImageBuffer image{};     ///< All `noByte` after an error.
    TextEncoding encoding = TextEncoding::utf8;  ///< The source's; the listing file has the same.
};

/// Assembles the bytes of a source file in three passes: splits the lines, places the statements, encodes
/// them. A pass with errors goes on to its end, and is the last one. Writes no file. @throws std::bad_alloc
/// `opcodes` are the sources of the opcode table.
AssemblyResult assemble(std::string bytes, AssemblyObserver& observer,
                        std::span<const std::string_view> opcodes = opcodeSources);

/// A longer source, in bytes, is refused.
constexpr std::uint64_t maximumSourceSize = std::uint64_t{64} << 20;
/// As is one of more lines: far beyond any program, and its panes would take many times its memory.
constexpr std::size_t maximumLines = 2'000'000;

/// Assembles the file `file1` and, when there was no error, writes the HEX file `file2` and shows its records
/// in the report pane. Writes no listing file: see `creafilelst`. @throws std::bad_alloc, with the HEX file
/// as it was.
AssemblyResult Ensambla(const std::filesystem::path& file1, const std::filesystem::path& file2,
                        AssemblyObserver& observer);

}  // namespace tavinor
