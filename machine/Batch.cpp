#include "machine/Batch.h"

#include "machine/Interrupts.h"
#include "machine/Opcodes.h"

namespace tavinor {

namespace {

/// Registers that the compiler keeps in those of the computer: no cached pairs, they are put together when an
/// instruction needs one.
struct WorkingRegisters {
    std::uint8_t A, B, C, D, E, F, H, L;
    std::int32_t PC, SP;

    explicit WorkingRegisters(const Registers& r)
        : A(r.A), B(r.B), C(r.C), D(r.D), E(r.E), F(r.F), H(r.H), L(r.L), PC(r.PC), SP(r.SP) {}

    void putBack(Registers& r) const {
        r.A = A;
        r.B = B;
        r.C = C;
        r.D = D;
        r.E = E;
        r.F = F;
        r.H = H;
        r.L = L;
        r.PC = PC;
        r.SP = SP;
        r.recomputePairs();
    }
};

std::int32_t pairBC(const WorkingRegisters& r) {
    return r.B * 256 + r.C;
}
std::int32_t pairDE(const WorkingRegisters& r) {
    return r.D * 256 + r.E;
}
std::int32_t pairHL(const WorkingRegisters& r) {
    return r.H * 256 + r.L;
}
void assignHL(WorkingRegisters& r, std::int32_t pair) {
    r.H = static_cast<std::uint8_t>(pair / 256);
    r.L = static_cast<std::uint8_t>(pair % 256);
}

/// An instruction's surroundings within a batch.
class BatchBus {
  public:
    BatchBus(WorkingRegisters& registers, MachineState& machine, Written& written)
        : r_(registers), m_(machine), written_(written) {}

    /// Operands behind FFFF are in the mirror cells.
    std::uint8_t byte() {
        r_.PC += 1;
        return at(r_.PC - 1);
    }
    std::int32_t word() {
        r_.PC += 2;
        return at(r_.PC - 1) * 256 + at(r_.PC - 2);
    }
    [[nodiscard]] std::uint8_t at(std::int32_t address) const { return m_.at(address); }
    // Where, then what, as in every procedure that stores.
    // NOLINTNEXTLINE(bugprone-easily-swappable-parameters)
    void savmem(std::int32_t dir, std::int32_t dat) {
        const auto byte = static_cast<std::uint8_t>(dat);
        m_.mem[static_cast<std::size_t>(dir)] = byte;
        if (dir < 2) m_.mem[static_cast<std::size_t>(memorySize + dir)] = byte;
        written_.pages[static_cast<std::size_t>(dir / pageSize)] = true;
    }
    [[nodiscard]] std::uint8_t port(std::uint8_t number) const { return m_.port[number]; }
    void savport(std::uint8_t number, std::uint8_t byte) {
        m_.port[number] = byte;
        written_.ports = true;
    }
    void rim() {
        OPRIM(m_);
        r_.A = m_.A;
    }
    void sim() {
        m_.A = r_.A;
        OPSIM(m_);
    }
    void enableInterrupts(bool on) { m_.intState.IE = on; }
    void extra(int states) { extra_ += states; }
    [[nodiscard]] std::int64_t extraTStates() const { return extra_; }
    /// The return address has to fit into two bytes.
    [[nodiscard]] bool mayCall() const { return r_.PC < memorySize; }
    [[nodiscard]] static bool halt() { return false; }

  private:
    WorkingRegisters& r_;
    MachineState& m_;
    Written& written_;
    std::int64_t extra_ = 0;
};

}  // namespace

// Everything inlined, so that the registers are those of the computer.
[[gnu::flatten]] BatchResult runBatch(MachineState& machine, const Breakpoints& breakpoints,
                                      const BatchLimit& limit, Written& written) {
    using End = BatchResult::End;
    WorkingRegisters r(machine);
    BatchBus bus(r, machine, written);
    std::int64_t count = 0;
    std::int64_t states = 0;
    End end = End::limit;
    do {
        const std::int32_t start = r.PC;
        const std::uint8_t op = bus.byte();
        if (!Opcodes(r, bus).execute(op)) {
            r.PC = start;
            end = End::singleStep;
            break;
        }
        ++count;
        states += tStates[op];
        r.PC &= memorySize - 1;
        if (breakpoints[static_cast<std::size_t>(r.PC)] != 0) {
            end = End::breakpoint;
            break;
        }
    } while (count < limit.instructions && states + bus.extraTStates() < limit.tStates);
    r.putBack(machine);
    return {.instructions = count, .tStates = states + bus.extraTStates(), .end = end};
}

}  // namespace tavinor
