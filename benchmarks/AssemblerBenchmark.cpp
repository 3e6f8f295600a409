// How long the assembler takes for sources of 10,000, 100,000 and 1,000,000 lines.

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>
#include <ctime>
#include <string>

#include "assembler/Ensambla.h"
#include "benchmarks/Sources.h"

namespace {

using tavinor::AssemblyObserver;
using tavinor::AssemblyResult;

/// Seconds by the clock on the wall, and of the processor.
struct Seconds {
    double wall = 1e9;
    double processor = 1e9;
};

/// The best of five runs.
Seconds measure(const std::string& text) {
    Seconds best;
    for (int run = 0; run < 5; ++run) {
        AssemblyObserver unobserved;
        const auto start = std::chrono::steady_clock::now();
        const std::clock_t processorStart = std::clock();
        const AssemblyResult result = tavinor::assemble(text, unobserved);
        const std::clock_t processorTaken = std::clock() - processorStart;
        const std::chrono::duration<double> taken = std::chrono::steady_clock::now() - start;
        if (!result.assembled) return {};
        best.wall = std::min(best.wall, taken.count());
        best.processor = std::min(best.processor, static_cast<double>(processorTaken) / CLOCKS_PER_SEC);
    }
    return best;
}

}  // namespace

int main() {
    Seconds previous;
    for (const int lines : std::array{10'000, 100'000, 1'000'000}) {
        const Seconds taken = measure(tavinor::benchmarks::source(lines));
        std::printf("%9d lines  %.4f s  %.4f s of the processor", lines, taken.wall, taken.processor);
        if (lines > 10'000) {
            std::printf("  (%.1f and %.1f times those before)", taken.wall / previous.wall,
                        taken.processor / previous.processor);
        }
        std::printf("\n");
        previous = taken;
    }
}
