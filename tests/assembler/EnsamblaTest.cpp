#include "assembler/Ensambla.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <filesystem>
#include <string>
#include <vector>

#include "assembler/ErrorReport.h"
#include "assembler/HexWriter.h"
#include "assembler/ListingWriter.h"
#include "tests/assembler/Support.h"
#include "tests/support/FileSizeLimit.h"
#include "tests/support/OddFiles.h"

namespace tavinor::test {

namespace {

namespace fs = std::filesystem;

using Events = std::vector<std::string>;

const std::string cannotOpen = "==> ERROR: Error abriendo fichero\r\n";
const std::string emptyFile = "==> ERROR: Fichero vacío\r\n";

class Files : public testing::Test {
  protected:
    AssemblyResult run(const fs::path& source) { return Ensambla(source, hex_, observer_); }

    AssemblyResult runText(std::string_view text) {
        writeBytes(source_, text);
        return run(source_);
    }

    static void expectOneLine(const AssemblyResult& result, const std::string& line) {
        EXPECT_FALSE(result.assembled);
        EXPECT_EQ(result.listing, line);
        EXPECT_EQ(result.report, line);
    }

    [[nodiscard]] Events names() const {
        Events found;
        for (const auto& entry : fs::directory_iterator(directory_ / ".")) {
            found.push_back(entry.path().filename().string());
        }
        std::sort(found.begin(), found.end());
        return found;
    }

    TemporaryFolder directory_;
    fs::path source_ = directory_ / "prog.asm";
    fs::path hex_ = directory_ / "prog.HEX";
    RecordingObserver observer_;
};

TEST_F(Files, AGoodRunWritesTheHexFileAndShowsIt) {
    const AssemblyResult result = runText(" MVI A,5\r\n HLT\r\n");
    EXPECT_TRUE(result.assembled);
    EXPECT_EQ(readBytes(hex_), ":030000003E057644\r\n:00000001FF\r\n");
    EXPECT_EQ(result.report, readBytes(hex_));
    EXPECT_EQ(result.image[0], 0x3E);
    EXPECT_EQ(result.image[2], 0x76);
    EXPECT_EQ(result.image[3], noByte);
}

/// Cancels at the call of this number, counted from 0.
class ImpatientObserver : public RecordingObserver {
  public:
    explicit ImpatientObserver(int patience) : left_(patience) {}

    bool goesOn(double done) override {
        EXPECT_GE(done, last_);
        EXPECT_LE(done, 1.0);
        last_ = done;
        return left_-- > 0;
    }
    bool passesOver() override { return left_-- > 0; }

