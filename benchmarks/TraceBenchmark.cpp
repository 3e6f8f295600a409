// The trace: how fast rows are recorded, what they cost in memory, how long it takes to look at them
// anywhere, to clear them and to save them.

#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <memory>
#include <string>

#include "benchmarks/PlainHost.h"
#include "benchmarks/Programs.h"
#include "machine/Stepper.h"
#include "ui/trace/TraceRecorder.h"
#include "ui/trace/TraceText.h"

using namespace tavinor;

namespace {

using Clock = std::chrono::steady_clock;

double secondsSince(Clock::time_point start) {
    return std::chrono::duration<double>(Clock::now() - start).count();
}

/// Bytes of memory that the process has in use.
double residentBytes() {
    std::ifstream statm("/proc/self/statm");
    double total = 0;
    double resident = 0;
    statm >> total >> resident;
    return resident * static_cast<double>(sysconf(_SC_PAGESIZE));
}

ShownBoxes shown(const MachineState& machine) {
    return {machine, machine.mem[static_cast<std::size_t>(machine.HL)]};
}

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

/// Memory that no predictor can guess; the ports stay 00.
void fillMemory(MachineState& machine) {
    std::uint32_t seed = 12345;
    for (int i = 0; i < memorySize; ++i) {
        seed = seed * 1664525 + 1013904223;
        machine.mem[static_cast<std::size_t>(i)] = static_cast<std::uint8_t>(seed >> 24);
    }
}

void record(TraceRecorder& recorder, MachineState& machine, Host& host, std::uint64_t rows) {
    for (std::uint64_t i = 0; i < rows; ++i) {
        recorder.listainstru(machine, shown(machine));
        EjecutaPASO(machine, host);
        machine.PC &= 0xFFFF;
        recorder.listareg(shown(machine));
    }
}

/// The best of several rounds: what else the computer does only ever slows one down.
void measureRecording(const benchmarks::Program& program, std::uint64_t rows) {
    constexpr std::uint64_t rounds = 10;
    const auto machine = std::make_unique<MachineState>();
    fillMemory(*machine);
    benchmarks::place(program, *machine);
    benchmarks::PlainHost host(*machine);
    TraceRecorder recorder;
    record(recorder, *machine, host, 200'000);  // fixed costs
    const double before = residentBytes();
    double best = 0;
    for (std::uint64_t round = 0; round < rounds; ++round) {
        const auto start = Clock::now();
        const std::uint64_t part = rows / rounds;
        record(recorder, *machine, host, part);
        best = std::max(best, static_cast<double>(part) / secondsSince(start));
    }
    std::printf("%-24s %6.1f million rows a second, %8.4f bytes a row\n", program.name, best / 1e6,
                (residentBytes() - before) / static_cast<double>(rows));
}

void measureReading(std::uint64_t rows) {
    const auto machine = std::make_unique<MachineState>();
    fillMemory(*machine);
    benchmarks::place(tracedPrograms().back(), *machine);
    benchmarks::PlainHost host(*machine);
    TraceRecorder recorder;
    record(recorder, *machine, host, rows);
    double slowest = 0;
    std::string text;
    for (std::uint64_t i = 0; i < 100; ++i) {
        const std::uint64_t first = i * 7919 * 104729 % (rows - 50);
        const auto start = Clock::now();
        recorder.store().read(first, 50, [&text](const TraceRow& row, const RowTexts* texts) {
            text.clear();
            appendLine(text, row, texts);
        });
        slowest = std::max(slowest, secondsSince(start));
    }
    std::printf("50 rows anywhere         %6.2f ms at the most\n", slowest * 1e3);
    const auto start = Clock::now();
    recorder.clear();
    std::printf("clearing                 %6.2f ms\n", secondsSince(start) * 1e3);
}

}  // namespace

/// An argument is the number of rows, in millions.
int main(int argc, char* argv[]) {
    const std::uint64_t rows = 1'000'000 * std::strtoull(argc > 1 ? argv[1] : "20", nullptr, 10);
    for (const benchmarks::Program& program : tracedPrograms()) measureRecording(program, rows);
    measureReading(rows);
}
