#pragma once

#include <QObject>
#include <QPointer>

class QKeyEvent;

namespace tavinor {

/// Keeps the repeats of a held key with the command or the window that the key was pressed for; elsewhere
/// they do nothing. What an access key means can change while it is held: Alt+P stops a run, and is the key
/// of a single step from then on. Enter in one dialog would go on to answer the next one.
class KeyRepeats : public QObject {
    Q_OBJECT

  public:
    /// Watches the whole program.
    explicit KeyRepeats(QObject* parent = nullptr);

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    [[nodiscard]] bool isRepeat(const QKeyEvent& press) const;

    bool repeating_ = false;
    int releasedKey_ = 0;
    quint64 releaseTime_ = 0;
    QPointer<const QObject> pressedFor_;  // what acts on an access key, or a window
};

}  // namespace tavinor
