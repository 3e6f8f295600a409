#include "assembler/window/ErrorHighlighter.h"

#include <QGuiApplication>
#include <QPalette>

namespace tavinor {

void ErrorHighlighter::highlightBlock(const QString& text) {
    const bool error =
        text.startsWith(QStringLiteral("Línea: ")) || text.startsWith(QStringLiteral("==> ERROR: "));
    if (!error) return;
    const bool dark = QGuiApplication::palette().color(QPalette::Base).lightness() < 128;
    QTextCharFormat format;
    format.setFontWeight(QFont::Bold);
    format.setForeground(dark ? QColor(0xFF, 0x8A, 0x80) : QColor(0xB7, 0x1C, 0x1C));
    setFormat(0, static_cast<int>(text.size()), format);
}

}  // namespace tavinor
