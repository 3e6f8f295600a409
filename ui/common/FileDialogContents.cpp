#include "ui/common/FileDialogContents.h"

#include <QDateTime>
#include <QDir>
#include <QFileInfo>
#include <QFileSystemModel>
#include <QLocale>
#include <QStandardPaths>

namespace tavinor {

QIcon FileKinds::icon(const QFileInfo& info) const {
    return info.isFile() ? icon(File) : QFileIconProvider::icon(info);
}

QString FileKinds::type(const QFileInfo& info) const {
    if (!info.isFile()) return QFileIconProvider::type(info);
    return (QStringLiteral("Fichero ") + info.suffix().toUpper()).trimmed();
}

namespace {

// Qt's columns, which it gives no names.
constexpr int sizeColumn = 1;
constexpr int dateColumn = 3;

}  // namespace

QVariant FileDetails::data(const QModelIndex& index, int role) const {
    QVariant shown = QIdentityProxyModel::data(index, role);
    const auto* files = qobject_cast<const QFileSystemModel*>(sourceModel());
    if (role != Qt::DisplayRole || files == nullptr || shown.toString().isEmpty()) return shown;
    const QModelIndex file = mapToSource(index);
    switch (index.column()) {
        case sizeColumn: return QLocale().formattedDataSize(files->size(file));
        case dateColumn: return QLocale().toString(files->lastModified(file), QLocale::ShortFormat);
        default: return shown;
    }
}

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
