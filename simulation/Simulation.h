#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <string_view>
#include <vector>

#include "files/WorkObserver.h"
#include "history/History.h"
#include "history/Replay.h"
#include "images/HexLoader.h"
#include "machine/Host.h"
#include "trace/Trace.h"

namespace tavinor {

/// What a simulation asks of the place that shows it.
class HaltHandler {
  public:
    /// A HLT is executed next. Whatever shows the machine or the trace is to show them as they are now:
    /// nothing is brought up to date again before the way out.
    virtual void haltComes() = 0;
    /// A HLT is being executed. Returns when the user has chosen the way out, and it has been carried out as
    /// a command of the simulation. A HLT that the way out itself executes comes here again.
    virtual void halt() = 0;

    HaltHandler() = default;
    HaltHandler(const HaltHandler&) = delete;
    HaltHandler& operator=(const HaltHandler&) = delete;

  protected:
    ~HaltHandler() = default;
};

/// The one simulated machine with its breakpoints, its history and the rows of its trace. Nothing else
/// changes any of them: each command of the user and each instruction is a call here.
///
/// Outside an instruction the mirror cells equal cells 0 and 1, so views need not refresh them. Commands that
/// fail throw as the instructions do; what they did before stays.
class Simulation final : private Host {
  public:
    /// The history takes at most about so many bytes, besides what it holds of the user's changes.
    explicit Simulation(HaltHandler& handler, std::size_t historyBytes = History::usualBytes);

    [[nodiscard]] const MachineState& machine() const { return now_->machine; }
    [[nodiscard]] const Breakpoints& breakpoints() const { return *breakpoints_; }
    [[nodiscard]] const Counters& counters() const { return now_->counters; }
    [[nodiscard]] const Trace& trace() const { return trace_; }
    /// What the box M shows. It may be behind the machine until the next refresh: see behaviour.md,
    /// Simulation: between instructions.
    [[nodiscard]] std::uint8_t shownM() const { return now_->shownM; }
    [[nodiscard]] bool atBreakpoint() const {
        return (*breakpoints_)[static_cast<std::size_t>(machine().PC)] != 0;
    }

    // What is executed. `typed` has the texts of the register boxes while one of them is being typed in, else
    // it is null.

    /// One instruction. @throws RuntimeError where it fails; its row has no registers then.
    void step(const RegisterTexts* typed);
    /// At most `most` instructions (1 or more), fewer where PC comes to a breakpoint or it is convenient.
    /// Returns how many. @throws RuntimeError as `step`.
    std::int64_t run(std::int64_t most, const RegisterTexts* typed);

    // What the user changes. The views that show it are the caller's business.

    /// The registers as they were typed; the cached pairs follow.
    void setRegisters(const Registers& registers);
    void setInterrupts(const InterruptState& state);
    void setSID(bool on);
    /// Stores a byte (0..255) in a memory cell. @throws RuntimeError subscript behind FFFF; a byte for a
    /// mirror
    ///     cell is stored first.
    void writeMemory(std::int32_t address, int byte);
    /// Stores a byte (0..255) in a port (0..255).
    void writePort(std::int32_t number, int byte);
    void reset();
    /// Requests of interrupts, served at once. @throws RuntimeError as `OPCALL`, or as the instruction.
    void trap();
    void rst55();
    void rst65();
    void rst75();
    void intr(std::string_view vectorText);
    /// Loads an Intel HEX file; see `carga`.
    LoadResult load(const std::filesystem::path& path, WorkObserver& observer);
    /// Brings what is shown up to date with the machine: the mirror cells, PC in four digits, M.
    void refresh();
    /// The same for M alone.
    void refreshM();

    void toggleBreakpoint(std::int32_t address);
    /// Forgets the trace, and with it the history: it begins here.
    void clearTrace();

    // What the grids of memory and ports show.

    /// A cell that shows another byte than the machine has: an INTR borrowed the cell for its instruction,
    /// and what that wrote there is seen although the old byte is back: see behaviour.md, Simulation: between
    /// instructions.
    struct ShownCell {
        std::int32_t address;
        std::uint8_t byte;
    };
    [[nodiscard]] const std::vector<ShownCell>& shownCells() const { return shownCells_; }
    /// What was written since it was asked last.
    [[nodiscard]] Written takeWritten();

    // The way back.

    /// Whether there is anything to undo. Never within an instruction.
    [[nodiscard]] bool canGoBack() const;
    [[nodiscard]] const History& history() const { return history_; }
    /// The same with all that the user has changed since the last instruction.
    [[nodiscard]] const History& settledHistory() {
        endChange();
        return history_;
    }
    /// Back to a position of the history; what came after it is forgotten. Breakpoints stay: see
    /// behaviour.md, Simulation: going back. Only where one can go back. @throws std::bad_alloc: it has gone
    /// back all the same, and a state row too many may follow.
    void goBack(const Position& target);

  private:
    /// Who is changing the machine from outside, since the last instruction.
    enum class Changing : std::uint8_t { nothing, user, wayOut };

    // What the machine asks of its host.
    void savmem(std::int32_t dir, std::int32_t dat) override;
    void savport(std::int32_t dir, std::int32_t dat) override;
    void halt() override;

    void beginChange();
    void endChange();
    void beginWayOut();
    void execute();
    void announceHalt();
    void finishInstruction();
    void finishHalt();
    std::int64_t executeBatch(std::int64_t most);
    template <typename Acceptance>
    void accept(const Acceptance& acceptance);
    void giveBack();

    HaltHandler& handler_;
    std::unique_ptr<Moment> now_;
    std::unique_ptr<Breakpoints> breakpoints_ = std::make_unique<Breakpoints>();
    History history_;
    Trace trace_;
    Replay replay_;  // for the way back

    Changing changing_ = Changing::nothing;
    int haltsOpen_ = 0;
    bool clearedInHalt_ = false;
    std::unique_ptr<Moment> before_;  // the machine before it was changed from outside
    TouchedCells touched_;

    Written written_;
    std::vector<ShownCell> shownCells_;
    /// A cell that an INTR borrows, its own byte, and what the instruction stores there. More than one where
    /// the instruction is a HLT, whose way out is an INTR.
    struct Borrowed {
        std::int32_t address;
        std::uint8_t byte;
        std::optional<std::uint8_t> stored;
        bool counted;  // the instruction, already
    };
    std::vector<Borrowed> borrowed_;
};

}  // namespace tavinor
