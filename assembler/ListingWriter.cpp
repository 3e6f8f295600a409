#include "assembler/ListingWriter.h"

#include <algorithm>
#include <cstddef>
#include <string>

#include "assembler/Messages.h"
#include "files/ReplacedFile.h"
#include "machine/HexText.h"
#include "text/Utf.h"

namespace tavinor {

namespace {

constexpr std::string_view sourceIndent = "                ";
constexpr std::size_t digitColumns = 6;
constexpr std::string_view symbolRule = "----------------------------------------";

/// UTF-8 needs no byte-order mark; the one of a source is not repeated.
TextEncoding listingEncoding(TextEncoding source) {
    return source == TextEncoding::markedUtf8 ? TextEncoding::utf8 : source;
}

/// A listing may have a hundred megabytes: it is encoded, and brought to the disk, by pieces.
bool writeListing(ReplacedFile& file, std::string_view listing, TextEncoding encoding,
                  AssemblyObserver& observer) {
    constexpr std::size_t pieceSize = std::size_t{1024} * 1024;
    const std::size_t mark = encode({}, encoding).size();
    std::string piece = encode({}, encoding);
    while (!listing.empty()) {
        const std::size_t size = beginningOfCharacter(listing, std::min(pieceSize, listing.size()));
        piece += encode(std::string(listing.substr(0, size)), encoding).substr(mark);
        if (!file.write(piece) || !file.flush()) return false;
        observer.goesOn(1);  // there is nothing to cancel any more
        piece.clear();
        listing.remove_prefix(size);
    }
    return file.write(piece + encode(std::string(lineEnd), encoding).substr(mark));
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

void listSymbolHeader(PaneText& listing) {
    listing.line(symbolRule);
    listing.line("TABLA DE SIMBOLOS");
    listing.line(symbolRule);
}

void listSymbol(PaneText& listing, const SymbolEntry& symbol) {
    listing.line(symbol.name, "\t", hexa(symbol.value, 4));
}

bool creafilelst(std::string_view listing, TextEncoding encoding, const std::filesystem::path& path,
                 AssemblyObserver& observer) {
    ReplacedFile file(path);
    const bool written = writeListing(file, listing, listingEncoding(encoding), observer) && file.commit();
    if (!written) observer.message(message::cannotCreate);
    return written;
}

}  // namespace tavinor
