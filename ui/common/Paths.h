#pragma once

#include <QFile>
#include <QString>
#include <filesystem>

namespace tavinor {

/// A file name of Qt's as the core takes it. Cannot fail, whatever characters a name has.
inline std::filesystem::path toPath(const QString& name) {
#ifdef Q_OS_WIN
    return {name.toStdWString()};
#else
    return {QFile::encodeName(name).toStdString()};
#endif
}

inline QString fromPath(const std::filesystem::path& path) {
#ifdef Q_OS_WIN
    return QString::fromStdWString(path.native());
#else
    return QFile::decodeName(QByteArray::fromStdString(path.native()));
#endif
}

}  // namespace tavinor
