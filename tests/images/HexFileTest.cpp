// Whole HEX files: their lines, their ends, what the user is told.

#include <gtest/gtest.h>
#include <sys/resource.h>

#include <memory>

#include "tests/images/Records.h"

namespace tavinor::test {
namespace {

const std::string formatReason = "Formato incorrecto.";
const std::string noEndReason = "No hay código de fin.";

class HexFileTest : public ::testing::Test {
  protected:
    void expectLoaded(const LoadResult& result) {
        EXPECT_TRUE(result.loaded);
        EXPECT_EQ(result.message, "");
        EXPECT_FALSE(result.rightAlignedBox);
        EXPECT_TRUE(bench.breakpointsCleared());
    }

    void expectFailed(const LoadResult& result, const std::string& message, bool rightAligned) {
        EXPECT_FALSE(result.loaded);
        EXPECT_EQ(result.message, message);
        EXPECT_EQ(result.rightAlignedBox, rightAligned);
        EXPECT_TRUE(bench.breakpointsKept());
    }

    /// The box with path and reason, for what `loadText` has loaded.
    void expectReason(const LoadResult& result, const std::string& reason) {
        const std::string path = (bench.folder.path() / "prog.hex").string();
        expectFailed(result, "Error en fichero " + path + ".\r" + reason, true);
    }

    void expectReadError(const LoadResult& result) { expectFailed(result, "Error en lectura", false); }

