#include "tests/examples/ExampleMachine.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <iterator>
#include <memory>

#include "assembler/OutputPaths.h"
#include "images/HexLoader.h"
#include "machine/Interrupts.h"
#include "machine/Stepper.h"

namespace tavinor::examples {

std::filesystem::path folder() {
    return TAVINOR_EXAMPLES;
}

std::filesystem::path sourcePath(std::string_view name) {
    return folder() / (std::string(name) + ".asm");
}

std::filesystem::path imagePath(std::string_view name) {
    return outputPaths(sourcePath(name)).hex;
}

std::string readFile(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    EXPECT_TRUE(file) << path;
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

ExampleMachine::ExampleMachine(const std::filesystem::path& image) {
    const auto breakpoints = std::make_unique<Breakpoints>();
    WorkObserver unobserved;
    const LoadResult result = carga(image, machine_, *breakpoints, *this, unobserved);
    EXPECT_TRUE(result.loaded) << image << ": " << result.message;
    program_ = bytes(0, dataAddress);
}

void ExampleMachine::start() {
    reset(machine_);
    std::fill_n(machine_.mem.begin() + resultAddress, 0x20, std::uint8_t{rubbish});
    outputs_.clear();
    lowestSP_ = stackTop;
    steps_ = 0;
    halted_ = false;
}

void ExampleMachine::step() {
    EjecutaPASO(machine_, *this);
    ++steps_;
    // Programs without a stack of their own leave SP at 0.
    if (machine_.SP != 0) lowestSP_ = std::min(lowestSP_, machine_.SP);
}

bool ExampleMachine::finish(int limit) {
    while (!halted_ && steps_ < limit) step();
    EXPECT_TRUE(halted_) << "no HLT after " << steps_ << " instructions";
    const bool intact = std::equal(program_.begin(), program_.end(), machine_.mem.begin());
    EXPECT_TRUE(intact) << "the program wrote over itself";
    return halted_ && intact;
}

std::vector<int> ExampleMachine::outputValues() const {
    std::vector<int> values;
    std::transform(outputs_.begin(), outputs_.end(), std::back_inserter(values),
                   [](const Output& output) { return output.value; });
    return values;
}

int ExampleMachine::byte(std::int32_t address) const {
    return machine_.mem[asIndex(address, memorySize)];
}

int ExampleMachine::word(std::int32_t address) const {
    return byte(address) + 256 * byte(address + 1);
}

std::vector<std::uint8_t> ExampleMachine::bytes(std::int32_t address, std::size_t count) const {
    const auto first = machine_.mem.begin() + address;
    return {first, first + static_cast<std::ptrdiff_t>(count)};
}

void ExampleMachine::setByte(std::int32_t address, int value) {
    machine_.storeMemory(address, value);
}

void ExampleMachine::setWord(std::int32_t address, int value) {
    setByte(address, value % 256);
    setByte(address + 1, value / 256);
}

void ExampleMachine::setBytes(std::int32_t address, const std::vector<std::uint8_t>& values) {
    std::copy(values.begin(), values.end(), machine_.mem.begin() + address);
}

void ExampleMachine::savport(std::int32_t dir, std::int32_t dat) {
    machine_.storePort(dir, dat);
    outputs_.push_back({dir, dat, steps_});
}

}  // namespace tavinor::examples
