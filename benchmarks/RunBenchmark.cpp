// The run of the real window, with every view live: its rate against that of an empty loop of processEvents()
// in the same process, how often it paints, and how long "&Parar" can have to wait.

#include <QAbstractButton>
#include <QApplication>
#include <QElapsedTimer>
#include <QListWidget>
#include <QTimer>
#include <QWindow>
#include <algorithm>
#include <cstdio>
#include <ctime>
#include <fstream>
#include <string>

#include <unistd.h>

#include "benchmarks/IdleLoop.h"
#include "benchmarks/WindowRuns.h"
#include "machine/HexText.h"
#include "ui/common/Application.h"
#include "ui/main/Principal.h"

using namespace tavinor;

namespace {

constexpr int runMilliseconds = 3000;

/// Counts its own turns: HL inside a turn of 65536, the word at 4000 for the whole ones.
const char* const countingProgram =
    ":10000000210000237CB5C203002A004023220040C7\r\n"
    ":06001000210000C3030003\r\n"
    ":00000001FF\r\n";

constexpr std::int64_t instructionsPerCount = 4;  // INX H; MOV A,H; ORA L; JNZ
constexpr std::int64_t instructionsPerTurn = 65536 * instructionsPerCount + 5;

std::int64_t executed(const MachineState& machine) {
    const std::int64_t turns = machine.mem[0x4001] * 256 + machine.mem[0x4000];
    return turns * instructionsPerTurn + machine.HL * instructionsPerCount;
}

/// Watches a run: paints of the listing, and the longest time in which no event was served.
class Watcher : public QObject {
  public:
    explicit Watcher(QWidget* painted) {
        painted->installEventFilter(this);
        QObject::connect(&pulse_, &QTimer::timeout, this,
                         [this] { longestWait_ = std::max(longestWait_, sincePulse_.restart()); });
    }
    void start() {
        sincePulse_.start();
        pulse_.start(5);
    }
    [[nodiscard]] int paints() const { return paints_; }
    [[nodiscard]] qint64 longestWait() const { return longestWait_; }

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override {
        if (event->type() == QEvent::Paint) ++paints_;
        return QObject::eventFilter(watched, event);
    }

  private:
    QTimer pulse_;
    QElapsedTimer sincePulse_;
    qint64 longestWait_ = 0;
    int paints_ = 0;
};

/// A HEX file of 64 KiB, as 4096 records of 16 bytes.
QByteArray fullImage() {
    std::string text;
    for (int address = 0; address < 65536; address += 16) {
        int sum = 16 + address / 256 + address % 256;
        text += ":10" + hexa(address, 4) + "00";
        for (int i = 0; i < 16; ++i) {
            const int byte = (address * 7 + i) & 255;
            text += hexa(byte, 2);
            sum += byte;
        }
        text += hexa(-sum & 255, 2) + "\r\n";
    }
    return QByteArray::fromStdString(text + ":00000001FF\r\n");
}

/// Milliseconds since this process started, to a hundredth of a second.
double sinceStart() {
    std::ifstream stat("/proc/self/stat");
    std::string field;
    for (int i = 1; i <= 22; ++i) stat >> field;  // the 22nd is the start, in ticks since the system's
    timespec now{};
    clock_gettime(CLOCK_BOOTTIME, &now);
    const double started = std::stod(field) / static_cast<double>(sysconf(_SC_CLK_TCK));
    return (static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) / 1e9 - started) * 1000;
}

void measureRun(Principal& principal, double idleRate) {
    auto* run = principal.findChild<QAbstractButton*>("Ejecutar");
    Watcher watcher(principal.findChild<QListWidget*>("prg")->viewport());
    watcher.start();
    QTimer::singleShot(runMilliseconds, run, &QAbstractButton::click);
    const std::int64_t before = executed(principal.machine());
    QElapsedTimer timer;
    timer.start();
    run->click();  // returns when the run has been stopped
    const double seconds = static_cast<double>(timer.elapsed()) / 1000.0;
    const double rate = static_cast<double>(executed(principal.machine()) - before) / seconds;
    std::printf("run of the window     %6.1f million instructions a second, %.1f times the empty loop\n",
                rate / 1e6, rate / idleRate);
    std::printf("paints while running  %6.0f a second\n", watcher.paints() / seconds);
    std::printf("longest wait          %6lld ms for an event to be served\n",
                static_cast<long long>(watcher.longestWait()));
}

/// From the click on "&Parar" to the end of the run, at different times after its beginning.
void measureStopping(Principal& principal) {
    constexpr int times = 50;
    auto* run = principal.findChild<QAbstractButton*>("Ejecutar");
    double longest = 0;
    for (int i = 0; i < times; ++i) {
        const int due = 40 + 3 * i;  // milliseconds
        QTimer::singleShot(due, Qt::PreciseTimer, run, &QAbstractButton::click);
        QElapsedTimer timer;
        timer.start();
        run->click();
        longest = std::max(longest, static_cast<double>(timer.nsecsElapsed()) / 1e6 - due);
    }
    std::printf("click to stopped      %6.1f ms at the most of %d\n", longest, times);
}

}  // namespace

int main(int argc, char* argv[]) {
    QApplication application(argc, argv);
    installSpanish(application);
    Principal principal;
    principal.show();
    while (!principal.windowHandle()->isExposed()) QCoreApplication::processEvents();
    QCoreApplication::processEvents();  // painted, and ready for input
    std::printf("start to main window  %6.0f ms\n", sinceStart());
    std::printf("loading 64 KiB        %6.1f ms with its refresh\n",
                benchmarks::loadProgram(principal, fullImage()));
    benchmarks::loadProgram(principal, countingProgram);
    const double idleRate = benchmarks::idleLoopRate();
    std::printf("empty loop            %6.2f million turns of processEvents() a second\n", idleRate / 1e6);
    measureRun(principal, idleRate);
    measureStopping(principal);
    return 0;
}