    std::unique_ptr<LoadBench> owner = std::make_unique<LoadBench>();
    LoadBench& bench = *owner;
};

// --- cancelling ---

TEST_F(HexFileTest, ACancelledLoadKeepsWhatWasStoredAndSaysNothing) {
    struct : WorkObserver {
        bool goesOn(double done) override { return done < 0.5; }
    } impatient;
    std::string text;
    for (int i = 0; i < 20'000; ++i) text += lines({record(i, {i & 0xFF})});
    const auto path = bench.folder.write("prog.hex", text + lines({endLine}));
    const LoadResult result = carga(path, bench.m, bench.breakpoints, bench.host, impatient);
    EXPECT_FALSE(result.loaded);
    EXPECT_EQ(result.message, "");
    EXPECT_TRUE(bench.breakpointsKept());
    const std::size_t stored = bench.host.memoryWrites.size();
    EXPECT_GT(stored, 1'000U);
    EXPECT_LT(stored, 19'000U);
    EXPECT_EQ(bench.at(999), 999 & 0xFF);
}

// --- end records ---

TEST_F(HexFileTest, AnEndRecordAloneLoadsNothingAndClearsAllBreakpoints) {
    expectLoaded(bench.loadText(lines({endLine})));
    EXPECT_TRUE(bench.host.memoryWrites.empty());
}

TEST_F(HexFileTest, LinesBehindTheEndRecordAreNeverRead) {
    expectLoaded(bench.loadText(lines({record(0x100, {1}), endLine, record(0x200, {2}), "rubbish", ""})));
    EXPECT_EQ(bench.at(0x100), 1);
    EXPECT_EQ(bench.at(0x200), 0xFF);
}

TEST_F(HexFileTest, AWrongChecksumBeforeAValidEndRecordIsForgiven) {
    expectLoaded(bench.loadText(lines({":03010000AABBCC00", endLine})));
    EXPECT_EQ(bench.at(0x102), 0xCC);
}

TEST_F(HexFileTest, DataWithoutAnEndRecordIsStoredAndReported) {
    expectReason(bench.loadText(lines({record(0x100, {1}), record(0x101, {2})})), noEndReason);
    EXPECT_EQ(bench.at(0x100), 1);
    EXPECT_EQ(bench.at(0x101), 2);
}

TEST_F(HexFileTest, AWrongChecksumWithoutAnEndRecordIsReportedAsAMissingEnd) {
    expectReason(bench.loadText(lines({":03010000AABBCC00"})), noEndReason);
}

TEST_F(HexFileTest, AnEndRecordWithAWrongChecksumIsPassedOver) {
    expectReason(bench.loadText(lines({":00000001FE"})), noEndReason);
    bench.clear();
    expectLoaded(bench.loadText(lines({":00000001FE", record(0x100, {1}), endLine})));
    EXPECT_EQ(bench.at(0x100), 1);
}

TEST_F(HexFileTest, AnEmptyFileHasNoEnd) {
    expectReason(bench.loadText(""), noEndReason);
}

// --- format errors ---

TEST_F(HexFileTest, AnEmptyLineIsAFormatError) {
    for (const char* text : {"\n", "\r\n", "\r", "   \n", ":00000001FE\n\n:00000001FF\n"}) {
        bench.clear();
        expectReason(bench.loadText(text), formatReason);
    }
}

TEST_F(HexFileTest, AFormatErrorKeepsWhatWasStoredBefore) {
    expectReason(bench.loadText(lines({record(0x100, {1}), "hello", record(0x200, {2}), endLine})),
                 formatReason);
    EXPECT_EQ(bench.at(0x100), 1);
    EXPECT_EQ(bench.at(0x200), 0xFF);
}

TEST_F(HexFileTest, ExtendedAddressesAndStartRecordsAreFormatErrors) {
    for (int type = 2; type <= 5; ++type) {
        bench.clear();
        expectReason(bench.loadText(lines({record(0, {0, 0}, type), endLine})), formatReason);
    }
}

TEST_F(HexFileTest, ABlankIndentIsDropped) {
    expectLoaded(bench.loadText(lines({"    " + record(0x100, {1}), " " + endLine})));
    EXPECT_EQ(bench.at(0x100), 1);
}

TEST_F(HexFileTest, TrailingBlanksAreDropped) {
    expectLoaded(bench.loadText(lines({record(0x100, {1}) + "   ", endLine + " "})));
    EXPECT_EQ(bench.at(0x100), 1);
}

TEST_F(HexFileTest, AnyOtherCharacterBeforeTheColonIsAFormatError) {
    for (const char* before : {"\t", "x", ";", "\xEF\xBB\xBF", "\v", "\xC2\xA0"}) {
        bench.clear();
        expectReason(bench.loadText(before + endLine), formatReason);
    }
    bench.clear();
    expectReason(bench.loadText(std::string(1, '\0') + endLine), formatReason);
}

TEST_F(HexFileTest, AColonAloneIsAReadError) {
    expectReadError(bench.loadText(lines({":", endLine})));
}

TEST_F(HexFileTest, LowerCaseIsAccepted) {
    expectLoaded(bench.loadText(":02abcd00beefd9\n:00000001ff\n"));
    EXPECT_EQ(bench.at(0xABCD), 0xBE);
    EXPECT_EQ(bench.at(0xABCE), 0xEF);
}

// --- the top of memory ---

TEST_F(HexFileTest, ARecordPastFFFFIsAReadErrorAndKeepsTheBytesUpToTheTop) {
    expectReadError(bench.loadText(lines({record(0xFFFF, {1, 2}), endLine})));
    EXPECT_EQ(bench.at(0xFFFF), 1);
    EXPECT_EQ(bench.at(0x10000), 2) << "the first mirror cell";
    EXPECT_EQ(bench.at(0), 0xFF);
}

TEST_F(HexFileTest, ARecordWhoseMissingDataRunsPastFFFFIsAReadErrorToo) {
    expectReadError(bench.loadText(lines({":FFFFFE000102", endLine})));
    EXPECT_EQ(bench.at(0xFFFE), 1);
    EXPECT_EQ(bench.at(0xFFFF), 0);
}

TEST_F(HexFileTest, TheMirrorFollowsTheLoadedBytes) {
    expectLoaded(bench.loadText(lines({record(0, {1, 2}), endLine})));
    EXPECT_EQ(bench.at(0x10000), 1);
    EXPECT_EQ(bench.at(0x10001), 2);
}

TEST_F(HexFileTest, RegistersPortsAndInterruptsStay) {
    bench.m.A = 0x12;
    bench.m.PC = 0x3456;
    bench.m.port[3] = 9;
    bench.m.intState.IE = true;
    const auto expected = std::make_unique<MachineState>(bench.m);
    expected->mem[0x100] = 1;
    expectLoaded(bench.loadText(lines({record(0x100, {1}), endLine})));
    EXPECT_EQ(differences(bench.m, *expected), "");
}

// --- line ends ---

TEST_F(HexFileTest, LinesEndInCrLfLfOrCr) {
    for (const char* end : {"\r\n", "\n", "\r"}) {
        bench.clear();
        expectLoaded(bench.loadText(lines({record(0x100, {1}), record(0x200, {2}), endLine}, end)));
        EXPECT_EQ(bench.at(0x100), 1);
        EXPECT_EQ(bench.at(0x200), 2);
    }
}

TEST_F(HexFileTest, LineEndsMayBeMixed) {
    expectLoaded(bench.loadText(record(0x100, {1}) + "\r" + record(0x200, {2}) + "\n" + record(0x300, {3}) +
                                "\r\n" + endLine));
    EXPECT_EQ(bench.host.memoryWrites.size(), 3U);
}

TEST_F(HexFileTest, TheLastLineNeedsNoEnd) {
    expectLoaded(bench.loadText(record(0x100, {1}) + "\n" + endLine));
    bench.clear();
    expectReason(bench.loadText(record(0x100, {1})), noEndReason);
    EXPECT_EQ(bench.at(0x100), 1);
}

TEST_F(HexFileTest, ACrLfAcrossTheReadersBlocksIsOneLineEnd) {
    const std::string line = record(0x100, {1});
    for (std::size_t shift = 0; shift < 4; ++shift) {
        const std::string blanks(65536 - line.size() - 3 + shift, ' ');
        bench.clear();
        expectLoaded(bench.loadText(blanks + line + "\r\n" + endLine + "\r\n"));
        EXPECT_EQ(bench.at(0x100), 1);
    }
}

// --- sizes ---

TEST_F(HexFileTest, ALineOfAMillionCharactersIsReadByItsCount) {
    const std::string line = ":02010000ABCD" + std::string(1'000'000, '7') + "85";
    expectLoaded(bench.loadText(lines({line, endLine})));
    EXPECT_EQ(bench.host.memoryWrites, (std::vector<Write>{{0x100, 0xAB}, {0x101, 0xCD}}));
    bench.clear();
    const std::string wrong = ":02010000ABCD" + std::string(1'000'000, '7') + "84";
    expectReason(bench.loadText(lines({wrong})), noEndReason);
    EXPECT_EQ(bench.at(0x101), 0xCD);
}

TEST_F(HexFileTest, ALongLineKeepsAll255BytesOfItsRecord) {
    std::vector<int> data;
    for (int i = 0; i < 255; ++i) data.push_back(i);
    std::string line = record(0x1000, data);
    line.insert(line.size() - 2, std::string(5000, '5'));
    expectLoaded(bench.loadText(lines({line, endLine})));
    ASSERT_EQ(bench.host.memoryWrites.size(), 255U);
    for (int i = 0; i < 255; ++i) EXPECT_EQ(bench.at(0x1000 + i), i);
}

TEST_F(HexFileTest, AFileOfManyRecordsIsLoaded) {
    std::string text;
    for (int address = 0; address < 65536; address += 4) {
        text += record(address, {address >> 8, address & 0xFF, 0, 1}) + "\n";
    }
    expectLoaded(bench.loadText(text + endLine));
    EXPECT_EQ(bench.host.memoryWrites.size(), 65536U);
    EXPECT_EQ(bench.at(0xABCC), 0xAB);
    EXPECT_EQ(bench.at(0xFFFF), 1);
}

long peakKilobytes() {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return usage.ru_maxrss;
}

TEST_F(HexFileTest, AHundredMegabytesWithoutALineEndCostNoMemory) {
    const std::filesystem::path path = bench.folder.path() / "long.hex";
    {
        std::ofstream out(path, std::ios::binary);
        out << ":02010000ABCD";
        const std::string block(1'000'000, '7');
        for (int i = 0; i < 100; ++i) out << block;
        ASSERT_TRUE(out.good());
    }
    const long before = peakKilobytes();
    const LoadResult result = bench.load(path);
    EXPECT_LT(peakKilobytes() - before, 50'000);
    expectFailed(result, "Error en fichero " + path.string() + ".\r" + noEndReason, true);
    EXPECT_EQ(bench.at(0x100), 0xAB);
    EXPECT_EQ(bench.at(0x101), 0xCD);
}

// --- names ---

TEST_F(HexFileTest, TheMessageNamesThePathAsItIs) {
    const std::filesystem::path path = bench.folder.write("año <b>nuevo 1.HEX", "hello");
    expectFailed(bench.load(path), "Error en fichero " + path.string() + ".\rFormato incorrecto.", true);
}

TEST_F(HexFileTest, ANameThatIsNoUtf8IsLoadedToo) {
    expectLoaded(bench.load(bench.folder.write("a\xF1o.hex", endLine)));
}

}  // namespace
}  // namespace tavinor::test
