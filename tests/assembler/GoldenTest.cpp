// Sources with what must come of them: golden/README.md says what a case is. Every HEX file is also read by
// the loader and by an independent tool, and must give the same image.

#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include "assembler/ListingWriter.h"
#include "assembler/OutputPaths.h"
#include "images/HexLoader.h"
#include "tests/assembler/Support.h"

namespace tavinor::test {

namespace {

namespace fs = std::filesystem;

constexpr std::string_view endRecord = ":00000001FF\r\n";
const fs::path goldenDirectory = TAVINOR_GOLDEN_DIRECTORY;

std::vector<fs::path> goldenSources() {
    std::vector<fs::path> sources;
    for (const fs::directory_entry& entry : fs::recursive_directory_iterator(goldenDirectory)) {
        if (entry.path().extension() == ".asm") sources.push_back(entry.path());
    }
    std::sort(sources.begin(), sources.end());
    return sources;
}

fs::path expectedFile(fs::path source, const char* extension) {
    return source.replace_extension(extension);
}

/// What the loader makes of a HEX file, and its message.
struct Loaded {
    ImageBuffer image;
    std::string message;
};

Loaded load(const fs::path& hex) {
    LoadedMachine host;
    Breakpoints breakpoints{};
    WorkObserver unobserved;
    LoadResult result = carga(hex, host.machine, breakpoints, host, unobserved);
    return {host.image, result.message};
}

/// The whole memory as the independent tool sees it, with `fill` where there is no byte.
std::string filledMemory(const fs::path& hex, const TemporaryFolder& directory, const std::string& fill) {
    const fs::path binary = directory / ("fill" + fill);
    const std::string command = std::string(TAVINOR_SREC_CAT) + " '" + hex.string() + "' -Intel -fill 0x" +
                                fill + " 0 0x10000 -o '" + binary.string() + "' -Binary";
    EXPECT_EQ(std::system(command.c_str()), 0) << command;
    return readBytes(binary);
}

ImageBuffer independentImage(const fs::path& hex, const TemporaryFolder& directory) {
    const std::string zeros = filledMemory(hex, directory, "00");
    const std::string ones = filledMemory(hex, directory, "FF");
    ImageBuffer image;
    image.fill(noByte);
    for (std::size_t i = 0; i < imageSize; ++i) {
        if (zeros.at(i) == ones.at(i)) image[i] = static_cast<std::uint8_t>(zeros[i]);
    }
    return image;
}

/// A record that begins above FFF0 and reaches FFFF claims more bytes than it has.
bool claimsBytesPastTheEnd(const std::string& hex) {
    const std::vector<std::string> records = linesOf(hex);
    return std::any_of(records.begin(), records.end(), [](const std::string& record) {
        return record.substr(1, 2) == "10" && record.size() < 1 + 8 + 32 + 2;
    });
}

class Golden : public testing::TestWithParam<fs::path> {
  protected:
    void run() {
        fs::copy_file(GetParam(), source_);
        RecordingObserver observer;
        result_ = Ensambla(source_, paths_.hex, observer);
        EXPECT_TRUE(creafilelst(result_.listing, result_.encoding, paths_.listing, observer));
        EXPECT_EQ(observer.panes[Pane::listing], result_.listing);
        EXPECT_EQ(observer.panes[Pane::report], result_.report);
        EXPECT_TRUE(observer.messages.empty());
    }

    void bless() const {
        writeBytes(expectedFile(GetParam(), ".lst"), readBytes(paths_.listing));
        fs::remove(expectedFile(GetParam(), ".hex"));
        fs::remove(expectedFile(GetParam(), ".rep"));
        writeBytes(expectedFile(GetParam(), result_.assembled ? ".hex" : ".rep"), result_.report);
    }

    void expectLoads(const std::string& hex) {
        const Loaded loaded = load(paths_.hex);
        EXPECT_EQ(differences(result_.image, loaded.image), "");
        if (claimsBytesPastTheEnd(hex)) {
            EXPECT_EQ(loaded.message, "Error en lectura");
            return;
        }
        EXPECT_EQ(loaded.message, "");
        if (hex == endRecord) return;  // the tool refuses a file without data
        EXPECT_EQ(differences(result_.image, independentImage(paths_.hex, directory_)), "");
    }

    TemporaryFolder directory_;
    fs::path source_ = directory_ / "prog.asm";
    OutputPaths paths_ = outputPaths(source_);
    AssemblyResult result_;
};

TEST_P(Golden, GivesTheExpectedFiles) {
    run();
    if (blessing()) bless();
    const fs::path hexFile = expectedFile(GetParam(), ".hex");
    const fs::path reportFile = expectedFile(GetParam(), ".rep");
    ASSERT_NE(fs::exists(hexFile), fs::exists(reportFile)) << "a case has a .hex or a .rep file";
    EXPECT_EQ(readBytes(paths_.listing), readBytes(expectedFile(GetParam(), ".lst")));
    EXPECT_EQ(result_.assembled, fs::exists(hexFile));
    EXPECT_EQ(fs::exists(paths_.hex), fs::exists(hexFile));
    if (fs::exists(hexFile)) {
        const std::string hex = readBytes(hexFile);
        EXPECT_EQ(readBytes(paths_.hex), hex);
        EXPECT_EQ(result_.report, hex);
        expectLoads(hex);
    } else {
        EXPECT_EQ(result_.report, readBytes(reportFile));
    }
}

std::string caseName(const testing::TestParamInfo<fs::path>& info) {
    std::string name = fs::relative(info.param, goldenDirectory).replace_extension().string();
    std::replace_if(
        name.begin(), name.end(), [](unsigned char c) { return std::isalnum(c) == 0; }, '_');
    return name;
}

INSTANTIATE_TEST_SUITE_P(Assembler, Golden, testing::ValuesIn(goldenSources()), caseName);

TEST(GoldenCases, AreThere) {
    EXPECT_GE(goldenSources().size(), 120U);
}

}  // namespace

}  // namespace tavinor::test
