#include "ui/editor/Search.h"

#include "text/Characters.h"

namespace tavinor {

QString upperCased(QString text) {
    for (QChar& c : text) c = QChar(static_cast<char16_t>(upperCase(c.unicode())));
    return text;
}

std::optional<qsizetype> findText(const QString& text, const QString& pattern, qsizetype start,
                                  bool matchCase) {
    // Qt finds an empty pattern everywhere, and counts a negative start from the end.
    if (pattern.isEmpty() || start < 1 || start > text.size()) return std::nullopt;
    const qsizetype found = matchCase ? text.indexOf(pattern, start - 1)
                                      : upperCased(text).indexOf(upperCased(pattern), start - 1);
    if (found < 0) return std::nullopt;
    return found + 1;
}

}  // namespace tavinor
