// What the limits of the process and of its control groups leave of the memory.

#include "ui/common/RequiredMemory.h"

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <limits>
#include <new>
#include <string>

#include "tests/support/TemporaryFolder.h"
#include "ui/common/ControlGroups.h"

namespace tavinor::test {
namespace {

constexpr std::uint64_t unlimited = std::numeric_limits<std::uint64_t>::max();
constexpr std::uint64_t mebibyte = 1024 * 1024;

/// The files of a system that has control groups.
class ControlGroups : public testing::Test {
  protected:
    void write(const std::string& file, const std::string& text) const {
        const std::filesystem::path path = folder_.path() / file;
        std::filesystem::create_directories(path.parent_path());
        std::ofstream(path) << text;
    }
    /// A group of the second version.
    void writeGroup(const std::string& name, const std::string& max, const std::string& high,
                    int used) const {
        const std::string group = "sys/fs/cgroup/" + name;
        write(group + "/memory.max", max + "\n");
        write(group + "/memory.high", high + "\n");
        write(group + "/memory.current", std::to_string(used) + "\n");
    }
    [[nodiscard]] std::uint64_t room() const { return roomInControlGroups(folder_.path()); }

  private:
    TemporaryFolder folder_;
};

TEST_F(ControlGroups, AreNoLimitWhereThereAreNone) {
    EXPECT_EQ(room(), unlimited);
    write("proc/self/cgroup", "0::/\n");
    EXPECT_EQ(room(), unlimited);
}

TEST_F(ControlGroups, LeaveWhatTheLimitIsBeyondTheUse) {
    write("proc/self/cgroup", "0::/user.slice/one\n");
    writeGroup("user.slice/one", "max", "max", 300);
    EXPECT_EQ(room(), unlimited);
    writeGroup("user.slice/one", "1000", "max", 300);
    EXPECT_EQ(room(), 700U);
    writeGroup("user.slice/one", "1000", "800", 300);
    EXPECT_EQ(room(), 500U);
    writeGroup("user.slice/one", "200", "max", 300);
    EXPECT_EQ(room(), 0U);
}

TEST_F(ControlGroups, AroundTheOwnOneCountToo) {
    write("proc/self/cgroup", "0::/user.slice/one\n");
    writeGroup("user.slice/one", "1000", "max", 300);
    writeGroup("user.slice", "1200", "max", 900);
    EXPECT_EQ(room(), 300U);
    writeGroup("", "1000", "max", 950);  // what a container sees of the group that it is in
    EXPECT_EQ(room(), 50U);
}

TEST_F(ControlGroups, GiveBackTheFilesThatTheyKeep) {
    write("proc/self/cgroup", "0::/one\n");
    writeGroup("one", "1000", "max", 900);
    write("sys/fs/cgroup/one/memory.stat", "anon 300\nfile 600\ninactive_file 400\nactive_file 100\n");
    EXPECT_EQ(room(), 600U);
}

TEST_F(ControlGroups, OfTheFirstVersionCount) {
    write("proc/self/cgroup", "5:cpu,memory:/lab/one\n4:freezer:/\n0::/\n");
    write("sys/fs/cgroup/memory/lab/memory.limit_in_bytes", "5000");
    write("sys/fs/cgroup/memory/lab/memory.usage_in_bytes", "4000");
    write("sys/fs/cgroup/memory/lab/memory.stat", "cache 900\ntotal_inactive_file 500\n");
    EXPECT_EQ(room(), 1500U);
    write("sys/fs/cgroup/unified/memory.max", "100");
    write("sys/fs/cgroup/unified/memory.current", "90");
    EXPECT_EQ(room(), 10U);
}

/// What a child process gives that has no more than `limit` bytes beyond what it uses.
template <typename Look>
bool underLimit(decltype(RLIMIT_AS) resource, int column, std::uint64_t limit, Look look) {
    const pid_t child = fork();
    if (child == 0) {
        std::ifstream statm("/proc/self/statm");
        std::uint64_t pages = 0;
        for (int i = 0; i <= column; ++i) statm >> pages;
        const std::uint64_t bytes = pages * static_cast<std::uint64_t>(sysconf(_SC_PAGESIZE)) + limit;
        const rlimit both{bytes, bytes};
        _exit(setrlimit(resource, &both) == 0 && look() ? 0 : 1);
    }
    int status = -1;
    waitpid(child, &status, 0);
    return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

TEST(RequiredMemory, IsLimitedByTheProcessesOwnLimits) {
    ASSERT_GT(memoryLeft(), 100 * mebibyte);
    const auto about64 = [] { return memoryLeft() <= 64 * mebibyte && memoryLeft() > 40 * mebibyte; };
    EXPECT_TRUE(underLimit(RLIMIT_AS, 0, 64 * mebibyte, about64));
    EXPECT_TRUE(underLimit(RLIMIT_DATA, 5, 64 * mebibyte, about64));
}

TEST(RequiredMemory, IsAskedForBeforeLargeWork) {
    EXPECT_NO_THROW(requireMemory(mebibyte));
    EXPECT_THROW(requireMemory(unlimited), std::bad_alloc);
    const auto refuses = [](std::uint64_t bytes) {
        return [bytes] {
            try {
                requireMemory(bytes);
                return false;
            } catch (const std::bad_alloc&) {
                return true;
            }
        };
    };
    EXPECT_FALSE(underLimit(RLIMIT_AS, 0, 64 * mebibyte, refuses(16 * mebibyte)));
    EXPECT_TRUE(underLimit(RLIMIT_AS, 0, 64 * mebibyte, refuses(40 * mebibyte)));  // a reserve is left
}

}  // namespace
}  // namespace tavinor::test
