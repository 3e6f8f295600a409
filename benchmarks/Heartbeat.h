#pragma once

#include <QElapsedTimer>
#include <QFile>
#include <QTimer>
#include <algorithm>

namespace tavinor::benchmarks {

/// The longest time in which the program did not serve events.
class Heartbeat {
  public:
    Heartbeat() {
        QObject::connect(&timer_, &QTimer::timeout, &timer_, [this] { beat(); });
        timer_.start(0);
        since_.start();
    }
    /// In milliseconds, until now.
    [[nodiscard]] qint64 longestPause() const { return std::max(longest_, since_.elapsed()); }

  private:
    void beat() { longest_ = std::max(longest_, since_.restart()); }

    QTimer timer_;
    QElapsedTimer since_;
    qint64 longest_ = 0;
};

/// A line of the process's status, such as "VmHWM", in the megabytes that the system says.
inline long statusMegabytes(const char* name) {
    QFile status(QStringLiteral("/proc/self/status"));
    if (!status.open(QIODevice::ReadOnly)) return 0;
    for (const QByteArray& line : status.readAll().split('\n')) {
        if (line.startsWith(name)) {
            return line.mid(line.indexOf(':') + 1).trimmed().split(' ').first().toLong() / 1024;
        }
    }
    return 0;
}

}  // namespace tavinor::benchmarks
