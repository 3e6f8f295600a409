#pragma once

#include <array>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <optional>
#include <string_view>
#include <vector>

#include "history/Moment.h"
#include "machine/Host.h"
#include "tests/trace/NaiveTrace.h"
#include "trace/RegisterColumns.h"

namespace tavinor::test {

/// What `Simulation` does, done as plainly as possible: one instruction after the other, every cell of the
/// grids and every text of the trace kept as it was shown. It can be copied as a whole, which stands for the
/// way back.
class PlainSimulation final : private Host {
  public:
    PlainSimulation();

    /// Called where a HLT asks for the way out.
    std::function<void(PlainSimulation&)> onHalt;
    /// Called, where it is set, just before a memory cell is written.
    std::function<void(std::int32_t address)> onStore;
    /// A long play does without the texts of the rows, which take their time and memory.
    bool keepsRows = true;

    /// One instruction with its rows. False when it failed.
    bool step(const RegisterTexts* typed);
    void refresh();
    void refreshM() { moment.showM(); }
    void setRegisters(const Registers& registers);
    void writeMemory(std::int32_t address, int byte) {
        savmem(address, byte);
        moment.machine.synmem();  // the listing that follows does it
    }
    void writePort(std::int32_t number, int byte) { savport(number, byte); }
    void reset();
    void accept(std::int32_t address);
    void rst75();
    void intr(std::string_view vectorText);
    void clearTrace() { trace.clear(); }
    void load(const std::filesystem::path& path);

    /// What the register boxes show while nothing is typed in them.
    [[nodiscard]] RegisterTexts boxes() const;

    Moment moment;
    std::vector<std::uint8_t> grid = std::vector<std::uint8_t>(memorySize);
    NaiveTrace trace;
    std::vector<std::int32_t> stores;  ///< All memory cells that were written.

  private:
    void savmem(std::int32_t dir, std::int32_t dat) override;
    void savport(std::int32_t dir, std::int32_t dat) override { moment.machine.storePort(dir, dat); }
    void halt() override;
    void noteStore(std::int32_t address);
    [[nodiscard]] BoxTexts boxTexts(const RegisterTexts* typed) const;
};

}  // namespace tavinor::test
