// The tables of instructions in the manual: every instruction is there once, with its length and with what it
// does to the flags, which is found out by executing it.

#include <gtest/gtest.h>

#include <array>
#include <map>
#include <random>
#include <set>
#include <string>
#include <vector>

#include "images/Disassembler.h"
#include "machine/Flags.h"
#include "machine/Stepper.h"
#include "tests/manual/Chapters.h"
#include "tests/support/TestHost.h"

namespace tavinor::manual {
namespace {

constexpr std::array flagBits{flag::S, flag::Z, flag::AC, flag::P, flag::CY};
constexpr std::size_t lengthColumn = 1;
constexpr std::size_t firstFlagColumn = 3;
constexpr std::size_t columnsWithFlags = firstFlagColumn + flagBits.size();

/// What an instruction was seen doing to one flag.
struct Effect {
    bool sets = false, clears = false, gives0 = false, gives1 = false;

    void see(bool before, bool after) {
        sets |= !before && after;
        clears |= before && !after;
        (after ? gives1 : gives0) = true;
    }

    /// As the tables write it.
    [[nodiscard]] std::string text() const {
        if (!sets && !clears) return "-";
        if (!gives1) return "0";
        if (!gives0) return "1";
        return clears ? "x" : "solo pone";
    }
};

using Effects = std::array<Effect, flagBits.size()>;

/// Registers, flags and the top of the stack at random, now and then alike or zero.
MachineState randomState(std::mt19937& random) {
    std::uniform_int_distribution<int> anyByte(0, 255);
    const auto byte = [&] { return static_cast<std::uint8_t>(anyByte(random)); };
    MachineState m;
    m.A = byte();
    const bool alike = byte() < 64;
    if (alike && byte() < 128) m.A = 0;
    const auto operand = [&] { return alike ? m.A : byte(); };
    for (std::uint8_t* cell : {&m.B, &m.C, &m.D, &m.E, &m.H, &m.L}) *cell = operand();
    m.F = byte();
    m.BC = m.B * 256 + m.C;
    m.DE = m.D * 256 + m.E;
    m.HL = m.H * 256 + m.L;
    m.SP = 256 * byte();
    m.mem[static_cast<std::size_t>(m.HL)] = operand();
    m.mem[static_cast<std::size_t>(m.SP)] = byte();
    m.PC = 0x1234;
    m.mem[0x1235] = operand();
    m.mem[0x1236] = byte();
    return m;
}

void observe(int opcode, Effects& effects) {
    std::mt19937 random(static_cast<unsigned>(opcode));
    for (int round = 0; round < 300; ++round) {
        MachineState m = randomState(random);
        m.mem[static_cast<std::size_t>(m.PC)] = static_cast<std::uint8_t>(opcode);
        const int before = m.F;
        test::TestHost host(m);
        EjecutaPASO(m, host);
        for (std::size_t i = 0; i < flagBits.size(); ++i) {
            effects[i].see((before & flagBits[i]) != 0, (m.F & flagBits[i]) != 0);
        }
    }
}

Instruction instructionOf(int opcode) {
    MachineState m;
    m.mem[0] = static_cast<std::uint8_t>(opcode);
    return desensambla(m, 0);
}

/// The opcodes that a name of the tables stands for: "ADD" for all of them, "LDAX B" for one.
std::vector<int> opcodesOf(const std::string& name) {
    std::vector<int> opcodes;
    for (int opcode = 0; opcode < 256; ++opcode) {
        const std::string text = instructionOf(opcode).text;
        if (text == name || text.starts_with(name + ' ')) opcodes.push_back(opcode);
    }
    return opcodes;
}

/// The rows about instructions, with their opcodes.
std::map<std::vector<std::string>, std::vector<int>> instructionRows() {
    std::map<std::vector<std::string>, std::vector<int>> rows;
    for (const auto& cells : tableRowsOf(std::filesystem::path(TAVINOR_MANUAL) / "08-instrucciones.md")) {
        if (cells.front() == "Instrucción") continue;
        std::vector<int>& opcodes = rows[cells];
        for (const std::string& name : codeIn(cells.front())) {
            const std::vector<int> some = opcodesOf(name);
            EXPECT_FALSE(some.empty()) << name;
            opcodes.insert(opcodes.end(), some.begin(), some.end());
        }
    }
    return rows;
}

/// Tables without flags stand below the words that nothing changes, apart from what POP PSW takes.
std::string toldEffect(const std::vector<std::string>& cells, std::string_view name, std::size_t flagIndex) {
    if (cells.size() == columnsWithFlags) return cells[firstFlagColumn + flagIndex];
    return name == "POP PSW" ? "x" : "-";
}

TEST(ManualInstructionsTest, HaveEveryDefinedInstructionOnce) {
    std::multiset<int> told, defined;
    for (const auto& [cells, opcodes] : instructionRows()) told.insert(opcodes.begin(), opcodes.end());
    for (int opcode = 0; opcode < 256; ++opcode) {
        if (instructionOf(opcode).text != "?") defined.insert(opcode);
    }
    EXPECT_EQ(told, defined);
}

TEST(ManualInstructionsTest, TellTheLengths) {
    for (const auto& [cells, opcodes] : instructionRows()) {
        std::set<int> lengths;
        for (const int opcode : opcodes) lengths.insert(instructionOf(opcode).length);
        std::string text;
        for (const int length : lengths) text += (text.empty() ? "" : ", ") + std::to_string(length);
        EXPECT_EQ(cells[lengthColumn], text) << cells.front();
    }
}

TEST(ManualInstructionsTest, TellWhatBecomesOfTheFlags) {
    for (const auto& [cells, opcodes] : instructionRows()) {
        // The forms of an instruction together: XRA A alone, for one, gives nothing but zero.
        std::map<std::string, Effects> effects;
        for (const int opcode : opcodes) {
            const std::string text = instructionOf(opcode).text;
            observe(opcode, effects[text == "POP PSW" ? text : text.substr(0, text.find(' '))]);
        }
        for (const auto& [name, seen] : effects) {
            for (std::size_t i = 0; i < flagBits.size(); ++i) {
                EXPECT_EQ(seen[i].text(), toldEffect(cells, name, i)) << name << ", flag " << i;
            }
        }
    }
}

}  // namespace
}  // namespace tavinor::manual
