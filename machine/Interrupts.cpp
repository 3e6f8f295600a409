#include "machine/Interrupts.h"

#include "machine/Alu.h"
#include "machine/HexText.h"
#include "machine/Stepper.h"

namespace tavinor {

namespace {
constexpr int sodBit = 128;
constexpr int sodEnableBit = 64;
constexpr int clearLatchBit = 16;
constexpr int maskEnableBit = 8;
}  // namespace

void OPRIM(MachineState& m) noexcept {
    const InterruptState& i = m.intState;
    m.A = static_cast<std::uint8_t>((i.M55 ? 1 : 0) | (i.M65 ? 2 : 0) | (i.M75 ? 4 : 0) | (i.IE ? 8 : 0) |
                                    (i.R75 ? 16 : 0) | (m.SID ? 128 : 0));
}

void OPSIM(MachineState& m) noexcept {
    if ((m.A & sodEnableBit) != 0) m.SOD = (m.A & sodBit) != 0;
    if ((m.A & maskEnableBit) != 0) {
        m.intState.M55 = (m.A & 1) != 0;
        m.intState.M65 = (m.A & 2) != 0;
        m.intState.M75 = (m.A & 4) != 0;
    }
    if ((m.A & clearLatchBit) != 0) m.intState.R75 = false;
}

void reset(MachineState& m) noexcept {
    static_cast<Registers&>(m) = Registers{};
    m.intState = {.IE = false, .M55 = true, .M65 = true, .M75 = true, .R75 = false};
}

void acceptInterrupt(MachineState& m, Host& host, std::int32_t address) {
    m.intState.IE = false;
    OPCALL(m, host, address);
}

void acceptRst75(MachineState& m, Host& host) {
    m.intState.R75 = true;
    acceptInterrupt(m, host, vector::rst75);
}

int requestIntr(MachineState& m, Host& host, std::string_view vectorText) {
    m.intState.IE = false;
    const std::size_t place = asIndex(m.PC, mirroredMemorySize);
    const std::uint8_t borrowed = m.mem[place];
    m.mem[place] = asByte(dec(vectorText));
    const int states = EjecutaPASO(m, host, Advance::stay);
    m.mem[place] = borrowed;
    return states;
}

}  // namespace tavinor
