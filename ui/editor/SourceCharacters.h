#pragma once

#include <QString>

/// Characters that Qt's text box or the assembler would take for others.
namespace tavinor {

/// `text` as the text box holds a source: LF at every line end, whatever it was (CR LF, CR, or one of the
/// three of Unicode), and plain blanks for no-break spaces. Two characters that Qt keeps for itself inside a
/// document, and no text may hold, become U+FFFD.
QString sourceCharacters(QString text);

/// Whether `c`, found inside a line of the text box, is one that `sourceCharacters` replaces.
bool isForeignToSource(QChar c);

}  // namespace tavinor
