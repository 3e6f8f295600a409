#pragma once

#include <QList>
#include <QString>
#include <QWidget>

namespace tavinor {

/// A text that a window shows, or that an assistive tool says in it, and where.
struct ShownText {
    QString where;
    QString text;
};

/// All the language in a window: captions, titles, headers, choices, menus with their keys, tool tips, names,
/// descriptions and actions for assistive tools. What is data stays out: what boxes and panes hold, file
/// names, rows of a listing.
QList<ShownText> shownTexts(const QWidget& window);

}  // namespace tavinor
