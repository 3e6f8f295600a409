#pragma once

#include <QString>
#include <cstdint>
#include <optional>
#include <string>

#include "files/WorkObserver.h"
#include "text/TextEncoding.h"

/// Source files on disk: how their bytes become Qt's text and go back. The encodings themselves are
/// the assembler's.
namespace tavinor {

struct SourceFile {
    enum class State : std::uint8_t {
        read,
        empty,     ///< The file has no byte at all, so not even a first line.
        tooLarge,  ///< For the editor; the text says why.
        failed,
    };

    State state = State::failed;
    TextEncoding encoding = TextEncoding::utf8;
    QString text;  ///< Its lines end in LF; see `sourceCharacters`. A byte-order mark is gone.
};

/// UTF-16 or UTF-8 (plain ASCII is), or Windows-1252 where the bytes are neither. Malformed UTF-16 fails:
/// there is no text that would be written back as these bytes. @throws std::bad_alloc, also where there is
/// too little memory for the text in its box
SourceFile decodeSource(std::string bytes);
/// @throws std::bad_alloc as `decodeSource`
SourceFile readSource(const QString& path);

/// Whether every character of `text` exists in `encoding`.
/// @throws Cancelled by `observer`
bool canEncodeSource(const QString& text, TextEncoding encoding, WorkObserver& observer);

/// Replaces the file by `text`, with every LF written as CR LF, and returns its bytes. The file is whole at
/// every moment: the old one or the new one. It keeps its permissions, and a symbolic link keeps pointing to
/// it. Nothing when it could not be saved; then the old file is as it was, as when `observer` ends it.
/// @throws Cancelled
std::optional<std::string> writeSource(const QString& path, const QString& text, TextEncoding encoding,
                                       WorkObserver& observer);

}  // namespace tavinor
