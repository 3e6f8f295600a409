#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "machine/MachineState.h"
#include "tests/support/Bits.h"
#include "tests/support/TestHost.h"

namespace tavinor::test {

/// A second interpreter, decoded from the bit fields of the opcode and calculating bit by bit, to compare the
/// stepper with. A HLT is only counted.
class ReferenceMachine {
  public:
    explicit ReferenceMachine(const MachineState& start);

    /// Executes one instruction; returns the number of the error that ended it, or `noError`.
    int step(bool advance = true);

    [[nodiscard]] Registers registers() const;
    /// All of it, memory included, in the form of the machine under test.
    [[nodiscard]] MachineState machine() const;
    void setPC(int address) { pc_ = address; }

    std::vector<Write> memoryWrites;
    std::vector<Write> portWrites;
    int halts = 0;

  private:
    /// Registers by their code in an opcode: B C D E H L, then F in the place of memory, then A.
    enum Code { codeB, codeC, codeD, codeE, codeH, codeL, codeF, codeA };
    static constexpr int memoryCode = 6;

    int load(int code) const;
    void store(int code, int value);
    int pair(int p) const;
    void setPair(int p, int value);
    void write(int address, int value);
    void push(int value);
    int pop();
    void call(int target);
    bool holds(int condition) const;
    bool carry() const { return (cells_[codeF] & 1) != 0; }
    void setCarry(bool carry) { cells_[codeF] = (cells_[codeF] & 0xFE) + (carry ? 1 : 0); }

    void lowQuarter(OpcodeFields f);
    void highQuarter(OpcodeFields f);
    void moveThroughMemory(int y);
    void stepCell(int code, bool up);
    void accumulatorOnly(int y);
    void rotate(int y);
    void decimalAdjust();
    void arithmetic(int operation, int operand);
    void addPair(int value);
    void returns(int p);
    void singles(int y);
    void readInterrupts();
    void setInterrupts();

    std::array<int, 8> cells_{};
    std::array<int, 4> pairs_{};  ///< As after the last instruction that ended: BC, DE, HL, PSW.
    int pc_, sp_;
    std::array<std::uint8_t, mirroredMemorySize> memory_;
    std::array<std::uint8_t, portCount> ports_;
    InterruptState interrupts_;
    bool sid_, sod_;
    int byte_ = 0, word_ = 0;  ///< Operands of the current instruction.
    int error_ = 0;
};

/// The length of the instruction, from the bit fields of its opcode.
int lengthByFields(int opcode);

}  // namespace tavinor::test
