#include "ui/editor/SourceCharacters.h"

#include <algorithm>
#include <utility>

namespace tavinor {

namespace {

constexpr char16_t nextLine = 0x0085;
constexpr char16_t beginningOfFrame = 0xFDD0;  // Qt's, like the next one
constexpr char16_t endOfFrame = 0xFDD1;

QChar sourceCharacter(QChar c) {
    switch (c.unicode()) {
        case '\r':
        case nextLine:
        case QChar::LineSeparator:
        case QChar::ParagraphSeparator: return QChar::LineFeed;
        case QChar::Nbsp: return QChar::Space;
        case beginningOfFrame:
        case endOfFrame: return QChar::ReplacementCharacter;
        default: return c;
    }
}

}  // namespace

/// One pass: replacing in place moves the rest of the text again and again, which a source of a million lines
/// feels. A text that needs nothing of it is not copied.
QString sourceCharacters(QString text) {
    const auto stays = [](QChar c) { return c == sourceCharacter(c); };
    if (std::all_of(text.cbegin(), text.cend(), stays)) return text;
    QChar* end = text.begin();
    QChar previous;
    for (const QChar c : std::as_const(text)) {
        if (c != '\n' || previous != '\r') *end++ = sourceCharacter(c);
        previous = c;
    }
    text.truncate(end - text.constBegin());
    return text;
}

bool isForeignToSource(QChar c) {
    return c != QChar::ParagraphSeparator && sourceCharacter(c) != c;
}

}  // namespace tavinor
