#include <QApplication>
#include <QEventLoop>
#include <QTest>
#include <QTimer>
#include <functional>
#include <memory>
#include <new>
#include <numeric>

#include "machine/RuntimeError.h"
#include "tests/ui/main/ListedPace.h"
#include "ui/main/Run.h"

using namespace tavinor;

namespace {

using Due = RunPace::Due;

/// A window whose instructions do nothing but what a test says.
class CountingWindow final : public RunWindow {
  public:
    static constexpr int tooMany = 1000;  // a run that a test cannot stop ends as well
    bool going = true;
    int executed = 0;
    int stops = 0;
    int widgetsShown = 0;
    int allShown = 0;
    QList<std::int64_t> allowed;
    /// What happens in each instruction; its number counts from 1.
    std::function<void(int)> instruction = [](int) {};
    std::function<bool(int)> breakpoint = [](int) { return false; };
    std::function<void()> refresh = [] {};

    void stop() override {
        going = false;
        ++stops;
    }
    [[nodiscard]] bool running() const override { return going && executed < tooMany; }
    Executed executeSome(std::int64_t most) override {
        allowed.append(most);
        ++executed;
        instruction(executed);
        return {.instructions = 1, .atBreakpoint = breakpoint(executed)};
    }
    void bringUpToDate() override {
        ++widgetsShown;
        refresh();
    }
    void showAll() override {
        ++allShown;
        refresh();
    }
};

class PaintCounter : public QWidget {
  public:
    int paints = 0;

  protected:
    void paintEvent(QPaintEvent* /*event*/) override { ++paints; }
};

}  // namespace

/// The loop of a run, by itself: how far it executes, what it serves in between, and what it paints when.
class RunLoopTest : public QObject {
    Q_OBJECT

  private:
    std::unique_ptr<CountingWindow> w_;
    std::unique_ptr<Run> run_;

    void pace(const QList<std::int64_t>& slices, Due each = Due::events) {
        run_ = std::make_unique<Run>(*w_, std::make_unique<ListedPace>(slices, each));
    }
    void stopAfter(int instructions) {
        w_->instruction = [this, instructions](int number) { w_->going = number < instructions; };
    }
    /// Does something at every look at the event queue.
    static std::unique_ptr<QTimer> atEveryLook(const std::function<void()>& action) {
        auto timer = std::make_unique<QTimer>();
        connect(timer.get(), &QTimer::timeout, action);
        timer->start(0);
        return timer;
    }

    /// Does it at the next look alone.
    static std::unique_ptr<QTimer> atTheNextLook(const std::function<void()>& action) {
        auto timer = atEveryLook(action);
        timer->setSingleShot(true);
        return timer;
    }
    /// What the program's own pace says that many microseconds after some time.
    static Due dueAt(ClockPace& pace, int microseconds) {
        const ClockPace::Clock::time_point start(std::chrono::hours(1));
        return pace.dueAt(start + std::chrono::microseconds(microseconds));
    }

  private slots:
    void init() {
        w_ = std::make_unique<CountingWindow>();
        pace({1});
    }
    void cleanup() {
        run_.reset();
        w_.reset();
    }

    void executesUntilTheStateSaysOtherwise() {
        stopAfter(5);
        run_->start();
        QCOMPARE(w_->executed, 5);
        QCOMPARE(w_->stops, 0);
    }

    void allowsWhatIsLeftUntilTheNextLook() {
        pace({3, 2});
        stopAfter(7);
        run_->start();
        QCOMPARE(w_->allowed, (QList<std::int64_t>{3, 2, 1, 2, 1, 3, 2}));
    }

    void looksWhenASliceHasBeenExecuted() {
        pace({2, 5, 1});
        stopAfter(20);
        QList<int> looks;
        const auto timer = atEveryLook([&] { looks.append(w_->executed); });
        run_->start();
        QCOMPARE(looks, (QList<int>{2, 7, 8, 10, 15, 16, 18}));
    }

    void nothingDueIsNoLook() {
        pace({2}, Due::nothing);
        stopAfter(20);
        QList<int> looks;
        const auto timer = atEveryLook([&] { looks.append(w_->executed); });
        run_->start();
        QCOMPARE(looks, QList<int>());
    }

    void whatALookPostsIsServedInIt() {
        pace({4});
        stopAfter(8);
        int servedAt = -1;
        const auto timer = atTheNextLook([&] {
            QMetaObject::invokeMethod(
                qApp, [&] { servedAt = w_->executed; }, Qt::QueuedConnection);
        });
        run_->start();
        QCOMPARE(servedAt, 4);
    }

    void aHandlerStopsBeforeTheNextInstruction() {
        pace({3});
        const auto timer = atTheNextLook([&] { w_->going = false; });
        run_->start();
        QCOMPARE(w_->executed, 3);
    }

    void aBreakpointStopsWithoutAnotherLook() {
        w_->breakpoint = [](int number) { return number == 3; };
        QList<int> looks;
        const auto timer = atEveryLook([&] { looks.append(w_->executed); });
        run_->start();
        QCOMPARE(w_->executed, 3);
        QCOMPARE(w_->stops, 1);
        QCOMPARE(looks, (QList<int>{1, 2}));
    }

    void aBreakpointWhereTheRunHasStoppedAlready() {
        stopAfter(3);
        w_->breakpoint = [](int number) { return number == 3; };
        run_->start();
        QCOMPARE(w_->stops, 0);
    }

