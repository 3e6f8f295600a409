// Every program, run with the data that its image brings, leaves what the header of its source promises.

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <set>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include "machine/HexText.h"
#include "machine/Interrupts.h"
#include "tests/examples/ExampleMachine.h"
#include "tests/examples/Programs.h"

namespace tavinor::examples {
namespace {

/// The comment lines on top of the source, up to the first line that is none.
std::string header(std::string_view program) {
    std::istringstream source(readFile(sourcePath(program)));
    std::string text;
    for (std::string line; std::getline(source, line) && line.starts_with(';');) text += line + '\n';
    return text;
}

void pressTheButtonOnceAndEndTheDay(ExampleMachine& example) {
    constexpr std::size_t lightsOfOneRound = 4;
    example.start();
    example.machine().port[0] = 0x01;
    while (example.outputs().size() < lightsOfOneRound && example.steps() < 10'000) example.step();
    example.machine().port[0] = 0x80;
    example.finish();
}

void pressRst75FiveTimes(ExampleMachine& example) {
    constexpr int instructionsBetween = 40;
    example.start();
    for (int press = 0; press < 5; ++press) {
        for (int i = 0; i < instructionsBetween; ++i) example.step();
        ASSERT_TRUE(example.machine().intState.IE);
        ASSERT_FALSE(example.machine().intState.M75);
        acceptRst75(example.machine(), example);
    }
    example.finish();
}

void giveFourOrders(ExampleMachine& example) {
    struct Order {
        std::uint8_t operand, order;
    };
    constexpr Order session[] = {{0x25, 1}, {0x10, 2}, {0x10, 9}, {0x10, 4}};
    example.start();
    for (const auto& [operand, order] : session) {
        for (int i = 0; i < 20; ++i) example.step();
        example.machine().port[0] = operand;
        example.machine().port[1] = order;
        while (example.machine().port[1] != 0 && example.steps() < 10'000) example.step();
    }
    example.finish();
}

void tickSid(ExampleMachine& example) {
    example.start();
    example.machine().SID = false;
    for (int i = 0; i < 100; ++i) example.step();
    example.machine().SID = true;
    example.finish();
}

void pressRst65InTwoRounds(ExampleMachine& example) {
    constexpr int instructionsBetween = 60;
    const auto idle = [&] {
        for (int i = 0; i < instructionsBetween; ++i) example.step();
        ASSERT_TRUE(example.machine().intState.IE);
    };
    example.start();
    for (int round = 0; round < 2; ++round) {
        example.machine().SID = false;
        ASSERT_NO_FATAL_FAILURE(idle());
        ASSERT_FALSE(example.machine().intState.M55);
        acceptInterrupt(example.machine(), example, vector::rst55);
        ASSERT_NO_FATAL_FAILURE(idle());
        EXPECT_TRUE(example.machine().intState.M55);
        ASSERT_FALSE(example.machine().intState.M65);
        acceptInterrupt(example.machine(), example, vector::rst65);
        ASSERT_NO_FATAL_FAILURE(idle());
        example.machine().SID = true;
        if (round == 0) idle();
    }
    example.finish();
}

struct Operation {
    std::string_view program;
    void (*operate)(ExampleMachine&);
};

/// The programs whose header asks the student to do something while they run.
constexpr Operation operations[] = {
    {"13-semaforo", pressTheButtonOnceAndEndTheDay},
    {"14-interrupcion", pressRst75FiveTimes},
    {"16-calculadora", giveFourOrders},
    {"17-serie", tickSid},
    {"18-dos-interrupciones", pressRst65InTwoRounds},
};

void operate(std::string_view program, ExampleMachine& example) {
    for (const Operation& each : operations) {
        if (each.program == program) return each.operate(example);
    }
    example.run();
}

/// What stands where "(2000H)" or "puerto 01H" says, as the header writes it ("3FH"); empty for other texts.
std::string found(const std::string& place, ExampleMachine& example) {
    constexpr std::string_view cell = "(";
    constexpr std::string_view port = "puerto ";
    if (place.starts_with(cell) && place.ends_with("H)")) {
        return hexa(example.byte(dec(place.substr(cell.size()))), 2) + "H";
    }
    if (place.starts_with(port) && place.ends_with('H')) {
        return hexa(example.machine().port[static_cast<std::size_t>(dec(place.substr(port.size())))], 2) +
               "H";
    }
    return {};
}

/// Checks every line "(2000H) = 3FH" or "puerto 01H = FFH" of a header and returns how many there were.
int checkPromises(const std::string& header, ExampleMachine& example) {
    constexpr std::string_view equals = " = ";
    int count = 0;
    std::istringstream lines(header);
    for (std::string line; std::getline(lines, line);) {
        line.erase(0, line.find_first_not_of("; "));
        const std::size_t middle = line.find(equals);
        if (middle == std::string::npos) continue;
        const std::string value = found(line.substr(0, middle), example);
        if (value.empty()) continue;
        EXPECT_EQ(value, line.substr(middle + equals.size())) << line;
        ++count;
    }
    return count;
}

/// The statements of a source without comments, blanks and empty lines.
std::vector<std::string> statements(std::string_view program) {
    std::vector<std::string> result;
    std::istringstream source(readFile(sourcePath(program)));
    for (std::string line; std::getline(source, line);) {
        line.erase(std::min(line.find(';'), line.size()));
        std::erase(line, ' ');
        if (!line.empty()) result.push_back(line);
    }
    return result;
}

class ExampleTest : public testing::TestWithParam<std::string_view> {};

TEST_P(ExampleTest, KeepsThePromisesOfItsHeader) {
    ExampleMachine example(imagePath(GetParam()));
    const std::string text = header(GetParam());
    operate(GetParam(), example);
    EXPECT_GT(checkPromises(text, example), 0);
}

TEST_P(ExampleTest, KeepsThemAgainAfterReset) {
    ExampleMachine example(imagePath(GetParam()));
    const std::string text = header(GetParam());
    operate(GetParam(), example);
    operate(GetParam(), example);
    checkPromises(text, example);
}

TEST_P(ExampleTest, TellsTheStudentEverythingInItsHeader) {
    const std::string text = header(GetParam());
    for (const char* part : {"; Propósito: ", "; Antes: ", "; Resultado: ", "; Pregunta: "}) {
        EXPECT_NE(text.find(part), std::string::npos) << part;
    }
    EXPECT_NE(text.find("; " + std::string(GetParam().substr(0, 2)) + "  "), std::string::npos);
}

// The assembler gives "RST 5" the code of "RST 3".
TEST_P(ExampleTest, DoesWithoutRst5) {
    for (const std::string& statement : statements(GetParam())) {
        EXPECT_FALSE(statement.ends_with("RST5")) << statement;
    }
}

INSTANTIATE_TEST_SUITE_P(Programs, ExampleTest, testing::ValuesIn(programs),
                         [](const auto& program) { return testName(program.param); });

/// Images have the names that the assembler gives, so that assembling a source replaces the one it came with.
TEST(ExampleFolderTest, HoldsASourceAndAnImageOfEveryProgramAndNoOther) {
    std::set<std::string> expected;
    for (const std::string_view program : programs) {
        expected.insert(sourcePath(program).filename().string());
        expected.insert(imagePath(program).filename().string());
    }
    const std::set<std::filesystem::path> kinds{".asm", ".hex", ".HEX"};
    std::set<std::string> found;
    for (const auto& entry : std::filesystem::directory_iterator(folder())) {
        if (kinds.contains(entry.path().extension())) found.insert(entry.path().filename().string());
    }
    EXPECT_EQ(found, expected);
}

/// The cells of a row of a Markdown table, without the blanks around them; empty for other lines.
std::vector<std::string> tableCells(const std::string& line) {
    std::vector<std::string> cells;
    if (!line.starts_with('|') || !line.ends_with('|')) return cells;
    std::istringstream rest(line.substr(1));
    for (std::string cell; std::getline(rest, cell, '|');) {
        const std::size_t first = cell.find_first_not_of(' ');
        cells.push_back(first == std::string::npos
                            ? std::string()
                            : cell.substr(first, cell.find_last_not_of(' ') - first + 1));
    }
    return cells;
}

TEST(ExampleFolderTest, TellsPurposeResultAndQuestionOfEveryProgramInTheTableOfItsReadme) {
    std::istringstream readme(readFile(folder() / "LEEME.md"));
    const std::vector<std::string> headings{"Programa", "Propósito", "Resultado", "Pregunta"};
    std::string line;
    while (std::getline(readme, line) && tableCells(line) != headings) continue;
    ASSERT_TRUE(readme) << "no table with the headings";
    std::getline(readme, line);  // the rule below them
    std::vector<std::string> listed;
    while (std::getline(readme, line) && line.starts_with('|')) {
        const std::vector<std::string> cells = tableCells(line);
        ASSERT_EQ(cells.size(), headings.size()) << line;
        for (const std::string& cell : cells) EXPECT_FALSE(cell.empty()) << line;
        EXPECT_TRUE(cells.back().ends_with('?')) << line;
        listed.push_back(cells.front());
    }
    std::vector<std::string> expected;
    for (const std::string_view program : programs) expected.push_back("`" + std::string(program) + "`");
    EXPECT_EQ(listed, expected);
}

}  // namespace
}  // namespace tavinor::examples
