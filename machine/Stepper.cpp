#include "machine/Stepper.h"

#include "machine/Interrupts.h"
#include "machine/Opcodes.h"

namespace tavinor {

namespace {

/// An instruction's surroundings when it is executed by itself: the operands as they were fetched with the
/// opcode, and the host for all that is written.
class SingleStep {
  public:
    SingleStep(MachineState& machine, Host& host, Advance advance)
        : m_(machine),
          host_(host),
          start_(machine.PC),
          stride_(advance == Advance::past ? 1 : 0),
          byte_(machine.at(start_ + 1)),
          word_(machine.at(start_ + 2) * 256 + byte_) {}

    /// Executes the instruction that begins with `op`.
    void execute(int op) {
        m_.PC = start_ + stride_;
        tStates_ = tStates[static_cast<std::size_t>(op)];
        Opcodes(m_, *this).execute(op);
    }

    [[nodiscard]] int tStatesTaken() const { return tStates_; }

    std::uint8_t byte() {
        m_.PC = start_ + 2 * stride_;
        return byte_;
    }
    std::int32_t word() {
        m_.PC = start_ + 3 * stride_;
        return word_;
    }
    [[nodiscard]] std::uint8_t at(std::int32_t address) const { return m_.at(address); }
    void savmem(std::int32_t dir, std::int32_t dat) { host_.savmem(dir, dat); }
    [[nodiscard]] std::uint8_t port(std::uint8_t number) const { return m_.port[number]; }
    void savport(std::int32_t dir, std::int32_t dat) { host_.savport(dir, dat); }
    void rim() { OPRIM(m_); }
    void sim() { OPSIM(m_); }
    void enableInterrupts(bool on) { m_.intState.IE = on; }
    void extra(int states) { tStates_ += states; }
    /// A call that cannot push its return address fails where the byte is stored.
    [[nodiscard]] static bool mayCall() { return true; }
    [[nodiscard]] bool halt() {
        host_.halt();
        return true;
    }

  private:
    MachineState& m_;
    Host& host_;
    std::int32_t start_;
    std::int32_t stride_;
    std::uint8_t byte_;
    std::int32_t word_;
    int tStates_ = 0;
};

}  // namespace

int EjecutaPASO(MachineState& m, Host& host, Advance advance) {
    const std::size_t pc = asIndex(m.PC, memorySize);  // the word operand of a higher one lies outside `mem`
    SingleStep step(m, host, advance);
    const int op = m.mem[pc];
    m.synmem();
    step.execute(op);
    m.recomputePairs();
    return step.tStatesTaken();
}

}  // namespace tavinor
