#include "ui/trace/SaveProgress.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QProgressBar>
#include <QProgressDialog>
#include <QScopedValueRollback>
#include <QTimer>

#include "ui/common/Fonts.h"
#include "ui/common/Naming.h"
#include "ui/trace/TraceFile.h"

namespace tavinor {

namespace {

constexpr int steps = 1000;

/// Goes on writing inside the dialog's own event loop: a run that the command interrupted holds back the
/// paints of its own.
SaveResult saveInDialog(TraceFile& file, QWidget* parent) {
    QProgressDialog dialog(QStringLiteral("Guardando el listado..."), QStringLiteral("Cancelar"), 0, steps,
                           parent);
    dialog.setObjectName(QStringLiteral("progreso"));
    dialog.setWindowTitle(applicationTitle());
    dialog.setWindowModality(Qt::ApplicationModal);
    dialog.setMinimumDuration(0);
    dialog.setAutoClose(false);
    dialog.setAutoReset(false);
    dialog.findChild<QProgressBar*>()->setAccessibleName(QStringLiteral("Parte guardada"));
    // It has no layout that would follow the desktop's font.
    useFont(
        &dialog, [] { return QApplication::font(); }, [&dialog] { dialog.resize(dialog.sizeHint()); });
    SaveResult result = SaveResult::cancelled;
    bool writing = false;
    QTimer turn;
    const auto end = [&](SaveResult how) {
        result = how;
        turn.stop();
        dialog.accept();
    };
    QObject::connect(&turn, &QTimer::timeout, &dialog, [&] {
        if (writing) return;  // showing the progress serves events, this timer among them
        const QScopedValueRollback<bool> busy(writing, true);
        if (!file.writeMore()) {
            end(SaveResult::failed);
        } else if (file.finished()) {
            end(SaveResult::saved);
        } else {
            dialog.setValue(static_cast<int>(file.fractionWritten() * steps));
        }
    });
    QObject::connect(&dialog, &QProgressDialog::canceled, &dialog, &QDialog::reject);
    turn.start(0);
    dialog.exec();
    return result;
}

}  // namespace

SaveResult saveWithProgress(TraceFile& file, QWidget* parent, std::chrono::milliseconds patience) {
    QElapsedTimer waited;
    waited.start();
    if (!file.open()) return SaveResult::failed;
    SaveResult result = SaveResult::saved;
    while (result == SaveResult::saved && !file.finished()) {
        if (waited.elapsed() >= patience.count()) {
            result = saveInDialog(file, parent);
            break;
        }
        if (!file.writeMore()) result = SaveResult::failed;
    }
    const bool closed = file.close();
    return closed || result == SaveResult::cancelled ? result : SaveResult::failed;
}

}  // namespace tavinor
