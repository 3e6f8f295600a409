// The trace as a user has it: runs of the main window that are recorded, with the window of the trace closed
// and with it open; then what opening, jumping, clearing and saving take with many rows.

#include <QAbstractButton>
#include <QAction>
#include <QApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QTimer>
#include <cstdio>
#include <cstdlib>

#include "benchmarks/IdleLoop.h"
#include "benchmarks/WindowRuns.h"
#include "trace/TraceFile.h"
#include "ui/common/Application.h"
#include "ui/common/Paths.h"
#include "ui/common/WorkProgress.h"
#include "ui/main/Principal.h"
#include "ui/trace/Listapasos.h"
#include "ui/trace/TraceView.h"

using namespace tavinor;

namespace {

constexpr int runMilliseconds = 3000;
/// At least; they have to fit into the memory that stands in for the disk.
constexpr std::uint64_t rowsToSave = 10'000'000;

/// LXI B,FFFF; then DCX B, MOV A,B, ORA C, JNZ; JMP 0000.
const char* const delayLoop =
    ":0C00000001FFFF0B78B1C20300C3000039\r\n"
    ":00000001FF\r\n";

Listapasos* traceWindow() {
    for (QWidget* window : QApplication::topLevelWidgets()) {
        if (auto* trace = qobject_cast<Listapasos*>(window)) return trace;
    }
    std::abort();
}

void measureRun(const char* name, Principal& principal, double idleRate) {
    auto* run = principal.findChild<QAbstractButton*>("Ejecutar");
    const Trace& rows = principal.trace();
    const std::uint64_t before = rows.size();
    QTimer::singleShot(runMilliseconds, run, &QAbstractButton::click);
    QElapsedTimer timer;
    timer.start();
    run->click();  // returns when the run has been stopped
    const double rate =
        static_cast<double>(rows.size() - before) * 1000.0 / static_cast<double>(timer.elapsed());
    std::printf("%-28s %6.1f million instructions a second, %.1f times the empty loop\n", name, rate / 1e6,
                rate / idleRate);
}

/// Milliseconds until `action` has been carried out and painted.
template <typename Action>
void measureAction(const char* name, TraceView* view, Action action) {
    QElapsedTimer timer;
    timer.start();
    action();
    if (view->isVisible()) view->viewport()->repaint();
    std::printf("%-28s %6.1f ms\n", name, static_cast<double>(timer.nsecsElapsed()) / 1e6);
}

/// Steps back as the key does while it is held down, each with the paints that it asks for.
void measureStepsBack(Principal& principal) {
    auto* back = principal.findChild<QAction*>("pasoAtras");
    constexpr int steps = 200;
    QElapsedTimer timer;
    timer.start();
    for (int i = 0; i < steps; ++i) {
        back->trigger();
        QCoreApplication::processEvents();
    }
    std::printf("%-28s %6.0f a second, all views and the trace painted\n", "steps back",
                steps * 1000.0 / static_cast<double>(timer.elapsed()));
}

void measureSaving(const Trace& trace, QWidget& window) {
    const QString path = QStringLiteral("/dev/shm/tavinor-trace-benchmark.txt");
    QElapsedTimer timer;
    timer.start();
    TraceFile file(trace, toPath(path));
    WorkProgress progress(&window, {QStringLiteral("Guardando el listado..."), {}});
    bool saved = file.open();
    while (saved && !file.finished()) saved = progress.goesOn(file.fractionWritten()) && file.writeMore();
    saved = file.close() && saved;
    const double seconds = static_cast<double>(timer.elapsed()) / 1000.0;
    const double megabytes = static_cast<double>(QFileInfo(path).size()) / 1e6;
    QFile::remove(path);
    std::printf("%-28s %6.0f MB a second (%.0f MB%s)\n", "saving", megabytes / seconds, megabytes,
                saved ? "" : ", failed");
}

}  // namespace

/// An argument is the number of rows to work with, in millions.
int main(int argc, char* argv[]) {
    QApplication application(argc, argv);
    installSpanish(application);
    const std::uint64_t rows = 1'000'000 * std::strtoull(argc > 1 ? argv[1] : "100", nullptr, 10);
    Principal principal;
    principal.show();
    benchmarks::loadProgram(principal, delayLoop);
    const double idleRate = benchmarks::idleLoopRate();
    std::printf("%-28s %6.2f million turns of processEvents() a second\n", "empty loop", idleRate / 1e6);
    Listapasos* trace = traceWindow();
    auto* view = trace->findChild<TraceView*>("lista");
    measureRun("run, trace closed", principal, idleRate);
    trace->open();
    QCoreApplication::processEvents();
    measureRun("run, trace open", principal, idleRate);
    trace->hide();
    benchmarks::runUntil(principal, rows);
    const History& history = principal.trace().history();
    std::printf(
        "%-28s %6.1f million, %.2f MiB held\n", "rows", static_cast<double>(view->rowCount()) / 1e6,
        static_cast<double>(history.checkpoints().bytes() + history.bytesOfChanges()) / (1024 * 1024));
    measureAction("opening", view, [&] {
        trace->open();
        QCoreApplication::processEvents();
    });
    measureAction("to the beginning", view, [&] { view->setCurrent({0, 0}, false); });
    measureAction("to the middle", view, [&] { view->setCurrent({view->rowCount() / 2, 0}, false); });
    measureAction("to the end", view, [&] { view->setCurrent({view->rowCount() - 1, 0}, false); });
    measureStepsBack(principal);
    measureAction("clearing", view, [&] { trace->findChild<QAction*>("borrar")->trigger(); });
    benchmarks::runUntil(principal, rowsToSave);
    measureSaving(principal.trace(), *trace);
    return 0;
}
