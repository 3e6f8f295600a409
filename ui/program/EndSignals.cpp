#include "ui/program/EndSignals.h"

#include <QSocketNotifier>
#include <QtGlobal>

#ifdef Q_OS_UNIX
#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#endif

namespace tavinor {

#ifdef Q_OS_UNIX

namespace {

constexpr std::array endSignals{SIGTERM, SIGINT, SIGHUP};

// A handler is given nothing but the number of its signal, and may do little more than write to a pipe.
std::array<int, 2> ends{-1, -1};

void tell(int /*signal*/) {
    const int before = errno;
    const char byte = 0;
    // A full pipe has told enough.
    [[maybe_unused]] const ssize_t written = ::write(ends[1], &byte, 1);
    errno = before;
}

/// Has `handler` called for the signals that the program was not started without.
void handleSignals(void (*handler)(int)) {
    for (const int signal : endSignals) {
        struct sigaction action {};
        if (::sigaction(signal, nullptr, &action) != 0 || action.sa_handler == SIG_IGN) continue;
        action = {};
        action.sa_handler = handler;
        action.sa_flags = SA_RESTART;
        ::sigaction(signal, &action, nullptr);
    }
}

}  // namespace

EndSignals::EndSignals() {
    if (::pipe(ends.data()) != 0) return;
    for (const int end : ends) {
        ::fcntl(end, F_SETFD, FD_CLOEXEC);
        ::fcntl(end, F_SETFL, O_NONBLOCK);
    }
    notifier_ = new QSocketNotifier(ends[0], QSocketNotifier::Read, this);
    connect(notifier_, &QSocketNotifier::activated, this, &EndSignals::read);
    handleSignals(tell);
}

EndSignals::~EndSignals() {
    if (notifier_ == nullptr) return;
    handleSignals(SIG_DFL);
    delete notifier_;
    for (int& end : ends) {
        ::close(end);
        end = -1;
    }
}

/// Each counts by itself, also those that came together: the second one of a hurry must not be missed.
void EndSignals::read() {
    char byte = 0;
    if (::read(ends[0], &byte, 1) == 1) emit received();
}

#else

EndSignals::EndSignals() = default;
EndSignals::~EndSignals() = default;
void EndSignals::read() {}

#endif

}  // namespace tavinor
