#include "ui/startup/BuildOptions.h"

#include <QCoreApplication>
#include <QDir>

namespace tavinor {

Version ownVersion() {
    return {TAVINOR_VERSION_MAJOR, TAVINOR_VERSION_MINOR, TAVINOR_VERSION_REVISION};
}

UpdateSource builtInUpdateSource() {
    return {QUrl(QStringLiteral(TAVINOR_UPDATE_ADDRESS), QUrl::StrictMode),
            QDir(QCoreApplication::applicationDirPath()).filePath(QStringLiteral(TAVINOR_UPDATER_NAME))};
}

}  // namespace tavinor
