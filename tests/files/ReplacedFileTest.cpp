#include "files/ReplacedFile.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <fstream>
#include <iterator>
#include <optional>
#include <set>
#include <string>
#include <utility>

#include "tests/support/Canceller.h"
#include "tests/support/FileSizeLimit.h"
#include "tests/support/OddFiles.h"
#include "tests/support/OrdinaryUser.h"

namespace tavinor::test {

namespace {

namespace fs = std::filesystem;

std::string bytesOf(const fs::path& path) {
    std::ifstream in(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
}

bool replace(const fs::path& path, std::string_view bytes) {
    ReplacedFile file(path);
    return file.created() && file.write(bytes) && file.commit();
}

class Replacing : public testing::Test {
  protected:
    [[nodiscard]] std::set<std::string> names() const {
        std::set<std::string> found;
        for (const auto& entry : fs::directory_iterator(folder_.path())) {
            found.insert(entry.path().filename().string());
        }
        return found;
    }

    TemporaryFolder folder_;
    fs::path path_ = folder_.path() / "prog.HEX";
};

}  // namespace

TEST_F(Replacing, ANameWithoutAFile) {
    EXPECT_TRUE(replace(path_, "new"));
    EXPECT_EQ(bytesOf(path_), "new");
    EXPECT_EQ(names(), std::set<std::string>{"prog.HEX"});
    std::ofstream(folder_.path() / "ordinary");
    EXPECT_EQ(fs::status(path_).permissions(), fs::status(folder_.path() / "ordinary").permissions());
}

TEST_F(Replacing, ANewFileIsAsPrivateAsItsModel) {
    folder_.write("model", "old");
    constexpr fs::perms mode = fs::perms::owner_read | fs::perms::owner_write;
    fs::permissions(folder_.path() / "model", mode);
    for (const char* bytes : {"new", "newer"}) {
        ReplacedFile file(path_, folder_.path() / "model");
        EXPECT_TRUE(file.write(bytes) && file.commit());
        EXPECT_EQ(fs::status(path_).permissions(), mode);
        EXPECT_EQ(bytesOf(path_), bytes);
    }
}

TEST_F(Replacing, AFileThatStaysWholeMeanwhile) {
    folder_.write("prog.HEX", "old");
    {
        ReplacedFile file(path_);
        EXPECT_TRUE(file.write("ne"));
        EXPECT_EQ(bytesOf(path_), "old");
        EXPECT_TRUE(file.write("w"));
        EXPECT_EQ(bytesOf(path_), "old");
        EXPECT_TRUE(file.commit());
        EXPECT_EQ(bytesOf(path_), "new");
    }
    EXPECT_EQ(bytesOf(path_), "new");
    EXPECT_EQ(names(), std::set<std::string>{"prog.HEX"});
}

TEST_F(Replacing, NothingWithoutACommit) {
    folder_.write("prog.HEX", "old");
    { EXPECT_TRUE(ReplacedFile(path_).write("new")); }
    EXPECT_EQ(bytesOf(path_), "old");
    EXPECT_EQ(names(), std::set<std::string>{"prog.HEX"});
}

TEST_F(Replacing, NothingOnAFullDisk) {
    folder_.write("prog.HEX", "old");
    {
        const FileSizeLimit fullDisk(4096);
        EXPECT_FALSE(replace(path_, std::string(6000, 'x')));
    }
    EXPECT_EQ(bytesOf(path_), "old");
    EXPECT_EQ(names(), std::set<std::string>{"prog.HEX"});
}

TEST_F(Replacing, KeepsThePermissions) {
    const fs::path file = folder_.write("prog.HEX", "old");
    for (const int mode : {0600, 0640, 0755, 0622}) {
        fs::permissions(file, static_cast<fs::perms>(mode));
        EXPECT_TRUE(replace(file, "new"));
        EXPECT_EQ(fs::status(file).permissions(), static_cast<fs::perms>(mode));
    }
}

TEST_F(Replacing, WhatLinksLeadTo) {
    fs::create_directory(folder_.path() / "deeper");
    folder_.write("deeper/real", "old");
    fs::create_symlink("deeper/second", path_);
    fs::create_symlink("real", folder_.path() / "deeper/second");
    EXPECT_TRUE(replace(path_, "new"));
    EXPECT_TRUE(fs::is_symlink(path_));
    EXPECT_TRUE(fs::is_symlink(folder_.path() / "deeper/second"));
    EXPECT_EQ(bytesOf(folder_.path() / "deeper/real"), "new");
}

TEST_F(Replacing, WhatALinkLeadsToAndIsNotThereYet) {
    fs::create_symlink("real", path_);
    EXPECT_TRUE(replace(path_, "new"));
    EXPECT_TRUE(fs::is_symlink(path_));
    EXPECT_EQ(bytesOf(folder_.path() / "real"), "new");
}

TEST_F(Replacing, ALongName) {
    path_ = folder_.path() / std::string(255, 'n');
    EXPECT_TRUE(replace(path_, "new"));
    EXPECT_TRUE(replace(path_, "newer"));
    EXPECT_EQ(bytesOf(path_), "newer");
}

struct Owner {
    uid_t user = 0;
    gid_t group = 0;
    friend bool operator==(const Owner&, const Owner&) = default;
};

Owner ownerOf(const fs::path& path) {
    struct stat status {};
    EXPECT_EQ(::stat(path.c_str(), &status), 0);
    return {status.st_uid, status.st_gid};
}

/// A kill in the middle of a save then leaves the old file.
TEST_F(Replacing, AnOrdinaryFileByAnother) {
    const fs::path file = folder_.write("prog.HEX", "old");
    struct stat before {};
    struct stat after {};
    EXPECT_EQ(::stat(file.c_str(), &before), 0);
    EXPECT_TRUE(replace(file, "new"));
    EXPECT_EQ(::stat(file.c_str(), &after), 0);
    EXPECT_NE(after.st_ino, before.st_ino);
}

TEST_F(Replacing, TheBytesOfAllItsNames) {
    folder_.write("prog.HEX", "old bytes");
    fs::create_hard_link(path_, folder_.path() / "second");
    for (const std::string bytes : {"new", "", "longer than all before"}) {
        EXPECT_TRUE(replace(path_, bytes));
        EXPECT_EQ(bytesOf(path_), bytes);
        EXPECT_EQ(bytesOf(folder_.path() / "second"), bytes);
        EXPECT_EQ(fs::hard_link_count(path_), 2U);
        EXPECT_EQ(names(), (std::set<std::string>{"prog.HEX", "second"}));
    }
}

/// The write fails in its middle: beyond the old end, or before it.
TEST_F(Replacing, NothingOnAFullDiskUnderAllItsNames) {
    for (const std::size_t oldSize : {std::size_t{3}, std::size_t{5000}, std::size_t{50'000}}) {
        const std::string old(oldSize, 'o');
        folder_.write("prog.HEX", old);
        fs::remove(folder_.path() / "second");
        fs::create_hard_link(path_, folder_.path() / "second");
        {
            const FileSizeLimit fullDisk(4096);
            EXPECT_FALSE(replace(path_, std::string(20'000, 'n')));
        }
        EXPECT_EQ(bytesOf(path_), old);
    }
}

TEST_F(Replacing, NothingThatIsCancelledUnderAllItsNames) {
    constexpr std::size_t mebibyte = 1024 * 1024;
    for (const std::size_t oldSize : {std::size_t{3}, mebibyte + 5, 4 * mebibyte}) {
        for (const int reports : {1, 2, 3}) {
            const std::string old(oldSize, 'o');
            folder_.write("prog.HEX", old);
            fs::remove(folder_.path() / "second");
            fs::create_hard_link(path_, folder_.path() / "second");
            Canceller canceller(reports);
            ReplacedFile file(path_);
            EXPECT_TRUE(file.write(std::string(3 * mebibyte - 1, 'n')));
            EXPECT_THROW(file.commit(canceller), Cancelled);
            EXPECT_TRUE(canceller.sane());
            EXPECT_TRUE(bytesOf(path_) == old);
        }
    }
}

TEST_F(Replacing, NothingWithoutACommitUnderAllItsNames) {
    folder_.write("prog.HEX", "old");
    fs::create_hard_link(path_, folder_.path() / "second");
    { EXPECT_TRUE(ReplacedFile(path_).write("new")); }
    EXPECT_EQ(bytesOf(path_), "old");
}

TEST_F(Replacing, AFileInAFolderThatTakesNoOther) {
    const fs::path file = folder_.write("prog.HEX", "old");
    fs::permissions(file, static_cast<fs::perms>(0666));
    const Owner owner = ownerOf(file);
    fs::permissions(folder_.path(), static_cast<fs::perms>(0555));
    {
        const OrdinaryUser user;
        if (!user.is()) GTEST_SKIP() << "the rights of an ordinary user cannot be taken here";
        EXPECT_TRUE(replace(file, "new"));
        EXPECT_FALSE(replace(folder_.path() / "another", "new"));
    }
    fs::permissions(folder_.path(), fs::perms::all);
    EXPECT_EQ(bytesOf(file), "new");
    EXPECT_EQ(ownerOf(file), owner);
    EXPECT_EQ(fs::status(file).permissions(), static_cast<fs::perms>(0666));
}

/// As where it is a mount point: there the system refuses another file, too.
TEST_F(Replacing, AFileThatCannotBeGivenAnotherFile) {
    fs::permissions(folder_.path(), fs::perms::all);
    const fs::path file = folder_.path() / "prog.HEX";
    std::optional<OrdinaryUser> user(std::in_place);
    if (!user->is()) GTEST_SKIP() << "the rights of an ordinary user cannot be taken here";
    std::ofstream(file) << "the old one";
    struct stat before {};
    ASSERT_EQ(::stat(file.c_str(), &before), 0);
    {
        ReplacedFile replaced(file);
        ASSERT_TRUE(replaced.write("new"));
        user.reset();
        fs::permissions(folder_.path(), static_cast<fs::perms>(0555));
        user.emplace();
        EXPECT_TRUE(replaced.commit());
        user.reset();
        fs::permissions(folder_.path(), fs::perms::all);
    }
    EXPECT_EQ(bytesOf(file), "new");
    struct stat after {};
    EXPECT_EQ(::stat(file.c_str(), &after), 0);
    EXPECT_EQ(before.st_ino, after.st_ino);
    EXPECT_EQ(names(), std::set<std::string>{"prog.HEX"});
}

TEST_F(Replacing, NothingThatHasBecomeAFolder) {
    const fs::path file = folder_.write("prog.HEX", "old");
    {
        ReplacedFile replaced(file);
        ASSERT_TRUE(replaced.write("new"));
        fs::remove(file);
        fs::create_directory(file);
        EXPECT_FALSE(replaced.commit());
    }
    EXPECT_TRUE(fs::is_directory(file));
    EXPECT_EQ(names(), std::set<std::string>{"prog.HEX"});
}

TEST_F(Replacing, AFileOfAnotherUserThatStaysTheirs) {
    const fs::path file = folder_.write("prog.HEX", "old");
    fs::permissions(file, static_cast<fs::perms>(0666));
    fs::permissions(folder_.path(), fs::perms::all);
    const Owner owner = ownerOf(file);
    {
        const OrdinaryUser user;
        if (!user.is()) GTEST_SKIP() << "the rights of an ordinary user cannot be taken here";
        EXPECT_TRUE(replace(file, "new"));
    }
    EXPECT_EQ(bytesOf(file), "new");
    EXPECT_EQ(ownerOf(file), owner);
    EXPECT_EQ(names(), std::set<std::string>{"prog.HEX"});
}

TEST_F(Replacing, AFileOfAnotherUserAsTheSuperuser) {
    constexpr uid_t other = 65534;
    const fs::path file = folder_.write("prog.HEX", "old");
    if (::chown(file.c_str(), other, other) != 0) GTEST_SKIP() << "only the superuser may give files away";
    fs::permissions(file, static_cast<fs::perms>(0640));
    EXPECT_TRUE(replace(file, "new"));
    EXPECT_EQ(ownerOf(file), (Owner{other, other}));
    EXPECT_EQ(fs::status(file).permissions(), static_cast<fs::perms>(0640));
}

/// What cannot be read cannot be put back.
TEST_F(Replacing, NothingInPlaceThatCannotBeRead) {
    const fs::path file = folder_.write("prog.HEX", "old");
    fs::create_hard_link(file, folder_.path() / "second");
    fs::permissions(file, static_cast<fs::perms>(0222));
    {
        const OrdinaryUser user;
        if (!user.is()) GTEST_SKIP() << "the rights of an ordinary user cannot be taken here";
        EXPECT_FALSE(replace(file, "new"));
    }
    fs::permissions(file, static_cast<fs::perms>(0600));
    EXPECT_EQ(bytesOf(file), "old");
}

/// A folder that lets new files in does not say that its files may be changed.
TEST_F(Replacing, NothingThatIsProtected) {
    const fs::path file = folder_.write("prog.HEX", "old");
    fs::permissions(file, static_cast<fs::perms>(0444));
    fs::permissions(folder_.path(), fs::perms::all);
    const OrdinaryUser user;
    if (!user.is()) GTEST_SKIP() << "the rights of an ordinary user cannot be taken here";
    EXPECT_FALSE(replace(file, "new"));
    EXPECT_EQ(bytesOf(file), "old");
}

TEST(ReplacingOddNames, LeavesThemAlone) {
    OddFiles().each([](const std::string& what, const fs::path& path) {
        std::error_code error;
        const fs::file_type before = fs::symlink_status(path, error).type();
        EXPECT_FALSE(replace(path, "new")) << what;
        EXPECT_EQ(fs::symlink_status(path, error).type(), before) << what;
    });
}

}  // namespace tavinor::test
