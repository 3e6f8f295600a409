#include "ui/main/Run.h"

#include <QCoreApplication>
#include <QEvent>
#include <QScopeGuard>
#include <QScopedValueRollback>
#include <QThread>

namespace tavinor {

void Run::start() {
    if (loopOnStack_) return;
    const QScopedValueRollback<bool> onStack(loopOnStack_, true);
    const QScopedValueRollback<int> level(level_, QThread::currentThread()->loopLevel());
    qApp->installEventFilter(this);
    const auto atEnd = qScopeGuard([this] {
        qApp->removeEventFilter(this);
        showSafely([this] { paintFrame(); });
    });
    turn();
}

/// Handlers run nested inside the looks at the event queue, so the run state is read anew after each.
void Run::turn() {
    std::int64_t left = 0;
    do {
        if (left == 0) left = pace_->slice();
        const RunWindow::Executed executed = window_.executeSome(left);
        left -= executed.instructions;
        if (executed.atBreakpoint && window_.running()) {
            window_.stop();
            return;
        }
        if (left == 0) look(pace_->due());
    } while (window_.running());
}

/// A look ends with the events that its handlers have posted: they may change the run state as well.
void Run::look(RunPace::Due due) {
    if (due == RunPace::Due::nothing) return;
    QCoreApplication::processEvents();
    endWhereMemoryIsOut();
    if (due == RunPace::Due::frame) paintFrame();
    QCoreApplication::sendPostedEvents();
}

/// The requests to paint that the views post here are held back like all others, and let go at once.
void Run::paintFrame() {
    window_.showAll();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::UpdateRequest);
    heldPaints_.letGo();
}

/// A dialog that was opened during the run has an event loop of its own, deeper than the run's.
bool Run::eventFilter(QObject* watched, QEvent* event) {
    const bool runTurns = QThread::currentThread()->loopLevel() == level_;
    if (runTurns && heldPaints_.hold(watched, event)) return true;
    showSafely([this, runTurns] {
        if (runTurns) {
            window_.bringUpToDate();
            return;
        }
        window_.showAll();
        heldPaints_.letGo();
    });
    return QObject::eventFilter(watched, event);
}

}  // namespace tavinor
