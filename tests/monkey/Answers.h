#pragma once

#include <QDialogButtonBox>
#include <QFileDialog>
#include <QHash>
#include <QMessageBox>
#include <QWidget>

#include "tests/monkey/Hand.h"
#include "tests/monkey/Playground.h"

namespace tavinor::monkey {

/// Answers modal windows: in any way at first, and in a way that must end them when they have been played
/// with for long enough.
class Answers {
  public:
    Answers(Chance& chance, Diary& diary, Hand& hand, const Playground& playground)
        : chance_(chance), diary_(diary), hand_(hand), playground_(playground) {}

    /// A modal window has been shown.
    void noteShown(const QWidget* window) { turns_[window] = 0; }
    /// Does something with a modal window. With `leave`, the window is to go as soon as possible.
    void answer(QWidget* window, bool leave);

  private:
    static constexpr int turnsToPlay = 8;
    static constexpr int turnsToLeave = 6;

    void play(QWidget* window);
    void leave(QWidget* window);
    void playWithMessage(QMessageBox* box);
    void playWithFiles(QFileDialog* dialog);
    void playWithHalt(QWidget* halt);
    void leaveHalt(QWidget* halt);
    void endFileDialog(QFileDialog* dialog, QDialogButtonBox::ButtonRole role);

    Chance& chance_;
    Diary& diary_;
    Hand& hand_;
    const Playground& playground_;
    QHash<const QWidget*, int> turns_;
};

/// Whether the window cannot be left before what it does has ended.
bool busy(const QWidget* window);

}  // namespace tavinor::monkey
