#pragma once

#include <QObject>
#include <cstdint>
#include <memory>
#include <optional>

#include "tests/monkey/Answers.h"
#include "tests/monkey/Chance.h"
#include "tests/monkey/Diary.h"
#include "tests/monkey/Hand.h"
#include "tests/monkey/Inspector.h"
#include "tests/monkey/Playground.h"
#include "tests/ui/main/BoxTrace.h"
#include "ui/program/Program.h"

namespace tavinor {
class Listapasos;
}

namespace tavinor::monkey {

/// Plays with all the windows of the program until its steps are used up. What happens is a function of the
/// seed: nothing waits for a clock, and runs are stopped after a number of instructions.
///
/// Its steps are taken where a user's hands would be: in the event loop of the program, in that of a dialog,
/// or in the yield of a run. A pulse is posted to that place, and each step ends by posting the next one.
class Monkey : public QObject {
    Q_OBJECT

  public:
    Monkey(std::uint64_t seed, int steps);
    ~Monkey() override;

    /// Plays in the program's event loop, which it ends.
    void play();
    /// How often what was done, and a number that two games differ in unless they were the same.
    [[nodiscard]] QString figures() const;

  protected:
    bool event(QEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    /// Where a step is taken.
    struct Place {
        int loopLevel = 0;
        bool running = false;
        friend bool operator==(const Place&, const Place&) = default;
    };

    void open();
    void close();
    void postPulse();
    void pulse();
    [[nodiscard]] Place here() const;
    [[nodiscard]] bool mayStep(const Place& place) const;
    [[nodiscard]] bool instructionHasPassed();
    void step();
    void stepInARun();
    void stepAtRest();
    void useSomeWindow();
    void usePrincipal();
    void goBack();
    void stopRun();
    void leaveMenu();
    void inspect();
    void inspectRows();
    void complain(const QString& complaint) const;
    [[nodiscard]] QWidget* someWindow();

    Diary diary_;
    Chance chance_;
    Playground playground_;
    Hand hand_{chance_, diary_};
    Answers answers_{chance_, diary_, hand_, playground_};

    std::unique_ptr<Program> program_;
    std::unique_ptr<Inspector> inspector_;
    std::unique_ptr<BoxTrace> boxTrace_;
    Listapasos* trace_ = nullptr;
    bool closed_ = false;
    bool ended_ = false;

    bool pulseIsPosted_ = false;
    std::optional<Place> busyAt_;  // the innermost step that is being taken
    int stepsInMenu_ = 0;
    int stepsInRun_ = 0;
    std::uint64_t seenRevision_ = 0;
    int instructionsToGo_ = 0;

    int starts_ = 0;
    int runs_ = 0;
    int dialogs_ = 0;
    std::uint64_t instructions_ = 0;
    std::uint64_t digest_ = 0;
};

}  // namespace tavinor::monkey
