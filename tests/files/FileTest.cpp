#include "files/File.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <array>
#include <fstream>
#include <iterator>

#include "tests/support/FileSizeLimit.h"
#include "tests/support/OddFiles.h"

namespace tavinor::test {

namespace {

namespace fs = std::filesystem;

std::string bytesOf(const fs::path& path) {
    std::ifstream in(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
}

class Files : public testing::Test {
  protected:
    [[nodiscard]] fs::path path(const char* name) const { return folder_.path() / name; }

    TemporaryFolder folder_;
};

}  // namespace

TEST(OddNames, AreNotOpened) {
    OddFiles().each([](const std::string& what, const fs::path& path) {
        EXPECT_FALSE(File::forReading(path).isOpen()) << what;
        EXPECT_FALSE(File::forWriting(path).isOpen()) << what;
        EXPECT_FALSE(File::forChanging(path).isOpen()) << what;
        EXPECT_FALSE(File::createNew(path, false).isOpen()) << what;
        EXPECT_EQ(readWholeFile(path, 1000), std::nullopt) << what;
    });
}

TEST(OddNames, AreNotOpenedBehindALink) {
    const TemporaryFolder folder;
    fs::permissions(folder.path(), fs::perms::all);
    OddFiles().each([&](const std::string& what, const fs::path& path) {
        const fs::path link = folder.path() / "link";
        fs::create_symlink(path, link);
        EXPECT_FALSE(File::forReading(link).isOpen()) << what;
        EXPECT_FALSE(File::forWriting(link).isOpen()) << what;
        EXPECT_FALSE(File::forChanging(link).isOpen()) << what;
        fs::remove(link);
    });
}

/// Opening it succeeds then, and it is a pipe all the same.
TEST(OddNames, APipeThatIsOpenAtItsOtherEnd) {
    const OddFiles odd;
    const fs::path pipe = odd.path("pipe");
    const int otherEnd = ::open(pipe.c_str(), O_RDWR | O_NONBLOCK);
    ASSERT_GE(otherEnd, 0);
    EXPECT_FALSE(File::forReading(pipe).isOpen());
    EXPECT_FALSE(File::forWriting(pipe).isOpen());
    EXPECT_FALSE(File::forChanging(pipe).isOpen());
    ::close(otherEnd);
}

TEST_F(Files, AreWrittenAndRead) {
    File out = File::forWriting(path("a"));
    ASSERT_TRUE(out.isOpen());
    EXPECT_TRUE(out.write("uno"));
    EXPECT_TRUE(out.write(""));
    EXPECT_TRUE(out.write("dos"));
    EXPECT_TRUE(out.flush());
    EXPECT_TRUE(out.close());

    File in = File::forReading(path("a"));
    std::array<char, 4> buffer{};
    EXPECT_EQ(in.read(buffer), 4U);
    EXPECT_EQ(std::string(buffer.data(), 4), "unod");
    EXPECT_EQ(in.read(buffer), 2U);
    EXPECT_EQ(in.read(buffer), 0U);
    EXPECT_EQ(in.read(buffer), 0U);
}

TEST_F(Files, AreEmptiedForWritingAndKeptForChanging) {
    const fs::path file = folder_.write("a", "old");
    EXPECT_TRUE(File::forChanging(file).isOpen());
    EXPECT_EQ(bytesOf(file), "old");
    EXPECT_TRUE(File::forWriting(file).isOpen());
    EXPECT_EQ(bytesOf(file), "");
}

TEST_F(Files, AreReachedThroughLinks) {
    fs::create_symlink("b", path("a"));
    fs::create_symlink("c", path("b"));
    EXPECT_TRUE(File::forWriting(path("a")).write("new"));
    EXPECT_EQ(bytesOf(path("c")), "new");
    EXPECT_TRUE(fs::is_symlink(path("a")));
    EXPECT_EQ(readWholeFile(path("a"), 3), "new");
}

TEST_F(Files, OfThisNameAreTakenAlready) {
    const fs::path file = folder_.write("a", "old");
    EXPECT_FALSE(File::createNew(file, false).isOpen());
    fs::create_symlink("none", path("b"));
    EXPECT_FALSE(File::createNew(path("b"), false).isOpen());
    EXPECT_TRUE(File::createNew(path("c"), true).isOpen());
    EXPECT_EQ(fs::status(path("c")).permissions(), fs::perms::owner_read | fs::perms::owner_write);
}

TEST_F(Files, ThatAreNotOpenTakeAndGiveNothing) {
    File none;
    std::array<char, 4> buffer{};
    EXPECT_EQ(none.read(buffer), std::nullopt);
    EXPECT_FALSE(none.write("x"));
    EXPECT_FALSE(none.write(""));
    EXPECT_FALSE(none.flush());
    EXPECT_FALSE(none.close());
    File file = File::forWriting(path("a"));
    EXPECT_TRUE(file.close());
    EXPECT_FALSE(file.close());
    EXPECT_FALSE(file.write("x"));
}

TEST_F(Files, OpenForTheOtherThing) {
    File out = File::forWriting(path("a"));
    std::array<char, 4> buffer{};
    EXPECT_EQ(out.read(buffer), std::nullopt);
    EXPECT_FALSE(File::forReading(path("a")).write("x"));
}

TEST_F(Files, CanBeMoved) {
    File first = File::forWriting(path("a"));
    File second = std::move(first);
    EXPECT_TRUE(second.write("x"));
    second = File::forWriting(path("b"));
    EXPECT_TRUE(second.write("y"));
    EXPECT_TRUE(second.close());
    EXPECT_EQ(bytesOf(path("a")), "x");
    EXPECT_EQ(bytesOf(path("b")), "y");
}

TEST_F(Files, AFullDiskTakesAPart) {
    const FileSizeLimit fullDisk(4096);
    File file = File::forWriting(path("a"));
    EXPECT_FALSE(file.write(std::string(6000, 'x')));
    EXPECT_EQ(fs::file_size(path("a")), 4096U);
}

TEST_F(Files, AreReadWholeUpToALimit) {
    const std::string bytes(200'000, 'x');
    const fs::path file = folder_.write("a", bytes);
    EXPECT_EQ(readWholeFile(file, bytes.size()), bytes);
    EXPECT_EQ(readWholeFile(file, bytes.size() - 1), std::nullopt);
    EXPECT_EQ(readWholeFile(folder_.write("b", ""), 0), "");
}

/// Its size is said to be 0.
TEST_F(Files, OfTheSystemAreReadWholeToo) {
    if (!fs::exists("/proc/self/status")) GTEST_SKIP() << "this system has no such files";
    const std::optional<std::string> status = readWholeFile("/proc/self/status", 100'000);
    ASSERT_TRUE(status);
    EXPECT_NE(status->find("Pid:"), std::string::npos);
    EXPECT_EQ(readWholeFile("/proc/self/status", 10), std::nullopt);
}

}  // namespace tavinor::test
