#include "tests/monkey/Diary.h"

#include <unistd.h>
#include <csignal>
#include <cstdio>
#include <cstdlib>

#if defined(__SANITIZE_ADDRESS__)
#include <sanitizer/common_interface_defs.h>
#endif

namespace tavinor::monkey {

namespace {

constexpr int deedsToTell = 40;
constexpr unsigned longestStep = 120;  // seconds; only a step that never ends takes that long

const Diary* current = nullptr;  // for those who cannot be told where it is: signals and sanitizers

void tellCurrent() {
    if (current != nullptr) current->tell();
}

void stepDoesNotEnd(int /*signal*/) {
    std::fputs("a step does not end\n", stderr);
    tellCurrent();
    std::abort();
}

/// Qt warns where it is misused.
void onMessage(QtMsgType type, const QMessageLogContext& /*context*/, const QString& text) {
    const bool harmless =
        type == QtDebugMsg || type == QtInfoMsg || text.contains(QStringLiteral("plugin does not support"));
    if (harmless || current == nullptr) return;
    current->fail(QStringLiteral("Qt says: ") + text);
}

}  // namespace

Diary::Diary(std::uint64_t seed, int steps) : seed_(seed), steps_(steps) {
    current = this;
    qInstallMessageHandler(onMessage);
    std::signal(SIGALRM, stepDoesNotEnd);
#if defined(__SANITIZE_ADDRESS__)
    __sanitizer_set_death_callback(tellCurrent);
#endif
}

Diary::~Diary() {
    alarm(0);
    current = nullptr;
}

void Diary::beginStep() {
    ++step_;
    alarm(longestStep);
}

void Diary::note(const QString& deed) {
    deeds_.append(QStringLiteral("%1: %2").arg(step_).arg(deed));
    if (deeds_.size() > deedsToTell) deeds_.removeFirst();
}

void Diary::fail(const QString& complaint) const {
    std::fprintf(stderr, "%s\n", qPrintable(complaint));
    tell();
    std::abort();
}

void Diary::tell() const {
    std::fprintf(stderr, "%s\nseed %llu, step %d of %d\n", qPrintable(deeds_.join('\n')),
                 static_cast<unsigned long long>(seed_), step_, steps_);
}

}  // namespace tavinor::monkey
