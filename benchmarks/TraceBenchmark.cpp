// The trace: how fast a simulation runs that records it, what that holds, how long it takes to look at rows
// anywhere, to clear them, and to go back.

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include "benchmarks/Programs.h"
#include "simulation/Simulation.h"
#include "simulation/WayBack.h"
#include "trace/TraceReader.h"
#include "trace/TraceText.h"

using namespace tavinor;

namespace {

using Clock = std::chrono::steady_clock;

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
                        {0x21, 0x00, 0x00,                               // LXI H,0000
                         0x7E,                                           // MOV A,M
                         0x80,                                           // ADD B
                         0x47,                                           // MOV B,A
                         0x23,                                           // INX H
                         0xC3, 0x03, 0x00}});                            // JMP 0003
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
void measureRecording(const benchmarks::Program& program, std::uint64_t rows) {
    constexpr std::uint64_t rounds = 10;
    NoHalts noHalts;
    Simulation simulation(noHalts);
    load(simulation, program);
    double best = 0;
    for (std::uint64_t round = 0; round < rounds; ++round) {
        const auto start = Clock::now();
        const std::uint64_t part = rows / rounds;
        record(simulation, part);
        best = std::max(best, static_cast<double>(part) / secondsSince(start));
    }
    std::printf("%-24s %6.1f million rows a second, %6.2f MiB held\n", program.name, best / 1e6,
                static_cast<double>(simulation.history().checkpoints().bytes()) / (1024 * 1024));
}

void measureReading(std::uint64_t rows) {
    NoHalts noHalts;
    Simulation simulation(noHalts);
    load(simulation, tracedPrograms().back());
    record(simulation, rows);
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
    std::printf("50 rows anywhere         %6.2f ms at the most\n", slowest * 1e3);
    const auto start = Clock::now();
    simulation.clearTrace();
    std::printf("clearing                 %6.2f ms\n", secondsSince(start) * 1e3);
}

/// One step back after the other, with all that the window asks for; then back to where nothing stops it.
void measureWaysBack(std::uint64_t rows) {
    NoHalts noHalts;
    Simulation simulation(noHalts);
    load(simulation, tracedPrograms().back());
    record(simulation, rows);
    double slowest = 0;
    for (int i = 0; i < 100; ++i) {
        const auto start = Clock::now();
        simulation.goBack(WayBack(simulation).oneStep());
        slowest = std::max(slowest, secondsSince(start));
    }
    std::printf("a step back              %6.2f ms at the most\n", slowest * 1e3);
    simulation.toggleBreakpoint(3);  // only the beginning was there
    WorkObserver unobserved;
    const auto start = Clock::now();
    static_cast<void>(WayBack(simulation).toBreakpoint(unobserved));
    const double seconds = secondsSince(start);
    std::printf("back to a breakpoint     %6.2f s for %.0f million instructions\n", seconds,
                static_cast<double>(rows) / 1e6);
}

}  // namespace

/// An argument is the number of rows, in millions.
int main(int argc, char* argv[]) {
    const std::uint64_t rows = 1'000'000 * std::strtoull(argc > 1 ? argv[1] : "20", nullptr, 10);
    for (const benchmarks::Program& program : tracedPrograms()) measureRecording(program, rows);
    measureReading(rows);
    measureWaysBack(rows);
}
