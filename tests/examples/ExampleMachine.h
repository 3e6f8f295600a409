#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "machine/Host.h"
#include "machine/MachineState.h"

namespace tavinor::examples {

/// Where the examples keep what they read, what they leave and their stack.
constexpr std::int32_t dataAddress = 0x1000;
constexpr std::int32_t resultAddress = 0x2000;
constexpr std::int32_t stackTop = 0x4000;

std::filesystem::path folder();
std::filesystem::path sourcePath(std::string_view name);
/// Where an assembly of the source writes its image, so that a student's own replaces the one that came with
/// it.
std::filesystem::path imagePath(std::string_view name);
std::string readFile(const std::filesystem::path& path);

struct Output {
    std::int32_t port;
    std::int32_t value;
    int step;  ///< How many instructions had been executed before the OUT.
};

/// A machine with one program image in it, run as a student would: data written by hand, reset, run to HLT.
class ExampleMachine final : public Host {
  public:
    explicit ExampleMachine(const char* program) : ExampleMachine(imagePath(program)) {}
    explicit ExampleMachine(const std::filesystem::path& image);

    /// Resets the machine and forgets what was recorded. Memory and ports stay; the places for results get
    /// rubbish, so that a result of an earlier run cannot pass for a new one.
    void start();
    void step();
    /// Steps until HLT. False, and a failed test, when it does not come or the program damaged itself.
    bool finish(int limit = 2'000'000);
    bool run() {
        start();
        return finish();
    }

    [[nodiscard]] MachineState& machine() { return machine_; }
    [[nodiscard]] bool halted() const { return halted_; }
    [[nodiscard]] int steps() const { return steps_; }
    [[nodiscard]] std::int32_t lowestSP() const { return lowestSP_; }
    [[nodiscard]] const std::vector<Output>& outputs() const { return outputs_; }
    [[nodiscard]] std::vector<int> outputValues() const;

    [[nodiscard]] int byte(std::int32_t address) const;
    [[nodiscard]] int word(std::int32_t address) const;
    [[nodiscard]] std::vector<std::uint8_t> bytes(std::int32_t address, std::size_t count) const;
    void setByte(std::int32_t address, int value);
    void setWord(std::int32_t address, int value);
    void setBytes(std::int32_t address, const std::vector<std::uint8_t>& values);

    static constexpr int rubbish = 0xA5;

    void savmem(std::int32_t dir, std::int32_t dat) override { machine_.storeMemory(dir, dat); }
    void savport(std::int32_t dir, std::int32_t dat) override;
    void halt() override { halted_ = true; }

  private:
    MachineState machine_;
    std::vector<std::uint8_t> program_;
    std::vector<Output> outputs_;
    std::int32_t lowestSP_ = stackTop;
    int steps_ = 0;
    bool halted_ = false;
};

}  // namespace tavinor::examples
