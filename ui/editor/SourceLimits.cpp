#include "ui/editor/SourceLimits.h"

#include <QTextBlock>
#include <QTextCursor>
#include <QTextDocument>
#include <algorithm>

namespace tavinor {

SourceExtent extentOf(QStringView text) {
    SourceExtent extent{.size = text.size(), .lines = 0, .longestLine = 0};
    const QChar* start = text.begin();
    for (const QChar* c = text.begin(); c != text.end(); ++c) {
        if (*c != u'\n') continue;
        extent.longestLine = std::max<qsizetype>(extent.longestLine, c - start);
        ++extent.lines;
        start = c + 1;
    }
    if (start == text.end()) return extent;
    ++extent.lines;
    extent.longestLine = std::max<qsizetype>(extent.longestLine, text.end() - start);
    return extent;
}

SourceExtent extentWith(QStringView text, const QTextCursor& cursor) {
    const QTextDocument& document = *cursor.document();
    const QTextBlock first = document.findBlock(cursor.selectionStart());
    const QTextBlock last = document.findBlock(cursor.selectionEnd());
    const qsizetype before = cursor.selectionStart() - first.position();
    const qsizetype behind = last.position() + last.length() - 1 - cursor.selectionEnd();
    const qsizetype firstEnd = text.indexOf(u'\n');
    const qsizetype ofFirst = firstEnd < 0 ? text.size() : firstEnd;
    const qsizetype ofLast = text.size() - 1 - text.lastIndexOf(u'\n');
    const SourceExtent all = extentOf(text);
    const qsizetype kept = document.blockCount() - (last.blockNumber() - first.blockNumber());
    return {.size = document.characterCount() - 1 - (cursor.selectionEnd() - cursor.selectionStart()) +
                    text.size(),
            .lines = kept + all.lines - (ofLast == 0 ? 0 : 1),
            .longestLine = firstEnd < 0 ? before + text.size() + behind
                                        : std::max({all.longestLine, before + ofFirst, ofLast + behind})};
}

std::uint64_t memoryOf(const SourceExtent& extent) {
    constexpr std::uint64_t ofALine = 200;
    constexpr std::uint64_t ofACharacter = 9;
    return static_cast<std::uint64_t>(extent.lines) * ofALine +
           static_cast<std::uint64_t>(extent.size) * ofACharacter;
}

std::uint64_t memoryOfReading(qsizetype size) {
    constexpr std::uint64_t ofAByte = 6;  // its bytes, UTF-8 of up to three, and Qt's text
    return static_cast<std::uint64_t>(size) * ofAByte;
}

std::uint64_t memoryOfSaving(qsizetype size) {
    constexpr std::uint64_t ofACharacter = 12;  // Qt's text, its bytes, and what a file is rewritten from
    return static_cast<std::uint64_t>(size) * ofACharacter;
}

QString whyTooLarge(const SourceExtent& extent) {
    if (extent.size > mostOfASource) {
        return QStringLiteral("Texto demasiado grande. El editor admite hasta 64 MiB.");
    }
    if (extent.lines > mostLines) {
        return QStringLiteral("Demasiadas líneas. El editor admite hasta dos millones.");
    }
    if (extent.longestLine > mostOfALine) {
        return QStringLiteral("Línea demasiado larga. El editor admite hasta 128 KiB en cada una.");
    }
    return {};
}

}  // namespace tavinor
