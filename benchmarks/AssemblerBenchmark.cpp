// How long the assembler takes for sources of 10,000, 100,000 and 1,000,000 lines.

#include <array>
#include <chrono>
#include <cstdio>
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

/// The best of three runs, in seconds.
double seconds(const std::string& text) {
    double best = 1e9;
    for (int run = 0; run < 3; ++run) {
        AssemblyObserver nobody;
        const auto start = std::chrono::steady_clock::now();
        const AssemblyResult result = tavinor::assemble(text, nobody);
        const std::chrono::duration<double> taken = std::chrono::steady_clock::now() - start;
        if (!result.assembled) return -1;
        if (taken.count() < best) best = taken.count();
    }
    return best;
}

}  // namespace

int main() {
    double previous = 0;
    for (const int lines : std::array{10'000, 100'000, 1'000'000}) {
        const double taken = seconds(source(lines));
        std::printf("%9d lines  %.4f s", lines, taken);
        if (previous > 0) std::printf("  %.1f times the size before", taken / previous);
        std::printf("\n");
        previous = taken;
    }
}
