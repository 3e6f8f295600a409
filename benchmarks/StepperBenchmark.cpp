// How many instructions a second EjecutaPASO executes, called once an instruction through the real seam.

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <memory>

#include "benchmarks/PlainHost.h"
#include "benchmarks/Programs.h"
#include "machine/Stepper.h"

using namespace tavinor;

namespace {

/// The best of several rounds: what else the computer does only ever slows one down.
double bestRate(MachineState& machine, Host& host) {
    using Clock = std::chrono::steady_clock;
    constexpr int rounds = 20;
    constexpr int instructions = 10'000'000;
    double best = 0;
    for (int round = 0; round < rounds; ++round) {
        const auto start = Clock::now();
        for (int i = 0; i < instructions; ++i) EjecutaPASO(machine, host);
        const double seconds = std::chrono::duration<double>(Clock::now() - start).count();
        best = std::max(best, instructions / seconds);
    }
    return best;
}

}  // namespace

int main() {
    for (const benchmarks::Program& program : benchmarks::endlessPrograms()) {
        const auto machine = std::make_unique<MachineState>();
        benchmarks::place(program, *machine);
        benchmarks::PlainHost host(*machine);
        std::printf("%-20s %6.0f million instructions a second\n", program.name,
                    bestRate(*machine, host) / 1e6);
    }
}
