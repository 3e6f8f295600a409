#include "ui/startup/Ending.h"

#include <QCoreApplication>
#include <cstdlib>

#if defined(__SANITIZE_ADDRESS__)
#include <sanitizer/lsan_interface.h>
#endif

namespace tavinor {

namespace {

/// In a build with the sanitizers: ends the process with a report if something has leaked. They would look
/// when the process exits in the ordinary way, which this one does not.
void checkForLeaks() {
#if defined(__SANITIZE_ADDRESS__)
    __lsan_do_leak_check();
#endif
}

}  // namespace

void endWithoutWaiting(const QCoreApplication& application, const int& exitCode) {
    QObject::connect(&application, &QObject::destroyed, [&exitCode] {
        checkForLeaks();
        std::_Exit(exitCode);
    });
}

}  // namespace tavinor
