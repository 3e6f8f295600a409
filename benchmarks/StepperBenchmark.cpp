// How many instructions a second EjecutaPASO executes, called once an instruction through the real seam, and
// how many run in batches, with all that a run has to count.

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <memory>

#include "benchmarks/Programs.h"
#include "machine/Batch.h"
#include "machine/Stepper.h"
#include "tests/support/PlainHost.h"

using namespace tavinor;

namespace {

constexpr int rounds = 20;
constexpr std::int64_t sliceLength = 1024;
constexpr std::int64_t instructionsOfARound = 9765 * sliceLength;  // some 10 million

/// Instructions a second of one round.
template <class Round>
double rateOf(const Round& round) {
    using Clock = std::chrono::steady_clock;
    const auto start = Clock::now();
    round();
    const double seconds = std::chrono::duration<double>(Clock::now() - start).count();
    return static_cast<double>(instructionsOfARound) / seconds;
}

/// A program on a machine of its own, in one of the two ways.
struct Workbench {
    explicit Workbench(const benchmarks::Program& program) {
        benchmarks::place(program, *machine);
        machine->synmem();
    }

    void step() {
        MachineState& m = *machine;
        for (std::int64_t i = 0; i < instructionsOfARound; ++i) EjecutaPASO(m, host);
    }
    void runBatches() {
        for (std::int64_t done = 0; done < instructionsOfARound; done += sliceLength) {
            runBatch(*machine, *breakpoints, {sliceLength}, written);
        }
    }

    std::unique_ptr<MachineState> machine = std::make_unique<MachineState>();
    std::unique_ptr<Breakpoints> breakpoints = std::make_unique<Breakpoints>();
    test::PlainHost host{*machine};
    Written written;
};

}  // namespace

/// The best of several rounds, turn about: what else the computer does only ever slows one down.
int main() {
    for (const benchmarks::Program& program : benchmarks::endlessPrograms()) {
        Workbench stepped(program);
        Workbench batched(program);
        double steps = 0;
        double batches = 0;
        for (int round = 0; round < rounds; ++round) {
            steps = std::max(steps, rateOf([&] { stepped.step(); }));
            batches = std::max(batches, rateOf([&] { batched.runBatches(); }));
        }
        std::printf("%-20s EjecutaPASO %4.0f, batches %4.0f million instructions a second: %.2f times\n",
                    program.name, steps / 1e6, batches / 1e6, batches / steps);
    }
}
