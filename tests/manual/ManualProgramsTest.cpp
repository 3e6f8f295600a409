// The programs in the user's manual: they assemble, or have the errors that are printed below them, and leave
// what is promised.
//
// A block of the manual says by its name what it holds:
//   8085          a complete program without errors
//   8085-errores  a complete program with errors; an "informe" follows
//   informe       the report of the program above it
//   listado, hex  the listing and the image of the program above it
//   resultado     what is in the machine when the program above it has run from 0000 to its HLT

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <map>
#include <sstream>
#include <string>

#include "assembler/Ensambla.h"
#include "assembler/HexWriter.h"
#include "machine/Flags.h"
#include "machine/HexText.h"
#include "machine/Interrupts.h"
#include "machine/Stepper.h"
#include "tests/manual/Chapters.h"
#include "tests/support/PlainHost.h"

namespace tavinor::manual {
namespace {

/// With one kind of line end, and no blanks in front of it.
std::string plain(const std::string& text) {
    std::string result;
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);) {
        line.erase(line.find_last_not_of(" \r") + 1);
        result += line + '\n';
    }
    return result;
}

class Machine {
  public:
    explicit Machine(const ImageBuffer& image) {
        reset(state);
        std::transform(image.begin(), image.end(), state.mem.begin(), [](std::int16_t cell) {
            return cell == noByte ? std::uint8_t{0} : static_cast<std::uint8_t>(cell);
        });
    }

    bool runToHalt() {
        constexpr int patience = 100'000;
        for (int step = 0; step < patience && host_.halts == 0; ++step) EjecutaPASO(state, host_);
        return host_.halts > 0;
    }

    MachineState state;

  private:
    test::PlainHost host_{state};
};

std::string bit(bool value) {
    return value ? "1" : "0";
}

/// What stands where the manual says, as the window shows it; empty for a place that there is not.
std::string shownAt(const std::string& place, const MachineState& m) {
    const InterruptState& i = m.intState;
    const std::map<std::string, std::string> places{
        {"A", hexa(m.A, 2)},   {"B", hexa(m.B, 2)},   {"C", hexa(m.C, 2)},         {"D", hexa(m.D, 2)},
        {"E", hexa(m.E, 2)},   {"F", hexa(m.F, 2)},   {"BC", hexa(m.BC, 4)},       {"DE", hexa(m.DE, 4)},
        {"HL", hexa(m.HL, 4)}, {"SP", hexa(m.SP, 4)}, {"CY", bit(m.F & flag::CY)}, {"SOD", bit(m.SOD)},
        {"M5.5", bit(i.M55)},  {"M6.5", bit(i.M65)},  {"M7.5", bit(i.M75)},
    };
    if (const auto found = places.find(place); found != places.end()) return found->second;
    constexpr std::string_view port = "puerto ";
    if (place.starts_with(port)) {
        return hexa(m.port[static_cast<std::size_t>(dec(place.substr(port.size())))], 2);
    }
    if (place.starts_with('(') && place.ends_with(')')) {
        return hexa(m.mem[static_cast<std::size_t>(dec(place.substr(1)))], 2);
    }
    return {};
}

void checkResult(const Block& block, const ImageBuffer& image) {
    constexpr std::string_view equals = " = ";
    Machine machine(image);
    ASSERT_TRUE(machine.runToHalt()) << block.place;
    int promises = 0;
    std::istringstream lines(block.text);
    for (std::string line; std::getline(lines, line); ++promises) {
        const std::size_t middle = line.find(equals);
        ASSERT_NE(middle, std::string::npos) << block.place << ": " << line;
        EXPECT_EQ(shownAt(line.substr(0, middle), machine.state), line.substr(middle + equals.size()))
            << block.place << ": " << line;
    }
    EXPECT_GT(promises, 0) << block.place;
}

/// Assembles the programs of a chapter and compares what is printed below each.
class Reader {
  public:
    void read(const Block& block) {
        if (block.kind == "8085" || block.kind == "8085-errores") return assembleIt(block);
        if (block.kind.empty()) return;
        EXPECT_FALSE(program_.empty()) << block.place << " is below no program";
        answered_ = true;
        if (block.kind == "informe") {
            EXPECT_FALSE(result_.assembled) << block.place;
            EXPECT_EQ(block.text, plain(result_.report)) << block.place;
        } else if (block.kind == "listado") {
            EXPECT_EQ(plain(block.text), plain(result_.listing)) << block.place;
        } else if (block.kind == "hex") {
            EXPECT_EQ(block.text, plain(hexRecords(result_.image))) << block.place;
        } else if (block.kind == "resultado") {
            checkResult(block, result_.image);
        } else {
            ADD_FAILURE() << block.place << ": a block of the unknown kind " << block.kind;
        }
    }

    void end() { expectAnswered(); }

  private:
    void assembleIt(const Block& block) {
        expectAnswered();
        AssemblyObserver unobserved;
        result_ = assemble(block.text, unobserved);
        program_ = block.place;
        answered_ = block.kind == "8085";
        EXPECT_EQ(result_.assembled, answered_) << block.place << '\n' << result_.report;
    }

    void expectAnswered() const { EXPECT_TRUE(answered_) << program_ << ": its errors are not printed"; }

    AssemblyResult result_;
    std::string program_;
    bool answered_ = true;
};

TEST(ManualProgramsTest, AssembleAndRunAsTheManualSays) {
    std::map<std::string, int> blocks;
    for (const std::filesystem::path& path : chapters()) {
        Reader reader;
        for (const Block& block : blocksOf(path)) {
            reader.read(block);
            ++blocks[block.kind];
        }
        reader.end();
    }
    for (const char* kind : {"8085", "8085-errores", "informe", "listado", "hex", "resultado"}) {
        EXPECT_GT(blocks[kind], 0) << kind;
    }
}

}  // namespace
}  // namespace tavinor::manual