    void noLoopIsNestedInAnother() {
        stopAfter(3);
        int within = -1;
        const auto timer = atTheNextLook([&] {
            run_->start();
            within = w_->executed;
        });
        run_->start();
        QCOMPARE(within, 1);
        QCOMPARE(w_->executed, 3);
    }

    void anErrorEndsTheRun() {
        w_->instruction = [](int number) {
            if (number == 2) throw RuntimeError(RuntimeError::Number::overflow);
        };
        QVERIFY_THROWS_EXCEPTION(RuntimeError, run_->start());
        QCOMPARE(w_->executed, 2);
        const int shown = w_->widgetsShown;
        QCoreApplication::processEvents();
        QEvent afterwards(QEvent::User);
        QCoreApplication::sendEvent(this, &afterwards);
        QCOMPARE(w_->widgetsShown, shown);  // events are its business no more
        w_->instruction = [this](int) { w_->going = false; };
        run_->start();
        QCOMPARE(w_->executed, 3);
    }

    void handlersFindTheWidgetsUpToDate() {
        pace({10});
        stopAfter(30);
        QList<int> behind;
        int shownAt = 0;
        w_->refresh = [&] { shownAt = w_->executed; };
        const auto timer = atEveryLook([&] { behind.append(w_->executed - shownAt); });
        run_->start();
        QCOMPARE(behind, (QList<int>{0, 0, 0}));
    }

    void memoryThatRunsOutInARefreshEndsTheRun() {
        pace({10});
        w_->refresh = [this] {
            if (w_->executed < 50) throw std::bad_alloc();
        };
        QTimer::singleShot(0, this, [] {});
        QVERIFY_THROWS_EXCEPTION(std::bad_alloc, run_->start());
        QCOMPARE(w_->executed, 10);
        // The refresh at the end of the run had no memory either: the caller tells it, or forgets it.
        QVERIFY_THROWS_EXCEPTION(std::bad_alloc, run_->endWhereMemoryIsOut());
        run_->endWhereMemoryIsOut();
    }

    void paintsOnceAFrame() {
        PaintCounter painted;
        painted.show();
        QVERIFY(QTest::qWaitForWindowExposed(&painted));
        QCoreApplication::processEvents();
        painted.paints = 0;
        w_->instruction = [&](int number) {
            painted.update();
            w_->going = number < 100;
        };
        pace({10}, Due::events);
        run_->start();
        QCOMPARE(painted.paints, 1);  // at its end
        w_->executed = painted.paints = 0;
        pace({10}, Due::frame);
        run_->start();
        QCOMPARE(painted.paints, 10);
    }

    void aWindowWithAnEventLoopOfItsOwnIsPainted() {
        PaintCounter painted;
        painted.show();
        QVERIFY(QTest::qWaitForWindowExposed(&painted));
        QCoreApplication::processEvents();
        painted.paints = 0;
        int before = -1;
        int within = -1;
        int shown = 0;
        QTimer::singleShot(0, this, [&] {
            painted.update();
            QCoreApplication::processEvents();
            before = painted.paints;  // no loop of its own: held back
            shown = w_->allShown;
            QEventLoop dialog;
            QTimer::singleShot(20, &dialog, &QEventLoop::quit);
            dialog.exec();
            within = painted.paints;
            shown = w_->allShown - shown;
        });
        stopAfter(10);
        run_->start();
        QCOMPARE(before, 0);
        QCOMPARE(within, 1);
        QVERIFY(shown > 0);
    }

    void theClockLooksEvery250Microseconds() {
        ClockPace pace;
        QCOMPARE(dueAt(pace, 0), Due::frame);
        dueAt(pace, 100);
        QCOMPARE(dueAt(pace, 350), Due::events);
        QCOMPARE(dueAt(pace, 590), Due::nothing);
        QCOMPARE(dueAt(pace, 600), Due::events);
        QCOMPARE(dueAt(pace, 849), Due::nothing);
    }

    /// Else a loop as long as that would be looked at in the same place at all times.
    void noLoopGoesIntoASlice() {
        for (std::int64_t loop = 2; loop < 4000; ++loop)
            QCOMPARE(std::gcd(ClockPace().slice(), loop), std::int64_t{1});
    }

    void framesCountFromWhenTheyWereDue() {
        ClockPace pace;
        dueAt(pace, 0);
        QCOMPARE(dueAt(pace, 1), Due::frame);  // the first two follow each other
        QCOMPARE(dueAt(pace, 15'999), Due::events);
        QCOMPARE(dueAt(pace, 20'000), Due::frame);  // four milliseconds late
        QCOMPARE(dueAt(pace, 31'999), Due::events);
        QCOMPARE(dueAt(pace, 32'000), Due::frame);
    }

    void oneMissedFrameIsMadeUpFor() {
        ClockPace pace;
        dueAt(pace, 0);
        dueAt(pace, 0);
        QCOMPARE(dueAt(pace, 1'000'000), Due::frame);
        QCOMPARE(dueAt(pace, 1'000'250), Due::frame);
        QCOMPARE(dueAt(pace, 1'000'500), Due::events);
        QCOMPARE(dueAt(pace, 1'015'999), Due::events);
        QCOMPARE(dueAt(pace, 1'016'000), Due::frame);
    }
};

QTEST_MAIN(RunLoopTest)
#include "RunLoopTest.moc"
