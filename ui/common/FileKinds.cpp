#include "ui/common/FileKinds.h"

#include <QFileInfo>

namespace tavinor {

QIcon FileKinds::icon(const QFileInfo& info) const {
    return info.isFile() ? icon(File) : QFileIconProvider::icon(info);
}

QString FileKinds::type(const QFileInfo& info) const {
    if (!info.isFile()) return QFileIconProvider::type(info);
    return (QStringLiteral("Fichero ") + info.suffix().toUpper()).trimmed();
}

}  // namespace tavinor
