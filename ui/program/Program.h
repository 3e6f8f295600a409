#pragma once

#include <QObject>

#include "ui/main/Principal.h"
#include "ui/startup/Cabecera.h"

namespace tavinor {

/// The windows of the program and the way from one to the next: the splash, then the main window with those
/// that it opens, then the farewell screen.
class Program : public QObject {
    Q_OBJECT

  public:
    Program() : Program(ownVersion(), builtInUpdateSource()) {}
    /// With another version and update source than those of the build.
    Program(const Version& own, const UpdateSource& updates);

    void start() { cabecera_.showSplash(); }

    [[nodiscard]] Principal& principal() { return principal_; }
    [[nodiscard]] Cabecera& cabecera() { return cabecera_; }

  signals:
    /// The farewell screen has gone, or an update is on its way: the process is to end.
    void ended();

  private:
    // Both are there and connected before the splash asks for updates, however soon the answer comes.
    Cabecera cabecera_;
    Principal principal_;
};

}  // namespace tavinor
