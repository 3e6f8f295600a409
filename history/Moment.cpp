#include "history/Moment.h"

namespace tavinor {

Processor::Processor(const MachineState& m)
    : A(m.A),
      B(m.B),
      C(m.C),
      D(m.D),
      E(m.E),
      F(m.F),
      H(m.H),
      L(m.L),
      PC(static_cast<std::uint16_t>(m.PC)),
      SP(static_cast<std::uint16_t>(m.SP)),
      intState(m.intState),
      SID(m.SID),
      SOD(m.SOD) {}

void Processor::putInto(MachineState& m) const {
    m.A = A;
    m.B = B;
    m.C = C;
    m.D = D;
    m.E = E;
    m.F = F;
    m.H = H;
    m.L = L;
    m.PC = PC;
    m.SP = SP;
    m.intState = intState;
    m.SID = SID;
    m.SOD = SOD;
    m.recomputePairs();
}

}  // namespace tavinor
