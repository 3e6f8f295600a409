#pragma once

#include <cstdint>
#include <filesystem>
#include <string_view>

#include "assembler/PaneText.h"
#include "assembler/SymbolTable.h"
#include "text/TextEncoding.h"

namespace tavinor {

/// A raw line that has no statement of its own, under the column of the sources.
void listRawLine(PaneText& listing, std::string_view rawLine);

/// A statement: its address, its bytes as digits, its raw line in column 17. Bytes that do not fit in front
/// of that column stand on a line of their own, however long.
void listStatement(PaneText& listing, std::int32_t address, std::string_view digits,
                   std::string_view rawLine);

/// What stands above the symbol table, below the program.
void listSymbolHeader(PaneText& listing);
void listSymbol(PaneText& listing, const SymbolEntry& symbol);

/// Writes the listing and one more line end to a file, in the encoding of the source. The file is whole at
/// every moment: the old one or the new one. The observer looks in now and then, and cannot end it.
/// @returns false after any error of the file, when "Error creando fichero" has been sent to the observer.
bool creafilelst(std::string_view listing, TextEncoding encoding, const std::filesystem::path& path,
                 AssemblyObserver& observer);

}  // namespace tavinor
