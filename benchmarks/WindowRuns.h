#pragma once

#include <QAbstractButton>
#include <QApplication>
#include <QDialog>
#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>
#include <QTimer>
#include <cstdint>
#include <cstdlib>

#include "ui/main/Principal.h"

namespace tavinor::benchmarks {

/// Loads Intel HEX records in the window. Milliseconds until it says how that ended, after its refresh.
inline double loadProgram(Principal& principal, const QByteArray& records) {
    const QTemporaryDir folder;
    QFile file(folder.filePath("programa.hex"));
    if (!file.open(QIODevice::WriteOnly)) std::abort();
    file.write(records);
    file.close();
    QElapsedTimer timer;
    timer.start();
    qint64 nanoseconds = 0;
    QTimer::singleShot(0, [&] {
        nanoseconds = timer.nsecsElapsed();
        if (auto* dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget())) dialog->accept();
    });
    principal.loadHexFile(file.fileName());
    return static_cast<double>(nanoseconds) / 1e6;
}

/// Runs until the trace has so many rows at least: one an instruction.
inline void runUntil(Principal& principal, std::uint64_t rows) {
    if (principal.trace().size() >= rows) return;
    auto* run = principal.findChild<QAbstractButton*>("Ejecutar");
    QTimer watch;
    QObject::connect(&watch, &QTimer::timeout, run, [&] {
        if (principal.trace().size() < rows || !watch.isActive()) return;
        watch.stop();
        run->click();
    });
    watch.start(10);
    run->click();  // returns when the run has been stopped
}

}  // namespace tavinor::benchmarks
