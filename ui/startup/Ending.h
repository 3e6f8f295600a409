#pragma once

class QCoreApplication;

namespace tavinor {

/// Ends the process with `exitCode` as soon as `application` is gone, with all its windows. A look-up of a
/// host's name cannot be aborted, and Qt would wait for one that is not wanted any more: without a
/// window, but for as long as the name server is silent. Nothing of the program is left to do by then.
///
/// To be called before the first request to the network: Qt does its waiting at the same moment, and
/// who comes first is served first. `exitCode` is read at the end, and must live longer than `application`.
void endWithoutWaiting(const QCoreApplication& application, const int& exitCode);

}  // namespace tavinor
