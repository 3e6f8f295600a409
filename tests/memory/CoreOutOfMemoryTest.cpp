// The core where there is no memory: each of its allocations is refused once, in each kind of work.

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <iterator>
#include <memory>
#include <new>
#include <set>
#include <string>

#include "assembler/Ensambla.h"
#include "assembler/ListingWriter.h"
#include "files/File.h"
#include "files/ReplacedFile.h"
#include "images/HexLoader.h"
#include "machine/Interrupts.h"
#include "machine/Stepper.h"
#include "tests/memory/RefusedAllocations.h"
#include "tests/support/PlainHost.h"
#include "tests/support/TemporaryFolder.h"

namespace tavinor::test {
namespace {

const std::string oldContent = "the old file\r\n";

struct Simulator final : PlainHost {
    Simulator() : PlainHost(machine) {}

    MachineState machine;
    Breakpoints breakpoints{};
};

std::string contentOf(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

std::set<std::string> filesIn(const std::filesystem::path& folder) {
    std::set<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
        names.insert(entry.path().filename().string());
    }
    return names;
}

/// Does `work` with an allocation refused. True when `std::bad_alloc` has come of it.
template <typename Work>
bool runsOut(int number, const Work& work) {
    FailingAllocation::arm(number);
    bool out = false;
    try {
        work();
    } catch (const std::bad_alloc&) {
        out = true;
    }
    FailingAllocation::disarm();
    return out;
}

// --- loading ---

constexpr std::int32_t recordSize = 16;
constexpr std::int32_t recordCount = 3;

/// Three records of sixteen bytes each: 11, 12 and 13 all over.
const std::string image =
    ":100000001111111111111111111111111111111111E0\r\n"
    ":100010001212121212121212121212121212121212C0\r\n"
    ":100020001313131313131313131313131313131313A0\r\n"
    ":00000001FF\r\n";

/// The records that are stored, counted from the first one. Fails where one is stored in part, or where one
/// before it is missing.
int storedRecords(const MachineState& machine) {
    int stored = 0;
    for (std::int32_t record = 0; record < recordCount; ++record) {
        const auto begin = machine.mem.begin() + record * recordSize;
        const auto bytes = std::count(begin, begin + recordSize, 0x11 + record);
        EXPECT_TRUE(bytes == 0 || bytes == recordSize) << "a part of record " << record;
        if (bytes == 0) continue;
        EXPECT_EQ(stored, record);
        ++stored;
    }
    return stored;
}

TEST(CoreOutOfMemoryTest, ALoadKeepsWholeRecordsAndTheBreakpoints) {
    const TemporaryFolder folder;
    const auto path = folder.write("prog.hex", image);
    WorkObserver unobserved;
    const int refused = refuseEach([&](int number) {
        const auto simulator = std::make_unique<Simulator>();
        simulator->breakpoints[7] = -1;
        LoadResult result;
        const bool out = runsOut(number, [&] {
            result = carga(path, simulator->machine, simulator->breakpoints, *simulator, unobserved);
        });
        const int stored = storedRecords(simulator->machine);
        EXPECT_EQ(result.loaded, !out);
        EXPECT_EQ(simulator->breakpoints[7], out ? -1 : 0);
        EXPECT_TRUE(out || stored == recordCount) << stored;
        EXPECT_EQ(result.message, "");
        return !::testing::Test::HasFailure();
    });
    EXPECT_GE(refused, 3);
}

TEST(CoreOutOfMemoryTest, AFileThatIsNoImageIsStillToldOf) {
    const TemporaryFolder folder;
    const auto path = folder.write("prog.hex", "no image\r\n");
    WorkObserver unobserved;
    const int refused = refuseEach([&](int number) {
        const auto simulator = std::make_unique<Simulator>();
        LoadResult result;
        const bool out = runsOut(number, [&] {
            result = carga(path, simulator->machine, simulator->breakpoints, *simulator, unobserved);
        });
        EXPECT_FALSE(result.loaded);
        EXPECT_EQ(result.message.empty(), out);
        return !::testing::Test::HasFailure();
    });
    EXPECT_GE(refused, 3);
}

// --- assembling ---

const std::string source =
    "DOS: EQU 2\r\n"
    "UNO: MVI B,DOS\r\n"
    "   DFB 1,2,3,0FFH\r\n"
    "TRES: JMP UNO ; otra vez\r\n"
    "   LXI H,TRES+1\r\n"
    "UNAETIQUETALARGA: HLT\r\n";

/// Assembles `text` with each allocation refused. Its files are the old ones or, where it was written before
/// memory ran out, the new one; with no allocation refused they are the new ones.
void expectWholeFiles(const std::string& text, bool correct) {
    const TemporaryFolder folder;
    const auto sourcePath = folder.write("prog.asm", text);
    const auto hex = folder.write("prog.HEX", oldContent);
    const auto listing = folder.write("prog.LST", oldContent);
    const auto assembleFiles = [&] {
        AssemblyObserver unobserved;
        const AssemblyResult result = Ensambla(sourcePath, hex, unobserved);
        creafilelst(result.listing, result.encoding, listing, unobserved);
        return result.assembled;
    };
    ASSERT_EQ(assembleFiles(), correct);
    const std::string newHex = contentOf(hex);
    const std::string newListing = contentOf(listing);
    ASSERT_NE(newListing, oldContent);

    const int refused = refuseEach([&](int number) {
        folder.write("prog.HEX", oldContent);
        folder.write("prog.LST", oldContent);
        bool assembled = false;
        const bool out = runsOut(number, [&] { assembled = assembleFiles(); });
        const std::string hexNow = contentOf(hex);
        const std::string listingNow = contentOf(listing);
        EXPECT_TRUE(hexNow == newHex || (out && hexNow == oldContent)) << hexNow;
        EXPECT_TRUE(listingNow == newListing || (out && listingNow == oldContent)) << listingNow;
        EXPECT_EQ(assembled, correct && !out);
        EXPECT_EQ(contentOf(sourcePath), text);
        EXPECT_EQ(filesIn(folder.path()), (std::set<std::string>{"prog.asm", "prog.HEX", "prog.LST"}));
        return !::testing::Test::HasFailure();
    });
    EXPECT_GE(refused, 20);
}

TEST(CoreOutOfMemoryTest, AnAssemblyLeavesWholeFiles) {
    expectWholeFiles(source, true);
}

TEST(CoreOutOfMemoryTest, AnAssemblyWithErrorsLeavesWholeFiles) {
    expectWholeFiles(source + " JMP NOHAY\r\n MVI\r\n", false);
}

// --- files ---

TEST(CoreOutOfMemoryTest, AFileIsReplacedWholeOrNotAtAll) {
    const TemporaryFolder folder;
    const auto path = folder.write("file", oldContent);
    const std::string newContent(100, 'x');
    for (const bool otherName : {false, true}) {  // with another name it is written in place
        if (otherName) std::filesystem::create_hard_link(path, folder.path() / "other");
        const std::set<std::string> files = filesIn(folder.path());
        const int refused = refuseEach([&](int number) {
            folder.write("file", oldContent);
            bool written = false;
            const bool out = runsOut(number, [&] {
                ReplacedFile file(path);
                written = file.write(newContent) && file.commit();
            });
            EXPECT_EQ(written, !out);
            EXPECT_EQ(contentOf(path), out ? oldContent : newContent);
            EXPECT_EQ(filesIn(folder.path()), files) << number;
            return !::testing::Test::HasFailure();
        });
        EXPECT_GE(refused, 3);
    }
}

TEST(CoreOutOfMemoryTest, AFileIsReadWholeOrNotAtAll) {
    const TemporaryFolder folder;
    const std::string content(100'000, 'x');
    const auto path = folder.write("file", content);
    const int refused = refuseEach([&](int number) {
        std::optional<std::string> read;
        const bool out = runsOut(number, [&] { read = readWholeFile(path, content.size()); });
        EXPECT_EQ(read.has_value(), !out);
        EXPECT_TRUE(!read || *read == content);
        return !::testing::Test::HasFailure();
    });
    EXPECT_GE(refused, 1);
}

// --- executing ---

TEST(CoreOutOfMemoryTest, InstructionsAndInterruptsNeedNoMemory) {
    const auto simulator = std::make_unique<Simulator>();
    MachineState& machine = simulator->machine;
    const std::string vector = "C7";
    FailingAllocation::arm(0);
    for (int opcode = 0; opcode < 256; ++opcode) {
        machine.SP = 0x8000;
        machine.PC = 0x1000;
        machine.mem[0x1000] = static_cast<std::uint8_t>(opcode);
        EjecutaPASO(machine, *simulator);
    }
    acceptInterrupt(machine, *simulator, vector::trap);
    acceptRst75(machine, *simulator);
    requestIntr(machine, *simulator, vector);
    FailingAllocation::disarm();
    EXPECT_FALSE(FailingAllocation::happened());
    EXPECT_EQ(simulator->halts, 1);
}

}  // namespace
}  // namespace tavinor::test
