#pragma once

#include <QList>
#include <QPointer>
#include <QWidget>

class QEvent;

namespace tavinor {

/// Holds back the paints of a run, so that the screen is painted at its own pace however often widgets
/// change.
///
/// Qt posts one update request for each window with something to paint and posts no other until that
/// one has been served: a request that is held back costs nothing until it is let go.
class HeldPaints {
  public:
    /// Takes `event` if it asks a window to paint itself; then it must not be delivered.
    bool hold(QObject* receiver, const QEvent* event);
    /// Paints the windows that asked for it.
    void letGo();

  private:
    QList<QPointer<QWidget>> windows_;
    bool lettingGo_ = false;
};

}  // namespace tavinor
