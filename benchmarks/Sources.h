#pragma once

#include <string>

namespace tavinor::benchmarks {

/// Ten lines as students write them, with a label of their own. Every block begins at 0000 again, because a
/// million lines do not fit the memory.
inline std::string block(int number) {
    const std::string label = "BUCLE" + std::to_string(number);
    return "; Suma los elementos de la tabla\r\n        ORG     0100H\r\n" + label +
           ":  MOV     A,M             ; elemento\r\n        ADD     B\r\n        MOV     B , A\r\n"
           "        INX     H               ; el siguiente\r\n        DCR     C\r\n        JNZ     " +
           label + "\r\n        MVI     A,0FFH-10\r\n\tDFB\t1,2,3,4,5,6,7,8\r\n";
}

/// A source that assembles, of `lines` lines.
inline std::string source(int lines) {
    std::string text;
    for (int line = 0; line < lines; line += 10) text += block(line);
    return text;
}

}  // namespace tavinor::benchmarks
