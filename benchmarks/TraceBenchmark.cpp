// The trace: how fast a simulation runs that records it, what that holds, how long it takes to look at rows
// anywhere, to clear them, to go back and to search.

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

#include "benchmarks/Programs.h"
#include "simulation/Simulation.h"
#include "simulation/WayBack.h"
#include "trace/TraceReader.h"
#include "trace/TraceText.h"

using namespace tavinor;

namespace {

using Clock = std::chrono::steady_clock;

/// A search among more takes minutes.
constexpr std::uint64_t mostRowsToSearch = 1'000'000'000;

double secondsSince(Clock::time_point start) {
    return std::chrono::duration<double>(Clock::now() - start).count();
}

/// No program here has a HLT.
class NoHalts final : public HaltHandler {
    void haltComes() override {}
    void halt() override { std::abort(); }
};

std::vector<benchmarks::Program> tracedPrograms() {
    std::vector<benchmarks::Program> programs = benchmarks::endlessPrograms();
    programs.push_back({"port wait",
                        {0xDB, 0x05,           // IN 05
                         0xE6, 0x80,           // ANI 80
                         0xCA, 0x00, 0x00}});  // JZ 0000
    programs.push_back({"sum of all memory",
                        {0x21, 0x00, 0x00,     // LXI H,0000
                         0x7E,                 // MOV A,M
                         0x80,                 // ADD B
                         0x47,                 // MOV B,A
                         0x23,                 // INX H
                         0xC3, 0x03, 0x00}});  // JMP 0003
    programs.push_back({"rewriting all of memory",
                        {0x21, 0x20, 0x00,                               // LXI H,0020
                         0x34,                                           // INR M
                         0x23,                                           // INX H
                         0x7C,                                           // MOV A,H
                         0xB5,                                           // ORA L
                         0xC2, 0x03, 0x00,                               // JNZ 0003
                         0xC3, 0x00, 0x00}});                            // JMP 0000
    programs.push_back({"random bytes to memory", {0x31, 0x00, 0xF0,     // LXI SP,F000
                                                   0x21, 0x00, 0x10,     // LXI H,1000
                                                   0x78,                 // MOV A,B
                                                   0x07,                 // RLC
                                                   0x81,                 // ADD C
                                                   0x47,                 // MOV B,A
                                                   0xA9,                 // XRA C
                                                   0x82,                 // ADD D
                                                   0x4F,                 // MOV C,A
                                                   0x77,                 // MOV M,A
                                                   0x14,                 // INR D
                                                   0x09,                 // DAD B
                                                   0xC5,                 // PUSH B
                                                   0xD1,                 // POP D
                                                   0x7C,                 // MOV A,H
                                                   0xF6, 0x10,           // ORI 10
                                                   0x67,                 // MOV H,A
                                                   0xC3, 0x06, 0x00}});  // JMP 0006
    return programs;
}

void load(Simulation& simulation, const benchmarks::Program& program) {
    std::uint32_t seed = 12345;
    for (std::int32_t address = 0; address < memorySize; ++address) {
        seed = seed * 1664525 + 1013904223;
        simulation.writeMemory(address, static_cast<int>(seed >> 24));
    }
    std::int32_t next = 0;
    for (const std::uint8_t byte : program.bytes) simulation.writeMemory(next++, byte);
    simulation.refresh();
    simulation.clearTrace();
}

void record(Simulation& simulation, std::uint64_t rows) {
    constexpr std::uint64_t slice = 4096;
    for (std::uint64_t done = 0; done < rows;) {
        const auto most = static_cast<std::int64_t>(std::min(slice, rows - done));
        done += static_cast<std::uint64_t>(simulation.run(most, nullptr));
    }
}

/// The best of several rounds: what else the computer does only ever slows one down.
void measureRecording(Simulation& simulation, std::uint64_t rows) {
    constexpr std::uint64_t rounds = 10;
    double best = 0;
    for (std::uint64_t round = 0; round < rounds; ++round) {
        const auto start = Clock::now();
        const std::uint64_t part = rows / rounds;
        record(simulation, part);
        best = std::max(best, static_cast<double>(part) / secondsSince(start));
    }
    const std::size_t held =
        simulation.history().checkpoints().reservedBytes() + simulation.history().bytesOfChanges();
    std::printf("  recording           %8.1f million rows a second, %.2f MiB for %.0f million\n", best / 1e6,
                static_cast<double>(held) / (1024 * 1024), static_cast<double>(rows) / 1e6);
}

void measureReading(const Simulation& simulation) {
    const std::uint64_t rows = simulation.trace().size();
    TraceReader reader(simulation.trace());
    double slowest = 0;
    std::string text;
    for (std::uint64_t i = 0; i < 100; ++i) {
        const std::uint64_t first = i * 7919 * 104729 % (rows - 50);
        const auto start = Clock::now();
        reader.read(first, 50, [&text](const TraceRow& row, const RowTexts* texts) {
            text.clear();
            appendLine(text, row, texts);
        });
        slowest = std::max(slowest, secondsSince(start));
    }
    std::printf("  50 rows anywhere    %8.2f ms at the most\n", slowest * 1e3);
}

/// One step back after the other, the first one apart from the others. The machine and its rows follow.
void measureSteps(const char* name, Simulation& simulation) {
    double first = 0;
    double slowest = 0;
    for (int i = 0; i < 100; ++i) {
        const auto start = Clock::now();
        simulation.goBack(WayBack(simulation).oneStep());
        const double seconds = secondsSince(start);
        (i == 0 ? first : slowest) = std::max(i == 0 ? first : slowest, seconds);
    }
    std::printf("  %-19s %8.2f ms the first, %.2f ms at the most\n", name, first * 1e3, slowest * 1e3);
}

/// The searches that find nothing on the way to the beginning.
void measureSearches(Simulation& simulation) {
    simulation.toggleBreakpoint(memorySize - 1);
    WorkObserver unobserved;
    auto start = Clock::now();
    static_cast<void>(WayBack(simulation).toBreakpoint(unobserved));
    std::printf("  back to breakpoint  %8.2f s\n", secondsSince(start));
    start = Clock::now();
    static_cast<void>(WayBack(simulation).toLastWrite(memorySize - 1, unobserved));
    std::printf("  back to last write  %8.2f s\n", secondsSince(start));
}

void measure(const benchmarks::Program& program, std::uint64_t rows) {
    NoHalts noHalts;
    Simulation simulation(noHalts);
    load(simulation, program);
    std::printf("%s\n", program.name);
    measureRecording(simulation, rows);
    measureReading(simulation);
    if (rows <= mostRowsToSearch) measureSearches(simulation);
    measureSteps("a step back", simulation);
    const std::uint64_t middle = simulation.history().end().instructions / 2;
    simulation.goBack({middle, simulation.history().changesUpTo(middle)});
    measureSteps("in an old place", simulation);
    const auto start = Clock::now();
    simulation.clearTrace();
    std::printf("  clearing            %8.2f ms\n", secondsSince(start) * 1e3);
}

}  // namespace

/// trace_benchmark [MILLIONS [WORD]]: so many million rows, with 10000 some minutes, of each program whose
/// name has the word in it.
int main(int argc, char* argv[]) {
    const std::uint64_t rows = 1'000'000 * std::strtoull(argc > 1 ? argv[1] : "20", nullptr, 10);
    const std::string_view word = argc > 2 ? argv[2] : "";
    for (const benchmarks::Program& program : tracedPrograms()) {
        if (std::string_view(program.name).find(word) != std::string_view::npos) measure(program, rows);
    }
}
