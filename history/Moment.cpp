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
      IE(m.intState.IE),
      M55(m.intState.M55),
      M65(m.intState.M65),
      M75(m.intState.M75),
      R75(m.intState.R75),
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
    m.intState = {.IE = IE, .M55 = M55, .M65 = M65, .M75 = M75, .R75 = R75};
    m.SID = SID;
    m.SOD = SOD;
    m.recomputePairs();
}

}  // namespace tavinor
