#include "ui/main/HeldPaints.h"

#include <QCoreApplication>
#include <QEvent>
#include <QScopedValueRollback>
#include <utility>

namespace tavinor {

bool HeldPaints::hold(QObject* receiver, const QEvent* event) {
    if (lettingGo_ || event->type() != QEvent::UpdateRequest) return false;
    auto* window = qobject_cast<QWidget*>(receiver);
    if (window == nullptr) return false;
    windows_.append(window);
    return true;
}

void HeldPaints::letGo() {
    const QScopedValueRollback<bool> now(lettingGo_, true);
    for (const QPointer<QWidget>& window : std::exchange(windows_, {})) {
        QEvent request(QEvent::UpdateRequest);
        if (window != nullptr) QCoreApplication::sendEvent(window, &request);
    }
}

}  // namespace tavinor
