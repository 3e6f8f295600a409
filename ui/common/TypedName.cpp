#include "ui/common/TypedName.h"

#include <QDateTime>
#include <QFileInfo>
#include <optional>

namespace tavinor {

namespace {

/// Windows has no such names.
bool canBeAName(const QString& name) {
#ifdef Q_OS_WIN
    return !name.contains('"');
#else
    Q_UNUSED(name)
    return true;
#endif
}

bool namesHome(const QString& typed) {
    return typed == QStringLiteral("~") || typed.startsWith(QStringLiteral("~/"));
}

/// The newest one of all ways to write the suffix; in small letters where none is there.
QString completed(const QString& path, const QString& suffix) {
    QFileInfo newest(path + '.' + suffix.toLower());
    // Each bit of `capitals` is a letter. The folder is not listed: it may be long, or not readable.
    for (unsigned capitals = 1; capitals < 1U << suffix.size(); ++capitals) {
        QString spelling = suffix.toLower();
        for (int i = 0; i < suffix.size(); ++i) {
            if ((capitals >> i & 1U) != 0) spelling[i] = spelling[i].toUpper();
        }
        const QFileInfo other(path + '.' + spelling);
        if (!other.exists()) continue;
        if (!newest.exists() || newest.lastModified() < other.lastModified()) newest = other;
    }
    return newest.filePath();
}

}  // namespace

TypedName understand(const QString& typed, const QDir& folder, const QString& suffix) {
    if (typed.isEmpty()) return {};
    const QString text = QDir::fromNativeSeparators(typed);
    const QString path = namesHome(text) ? QDir::homePath() + text.mid(1) : folder.absoluteFilePath(text);
    const QString name = path.section('/', -1);
    if (name.contains('*') || name.contains('?')) {
        const QString shown = path.chopped(name.size());
        if (!QFileInfo(shown).isDir()) return {};
        return {TypedName::Kind::pattern, shown, name};
    }
    if (QFileInfo(path).isDir()) return {TypedName::Kind::folder, QDir::cleanPath(path)};
    if (name.isEmpty()) return {};  // a folder that is not there
    if (!canBeAName(name)) return {TypedName::Kind::refused};
    const bool complete = suffix.isEmpty() || name.contains('.') || QFileInfo::exists(path);
    return {TypedName::Kind::file, complete ? path : completed(path, suffix)};
}

}  // namespace tavinor
