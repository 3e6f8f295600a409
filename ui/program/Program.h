#pragma once

#include <QObject>
#include <memory>

#include "ui/main/Principal.h"
#include "ui/startup/Cabecera.h"

class QSessionManager;

namespace tavinor {

/// The windows of the program and the way from one to the next: the splash, then the main window with those
/// that it opens, then the farewell screen. An end that the system asks for takes a shorter way: see
/// behaviour.md, Program: the end.
class Program : public QObject {
    Q_OBJECT

  public:
    Program() : Program(ownVersion(), builtInUpdateSource()) {}
    /// With another version and update source than those of the build, and runs at another pace.
    Program(const Version& own, const UpdateSource& updates,
            std::unique_ptr<RunPace> pace = std::make_unique<ClockPace>());

    void start() { cabecera_.showSplash(); }

    /// The system asks for the end. A run stops, the editor asks about unsaved text, and the program ends
    /// without a farewell, unless the user cancels. Where the question cannot be asked, or is still open when
    /// the end is asked for again, the text goes to its rescue copy and the program ends.
    void requestEnd();
    /// Leaves unsaved text beside its source.
    void rescue() const { principal_.rescue(); }

    [[nodiscard]] Principal& principal() { return principal_; }
    [[nodiscard]] Cabecera& cabecera() { return cabecera_; }

  signals:
    /// The farewell screen has gone, an update is on its way, or the system wants it: the process is to end.
    void ended();

  protected:
    /// Takes Qt's own way to the end, which is to close all windows.
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    void commitData(QSessionManager& session);
    [[nodiscard]] bool canAsk() const;
    bool agreesToEnd();
    void endWithoutQuestion();

    // Both are there and connected before the splash asks for updates, however soon the answer comes.
    Cabecera cabecera_;
    Principal principal_;
    bool asking_ = false;
    bool sessionAsked_ = false;  // the session's manager, for what is unsaved
};

}  // namespace tavinor
