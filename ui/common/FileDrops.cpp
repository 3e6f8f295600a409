#include "ui/common/FileDrops.h"

#include <QApplication>
#include <QDir>
#include <QDropEvent>
#include <QFileInfo>
#include <QMimeData>
#include <QUrl>
#include <QWidget>
#include <utility>

namespace tavinor {

namespace {

QString kindOf(const QString& path) {
    return QFileInfo(path).suffix().toLower();
}

/// The one file that is dragged, or nothing.
QString draggedFile(const QMimeData& dragged) {
    const QList<QUrl> urls = dragged.urls();
    return urls.size() == 1 && urls.first().isLocalFile() ? urls.first().toLocalFile() : QString();
}

}  // namespace

bool carriesFiles(const QMimeData& dragged) {
    return dragged.hasUrls();
}

FileDrops::FileDrops(QWidget* window, const QStringList& kinds) : QObject(window), kinds_(kinds) {
    window->setAcceptDrops(true);
    window->installEventFilter(this);
}

bool FileDrops::eventFilter(QObject* watched, QEvent* event) {
    switch (event->type()) {
        case QEvent::DragEnter:
        case QEvent::DragMove:
        case QEvent::Drop: break;
        default: return QObject::eventFilter(watched, event);
    }
    auto& drop = static_cast<QDropEvent&>(*event);
    const bool allowed = allow(drop);
    if (allowed && event->type() == QEvent::Drop) take(draggedFile(*drop.mimeData()));
    return true;
}

/// Nothing but a copy or a link: a file manager deletes what it is told has been moved. A window behind a
/// modal one takes nothing; Qt lets drags come through to it.
bool FileDrops::allow(QDropEvent& event) const {
    const QString path = draggedFile(*event.mimeData());
    const Qt::DropAction action =
        event.possibleActions().testFlag(Qt::CopyAction) ? Qt::CopyAction : Qt::LinkAction;
    const bool allowed = kinds_.contains(kindOf(path)) && !QFileInfo(path).isDir() &&
                         event.possibleActions().testFlag(action) &&
                         QApplication::activeModalWidget() == nullptr;
    event.setDropAction(allowed ? action : Qt::IgnoreAction);
    event.setAccepted(allowed);
    return allowed;
}

void FileDrops::take(const QString& path) {
    const auto tell = [this, path] {
        if (QApplication::activeModalWidget() != nullptr) return;
        emit dropped(QDir::toNativeSeparators(path), kindOf(path));
    };
    QMetaObject::invokeMethod(this, tell, Qt::QueuedConnection);
}

}  // namespace tavinor
