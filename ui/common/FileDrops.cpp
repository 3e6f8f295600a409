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

}  // namespace

bool carriesFiles(const QMimeData& dragged) {
    return dragged.hasUrls();
}

QString draggedFile(const QMimeData& dragged) {
    const QList<QUrl> urls = dragged.urls();
    return urls.size() == 1 && urls.first().isLocalFile() ? urls.first().toLocalFile() : QString();
}

bool answerDrag(QDropEvent& event, bool wanted) {
    const Qt::DropAction action =
        event.possibleActions().testFlag(Qt::CopyAction) ? Qt::CopyAction : Qt::LinkAction;
    const bool allowed = wanted && event.possibleActions().testFlag(action);
    event.setDropAction(allowed ? action : Qt::IgnoreAction);
    event.setAccepted(allowed);
    return allowed;
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

/// A window behind a modal one takes nothing; Qt lets drags come through to it.
bool FileDrops::allow(QDropEvent& event) const {
    const QString path = draggedFile(*event.mimeData());
    const bool wanted = kinds_.contains(kindOf(path)) && !QFileInfo(path).isDir();
    return answerDrag(event, wanted && QApplication::activeModalWidget() == nullptr);
}

void FileDrops::take(const QString& path) {
    const auto tell = [this, path] {
        if (QApplication::activeModalWidget() != nullptr) return;
        emit dropped(QDir::toNativeSeparators(path), kindOf(path));
    };
    QMetaObject::invokeMethod(this, tell, Qt::QueuedConnection);
}

}  // namespace tavinor
