#pragma once

#include <QString>
#include <QUrl>

#include "ui/startup/Update.h"

/// What was decided when the program was built.
namespace tavinor {

/// The version of this program.
Version ownVersion();

/// Where updates are asked for and what downloads them.
struct UpdateSource {
    QUrl address;         ///< The update file; with an invalid one nothing is asked.
    QString updaterPath;  ///< The program that is given the download address.
};

/// The address and the updater's name of the build, the updater in the program's own folder.
UpdateSource builtInUpdateSource();

}  // namespace tavinor
