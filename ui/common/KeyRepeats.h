#pragma once

#include <QObject>

class QKeyEvent;

namespace tavinor {

/// Keeps the repeats of a held key with the command that the key was pressed for. What an access key means
/// can change while it is held: Alt+P stops a run, and is the key of a single step from then on.
class KeyRepeats : public QObject {
    Q_OBJECT

  public:
    /// Watches the whole program: the command may open a window that uses the key for something else.
    explicit KeyRepeats(QObject* parent = nullptr);

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    [[nodiscard]] bool isRepeat(const QKeyEvent& press) const;

    bool repeating_ = false;
    int releasedKey_ = 0;
    quint64 releaseTime_ = 0;
    const QObject* pressedFor_ = nullptr;  // only ever compared: it may be gone
};

}  // namespace tavinor
