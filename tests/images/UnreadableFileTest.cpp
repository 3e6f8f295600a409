// What the loader says when there is no file to read.

#include <gtest/gtest.h>

#include <memory>

#include "tests/images/Records.h"
#include "tests/support/OddFiles.h"
#include "tests/support/OrdinaryUser.h"

namespace tavinor::test {
namespace {

class UnreadableFileTest : public ::testing::Test {
  protected:
    void expectReadError(const std::filesystem::path& path) {
        const LoadResult result = bench.load(path);
        EXPECT_FALSE(result.loaded);
        EXPECT_EQ(result.message, "Error en lectura");
        EXPECT_FALSE(result.rightAlignedBox);
        EXPECT_TRUE(bench.breakpointsKept());
        EXPECT_TRUE(bench.host.memoryWrites.empty());
    }

    std::unique_ptr<LoadBench> owner = std::make_unique<LoadBench>();
    LoadBench& bench = *owner;
};

TEST_F(UnreadableFileTest, ADirectoryIsAReadError) {
    expectReadError(bench.folder.path());
}

TEST_F(UnreadableFileTest, AFileThatHasGoneIsAReadError) {
    const std::filesystem::path path = bench.folder.write("prog.hex", endLine);
    std::filesystem::remove(path);
    expectReadError(path);
    std::filesystem::create_symlink(path, bench.folder.path() / "link.hex");
    expectReadError(bench.folder.path() / "link.hex");
}

TEST_F(UnreadableFileTest, AnEmptyPathIsAReadError) {
    expectReadError({});
}

TEST_F(UnreadableFileTest, AFileThatMayNotBeReadIsAReadError) {
    const std::filesystem::path path = bench.folder.write("prog.hex", endLine);
    std::filesystem::permissions(path, std::filesystem::perms::none);
    const OrdinaryUser user;
    ASSERT_TRUE(user.is());
    expectReadError(path);
}

TEST_F(UnreadableFileTest, AFileInAFolderThatMayNotBeEnteredIsAReadError) {
    const std::filesystem::path path = bench.folder.write("prog.hex", endLine);
    std::filesystem::permissions(bench.folder.path(), std::filesystem::perms::none);
    {
        const OrdinaryUser user;
        ASSERT_TRUE(user.is());
        expectReadError(path);
    }
    std::filesystem::permissions(bench.folder.path(), std::filesystem::perms::owner_all);
}

TEST_F(UnreadableFileTest, AFileWhoseReadingFailsIsAReadError) {
    expectReadError("/proc/self/mem");  // opens like any file; its first byte cannot be read
}

TEST_F(UnreadableFileTest, WhatIsNoFileIsAReadError) {
    OddFiles().each([this](const std::string& what, const std::filesystem::path& path) {
        SCOPED_TRACE(what);
        expectReadError(path);
    });
}

TEST_F(UnreadableFileTest, ALinkToAFileIsReadAsTheFile) {
    const std::filesystem::path path = bench.folder.write("prog.hex", endLine);
    std::filesystem::create_symlink(path, bench.folder.path() / "link.hex");
    EXPECT_TRUE(bench.load(bench.folder.path() / "link.hex").loaded);
}

}  // namespace
}  // namespace tavinor::test