  private:
    int left_;
    double last_ = 0;
};

TEST_F(Files, CanBeCancelledAtAnyTimeBeforeTheHexFileIsWritten) {
    std::string source;
    for (int i = 0; i < 1000; ++i) source += "L" + std::to_string(i) + ": NOP\r\n";
    source += " DFB 0";
    for (int i = 0; i < 5000; ++i) source += ",1";
    writeBytes(source_, source);
    writeBytes(hex_, "antes");
    int cancelled = 0;
    for (;; ++cancelled) {
        ImpatientObserver observer(cancelled);
        const AssemblyResult result = Ensambla(source_, hex_, observer);
        EXPECT_EQ(observer.panes[Pane::listing], result.listing);
        EXPECT_EQ(observer.panes[Pane::report], result.report);
        EXPECT_TRUE(observer.messages.empty());
        if (!result.cancelled) break;
        EXPECT_FALSE(result.assembled);
        EXPECT_EQ(result.image[0], noByte);
        EXPECT_EQ(readBytes(hex_), "antes");
    }
    EXPECT_GT(cancelled, 3 * 4);  // in each pass, in the long statement, and at the end
    EXPECT_TRUE(readBytes(hex_).ends_with(":00000001FF\r\n"));
}

TEST_F(Files, CancelledKeepsTheListingUpToThere) {
    std::string source;
    for (int i = 0; i < 1000; ++i) source += " NOP\r\n";
    writeBytes(source_, source);
    AssemblyResult result;
    for (int asked = 0; result.listing.empty(); ++asked) {
        ImpatientObserver observer(asked);
        result = Ensambla(source_, hex_, observer);
        ASSERT_TRUE(result.cancelled);
    }
    EXPECT_TRUE(source.starts_with(result.listing));  // a pass lists a statement as it stands
    EXPECT_LT(result.listing.size(), source.size());
    EXPECT_EQ(result.report, "");
    EXPECT_FALSE(fs::exists(hex_));
}

TEST_F(Files, ReplacesAnOldHexFile) {
    writeBytes(hex_, std::string(100000, 'x'));
    EXPECT_TRUE(runText(" NOP").assembled);
    EXPECT_EQ(readBytes(hex_), ":0100000000FF\r\n:00000001FF\r\n");
}

TEST_F(Files, AfterAnErrorTheOldHexFileStays) {
    writeBytes(hex_, "old");
    const AssemblyResult result = runText(" JMP NADA");
    EXPECT_FALSE(result.assembled);
    EXPECT_EQ(readBytes(hex_), "old");
    EXPECT_EQ(differences(ImageBuffer(result.image), assembled("NADA:").image), "");  // no byte at all
    EXPECT_TRUE(observer_.messages.empty());
}

TEST_F(Files, EmptySource) {
    expectOneLine(runText(""), emptyFile);
    EXPECT_FALSE(fs::exists(hex_));
}

TEST_F(Files, SourceIsADirectory) {
    expectOneLine(run(directory_ / "."), cannotOpen);
}

TEST_F(Files, SourceIsNotThere) {
    expectOneLine(run(directory_ / "nada.asm"), cannotOpen);
    EXPECT_FALSE(fs::exists(hex_));
}

TEST_F(Files, SourceVanishesBehindALink) {
    fs::create_symlink(directory_ / "nada.asm", source_);
    expectOneLine(run(source_), cannotOpen);
}

TEST_F(Files, SourceIsNoFile) {
    OddFiles().each([this](const std::string& what, const fs::path& path) {
        SCOPED_TRACE(what);
        expectOneLine(run(path), cannotOpen);
    });
}

TEST_F(Files, SourceIsAbsurdlyLarge) {
    writeBytes(source_, " NOP");
    fs::resize_file(source_, (std::uintmax_t{1} << 30) + 1);  // takes no room on the disk
    expectOneLine(run(source_), "==> ERROR: Fichero de más de 64 MiB\r\n");
}

TEST_F(Files, HexPathIsADirectory) {
    fs::create_directory(hex_);
    const AssemblyResult result = runText(" NOP");
    EXPECT_FALSE(result.assembled);
    EXPECT_EQ(result.report, "");  // not created, so nothing is mirrored
    EXPECT_EQ(observer_.messages, Events{"Error creando fichero"});
}

TEST_F(Files, HexPathIsInNoDirectory) {
    hex_ = directory_ / "nada/prog.HEX";
    EXPECT_FALSE(runText(" NOP").assembled);
    EXPECT_EQ(observer_.messages, Events{"Error creando fichero"});
}

TEST_F(Files, DiskIsFull) {
    writeBytes(hex_, "old");
    {
        const FileSizeLimit fullDisk(20);
        const AssemblyResult result = runText(" NOP");
        EXPECT_FALSE(result.assembled);
        EXPECT_NE(result.listing, "");
    }
    EXPECT_EQ(observer_.messages, Events{"Error creando fichero"});
    EXPECT_EQ(readBytes(hex_), "old");
    EXPECT_EQ(names(), (Events{"prog.HEX", "prog.asm"}));
}

TEST_F(Files, HexFileBehindALinkIsReplaced) {
    writeBytes(directory_ / "real", "old");
    fs::permissions(directory_ / "real", static_cast<fs::perms>(0640));
    fs::create_symlink("real", hex_);
    EXPECT_TRUE(runText(" NOP").assembled);
    EXPECT_TRUE(fs::is_symlink(hex_));
    EXPECT_EQ(readBytes(directory_ / "real"), ":0100000000FF\r\n:00000001FF\r\n");
    EXPECT_EQ(fs::status(hex_).permissions(), static_cast<fs::perms>(0640));
}

TEST_F(Files, ListingIsWrittenWithOneMoreLineEnd) {
    const fs::path listing = directory_ / "prog.LST";
    EXPECT_TRUE(creafilelst("uno\r\naño\r\n", TextEncoding::utf8, listing, observer_));
    EXPECT_EQ(readBytes(listing), "uno\r\naño\r\n\r\n");
    EXPECT_TRUE(creafilelst("año\r\n", TextEncoding::windows1252, listing, observer_));
    EXPECT_EQ(readBytes(listing), "a\xF1o\r\n\r\n");
    EXPECT_TRUE(creafilelst("ñ", TextEncoding::utf16BigEndian, listing, observer_));
    EXPECT_EQ(readBytes(listing), std::string("\xFE\xFF\0\xF1\0\r\0\n", 8));
    EXPECT_TRUE(observer_.messages.empty());
}

/// A window has to answer meanwhile, and no character may be torn apart.
TEST_F(Files, LongListingIsWrittenByPieces) {
    struct CountingObserver : AssemblyObserver {
        bool goesOn(double /*done*/) override {
            ++calls;
            return false;  // which ends nothing
        }
        int calls = 0;
    } observer;
    const fs::path path = directory_ / "prog.LST";
    std::string listing;
    std::string inUtf16 = "\xFE\xFF";
    std::string inWindows1252;
    constexpr int characters = 600'001;
    for (int i = 0; i < characters; ++i) {
        listing += "\u00F1";
        inUtf16.append("\0\xF1", 2);
        inWindows1252 += '\xF1';
    }
    EXPECT_TRUE(creafilelst(listing, TextEncoding::utf8, path, observer));
    EXPECT_TRUE(readBytes(path) == listing + "\r\n");
    EXPECT_GE(observer.calls, 2);
    EXPECT_TRUE(creafilelst(listing, TextEncoding::windows1252, path, observer));
    EXPECT_TRUE(readBytes(path) == inWindows1252 + "\r\n");
    EXPECT_TRUE(creafilelst(listing, TextEncoding::utf16BigEndian, path, observer));
    EXPECT_TRUE(readBytes(path) == inUtf16.append("\0\r\0\n", 4));
}

TEST_F(Files, ListingCannotBeWritten) {
    const fs::path listing = directory_ / "prog.LST";
    writeBytes(listing, "old");
    {
        const FileSizeLimit fullDisk(4);
        EXPECT_FALSE(creafilelst("uno\r\n", TextEncoding::utf8, listing, observer_));
    }
    EXPECT_EQ(observer_.messages, Events{"Error creando fichero"});
    EXPECT_EQ(readBytes(listing), "old");
    EXPECT_EQ(names(), Events{"prog.LST"});
    observer_.messages.clear();
    fs::remove(listing);
    fs::create_directory(listing);
    EXPECT_FALSE(creafilelst("uno\r\n", TextEncoding::utf8, listing, observer_));
    EXPECT_EQ(observer_.messages, Events{"Error creando fichero"});
}

TEST(Observer, HearsEveryPassAndTheRecords) {
    TemporaryFolder directory;
    writeBytes(directory / "prog.asm", " NOP");
    RecordingObserver observer;
    Ensambla(directory / "prog.asm", directory / "prog.HEX", observer);
    EXPECT_EQ(observer.events, (Events{"clear listing", "append listing", "clear listing", "append listing",
                                       "clear listing", "append listing", "clear report", "append report"}));
}

TEST(Observer, HearsTheErrorsOfTheLastPass) {
    RecordingObserver observer;
    const AssemblyResult result = assemble(" HOLA", observer);
    EXPECT_EQ(observer.panes[Pane::listing], result.listing);
    EXPECT_EQ(observer.panes[Pane::report], result.report);
    EXPECT_EQ(observer.events, (Events{"clear listing", "append listing", "append report"}));
}

TEST(Observer, HearsOfLongTextsInPieces) {
    std::string source;
    for (int i = 0; i < 20000; ++i) source += " NOP ; comentario\n";
    RecordingObserver observer;
    const AssemblyResult result = assemble(source, observer);
    EXPECT_EQ(observer.panes[Pane::listing], result.listing);
    EXPECT_GT(observer.events.size(), 10U);
    EXPECT_LT(observer.events.size(), 100U);
}

TEST(Observer, MayBeSilent) {
    constexpr std::array<std::string_view, 2> disordered{"NOP^00", "CMA^2F"};
    RecordingObserver observer;
    AssemblyObserver unobserved;
    const AssemblyResult heard = assemble("a: NOP\n x", observer, disordered);
    const AssemblyResult unheard = assemble("a: NOP\n x", unobserved, disordered);
    EXPECT_EQ(observer.messages, Events{"Error en tabla"});
    EXPECT_EQ(unheard.report, heard.report);
    EXPECT_EQ(unheard.listing, heard.listing);
}

TEST(Observer, HearsOfADisorderedTableBeforeAnythingElse) {
    constexpr std::array<std::string_view, 4> disordered{"NOP^00", "CMA^2F", "EI^FB", "DI^F3"};
    RecordingObserver observer;
    const AssemblyResult result = assemble(" EI", observer, disordered);
    EXPECT_EQ(observer.messages, (Events{"Error en tabla", "Error en tabla"}));
    EXPECT_EQ(observer.events[1], "message Error en tabla");
    EXPECT_TRUE(result.assembled);
    EXPECT_EQ(result.image[0], 0xFB);
}

TEST(Observer, FullDiskIsToldAfterTheTexts) {
    TemporaryFolder directory;
    writeBytes(directory / "prog.asm", " NOP");
    RecordingObserver observer;
    const FileSizeLimit fullDisk(20);
    Ensambla(directory / "prog.asm", directory / "prog.HEX", observer);
    ASSERT_FALSE(observer.events.empty());
    EXPECT_EQ(observer.events.back(), "message Error creando fichero");
    EXPECT_EQ(observer.panes[Pane::report], ":0100000000FF\r\n:00000001FF\r\n");
}

TEST(HexRecords, OfAnEmptyImage) {
    EXPECT_EQ(hexRecords(assembled(";").image), ":00000001FF\r\n");
}

TEST(HexRecords, OfAFullImage) {
    ImageBuffer image;
    image.fill(0x55);
    const std::vector<std::string> records = linesOf(hexRecords(image));
    ASSERT_EQ(records.size(), 4097U);
    EXPECT_EQ(records[0], ":1000000055555555555555555555555555555555A0");
    EXPECT_EQ(records[4095], ":10FFF00055555555555555555555555555555555B1");
}

TEST(HexRecords, OfEveryOtherCell) {
    ImageBuffer image;
    for (std::size_t i = 0; i < imageSize; ++i) image[i] = i % 2 == 0 ? std::int16_t{1} : noByte;
    const std::vector<std::string> records = linesOf(hexRecords(image));
    EXPECT_EQ(records.size(), 32769U);
    EXPECT_EQ(records[32767], ":01FFFE000101");
}

/// What is beyond FFFF counts as if it were there, but has no digits.
TEST(HexRecords, OfTheLastCells) {
    ImageBuffer image;
    image.fill(noByte);
    image[0xFFFF] = 0x76;
    EXPECT_EQ(hexRecords(image), ":10FFFF00767C\r\n:00000001FF\r\n");
    image[0xFFFE] = 0x01;
    EXPECT_EQ(hexRecords(image), ":10FFFE0001767C\r\n:00000001FF\r\n");
    image[0xFFFF] = noByte;
    EXPECT_EQ(hexRecords(image), ":01FFFE000101\r\n:00000001FF\r\n");
}

/// The label behind the last cell is no error: it has no bytes.
TEST_F(Files, AProgramMayEndAtTheLastCell) {
    const AssemblyResult result =
        runText(" ORG 0FFF0H\n DFB 1,2,3,4,5,6,7,8,9,10,11,12,13,14\n MVI A,5\nFIN:\n");
    EXPECT_TRUE(result.assembled);
    EXPECT_EQ(result.image[0xFFEF], noByte);
    EXPECT_EQ(result.image[0xFFF0], 1);
    EXPECT_EQ(result.image[0xFFFE], 0x3E);
    EXPECT_EQ(result.image[0xFFFF], 0x05);
    EXPECT_TRUE(result.listing.ends_with("---\r\nFIN\t0000\r\n"));
    EXPECT_EQ(readBytes(hex_), ":10FFF0000102030405060708090A0B0C0D0E3E0555\r\n:00000001FF\r\n");
}

TEST_F(Files, AProgramMayNotGoBeyondTheLastCell) {
    for (const char* source : {" ORG 0FFFFH\n MVI A,5\n", " ORG 0FFFEH\n JMP 0\n",
                               " ORG 0FFFFH\n NOP\n NOP\n", " ORG 0FFFFH\n DFW 1\n"}) {
        const AssemblyResult result = runText(source);
        EXPECT_FALSE(result.assembled) << source;
        EXPECT_NE(result.report.find("Dirección fuera de memoria"), std::string::npos) << source;
    }
    EXPECT_TRUE(runText(" ORG 0FFFFH\n NOP\n").assembled);
}

TEST(Result, ListsTheSymbols) {
    EXPECT_TRUE(assembled("B: NOP\nA: EQU 7\n").listing.ends_with("---\r\nB\t0000\r\nA\t0007\r\n"));
    EXPECT_EQ(assembled("B: NOP\nB: NOP\n").listing.find("TABLA DE SIMBOLOS"), std::string::npos);
    EXPECT_TRUE(assembled("B: JMP X\n").listing.ends_with("---\r\nB\t0000\r\n"));
    EXPECT_TRUE(assembled(" NOP\n").listing.ends_with("---\r\n\t0000\r\n"));
}

/// Counts lines and does not mind how many.
std::size_t count(const std::string& text, std::string_view what) {
    std::size_t found = 0;
    for (std::size_t at = text.find(what); at != std::string::npos; at = text.find(what, at + 1)) ++found;
    return found;
}

std::string repeated(std::string_view line, int times) {
    std::string text;
    for (int i = 0; i < times; ++i) text += line;
    return text;
}

TEST(ManyErrors, TenThousandAreReported) {
    const AssemblyResult result = assembled(repeated(" HOLA\n", 10000));
    EXPECT_EQ(count(result.report, "Línea: "), 10000U);
    EXPECT_EQ(count(result.report, "Demasiados"), 0U);
    EXPECT_EQ(count(result.listing, "==> ERROR: "), 10000U);
}

TEST(ManyErrors, OneMoreEndsThePass) {
    const AssemblyResult result = assembled(repeated(" HOLA\n", 20000));
    EXPECT_FALSE(result.assembled);
    EXPECT_EQ(count(result.report, "Línea: "), 10000U);
    EXPECT_TRUE(result.report.ends_with("no valido\r\n==> ERROR: Demasiados errores\r\n"));
    EXPECT_TRUE(result.listing.ends_with(" HOLA\r\n==> ERROR: Demasiados errores\r\n"));
    EXPECT_EQ(count(result.listing, " HOLA\r\n"), 10001U);
}

/// Reporting every pair of a hundred thousand lines would take five thousand million lines.
TEST(ManyErrors, OfOneLabelOverAndOver) {
    const AssemblyResult result = assembled(repeated("A:\n", 100000));
    EXPECT_EQ(count(result.report, "Etiqueta duplicada"), 10000U);
    EXPECT_TRUE(result.report.ends_with("==> ERROR: Demasiados errores\r\n"));
}

TEST(ManyErrors, OfOneStatementInTheLastPass) {
    const AssemblyResult result = assembled("A: NOP\n DFB " + std::string(20000, ',') + "\n");
    EXPECT_FALSE(result.assembled);
    EXPECT_TRUE(result.report.ends_with("==> ERROR: Demasiados errores\r\n"));
    EXPECT_EQ(count(result.listing, "==> ERROR: Demasiados errores\r\n---"), 1U);
    EXPECT_TRUE(result.listing.ends_with("TABLA DE SIMBOLOS\r\n" + std::string(40, '-') + "\r\nA\t0000\r\n"));
}

/// Each of 2,000 errors repeats the one line of a megabyte.
TEST(ManyErrors, AreLimitedByTheirBytesToo) {
    std::string line = " DFB A";
    for (int i = 0; i < 1999; ++i) line += ", NADA" + std::string(500, ' ');
    const AssemblyResult result = assembled(line);
    const std::size_t reported = count(result.report, "Línea: 1 - ERROR: Operando incorrecto\r\n");
    EXPECT_EQ(reported, ErrorReport::maximumBytes / (line.size() + 44));
    EXPECT_TRUE(result.report.ends_with("incorrecto\r\n==> ERROR: Demasiados errores\r\n"));
    EXPECT_LT(result.report.size(), ErrorReport::maximumBytes + 100);
    EXPECT_EQ(count(result.listing, "==> ERROR: "), reported + 1);
}

TEST(ManyErrors, OneMayBeTooMany) {
    const AssemblyResult result = assembled("HOLA ;" + std::string(ErrorReport::maximumBytes, 'X'));
    EXPECT_FALSE(result.assembled);
    EXPECT_EQ(result.report, "==> ERROR: Demasiados errores\r\n");
}

TEST(Large, LineOfAMillionCharacters) {
    const std::string blanks(1000000, ' ');
    const std::string letters(1000000, 'x');
    EXPECT_TRUE(assembled(blanks + "NOP" + blanks + ";" + letters).assembled);
    EXPECT_TRUE(assembled(letters + ": JMP " + letters).assembled);
    EXPECT_TRUE(assembled(" MVI A," + std::string(1000000, '0') + blanks + "7").assembled);
    EXPECT_FALSE(assembled(letters).assembled);
    EXPECT_FALSE(assembled(std::string(1000000, ',')).assembled);
    EXPECT_FALSE(assembled(std::string(1000000, ':')).assembled);
    EXPECT_FALSE(assembled(" DFW " + std::string(1000000, ',')).assembled);  // does not fit the memory
    EXPECT_FALSE(assembled(" LXI H," + std::string(1000000, '-')).assembled);
}

TEST(Large, SizesBeyond32BitsAreAnErrorAndNoMore) {
    // Each statement claims two million bytes; together more than 31 bits can say.
    const std::string huge = " DFW " + std::string(1000000, ',') + "\n";
    std::string source;
    for (int i = 0; i < 12; ++i) source += huge;
    const AssemblyResult result = assembled(source);
    EXPECT_EQ(count(result.report, "Dirección fuera de memoria"), 12U);
}

constexpr std::size_t maximumSourceSize = std::size_t{64} << 20;

AssemblyResult assembledFile(const std::string& source) {
    TemporaryFolder directory;
    writeBytes(directory / "prog.asm", source);
    AssemblyObserver unobserved;
    return Ensambla(directory / "prog.asm", directory / "prog.HEX", unobserved);
}

TEST(Large, SourceOf64MiB) {
    std::string source = "NOP;" + std::string(maximumSourceSize - 4, '\0');
    EXPECT_TRUE(assembledFile(source).assembled);
    source += ' ';
    const AssemblyResult result = assembledFile(source);
    EXPECT_FALSE(result.assembled);
    EXPECT_EQ(result.report, "==> ERROR: Fichero de más de 64 MiB\r\n");
    EXPECT_EQ(result.listing, result.report);
}

TEST(Large, SourceOfTwoMillionLines) {
    std::string source = "NOP\n" + std::string(1'999'999, '\n');
    EXPECT_TRUE(assembled(source).assembled);
    source += ' ';
    const AssemblyResult result = assembled(source);
    EXPECT_FALSE(result.assembled);
    EXPECT_EQ(result.report, "==> ERROR: Fichero de más de dos millones de líneas\r\n");
    EXPECT_EQ(result.listing, result.report);
}

}  // namespace

}  // namespace tavinor::test
