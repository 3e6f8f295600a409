#pragma once

#include <QList>
#include <QObject>
#include <QTextCursor>
#include <chrono>
#include <cstdint>
#include <functional>

#include "ui/common/WorkProgress.h"

class QPlainTextEdit;

namespace tavinor {

/// Changes of a text box that Qt would take seconds for: two million lines that are pasted, removed, undone.
/// They are made in portions, each of them a step of Qt's undo, and between two of them the window is served;
/// what the user types or clicks waits. After a second the user sees how far it is and can cancel, which
/// leaves the text as it was, as does a lack of memory, which is looked at before. Undoing and redoing takes
/// all portions of a change at once.
class LargeEdits : public QObject {
    Q_OBJECT

  public:
    explicit LargeEdits(QPlainTextEdit* box);

    /// Whether a text, or what a cursor selects, is too much for one step.
    [[nodiscard]] static bool isLarge(QStringView text);
    [[nodiscard]] static bool isLarge(const QTextCursor& selection);

    /// Takes away what `removed` selects, and puts `text`, whose lines end in LF, in at `place`; the caret is
    /// behind it then.
    void replace(const QTextCursor& removed, QTextCursor place, const QString& text);
    /// Takes away what the user has selected and, unless that is cancelled, has Qt do the `rest`, which
    /// belongs to the same change.
    void removeSelection(const std::function<void()>& rest = [] {});
    /// As the slots of the box, of which they are made, also for small changes.
    void undo();
    void redo();

    [[nodiscard]] bool isGoingOn() const { return portion_ != nullptr; }
    /// Does the rest of a change that is going on at once.
    void finish();
    /// Another text: nothing that was done can be undone, and what is going on ends where it is.
    void forget();

    /// How long a change may take before it shows how far it is.
    void setPatience(std::chrono::milliseconds patience) { patience_ = patience; }

  signals:
    /// There is too little memory for a change. Nothing will have changed.
    void memoryOut();

  private:
    /// Does a part of some work and returns how far it is: from 0 to 1, which is all of it.
    using Portion = std::function<double()>;
    /// Positions in Qt's history, `from` < `to`, between which the user finds no rest.
    struct Run {
        int from;
        int to;
    };

    [[nodiscard]] int state() const;
    void change(
        std::uint64_t memory, const Portion& portion, const std::function<void()>& rest = [] {});
    bool carryOut(const Portion& portion);
    void walkOn(bool back);
    void goTo(int target);
    void noteChange();

    QPlainTextEdit* box_ = nullptr;
    Portion portion_;  ///< Of what is going on.
    QList<Run> runs_;  ///< In ascending order.
    int rest_ = 0;     ///< The position in Qt's history after the change before.
    bool walking_ = false;
    std::chrono::milliseconds patience_ = WorkProgress::usualPatience;
};

}  // namespace tavinor
