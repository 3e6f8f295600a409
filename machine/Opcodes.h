#pragma once

#include <cstdint>
#include <utility>

#include "machine/Alu.h"
#include "machine/TStates.h"

namespace tavinor {

/// What each of the 256 opcodes does, written once for both ways of executing: one at a time in the machine
/// itself (`EjecutaPASO`) and many in a row on registers of their own (`runBatch`).
///
/// `Cells` has the registers A to L, F, PC and SP, and the functions `pairBC` and the like. PC is behind the
/// opcode. `Bus` is everything else:
///   byte(), word()      the operand of the instruction; PC goes past it
///   at(a), savmem(a, d) a memory cell; port(p), savport(p, d) a port
///   rim(), sim(), enableInterrupts(on)
///   extra(t)            T-states besides those of the opcode: its condition holds
///   mayCall(), halt()   false when the instruction is not for this way of executing
template <class Cells, class Bus>
class Opcodes {
  public:
    Opcodes(Cells& cells, Bus& outside) : m(cells), bus(outside) {}

    /// Executes the instruction that begins with `op`. False when it has to be left to a single step: then
    /// nothing but PC has changed.
    bool execute(int op);

  private:
    [[nodiscard]] std::uint8_t M() const { return bus.at(pairHL(m)); }
    void storeM(std::uint8_t value) { bus.savmem(pairHL(m), value); }

    [[nodiscard]] bool has(int bit) const { return (m.F & bit) != 0; }
    void set(int bit) { m.F = static_cast<std::uint8_t>(m.F | bit); }
    void clear(int bit) { m.F = static_cast<std::uint8_t>(m.F & ~bit); }
    void assignCarry(bool carry) { carry ? set(flag::CY) : clear(flag::CY); }

    // High, then low, as in the name of a pair.
    // NOLINTBEGIN(bugprone-easily-swappable-parameters)
    static void split(std::int32_t pair, std::uint8_t& high, std::uint8_t& low) {
        high = static_cast<std::uint8_t>(pair / 256);
        low = static_cast<std::uint8_t>(pair % 256);
    }

    void push(std::uint8_t high, std::uint8_t low) {
        OPDCX(m.SP);
        bus.savmem(m.SP, high);
        OPDCX(m.SP);
        bus.savmem(m.SP, low);
    }

    void pop(std::uint8_t& high, std::uint8_t& low) {
        low = bus.at(m.SP);
        OPINX(m.SP);
        high = bus.at(m.SP);
        OPINX(m.SP);
    }
    // NOLINTEND(bugprone-easily-swappable-parameters)

    void inrM() {
        std::uint8_t t = M();
        OPINR(m, t);
        storeM(t);
    }

    void dcrM() {
        std::uint8_t t = M();
        OPDCR(m, t);
        storeM(t);
    }

    void inx(std::int32_t pair, std::uint8_t& high, std::uint8_t& low) {
        OPINX(pair);
        split(pair, high, low);
    }

    void dcx(std::int32_t pair, std::uint8_t& high, std::uint8_t& low) {
        OPDCX(pair);
        split(pair, high, low);
    }

    void lhld(std::int32_t address) {
        m.L = bus.at(address);
        OPINX(address);
        m.H = bus.at(address);
    }

    void shld(std::int32_t address) {
        bus.savmem(address, m.L);
        OPINX(address);
        bus.savmem(address, m.H);
    }

    void xchg() {
        std::swap(m.H, m.D);
        std::swap(m.L, m.E);
    }

    void xthl() {
        const std::uint8_t oldH = m.H;
        const std::uint8_t oldL = m.L;
        m.L = bus.at(m.SP);
        OPINX(m.SP);
        m.H = bus.at(m.SP);
        bus.savmem(m.SP, oldH);
        OPDCX(m.SP);
        bus.savmem(m.SP, oldL);
    }

    void rlc() {
        const bool out = (m.A & 128) != 0;
        m.A = static_cast<std::uint8_t>(m.A << 1 | (out ? 1 : 0));
        assignCarry(out);
    }

