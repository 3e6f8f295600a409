#include "ui/common/Fonts.h"

#include <QApplication>
#include <QFontDatabase>
#include <QStringList>

namespace tavinor {

QFont fixedFont() {
    // Fonts with a slashed or dotted zero, by system: Linux, Windows, macOS.
    static const QStringList preferred{"DejaVu Sans Mono", "Cascadia Mono", "Consolas", "Menlo"};
    const QStringList installed = QFontDatabase::families();
    QFont font = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    for (const QString& family : preferred) {
        if (installed.contains(family)) {
            font.setFamily(family);
            break;
        }
    }
    font.setFixedPitch(true);
    font.setStyleHint(QFont::Monospace);
    font.setPointSizeF(QApplication::font().pointSizeF());
    return font;
}

QFont arialFont(double scale, bool bold) {
    QFont font(QStringLiteral("Arial"));
    font.setStyleHint(QFont::SansSerif);
    font.setPointSizeF(QApplication::font().pointSizeF() * scale);
    font.setBold(bold);
    return font;
}

}  // namespace tavinor
