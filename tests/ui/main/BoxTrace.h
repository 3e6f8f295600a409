#pragma once

#include <QAbstractButton>
#include <QString>
#include <array>
#include <cstdint>
#include <memory>
#include <set>

#include "tests/trace/NaiveTrace.h"
#include "trace/TraceReader.h"
#include "ui/common/HexBox.h"
#include "ui/main/Principal.h"
#include "ui/trace/Listapasos.h"

namespace tavinor {

/// The trace as the boxes of the main window tell it: their texts before and after each instruction, written
/// down as plainly as possible. The rows of the window's own trace must be the same.
///
/// It has to be told of each instruction of a run, each window that comes and when something else is done
/// next. It hears of single steps, ways back and cleared rows by itself.
class BoxTrace {
  public:
    BoxTrace(Principal& principal, Listapasos& window);

    /// A run executes an instruction next.
    void instructionComes();
    /// It has been executed.
    void instructionDone();
    /// A HLT's dialog shows that an instruction has not ended, and the box of an error that it has failed.
    void windowShown(const QWidget* window);
    /// Something else is done next: what was executed before has ended, unless it is a HLT with its dialog.
    void somethingElseComes();

    /// The first of the last `count` rows that differs, or what the boxes show after a way back where that is
    /// something else than the last row; empty when all is well.
    [[nodiscard]] QString difference(std::uint64_t count);

  private:
    enum class Instruction : std::uint8_t { none, comes, open };

    void note();
    void begin();
    void endWhatHasEnded();
    void forgetAll();
    void wentBack();
    void leaveRows(const Position& end);
    static void bringBoxesUpToDate();
    [[nodiscard]] BoxTexts boxes() const;
    [[nodiscard]] const History& history() const { return principal_.trace().history(); }

    Principal& principal_;
    std::array<const HexBox*, boxColumns.size()> boxes_{};
    std::array<const QAbstractButton*, 8> flags_{};

    NaiveTrace rows_;
    std::set<std::size_t> typedRows_;
    Instruction instruction_ = Instruction::none;
    QString complaint_;
    TraceReader reader_;

    // Just before the instruction, or when the rows were cut or forgotten.
    std::uint64_t revision_;
    std::uint64_t instructions_ = 0;
    std::unique_ptr<MachineState> machine_ = std::make_unique<MachineState>();
    BoxTexts texts_;
    bool typed_ = false;
};

/// The pace at which a run tells it: a look at the events after each instruction, and now and then a frame.
class EachInstruction final : public RunPace {
  public:
    /// `boxTrace` has one as long as there are runs.
    explicit EachInstruction(const std::unique_ptr<BoxTrace>& boxTrace) : boxTrace_(boxTrace) {}

    [[nodiscard]] std::int64_t slice() override {
        boxTrace_->instructionComes();
        return 1;
    }
    [[nodiscard]] Due due() override {
        boxTrace_->instructionDone();
        return ++looks_ % looksPerFrame == 0 ? Due::frame : Due::events;
    }

  private:
    static constexpr int looksPerFrame = 64;
    const std::unique_ptr<BoxTrace>& boxTrace_;
    int looks_ = 0;
};

}  // namespace tavinor
