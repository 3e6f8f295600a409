#include "ui/common/Places.h"

#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>

namespace tavinor {

QList<QUrl> places(const QString& programFolder) {
    const auto standard = [](QStandardPaths::StandardLocation location) {
        return QStandardPaths::writableLocation(location);
    };
    const QStringList folders{QDir::homePath(), standard(QStandardPaths::DocumentsLocation),
                              standard(QStandardPaths::DesktopLocation),
                              QDir::cleanPath(programFolder + QStringLiteral("/" TAVINOR_EXAMPLES))};
    QList<QUrl> found{QUrl(QStringLiteral("file:"))};
    for (const QString& folder : folders) {
        const QUrl url = QUrl::fromLocalFile(folder);
        // A desktop without such folders names the user's own for them.
        if (QFileInfo(folder).isDir() && !found.contains(url)) found.append(url);
    }
    return found;
}

}  // namespace tavinor
