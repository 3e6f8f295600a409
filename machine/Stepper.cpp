#include "machine/Stepper.h"

#include "machine/Interrupts.h"
#include "machine/Opcodes.h"

namespace tavinor {

namespace {

/// An instruction's surroundings when it is executed by itself: the operands as they were fetched with the
/// opcode, and the host for all that is written.
template <Advance advance>
class SingleStep {
  public:
    SingleStep(MachineState& machine, Host& host)
        : m_(machine),
          host_(host),
          start_(machine.PC),
          low_(machine.at(start_ + 1)),
          high_(machine.at(start_ + 2)) {}

    /// Executes the instruction that begins with `op`.
    void execute(int op) {
        m_.PC = start_ + stride;
        tStates_ = tStates[static_cast<std::size_t>(op)];
        Opcodes(m_, *this).execute(op);
    }

    [[nodiscard]] int tStatesTaken() const { return tStates_; }

    std::uint8_t byte() {
        m_.PC = start_ + 2 * stride;
        return low_;
    }
    std::int32_t word() {
        m_.PC = start_ + 3 * stride;
        return high_ * 256 + low_;
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
    static constexpr std::int32_t stride = advance == Advance::past ? 1 : 0;

    MachineState& m_;
    Host& host_;
    std::int32_t start_;
    std::uint8_t low_, high_;
    int tStates_ = 0;
};

template <Advance advance>
int execute(MachineState& m, Host& host) {
    const std::size_t pc = asIndex(m.PC, memorySize);  // the word operand of a higher one lies outside `mem`
    SingleStep<advance> step(m, host);
    const int op = m.mem[pc];
    m.synmem();
    step.execute(op);
    m.recomputePairs();
    return step.tStatesTaken();
}

}  // namespace

int EjecutaPASO(MachineState& m, Host& host, Advance advance) {
    return advance == Advance::past ? execute<Advance::past>(m, host) : execute<Advance::stay>(m, host);
}

}  // namespace tavinor
