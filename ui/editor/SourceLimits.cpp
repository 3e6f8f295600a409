#include "ui/editor/SourceLimits.h"

#include <algorithm>

namespace tavinor {

SourceExtent extentOf(QStringView text) {
    SourceExtent extent{.size = text.size(), .lines = 0, .longestLine = 0};
    qsizetype start = 0;
    while (start < text.size()) {
        const qsizetype found = text.indexOf(u'\n', start);
        const qsizetype end = found < 0 ? text.size() : found;
        extent.longestLine = std::max(extent.longestLine, end - start);
        ++extent.lines;
        start = end + 1;
    }
    return extent;
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
