// How long the assembler takes for sources of 10,000, 100,000 and 1,000,000 lines.

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>
#include <ctime>
#include <string>

#include "assembler/Ensambla.h"

namespace {

using tavinor::AssemblyObserver;
using tavinor::AssemblyResult;

/// Ten lines as students write them, with a label of their own. Every block begins at 0000 again, because a
/// million lines do not fit the memory.
std::string block(int number) {
    const std::string label = "BUCLE" + std::to_string(number);
    return "; Suma los elementos de la tabla\r\n        ORG     0100H\r\n" + label +
           ":  MOV     A,M             ; elemento\r\n        ADD     B\r\n        MOV     B , A\r\n"
           "        INX     H               ; el siguiente\r\n        DCR     C\r\n        JNZ     " +
           label + "\r\n        MVI     A,0FFH-10\r\n\tDFB\t1,2,3,4,5,6,7,8\r\n";
}

std::string source(int lines) {
    std::string text;
    for (int line = 0; line < lines; line += 10) text += block(line);
    return text;
}

/// Seconds by the clock on the wall, and of the processor.
struct Seconds {
    double wall = 1e9;
    double processor = 1e9;
};

/// The best of five runs.
Seconds measure(const std::string& text) {
    Seconds best;
    for (int run = 0; run < 5; ++run) {
        AssemblyObserver nobody;
        const auto start = std::chrono::steady_clock::now();
        const std::clock_t processorStart = std::clock();
        const AssemblyResult result = tavinor::assemble(text, nobody);
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
        const Seconds taken = measure(source(lines));
        std::printf("%9d lines  %.4f s  %.4f s of the processor", lines, taken.wall, taken.processor);
        if (lines > 10'000) {
            std::printf("  (%.1f and %.1f times those before)", taken.wall / previous.wall,
                        taken.processor / previous.processor);
        }
        std::printf("\n");
        previous = taken;
    }
}
