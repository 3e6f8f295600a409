#include "ui/startup/Updater.h"

#include <QDesktopServices>
#include <QFileInfo>
#include <QProcess>
#include <QUrl>

namespace tavinor {

bool download(const QString& updaterPath, const QString& address) {
    const QFileInfo updater(updaterPath);
    const bool there = updater.isFile() && updater.isExecutable();
    if (there && QProcess::startDetached(updaterPath, {address}, updater.absolutePath())) return true;
    return QDesktopServices::openUrl(QUrl(address, QUrl::StrictMode));
}

}  // namespace tavinor
