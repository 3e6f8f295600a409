#include "ui/program/LastResort.h"

#include <QtGlobal>
#include <cstddef>
#include <cstdlib>
#include <exception>
#include <utility>

#ifdef Q_OS_UNIX
#include <unistd.h>

#include <array>
#include <csignal>
#endif

namespace tavinor {

namespace {

constexpr std::size_t reserveSize = std::size_t{8} * 1024 * 1024;

// What the system calls at the end is given nothing to find its way by.
LastResort* waiting = nullptr;
std::terminate_handler otherTerminate = nullptr;

/// The end of a program that has ended in the ordinary way finds none waiting.
void atExit() {
    if (waiting == nullptr) return;
    waiting->act();
    // The program's windows are still there, under Qt's feet, as it clears up.
    std::_Exit(EXIT_FAILURE);
}

void atTerminate() {
    if (waiting != nullptr) waiting->act();
    otherTerminate();
}

#ifdef Q_OS_UNIX

// Libraries below Qt end the process by SIGTRAP where they get no memory.
constexpr std::array crashSignals{SIGABRT, SIGBUS, SIGFPE, SIGILL, SIGSEGV, SIGTRAP};
std::array<struct sigaction, crashSignals.size()> otherCrash{};

/// The crash may have left anything in disorder; the attempt is worth it, but it must not take long. What
/// would have happened happens afterwards, also where another process has sent the signal: it comes again as
/// soon as this one has been handled.
void atCrash(int signal) {
    constexpr unsigned longest = 10;  // seconds
    for (std::size_t i = 0; i < crashSignals.size(); ++i) {
        ::sigaction(crashSignals[i], &otherCrash[i], nullptr);
    }
    ::alarm(longest);
    if (waiting != nullptr) waiting->act();
    ::alarm(0);
    ::raise(signal);
}

void watchForCrashes(bool on) {
    for (std::size_t i = 0; i < crashSignals.size(); ++i) {
        struct sigaction action {};
        action.sa_handler = atCrash;
        ::sigaction(crashSignals[i], on ? &action : &otherCrash[i], on ? &otherCrash[i] : nullptr);
    }
}

#else

void watchForCrashes(bool) {}

#endif

}  // namespace

LastResort::LastResort(std::function<void()> rescue)
    : rescue_(std::move(rescue)), reserve_(new char[reserveSize]) {
    waiting = this;
    static const bool registered = std::atexit(atExit) == 0;
    static_cast<void>(registered);
    otherTerminate = std::set_terminate(atTerminate);
    watchForCrashes(true);
}

LastResort::~LastResort() {
    watchForCrashes(false);
    std::set_terminate(otherTerminate);
    waiting = nullptr;
}

void LastResort::act() {
    reserve_.reset();
    if (const auto rescue = std::exchange(rescue_, nullptr)) rescue();
}

}  // namespace tavinor
