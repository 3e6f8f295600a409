#pragma once

#include <QCoreApplication>
#include <QElapsedTimer>

namespace tavinor::benchmarks {

/// Turns of an empty loop of processEvents() a second: what the rate of a run is compared with.
inline double idleLoopRate() {
    QElapsedTimer timer;
    timer.start();
    qint64 turns = 0;
    while (timer.elapsed() < 1000) {
        for (int i = 0; i < 1000; ++i) QCoreApplication::processEvents();
        turns += 1000;
    }
    return static_cast<double>(turns) * 1000.0 / static_cast<double>(timer.elapsed());
}

}  // namespace tavinor::benchmarks
