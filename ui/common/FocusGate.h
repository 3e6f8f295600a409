#pragma once

#include <QObject>
#include <QPointer>

#include "ui/common/HexBox.h"

namespace tavinor {

/// The gate of a window. Every command that touches the machine, the listing or a file passes it, whether it
/// is given by a button, a menu, a key, a list, a grid or an assistive tool: what the user is typing in a
/// hexadecimal box counts before the command does, and where the box refuses it, or another window, which is
/// modal, keeps the user from this one, the command must not act. Commands that touch none of these (copying,
/// showing information) do not pass: they leave the box alone.
class FocusGate : public QObject {
    Q_OBJECT

  public:
    /// The gate of the window that `widget` is in. It is made for the first one who asks, and goes with the
    /// window.
    static FocusGate& of(const QWidget* widget);

    /// Whether no modal window keeps the user from `widget`. An assistive tool can press and write behind
    /// one; what it does there must have no effect. Needs no memory.
    [[nodiscard]] static bool isInReach(const QWidget* widget);

    /// Leaves the box in which the user is, if any. The focus goes to `next`, or stays where nothing takes it
    /// (a menu's command). False where the command must not act.
    [[nodiscard]] bool pass(QWidget* next = nullptr);
    /// The same, but a box in which the user has typed nothing is left alone, because leaving may write what
    /// it shows.
    [[nodiscard]] bool passTyped();

    /// The box in which the user is: it has the focus, or has lent it to a menu or another window. May be
    /// null.
    [[nodiscard]] HexBox* box() const { return box_; }
    /// The user has come into a box.
    void enter(HexBox* box);
    /// The user is no longer in `box`.
    void leave(const HexBox* box);

  private:
    explicit FocusGate(QWidget* window) : QObject(window), window_(window) {}

    const QWidget* window_ = nullptr;
    QPointer<HexBox> box_;
};

}  // namespace tavinor
