#pragma once

#include <QMimeData>
#include <QPoint>
#include <QStringList>
#include <Qt>

class QWidget;

namespace tavinor {

/// Files as a file manager drags them: with their addresses as a text, too.
struct DraggedFiles : QMimeData {
    explicit DraggedFiles(const QStringList& paths);
};

struct DraggedText : QMimeData {
    explicit DraggedText(const QString& text) { setText(text); }
};

/// What a drag over a window came to.
enum class DragEnd { refused, copied, moved, linked };

/// Drags something over a place of a window and lets go of it there, if that is shown as allowed. What the
/// program does about it has been done when this returns.
DragEnd dropOn(QWidget* window, const QPoint& place, const QMimeData& dragged,
               Qt::DropActions offered = Qt::CopyAction | Qt::MoveAction | Qt::LinkAction);
/// The same in the middle of the window.
DragEnd dropOn(QWidget* window, const QMimeData& dragged,
               Qt::DropActions offered = Qt::CopyAction | Qt::MoveAction | Qt::LinkAction);

}  // namespace tavinor
