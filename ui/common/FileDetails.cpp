#include "ui/common/FileDetails.h"

#include <QDateTime>
#include <QFileSystemModel>
#include <QLocale>

namespace tavinor {

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

}  // namespace tavinor
