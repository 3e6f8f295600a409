// The images of the programs: in the form of our own writer, understood by the tools of others, and loaded
// alike when those tools have rewritten them.

#include <gtest/gtest.h>
#include <stdlib.h>
#include <sys/wait.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "assembler/Ensambla.h"
#include "machine/HexText.h"
#include "tests/examples/ExampleMachine.h"
#include "tests/examples/Programs.h"

namespace tavinor::examples {
namespace {

struct Outcome {
    int status = -1;
    std::string text;  ///< What the command wrote, complaints included.
};

std::string quoted(const std::filesystem::path& path) {
    return "'" + path.string() + "'";
}

Outcome shell(const std::string& command) {
    Outcome outcome;
    FILE* pipe = popen((command + " 2>&1").c_str(), "r");
    if (pipe == nullptr) return outcome;
    std::array<char, 4096> buffer{};
    for (std::size_t n; (n = fread(buffer.data(), 1, buffer.size(), pipe)) > 0;) {
        outcome.text.append(buffer.data(), n);
    }
    const int status = pclose(pipe);
    outcome.status = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    return outcome;
}

/// The used addresses and their bytes, from the text of an image.
using Cells = std::vector<int>;  // -1 = no byte

Cells cellsOf(const std::string& text) {
    Cells cells(memorySize, -1);
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);) {
        const int count = dec(line.substr(1, 2));
        const int address = dec(line.substr(3, 4));
        for (int i = 0; i < count; ++i) {
            cells[static_cast<std::size_t>(address + i)] =
                dec(line.substr(9 + 2 * static_cast<std::size_t>(i), 2));
        }
    }
    return cells;
}

/// The record of the cells from `first` on: sixteen at most, up to a gap.
std::string recordAt(const Cells& cells, std::size_t first) {
    std::size_t count = 0;
    std::string data;
    int sum = static_cast<int>(first / 256 + first % 256);
    while (count < 16 && first + count < cells.size() && cells[first + count] >= 0) {
        sum += cells[first + count];
        data += hexa(cells[first + count], 2);
        ++count;
    }
    sum += static_cast<int>(count);
    return ":" + hexa(static_cast<int>(count), 2) + hexa(static_cast<int>(first), 4) + "00" + data +
           hexa((256 - sum % 256) % 256, 2) + "\r\n";
}

std::string asWritten(const Cells& cells) {
    std::string text;
    for (std::size_t address = 0; address < cells.size();) {
        if (cells[address] < 0) {
            ++address;
            continue;
        }
        const std::string record = recordAt(cells, address);
        text += record;
        address += static_cast<std::size_t>(dec(record.substr(1, 2)));
    }
    return text + ":00000001FF\r\n";
}

class ExampleImageTest : public testing::TestWithParam<std::string_view> {
  protected:
    void SetUp() override {
        std::string pattern = (std::filesystem::temp_directory_path() / "images-XXXXXX").string();
        ASSERT_NE(mkdtemp(pattern.data()), nullptr);
        folder_ = pattern;
    }
    void TearDown() override { std::filesystem::remove_all(folder_); }

    [[nodiscard]] std::filesystem::path image() const { return imagePath(GetParam()); }
    [[nodiscard]] std::filesystem::path made(const char* name) const { return folder_ / name; }

    /// The bytes that `command` made into the file "made.bin" must be those in memory, from 0000 on.
    void expectMadeBytesInMemory(const std::string& command) {
        const Outcome outcome = shell(command);
        ASSERT_EQ(outcome.status, 0) << command << '\n' << outcome.text;
        EXPECT_EQ(outcome.text, "");
        const std::string content = readFile(made("made.bin"));
        ASSERT_FALSE(content.empty());
        std::vector<std::uint8_t> expected(memorySize, 0);
        std::copy(content.begin(), content.end(), expected.begin());
        EXPECT_TRUE(ExampleMachine(image()).bytes(0, memorySize) == expected);
    }

    /// What `command` made into the file "made.hex" must load like the image. Returns the made text.
    std::string expectMadeImageLoadsAlike(const std::string& command) {
        const Outcome outcome = shell(command);
        EXPECT_EQ(outcome.status, 0) << command << '\n' << outcome.text;
        EXPECT_EQ(outcome.text, "");
        EXPECT_TRUE(ExampleMachine(made("made.hex")).bytes(0, memorySize) ==
                    ExampleMachine(image()).bytes(0, memorySize));
        return readFile(made("made.hex"));
    }

  private:
    std::filesystem::path folder_;
};

TEST_P(ExampleImageTest, IsInTheFormOfOurOwnWriter) {
    const std::string text = readFile(image());
    EXPECT_EQ(text, asWritten(cellsOf(text)));
}

TEST_P(ExampleImageTest, IsWhatItsSourceAssemblesTo) {
    AssemblyObserver unobserved;
    const AssemblyResult result = Ensambla(sourcePath(GetParam()), made("made.hex"), unobserved);
    EXPECT_TRUE(result.assembled) << result.report;
    EXPECT_EQ(readFile(made("made.hex")), readFile(image()));
}

TEST_P(ExampleImageTest, FillsMemoryAsItsRecordsSay) {
    const Cells cells = cellsOf(readFile(image()));
    ExampleMachine example(image());
    for (std::int32_t address = 0; address < memorySize; ++address) {
        ASSERT_EQ(example.byte(address), std::max(cells[static_cast<std::size_t>(address)], 0)) << address;
    }
}

TEST_P(ExampleImageTest, SrecCatReadsTheSameBytes) {
    expectMadeBytesInMemory(TAVINOR_SREC_CAT " " + quoted(image()) + " -Intel -o " +
                            quoted(made("made.bin")) + " -Binary");
}

TEST_P(ExampleImageTest, ObjcopyReadsTheSameBytes) {
    expectMadeBytesInMemory(TAVINOR_OBJCOPY " -I ihex -O binary " + quoted(image()) + " " +
                            quoted(made("made.bin")));
}

TEST_P(ExampleImageTest, LoadsInLowerCase) {
    const std::string text =
        expectMadeImageLoadsAlike("tr 'A-F' 'a-f' < " + quoted(image()) + " > " + quoted(made("made.hex")));
    EXPECT_EQ(text.find_first_of("ABCDEF"), std::string::npos);
}

TEST_P(ExampleImageTest, LoadsWithLineFeedsAlone) {
    const std::string text =
        expectMadeImageLoadsAlike("tr -d '\\r' < " + quoted(image()) + " > " + quoted(made("made.hex")));
    EXPECT_EQ(text.find('\r'), std::string::npos);
    EXPECT_NE(text.find('\n'), std::string::npos);
}

TEST_P(ExampleImageTest, LoadsInRecordsOfThirtyTwoBytes) {
    const std::string original = readFile(image());
    const std::string text =
        expectMadeImageLoadsAlike(TAVINOR_SREC_CAT " " + quoted(image()) + " -Intel -o " +
                                  quoted(made("made.hex")) + " -Intel --address-length=2 -obs=32");
    const auto lines = [](const std::string& s) { return std::count(s.begin(), s.end(), '\n'); };
    const bool hasFullRecord = original.find(":10") != std::string::npos;
    if (hasFullRecord) {
        EXPECT_LT(lines(text), lines(original));
    } else {
        EXPECT_EQ(lines(text), lines(original));
    }
}

INSTANTIATE_TEST_SUITE_P(Programs, ExampleImageTest, testing::ValuesIn(programs),
                         [](const auto& program) { return testName(program.param); });

}  // namespace
}  // namespace tavinor::examples
