#include "tests/support/ReferenceMachine.h"

#include <utility>

#include "tests/support/Errors.h"

namespace tavinor::test {

namespace {
constexpr int wrap(int value) {
    return value & 0xFFFF;
}
constexpr std::size_t at(int index) {
    return static_cast<std::size_t>(index);
}
}  // namespace

int lengthByFields(int opcode) {
    const OpcodeFields f(opcode);
    const bool immediate = f.z == 6 && (f.x == 0 || f.x == 3);
    const bool inOrOut = f.x == 3 && f.z == 3 && f.p == 1;
    if (immediate || inOrOut) return 2;
    const bool lxi = f.x == 0 && f.z == 1 && f.q == 0;
    const bool direct = f.x == 0 && f.z == 2 && f.y >= 4;
    const bool conditional = f.x == 3 && (f.z == 2 || f.z == 4);
    if (lxi || direct || conditional || opcode == 0xC3 || opcode == 0xCD) return 3;
    return 1;
}

ReferenceMachine::ReferenceMachine(const MachineState& start)
    : cells_{start.B, start.C, start.D, start.E, start.H, start.L, start.F, start.A},
      pairs_{start.BC, start.DE, start.HL, start.PSW},
      pc_(start.PC),
      sp_(start.SP),
      memory_(start.mem),
      ports_(start.port),
      interrupts_(start.intState),
      sid_(start.SID),
      sod_(start.SOD) {}

Registers ReferenceMachine::registers() const {
    Registers r;
    const auto cell = [this](Code code) { return static_cast<std::uint8_t>(cells_[code]); };
    r.A = cell(codeA), r.B = cell(codeB), r.C = cell(codeC), r.D = cell(codeD);
    r.E = cell(codeE), r.F = cell(codeF), r.H = cell(codeH), r.L = cell(codeL);
    r.BC = pairs_[0], r.DE = pairs_[1], r.HL = pairs_[2], r.PSW = pairs_[3];
    r.PC = pc_;
    r.SP = sp_;
    return r;
}

MachineState ReferenceMachine::machine() const {
    MachineState m;
    static_cast<Registers&>(m) = registers();
    m.mem = memory_;
    m.port = ports_;
    m.intState = interrupts_;
    m.SID = sid_;
    m.SOD = sod_;
    return m;
}

int ReferenceMachine::step(bool advance) {
    if (pc_ < 0 || pc_ > 0xFFFF) return subscriptError;
    error_ = noError;
    const int opcode = memory_[at(pc_)];
    byte_ = memory_[at(pc_ + 1)];
    word_ = byte_ + (memory_[at(pc_ + 2)] << 8);
    memory_[0x10000] = memory_[0];
    memory_[0x10001] = memory_[1];
    if (advance) pc_ += lengthByFields(opcode);

    const OpcodeFields f(opcode);
    if (f.x == 0) {
        lowQuarter(f);
    } else if (opcode == 0x76) {
        ++halts;
    } else if (f.x == 1) {
        store(f.y, load(f.z));
    } else if (f.x == 2) {
        arithmetic(f.y, load(f.z));
    } else {
        highQuarter(f);
    }
    if (error_ == noError) {
        pairs_ = {pair(0), pair(1), pair(2), cells_[codeA] << 8 | cells_[codeF]};
    }
    return error_;
}

int ReferenceMachine::load(int code) const {
    return code == memoryCode ? memory_[at(pair(2))] : cells_[at(code)];
}

void ReferenceMachine::store(int code, int value) {
    if (code == memoryCode) {
        write(pair(2), value);
    } else {
        cells_[at(code)] = value;
    }
}

int ReferenceMachine::pair(int p) const {
    return p == 3 ? sp_ : cells_[at(2 * p)] << 8 | cells_[at(2 * p + 1)];
}

void ReferenceMachine::setPair(int p, int value) {
    if (p == 3) {
        sp_ = wrap(value);
        return;
    }
    cells_[at(2 * p)] = wrap(value) >> 8;
    cells_[at(2 * p + 1)] = value & 0xFF;
}

void ReferenceMachine::write(int address, int value) {
    memory_[at(address)] = static_cast<std::uint8_t>(value);
    memoryWrites.push_back({address, value});
}

void ReferenceMachine::push(int value) {
    sp_ = wrap(sp_ - 1);
    if (value > 0xFFFF) {
        error_ = overflowError;
        return;
    }
    write(sp_, value >> 8);
    sp_ = wrap(sp_ - 1);
    write(sp_, value & 0xFF);
}

int ReferenceMachine::pop() {
    const int low = memory_[at(sp_)];
    const int high = memory_[at(wrap(sp_ + 1))];
    sp_ = wrap(sp_ + 2);
    return high << 8 | low;
}

void ReferenceMachine::call(int target) {
    push(pc_);
    if (error_ == noError) pc_ = target;
}

bool ReferenceMachine::holds(int condition) const {
    constexpr std::array<int, 4> flagBits{6, 0, 2, 7};  // Z, CY, P, S
    const int flag = cells_[codeF] >> flagBits[at(condition >> 1)] & 1;
    return flag == (condition & 1);
}

void ReferenceMachine::lowQuarter(OpcodeFields f) {
    switch (f.z) {
        case 0:
            if (f.y == 4) readInterrupts();
            if (f.y == 6) setInterrupts();
            break;
        case 1: f.q == 0 ? setPair(f.p, word_) : addPair(pair(f.p)); break;
        case 2: moveThroughMemory(f.y); break;
        case 3: setPair(f.p, pair(f.p) + (f.q == 0 ? 1 : -1)); break;
        case 4: stepCell(f.y, true); break;
        case 5: stepCell(f.y, false); break;
        case 6: store(f.y, byte_); break;
        default: accumulatorOnly(f.y); break;
    }
}

/// STAX and LDAX through BC and DE, SHLD, LHLD, STA, LDA: an odd y loads.
void ReferenceMachine::moveThroughMemory(int y) {
    const bool loads = y % 2 == 1;
    if (y == 4 || y == 5) {
        for (const Code code : {codeL, codeH}) {
            const int address = wrap(word_ + (code == codeH ? 1 : 0));
            loads ? store(code, memory_[at(address)]) : write(address, cells_[code]);
        }
        return;
    }
    const int address = y >= 6 ? word_ : pair(y / 2);
    loads ? store(codeA, memory_[at(address)]) : write(address, cells_[codeA]);
}

void ReferenceMachine::stepCell(int code, bool up) {
    const Sum sum = rippleAdd(load(code), up ? 1 : 0xFF, false);
    const int ac = up && sum.halfCarry ? 0x10 : 0;
    cells_[codeF] = (cells_[codeF] & 1) + ac + resultBits(sum.value);
    store(code, sum.value);
}

void ReferenceMachine::accumulatorOnly(int y) {
    switch (y) {
        case 4: decimalAdjust(); break;
        case 5: cells_[codeA] ^= 0xFF; break;
        case 6: setCarry(true); break;
        case 7: setCarry(!carry()); break;
        default: rotate(y); break;
    }
}

/// RLC, RRC, RAL, RAR: the bit that leaves goes to CY, and it or the old CY comes in at the other end.
void ReferenceMachine::rotate(int y) {
    const bool left = y % 2 == 0;
    const bool throughCarry = y >= 2;
    const int a = cells_[codeA];
    const bool leaves = (left ? a >> 7 : a & 1) != 0;
    const bool enters = throughCarry ? carry() : leaves;
    const int shifted = left ? (a << 1) & 0xFF : a >> 1;
    cells_[codeA] = shifted + (enters ? (left ? 0x01 : 0x80) : 0);
    setCarry(leaves);
}

void ReferenceMachine::decimalAdjust() {
    int result = cells_[codeA];
    if ((cells_[codeF] & 0x10) != 0 || result % 16 > 9) result += 0x06;
    if (carry() || result > 0x9F) {
        result += 0x60;
        setCarry(true);
    }
    cells_[codeA] = result & 0xFF;
    cells_[codeF] |= resultBits(cells_[codeA]);
}

/// ADD, ADC, SUB, SBB, ANA, XRA, ORA, CMP.
void ReferenceMachine::arithmetic(int operation, int operand) {
    const int a = cells_[codeA];
    if (operation >= 4 && operation <= 6) {
        const std::array<int, 3> results{a & operand, a ^ operand, a | operand};
        cells_[codeA] = results[at(operation - 4)];
        cells_[codeF] = resultBits(cells_[codeA]) + (operation == 4 ? 0x10 : 0);
        return;
    }
    const bool carryIn = (operation == 1 || operation == 3) && carry();
    const bool subtracts = operation >= 2;
    const Sum sum = subtracts ? rippleSubtract(a, operand, carryIn) : rippleAdd(a, operand, carryIn);
    const bool compares = operation == 7;
    const int ac = sum.halfCarry && !compares ? 0x10 : 0;
    cells_[codeF] = resultBits(sum.value) + ac + (sum.carry != subtracts ? 1 : 0);
    if (!compares) cells_[codeA] = sum.value;
}

void ReferenceMachine::addPair(int value) {
    const Sum low = rippleAdd(cells_[codeL], value & 0xFF, false);
    const Sum high = rippleAdd(cells_[codeH], value >> 8, low.carry);
    cells_[codeL] = low.value;
    cells_[codeH] = high.value;
    setCarry(high.carry);
}

void ReferenceMachine::highQuarter(OpcodeFields f) {
    const int top = f.p == 3 ? 7 : 2 * f.p;  // high register of PUSH and POP
    const int bottom = f.p == 3 ? 6 : 2 * f.p + 1;
    switch (f.z) {
        case 0:
            if (holds(f.y)) pc_ = pop();
            break;
        case 1:
            if (f.q == 1) return returns(f.p);
            word_ = pop();
            cells_[at(top)] = word_ >> 8;
            cells_[at(bottom)] = word_ & 0xFF;
            break;
        case 2:
            if (holds(f.y)) pc_ = word_;
            break;
        case 3: singles(f.y); break;
        case 4:
            if (holds(f.y)) call(word_);
            break;
        case 5:
            if (f.q == 0) push(cells_[at(top)] << 8 | cells_[at(bottom)]);
            if (f.q == 1 && f.p == 0) call(word_);
            break;
        case 6: arithmetic(f.y, byte_); break;
        default: call(f.y << 3); break;
    }
}

void ReferenceMachine::returns(int p) {
    if (p == 0) pc_ = pop();
    if (p == 2) pc_ = pair(2);
    if (p == 3) sp_ = pair(2);
}

/// JMP, undefined, OUT, IN, XTHL, XCHG, DI, EI.
void ReferenceMachine::singles(int y) {
    switch (y) {
        case 0: pc_ = word_; break;
        case 2:
            ports_[at(byte_)] = static_cast<std::uint8_t>(cells_[codeA]);
            portWrites.push_back({byte_, cells_[codeA]});
            break;
        case 3: cells_[codeA] = ports_[at(byte_)]; break;
        case 4: {
            const int old = pair(2);
            setPair(2, memory_[at(sp_)] | memory_[at(wrap(sp_ + 1))] << 8);
            write(wrap(sp_ + 1), old >> 8);
            write(sp_, old & 0xFF);
            break;
        }
        case 5:
            std::swap(cells_[codeD], cells_[codeH]);
            std::swap(cells_[codeE], cells_[codeL]);
            break;
        case 6: interrupts_.IE = false; break;
        case 7: interrupts_.IE = true; break;
        default: break;
    }
}

void ReferenceMachine::readInterrupts() {
    const std::array<bool, 8> bits{interrupts_.M55, interrupts_.M65, interrupts_.M75, interrupts_.IE,
                                   interrupts_.R75, false,           false,           sid_};
    int value = 0;
    for (int bit = 0; bit < 8; ++bit) value += bits[at(bit)] ? 1 << bit : 0;
    cells_[codeA] = value;
}

void ReferenceMachine::setInterrupts() {
    const auto bit = [this](int number) { return (cells_[codeA] >> number & 1) == 1; };
    if (bit(6)) sod_ = bit(7);
    if (bit(4)) interrupts_.R75 = false;
    if (!bit(3)) return;
    interrupts_.M55 = bit(0);
    interrupts_.M65 = bit(1);
    interrupts_.M75 = bit(2);
}

}  // namespace tavinor::test