    void rrc() {
        const bool out = (m.A & 1) != 0;
        m.A = static_cast<std::uint8_t>(m.A >> 1 | (out ? 128 : 0));
        assignCarry(out);
    }

    void ral() {
        const bool out = (m.A & 128) != 0;
        m.A = static_cast<std::uint8_t>(m.A << 1 | (has(flag::CY) ? 1 : 0));
        assignCarry(out);
    }

    void rar() {
        const bool out = (m.A & 1) != 0;
        m.A = static_cast<std::uint8_t>(m.A >> 1 | (has(flag::CY) ? 128 : 0));
        assignCarry(out);
    }

    void jumpIf(bool holds) {
        const std::int32_t target = bus.word();
        if (!holds) return;
        m.PC = target;
        bus.extra(taken::jump);
    }

    void returnIf(bool holds) {
        if (!holds) return;
        OPRET(m, bus);
        bus.extra(taken::ret);
    }

    bool call(std::int32_t target) {
        if (!bus.mayCall()) return false;
        OPCALL(m, bus, target);
        return true;
    }

    bool callIf(bool holds) {
        const std::int32_t target = bus.word();
        if (!holds) return true;
        if (!call(target)) return false;
        bus.extra(taken::call);
        return true;
    }

    Cells& m;
    Bus& bus;
};

/// One line an opcode, in the order of the processor's chart.
template <class Cells, class Bus>
bool Opcodes<Cells, Bus>::execute(int op) {
    // clang-format off
    switch (op) {
        case 0x00: break;                                         // NOP
        case 0x01: split(bus.word(), m.B, m.C); break;            // LXI B
        case 0x02: bus.savmem(pairBC(m), m.A); break;             // STAX B
        case 0x03: inx(pairBC(m), m.B, m.C); break;               // INX B
        case 0x04: OPINR(m, m.B); break;                          // INR B
        case 0x05: OPDCR(m, m.B); break;                          // DCR B
        case 0x06: m.B = bus.byte(); break;                       // MVI B
        case 0x07: rlc(); break;                                  // RLC
        case 0x08: break;                                         // undefined
        case 0x09: OPDAD(m, pairBC(m)); break;                    // DAD B
        case 0x0A: m.A = bus.at(pairBC(m)); break;                // LDAX B
        case 0x0B: dcx(pairBC(m), m.B, m.C); break;               // DCX B
        case 0x0C: OPINR(m, m.C); break;                          // INR C
        case 0x0D: OPDCR(m, m.C); break;                          // DCR C
        case 0x0E: m.C = bus.byte(); break;                       // MVI C
        case 0x0F: rrc(); break;                                  // RRC
        case 0x10: break;                                         // undefined
        case 0x11: split(bus.word(), m.D, m.E); break;            // LXI D
        case 0x12: bus.savmem(pairDE(m), m.A); break;             // STAX D
        case 0x13: inx(pairDE(m), m.D, m.E); break;               // INX D
        case 0x14: OPINR(m, m.D); break;                          // INR D
        case 0x15: OPDCR(m, m.D); break;                          // DCR D
        case 0x16: m.D = bus.byte(); break;                       // MVI D
        case 0x17: ral(); break;                                  // RAL
        case 0x18: break;                                         // undefined
        case 0x19: OPDAD(m, pairDE(m)); break;                    // DAD D
        case 0x1A: m.A = bus.at(pairDE(m)); break;                // LDAX D
        case 0x1B: dcx(pairDE(m), m.D, m.E); break;               // DCX D
        case 0x1C: OPINR(m, m.E); break;                          // INR E
        case 0x1D: OPDCR(m, m.E); break;                          // DCR E
        case 0x1E: m.E = bus.byte(); break;                       // MVI E
        case 0x1F: rar(); break;                                  // RAR
        case 0x20: bus.rim(); break;                              // RIM
        case 0x21: split(bus.word(), m.H, m.L); break;            // LXI H
        case 0x22: shld(bus.word()); break;                       // SHLD
        case 0x23: inx(pairHL(m), m.H, m.L); break;               // INX H
        case 0x24: OPINR(m, m.H); break;                          // INR H
        case 0x25: OPDCR(m, m.H); break;                          // DCR H
        case 0x26: m.H = bus.byte(); break;                       // MVI H
        case 0x27: m.A = OPDAA(m); break;                         // DAA
        case 0x28: break;                                         // undefined
        case 0x29: OPDAD(m, pairHL(m)); break;                    // DAD H
        case 0x2A: lhld(bus.word()); break;                       // LHLD
        case 0x2B: dcx(pairHL(m), m.H, m.L); break;               // DCX H
        case 0x2C: OPINR(m, m.L); break;                          // INR L
        case 0x2D: OPDCR(m, m.L); break;                          // DCR L
        case 0x2E: m.L = bus.byte(); break;                       // MVI L
        case 0x2F: m.A = static_cast<std::uint8_t>(~m.A); break;  // CMA
        case 0x30: bus.sim(); break;                              // SIM
        case 0x31: m.SP = bus.word(); break;                      // LXI SP
        case 0x32: bus.savmem(bus.word(), m.A); break;            // STA
        case 0x33: OPINX(m.SP); break;                            // INX SP
        case 0x34: inrM(); break;                                 // INR M
        case 0x35: dcrM(); break;                                 // DCR M
        case 0x36: storeM(bus.byte()); break;                     // MVI M
        case 0x37: set(flag::CY); break;                          // STC
        case 0x38: break;                                         // undefined
        case 0x39: OPDAD(m, m.SP); break;                         // DAD SP
        case 0x3A: m.A = bus.at(bus.word()); break;               // LDA
        case 0x3B: OPDCX(m.SP); break;                            // DCX SP
        case 0x3C: OPINR(m, m.A); break;                          // INR A
        case 0x3D: OPDCR(m, m.A); break;                          // DCR A
        case 0x3E: m.A = bus.byte(); break;                       // MVI A
        case 0x3F: assignCarry(!has(flag::CY)); break;            // CMC
        case 0x40: break;                                         // MOV B,B
        case 0x41: m.B = m.C; break;                              // MOV B,C
        case 0x42: m.B = m.D; break;                              // MOV B,D
        case 0x43: m.B = m.E; break;                              // MOV B,E
        case 0x44: m.B = m.H; break;                              // MOV B,H
        case 0x45: m.B = m.L; break;                              // MOV B,L
        case 0x46: m.B = M(); break;                              // MOV B,M
        case 0x47: m.B = m.A; break;                              // MOV B,A
        case 0x48: m.C = m.B; break;                              // MOV C,B
        case 0x49: break;                                         // MOV C,C
        case 0x4A: m.C = m.D; break;                              // MOV C,D
        case 0x4B: m.C = m.E; break;                              // MOV C,E
        case 0x4C: m.C = m.H; break;                              // MOV C,H
        case 0x4D: m.C = m.L; break;                              // MOV C,L
        case 0x4E: m.C = M(); break;                              // MOV C,M
        case 0x4F: m.C = m.A; break;                              // MOV C,A
        case 0x50: m.D = m.B; break;                              // MOV D,B
        case 0x51: m.D = m.C; break;                              // MOV D,C
        case 0x52: break;                                         // MOV D,D
        case 0x53: m.D = m.E; break;                              // MOV D,E
        case 0x54: m.D = m.H; break;                              // MOV D,H
        case 0x55: m.D = m.L; break;                              // MOV D,L
        case 0x56: m.D = M(); break;                              // MOV D,M
        case 0x57: m.D = m.A; break;                              // MOV D,A
        case 0x58: m.E = m.B; break;                              // MOV E,B
        case 0x59: m.E = m.C; break;                              // MOV E,C
        case 0x5A: m.E = m.D; break;                              // MOV E,D
        case 0x5B: break;                                         // MOV E,E
        case 0x5C: m.E = m.H; break;                              // MOV E,H
        case 0x5D: m.E = m.L; break;                              // MOV E,L
        case 0x5E: m.E = M(); break;                              // MOV E,M
        case 0x5F: m.E = m.A; break;                              // MOV E,A
        case 0x60: m.H = m.B; break;                              // MOV H,B
        case 0x61: m.H = m.C; break;                              // MOV H,C
        case 0x62: m.H = m.D; break;                              // MOV H,D
        case 0x63: m.H = m.E; break;                              // MOV H,E
        case 0x64: break;                                         // MOV H,H
        case 0x65: m.H = m.L; break;                              // MOV H,L
        case 0x66: m.H = M(); break;                              // MOV H,M
        case 0x67: m.H = m.A; break;                              // MOV H,A
        case 0x68: m.L = m.B; break;                              // MOV L,B
        case 0x69: m.L = m.C; break;                              // MOV L,C
        case 0x6A: m.L = m.D; break;                              // MOV L,D
        case 0x6B: m.L = m.E; break;                              // MOV L,E
        case 0x6C: m.L = m.H; break;                              // MOV L,H
        case 0x6D: break;                                         // MOV L,L
        case 0x6E: m.L = M(); break;                              // MOV L,M
        case 0x6F: m.L = m.A; break;                              // MOV L,A
        case 0x70: storeM(m.B); break;                            // MOV M,B
        case 0x71: storeM(m.C); break;                            // MOV M,C
        case 0x72: storeM(m.D); break;                            // MOV M,D
        case 0x73: storeM(m.E); break;                            // MOV M,E
        case 0x74: storeM(m.H); break;                            // MOV M,H
        case 0x75: storeM(m.L); break;                            // MOV M,L
        case 0x76: return bus.halt();                             // HLT
        case 0x77: storeM(m.A); break;                            // MOV M,A
        case 0x78: m.A = m.B; break;                              // MOV A,B
        case 0x79: m.A = m.C; break;                              // MOV A,C
        case 0x7A: m.A = m.D; break;                              // MOV A,D
        case 0x7B: m.A = m.E; break;                              // MOV A,E
        case 0x7C: m.A = m.H; break;                              // MOV A,H
        case 0x7D: m.A = m.L; break;                              // MOV A,L
        case 0x7E: m.A = M(); break;                              // MOV A,M
        case 0x7F: break;                                         // MOV A,A
        case 0x80: m.A = OPADD(m, m.B); break;                    // ADD B
        case 0x81: m.A = OPADD(m, m.C); break;                    // ADD C
        case 0x82: m.A = OPADD(m, m.D); break;                    // ADD D
        case 0x83: m.A = OPADD(m, m.E); break;                    // ADD E
        case 0x84: m.A = OPADD(m, m.H); break;                    // ADD H
        case 0x85: m.A = OPADD(m, m.L); break;                    // ADD L
        case 0x86: m.A = OPADD(m, M()); break;                    // ADD M
        case 0x87: m.A = OPADD(m, m.A); break;                    // ADD A
        case 0x88: m.A = OPADC(m, m.B); break;                    // ADC B
        case 0x89: m.A = OPADC(m, m.C); break;                    // ADC C
        case 0x8A: m.A = OPADC(m, m.D); break;                    // ADC D
        case 0x8B: m.A = OPADC(m, m.E); break;                    // ADC E
        case 0x8C: m.A = OPADC(m, m.H); break;                    // ADC H
        case 0x8D: m.A = OPADC(m, m.L); break;                    // ADC L
        case 0x8E: m.A = OPADC(m, M()); break;                    // ADC M
        case 0x8F: m.A = OPADC(m, m.A); break;                    // ADC A
        case 0x90: m.A = OPSUB(m, m.B); break;                    // SUB B
        case 0x91: m.A = OPSUB(m, m.C); break;                    // SUB C
        case 0x92: m.A = OPSUB(m, m.D); break;                    // SUB D
        case 0x93: m.A = OPSUB(m, m.E); break;                    // SUB E
        case 0x94: m.A = OPSUB(m, m.H); break;                    // SUB H
        case 0x95: m.A = OPSUB(m, m.L); break;                    // SUB L
        case 0x96: m.A = OPSUB(m, M()); break;                    // SUB M
        case 0x97: m.A = OPSUB(m, m.A); break;                    // SUB A
        case 0x98: m.A = OPSBB(m, m.B); break;                    // SBB B
        case 0x99: m.A = OPSBB(m, m.C); break;                    // SBB C
        case 0x9A: m.A = OPSBB(m, m.D); break;                    // SBB D
        case 0x9B: m.A = OPSBB(m, m.E); break;                    // SBB E
        case 0x9C: m.A = OPSBB(m, m.H); break;                    // SBB H
        case 0x9D: m.A = OPSBB(m, m.L); break;                    // SBB L
        case 0x9E: m.A = OPSBB(m, M()); break;                    // SBB M
        case 0x9F: m.A = OPSBB(m, m.A); break;                    // SBB A
        case 0xA0: m.A = OPAND(m, m.B); break;                    // ANA B
        case 0xA1: m.A = OPAND(m, m.C); break;                    // ANA C
        case 0xA2: m.A = OPAND(m, m.D); break;                    // ANA D
        case 0xA3: m.A = OPAND(m, m.E); break;                    // ANA E
        case 0xA4: m.A = OPAND(m, m.H); break;                    // ANA H
        case 0xA5: m.A = OPAND(m, m.L); break;                    // ANA L
        case 0xA6: m.A = OPAND(m, M()); break;                    // ANA M
        case 0xA7: m.A = OPAND(m, m.A); break;                    // ANA A
        case 0xA8: m.A = OPXOR(m, m.B); break;                    // XRA B
        case 0xA9: m.A = OPXOR(m, m.C); break;                    // XRA C
        case 0xAA: m.A = OPXOR(m, m.D); break;                    // XRA D
        case 0xAB: m.A = OPXOR(m, m.E); break;                    // XRA E
        case 0xAC: m.A = OPXOR(m, m.H); break;                    // XRA H
        case 0xAD: m.A = OPXOR(m, m.L); break;                    // XRA L
        case 0xAE: m.A = OPXOR(m, M()); break;                    // XRA M
        case 0xAF: m.A = OPXOR(m, m.A); break;                    // XRA A
        case 0xB0: m.A = OPOR(m, m.B); break;                     // ORA B
        case 0xB1: m.A = OPOR(m, m.C); break;                     // ORA C
        case 0xB2: m.A = OPOR(m, m.D); break;                     // ORA D
        case 0xB3: m.A = OPOR(m, m.E); break;                     // ORA E
        case 0xB4: m.A = OPOR(m, m.H); break;                     // ORA H
        case 0xB5: m.A = OPOR(m, m.L); break;                     // ORA L
        case 0xB6: m.A = OPOR(m, M()); break;                     // ORA M
        case 0xB7: m.A = OPOR(m, m.A); break;                     // ORA A
        case 0xB8: OPCMP(m, m.B); break;                          // CMP B
        case 0xB9: OPCMP(m, m.C); break;                          // CMP C
        case 0xBA: OPCMP(m, m.D); break;                          // CMP D
        case 0xBB: OPCMP(m, m.E); break;                          // CMP E
        case 0xBC: OPCMP(m, m.H); break;                          // CMP H
        case 0xBD: OPCMP(m, m.L); break;                          // CMP L
        case 0xBE: OPCMP(m, M()); break;                          // CMP M
        case 0xBF: OPCMP(m, m.A); break;                          // CMP A
        case 0xC0: returnIf(!has(flag::Z)); break;                // RNZ
        case 0xC1: pop(m.B, m.C); break;                          // POP B
        case 0xC2: jumpIf(!has(flag::Z)); break;                  // JNZ
        case 0xC3: m.PC = bus.word(); break;                      // JMP
        case 0xC4: return callIf(!has(flag::Z));                  // CNZ
        case 0xC5: push(m.B, m.C); break;                         // PUSH B
        case 0xC6: m.A = OPADD(m, bus.byte()); break;             // ADI
        case 0xC7: return call(0x00);                             // RST 0
        case 0xC8: returnIf(has(flag::Z)); break;                 // RZ
        case 0xC9: OPRET(m, bus); break;                          // RET
        case 0xCA: jumpIf(has(flag::Z)); break;                   // JZ
        case 0xCB: break;                                         // undefined
        case 0xCC: return callIf(has(flag::Z));                   // CZ
        case 0xCD: return call(bus.word());                       // CALL
        case 0xCE: m.A = OPADC(m, bus.byte()); break;             // ACI
        case 0xCF: return call(0x08);                             // RST 1
        case 0xD0: returnIf(!has(flag::CY)); break;               // RNC
        case 0xD1: pop(m.D, m.E); break;                          // POP D
        case 0xD2: jumpIf(!has(flag::CY)); break;                 // JNC
        case 0xD3: bus.savport(bus.byte(), m.A); break;           // OUT
        case 0xD4: return callIf(!has(flag::CY));                 // CNC
        case 0xD5: push(m.D, m.E); break;                         // PUSH D
        case 0xD6: m.A = OPSUB(m, bus.byte()); break;             // SUI
        case 0xD7: return call(0x10);                             // RST 2
        case 0xD8: returnIf(has(flag::CY)); break;                // RC
        case 0xD9: break;                                         // undefined
        case 0xDA: jumpIf(has(flag::CY)); break;                  // JC
        case 0xDB: m.A = bus.port(bus.byte()); break;             // IN
        case 0xDC: return callIf(has(flag::CY));                  // CC
        case 0xDD: break;                                         // undefined
        case 0xDE: m.A = OPSBB(m, bus.byte()); break;             // SBI
        case 0xDF: return call(0x18);                             // RST 3
        case 0xE0: returnIf(!has(flag::P)); break;                // RPO
        case 0xE1: pop(m.H, m.L); break;                          // POP H
        case 0xE2: jumpIf(!has(flag::P)); break;                  // JPO
        case 0xE3: xthl(); break;                                 // XTHL
        case 0xE4: return callIf(!has(flag::P));                  // CPO
        case 0xE5: push(m.H, m.L); break;                         // PUSH H
        case 0xE6: m.A = OPAND(m, bus.byte()); break;             // ANI
        case 0xE7: return call(0x20);                             // RST 4
        case 0xE8: returnIf(has(flag::P)); break;                 // RPE
        case 0xE9: m.PC = pairHL(m); break;                       // PCHL
        case 0xEA: jumpIf(has(flag::P)); break;                   // JPE
        case 0xEB: xchg(); break;                                 // XCHG
        case 0xEC: return callIf(has(flag::P));                   // CPE
        case 0xED: break;                                         // undefined
        case 0xEE: m.A = OPXOR(m, bus.byte()); break;             // XRI
        case 0xEF: return call(0x28);                             // RST 5
        case 0xF0: returnIf(!has(flag::S)); break;                // RP
        case 0xF1: pop(m.A, m.F); break;                          // POP PSW
        case 0xF2: jumpIf(!has(flag::S)); break;                  // JP
        case 0xF3: bus.enableInterrupts(false); break;            // DI
        case 0xF4: return callIf(!has(flag::S));                  // CP
        case 0xF5: push(m.A, m.F); break;                         // PUSH PSW
        case 0xF6: m.A = OPOR(m, bus.byte()); break;              // ORI
        case 0xF7: return call(0x30);                             // RST 6
        case 0xF8: returnIf(has(flag::S)); break;                 // RM
        case 0xF9: m.SP = pairHL(m); break;                       // SPHL
        case 0xFA: jumpIf(has(flag::S)); break;                   // JM
        case 0xFB: bus.enableInterrupts(true); break;             // EI
        case 0xFC: return callIf(has(flag::S));                   // CM
        case 0xFD: break;                                         // undefined
        case 0xFE: OPCMP(m, bus.byte()); break;                   // CPI
        case 0xFF: return call(0x38);                             // RST 7
        default: break;
    }
    // clang-format on
    return true;
}

}  // namespace tavinor
