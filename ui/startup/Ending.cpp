#include "ui/startup/Ending.h"

#include <QCoreApplication>
#include <cstdlib>

namespace tavinor {

void endWithoutWaiting(const QCoreApplication& application, const int& exitCode) {
    QObject::connect(&application, &QObject::destroyed, [&exitCode] { std::_Exit(exitCode); });
}

}  // namespace tavinor
