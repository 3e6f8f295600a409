#include "assembler/ListingWriter.h"

#include <string>
#include <utility>

#include "assembler/Messages.h"
#include "files/ReplacedFile.h"
#include "machine/HexText.h"

namespace tavinor {

namespace {

constexpr std::string_view sourceIndent = "                ";
constexpr std::size_t digitColumns = 6;
constexpr std::string_view symbolRule = "----------------------------------------";

/// UTF-8 needs no byte-order mark; the one of a source is not repeated.
TextEncoding listingEncoding(TextEncoding source) {
    return source == TextEncoding::markedUtf8 ? TextEncoding::utf8 : source;
}

}  // namespace

void listRawLine(PaneText& listing, std::string_view rawLine) {
    listing.line(sourceIndent, rawLine);
}

void listStatement(PaneText& listing, std::int32_t address, std::string_view digits,
                   std::string_view rawLine) {
    const std::string place = hexa(address, 4);
    if (digits.size() > digitColumns) {
        listing.line(place, " ", digits);
        listRawLine(listing, rawLine);
        return;
    }
    const std::size_t used = place.size() + 1 + digits.size();
    listing.line(place, " ", digits, sourceIndent.substr(used), rawLine);
}

void listSymbols(PaneText& listing, const std::vector<SymbolEntry>& symbols) {
    listing.line(symbolRule);
    listing.line("TABLA DE SIMBOLOS");
    listing.line(symbolRule);
    for (const SymbolEntry& symbol : symbols) listing.line(symbol.name, "\t", hexa(symbol.value, 4));
}

bool creafilelst(std::string_view listing, TextEncoding encoding, const std::filesystem::path& path,
                 AssemblyObserver& observer) {
    std::string contents(listing);
    contents += lineEnd;
    contents = encode(std::move(contents), listingEncoding(encoding));
    ReplacedFile file(path);
    const bool written = file.write(contents) && file.commit();
    if (!written) observer.message(message::cannotCreate);
    return written;
}

}  // namespace tavinor
