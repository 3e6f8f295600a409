// Images made by tools that have nothing to do with the program: the same bytes, written in other ways.

#include <gtest/gtest.h>

#include <cstdlib>
#include <memory>
#include <random>
#include <string>

#include "tests/images/Records.h"

namespace tavinor::test {
namespace {

class HexToolsTest : public ::testing::Test {
  protected:
    /// Random bytes in memory and in `image.bin`.
    void makeImage(std::size_t size, unsigned seed) {
        std::mt19937 random(seed);
        image.clear();
        for (std::size_t i = 0; i < size; ++i) image += static_cast<char>(random() & 0xFF);
        bench.folder.write("image.bin", image);
    }

    /// Runs a command line in the test's folder; the tools are called by their absolute names.
    void run(const std::string& command) {
        const std::string line = "cd '" + bench.folder.path().string() + "' && " + command + " 2>log";
        ASSERT_EQ(std::system(line.c_str()), 0) << line;  // NOLINT(concurrency-mt-unsafe)
    }

    LoadResult load(const std::string& name) { return bench.load(bench.folder.path() / name); }

    void expectImageAt(std::size_t address, const std::string& name) {
        bench.clear();
        const LoadResult result = load(name);
        EXPECT_TRUE(result.loaded) << name << ": " << result.message;
        EXPECT_EQ(bench.host.memoryWrites.size(), image.size()) << name;
        std::string loaded(bench.m.mem.begin(), bench.m.mem.begin() + memorySize);
        EXPECT_TRUE(loaded.substr(address, image.size()) == image) << name;
        loaded.erase(address, image.size());
        EXPECT_EQ(loaded.find_first_not_of('\xFF'), std::string::npos) << name << ": nothing beside it";
    }

    void expectFormatError(const std::string& name) {
        bench.clear();
        const LoadResult result = load(name);
        EXPECT_FALSE(result.loaded) << name;
        EXPECT_EQ(result.message,
                  "Error en fichero " + (bench.folder.path() / name).string() + ".\rFormato incorrecto.");
    }

    /// The same file in lower case, with other line ends and without its last line end.
    void expectAllSpellings(std::size_t address, const std::string& name) {
        expectImageAt(address, name);
        run("tr -d '\\r' < " + name + " > lf.hex");
        expectImageAt(address, "lf.hex");
        run("tr A-F a-f < lf.hex > lower.hex");
        expectImageAt(address, "lower.hex");
        run("sed 's/$/\\r/' < lf.hex > crlf.hex");
        expectImageAt(address, "crlf.hex");
        run("tr '\\n' '\\r' < lf.hex > cr.hex");
        expectImageAt(address, "cr.hex");
        run("head -c -1 lf.hex > noend.hex");
        expectImageAt(address, "noend.hex");
    }

    const std::string srecCat = SREC_CAT;
    const std::string objcopy = OBJCOPY;
    std::string image;
    std::unique_ptr<LoadBench> owner = std::make_unique<LoadBench>();
    LoadBench& bench = *owner;
};

TEST_F(HexToolsTest, SrecCatWithRecordsOf16And32Bytes) {
    makeImage(5000, 1);
    for (const char* block : {"16", "32", "255", "1"}) {
        run(srecCat + " image.bin -binary -offset 0x1234 -o out.hex -intel -address-length=2" +
            " -output_block_size=" + block);
        expectAllSpellings(0x1234, "out.hex");
    }
}

TEST_F(HexToolsTest, SrecCatWithAllOfMemory) {
    makeImage(65536, 2);
    run(srecCat + " image.bin -binary -o out.hex -intel -address-length=2");
    expectImageAt(0, "out.hex");
}

TEST_F(HexToolsTest, ObjcopyWithAllOfMemory) {
    makeImage(65536, 3);
    run(objcopy + " -I binary -O ihex image.bin out.hex");
    expectAllSpellings(0, "out.hex");
}

TEST_F(HexToolsTest, ObjcopyAtAnAddressWithoutAStartRecord) {
    makeImage(3000, 4);
    run(objcopy + " -I binary -O ihex --change-section-address .data=0xF000 image.bin out.hex");
    expectAllSpellings(0xF000, "out.hex");
}

TEST_F(HexToolsTest, BothToolsGiveTheSameMemory) {
    makeImage(40'000, 5);
    run(srecCat + " image.bin -binary -offset 0x2000 -o a.hex -intel -address-length=2");
    run(objcopy + " -I ihex -O ihex a.hex b.hex");
    run("! cmp -s a.hex b.hex");
    expectImageAt(0x2000, "a.hex");
    expectImageAt(0x2000, "b.hex");
}

TEST_F(HexToolsTest, RecordsInAnyOrderAndWithGaps) {
    makeImage(600, 6);
    run(srecCat + " image.bin -binary -o out.hex -intel -address-length=2 -output_block_size=7");
    run("(head -n -1 out.hex | sort -R --random-source=image.bin; tail -n 1 out.hex) > shuffled.hex");
    expectImageAt(0, "shuffled.hex");
}

TEST_F(HexToolsTest, ExtendedAddressRecordsAreFormatErrors) {
    makeImage(100, 7);
    run(srecCat + " image.bin -binary -o linear.hex -intel");
    run("grep -q '^:02000004' linear.hex");
    expectFormatError("linear.hex");
    EXPECT_TRUE(bench.host.memoryWrites.empty());
    run(srecCat + " image.bin -binary -o segment.hex -intel -address-length=3");
    run("grep -q '^:02000002' segment.hex");
    expectFormatError("segment.hex");
}

TEST_F(HexToolsTest, StartRecordsAreFormatErrorsAfterTheDataIsStored) {
    makeImage(100, 8);
    run(objcopy + " -I binary -O ihex --change-addresses 0x100 image.bin start.hex");
    run("grep -q '^:04000003' start.hex");
    expectFormatError("start.hex");
    EXPECT_EQ(bench.host.memoryWrites.size(), image.size());
}

TEST_F(HexToolsTest, AnEndRecordThatCarriesTheStartAddressIsAccepted) {
    makeImage(100, 9);
    run(srecCat + " image.bin -binary -o out.hex -intel -address-length=2 -execution-start-address=0x1234");
    run("grep -q '^:00123401B9' out.hex");
    expectImageAt(0, "out.hex");
}

}  // namespace
}  // namespace tavinor::test
