#pragma once

#include <QString>

namespace tavinor {

/// Hands a download address over: to the updater as its one argument, without a shell, or to the user's
/// browser where there is no updater that starts. False when nothing took it.
bool download(const QString& updaterPath, const QString& address);

}  // namespace tavinor
