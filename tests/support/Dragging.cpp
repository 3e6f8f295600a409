#include "tests/support/Dragging.h"

#include <QApplication>
#include <QDragEnterEvent>
#include <QDragLeaveEvent>
#include <QDropEvent>
#include <QList>
#include <QUrl>
#include <QWidget>

namespace tavinor {

DraggedFiles::DraggedFiles(const QStringList& paths) {
    QList<QUrl> urls;
    for (const QString& path : paths) urls.append(QUrl::fromLocalFile(path));
    setUrls(urls);
}

/// As Qt does: the innermost control is asked first, then what is around it, and what takes the drag gets the
/// rest of it.
DragEnd dropOn(QWidget* window, const QPoint& place, const QMimeData& dragged, Qt::DropActions offered) {
    QWidget* inner = window->childAt(place);
    QWidget* target = inner == nullptr ? window : inner;
    const QPoint there = target->mapFrom(window, place);
    QDragEnterEvent enter(there, offered, &dragged, Qt::LeftButton, Qt::NoModifier);
    enter.setDropAction(offered.testFlag(Qt::CopyAction) ? Qt::CopyAction : Qt::MoveAction);
    enter.ignore();
    QApplication::sendEvent(target, &enter);
    if (!enter.isAccepted() || enter.dropAction() == Qt::IgnoreAction) {
        QDragLeaveEvent leave;
        QApplication::sendEvent(target, &leave);
        return DragEnd::refused;
    }
    QDropEvent drop(there, offered, &dragged, Qt::LeftButton, Qt::NoModifier);
    drop.setDropAction(enter.dropAction());
    drop.ignore();
    QApplication::sendEvent(target, &drop);
    QApplication::sendPostedEvents();
    if (!drop.isAccepted()) return DragEnd::refused;
    switch (drop.dropAction()) {
        case Qt::CopyAction: return DragEnd::copied;
        case Qt::LinkAction: return DragEnd::linked;
        case Qt::MoveAction: return DragEnd::moved;
        default: return DragEnd::refused;
    }
}

DragEnd dropOn(QWidget* window, const QMimeData& dragged, Qt::DropActions offered) {
    return dropOn(window, window->rect().center(), dragged, offered);
}

}  // namespace tavinor
