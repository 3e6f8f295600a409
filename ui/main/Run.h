#pragma once

#include <QObject>
#include <cstdint>
#include <memory>
#include <new>
#include <utility>

#include "ui/main/HeldPaints.h"
#include "ui/main/RunPace.h"

namespace tavinor {

/// What a run needs of its window.
class RunWindow {
  public:
    struct Executed {
        std::int64_t instructions;  ///< at least 1, at most as many as were allowed
        bool atBreakpoint;          ///< PC has arrived at a breakpoint
    };

    /// The run state. Any handler of an event may change it.
    [[nodiscard]] virtual bool running() const = 0;
    /// Stops the run as the button does.
    virtual void stop() = 0;
    /// Executes instructions, `most` of them (at least 1) or fewer, with all that belongs to each.
    /// @throws RuntimeError as an instruction, std::bad_alloc.
    virtual Executed executeSome(std::int64_t most) = 0;
    /// Brings the widgets of the window up to date with the machine. @throws std::bad_alloc
    virtual void bringUpToDate() = 0;
    /// Those of the other windows that show the machine as well. @throws std::bad_alloc
    virtual void showAll() = 0;

  protected:
    RunWindow() = default;
    RunWindow(const RunWindow&) = default;
    RunWindow& operator=(const RunWindow&) = default;
    ~RunWindow() = default;
};

/// The run of a program: a loop that executes instructions and serves events in between, at a given pace.
/// Everything happens on one thread.
///
/// Three things that look like one are kept apart, which is what makes millions of instructions a second
/// possible: what the views are to show, noted by the window after every instruction; what the widgets hold,
/// brought up to date before any event reaches a handler; and what is on the glass, painted frame by frame.
///
/// What a window that opens during a run may rely on: every handler finds the main window's widgets up to
/// date. One that is served by the run's own look at the queue need do nothing to be painted: its requests to
/// paint are held back, like all others, until the next frame. One with an event loop of its own (a dialog, a
/// message box, the progress of some work) makes the run stand still, and is painted as if there were none,
/// with the views behind it, the trace too, up to date. So whatever waits inside a handler has to do it in a
/// QEventLoop: a plain processEvents() there counts as the run's own look, and what it paints is held back.
/// An event loop that opens inside an instruction, not a handler, calls `letPaintsGo` first.
class Run : public QObject {
    Q_OBJECT

  public:
    Run(RunWindow& window, std::unique_ptr<RunPace> pace) : window_(window), pace_(std::move(pace)) {}

    /// Runs until the window's run state says otherwise or a breakpoint is reached. Within a run it returns
    /// at once: the loop that is still on the stack goes on if the run state allows it.
    /// @throws RuntimeError as an instruction; std::bad_alloc, also where the views had no memory.
    void start();
    /// Paints what has been held back.
    void letPaintsGo() { heldPaints_.letGo(); }

    /// Does what would let an exception reach Qt where there is no memory for it: the event procedure in
    /// whose event loop it happens ends by the exception instead, through `endWhereMemoryIsOut`.
    template <typename Work>
    void showSafely(const Work& work) {
        try {
            work();
        } catch (const std::bad_alloc&) {
            memoryOut_ = true;
        }
    }
    /// @throws std::bad_alloc once, where `showSafely` had no memory.
    void endWhereMemoryIsOut() {
        if (std::exchange(memoryOut_, false)) throw std::bad_alloc();
    }
    void forgetThatMemoryIsOut() { memoryOut_ = false; }

  protected:
    /// Sees every event of the program while a run is going.
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    void turn();
    void look(RunPace::Due due);
    void paintFrame();

    RunWindow& window_;
    std::unique_ptr<RunPace> pace_;
    HeldPaints heldPaints_;
    bool loopOnStack_ = false;
    int level_ = 0;  // the depth of event loops at which the run turns
    bool memoryOut_ = false;
};

}  // namespace tavinor
