#include "images/HexRecord.h"
#include "images/RecordReader.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <ios>
#include <string>
#include <vector>

#include "tests/support/TemporaryFolder.h"

namespace tavinor::test {
namespace {

using Lines = std::vector<std::string>;

Lines linesOf(std::string_view content) {
    const TemporaryFolder folder;
    WorkObserver unobserved;
    RecordReader reader(folder.write("file", content), unobserved);
    Lines result;
    while (std::optional<std::string> line = reader.next()) result.push_back(*line);
    EXPECT_FALSE(reader.next().has_value()) << "the end stays the end";
    return result;
}

TEST(RecordReader, SplitsAtEveryKindOfLineEnd) {
    EXPECT_EQ(linesOf("a\nb\n"), (Lines{"a", "b"}));
    EXPECT_EQ(linesOf("a\r\nb\r\n"), (Lines{"a", "b"}));
    EXPECT_EQ(linesOf("a\rb\r"), (Lines{"a", "b"}));
    EXPECT_EQ(linesOf("a\nb"), (Lines{"a", "b"}));
}

TEST(RecordReader, KeepsEmptyLinesAndInventsNone) {
    EXPECT_EQ(linesOf(""), Lines{});
    EXPECT_EQ(linesOf("\n"), (Lines{""}));
    EXPECT_EQ(linesOf("\r\n\r\n"), (Lines{"", ""}));
    EXPECT_EQ(linesOf("\r\r"), (Lines{"", ""}));
    EXPECT_EQ(linesOf("\n\r"), (Lines{"", ""}));
    EXPECT_EQ(linesOf("a\n\nb"), (Lines{"a", "", "b"}));
}

TEST(RecordReader, DropsTheBlanksAroundALineAndKeepsThoseInside) {
    EXPECT_EQ(linesOf("  a  b   \n"), (Lines{"a  b"}));
    EXPECT_EQ(linesOf("    \n a"), (Lines{"", "a"}));
    EXPECT_EQ(linesOf("\ta\t\n"), (Lines{"\ta\t"}));
}

TEST(RecordReader, KeepsNulBytesAndBytesAbove127) {
    using namespace std::string_literals;
    EXPECT_EQ(linesOf("a\0b\xFF\n\xFF"s), (Lines{"a\0b\xFF"s, "\xFF"}));
}

TEST(RecordReader, KeepsALineOfTheGreatestLengthWhole) {
    std::string line;
    for (std::size_t i = 0; i < record::maximumLength; ++i) line += static_cast<char>('a' + i % 26);
    EXPECT_EQ(linesOf(line), (Lines{line}));
}

TEST(RecordReader, KeepsStartAndLastTwoCharactersOfALongerLine) {
    const std::string start(record::maximumLength - 2, 'x');
    EXPECT_EQ(linesOf(start + "1yz"), (Lines{start + "yz"}));
    EXPECT_EQ(linesOf(start + std::string(100'000, '1') + " y z  \n"), (Lines{start + " z"}));
}

TEST(RecordReader, KeepsOfManyBlanksInALineWhatCounts) {
    const std::string blanks(1'000'000, ' ');
    const std::string start = "a" + blanks.substr(0, record::maximumLength - 3);
    EXPECT_EQ(linesOf("a" + blanks + "yz"), (Lines{start + "yz"}));
    EXPECT_EQ(linesOf("a" + blanks + "z"), (Lines{start + " z"}));
    EXPECT_EQ(linesOf(blanks + "a b" + blanks), (Lines{"a b"}));
}

TEST(RecordReader, TellsHowMuchOfTheFileItHasRead) {
    struct : WorkObserver {
        std::vector<double> told;
        bool goesOn(double done) override {
            told.push_back(done);
            return told.size() < 4;
        }
    } observer;
    const TemporaryFolder folder;
    // One line without an end: it can be cancelled in its middle.
    RecordReader reader(folder.write("file", std::string(640 * 1024, 'x')), observer);
    EXPECT_THROW(reader.next(), Cancelled);
    ASSERT_EQ(observer.told.size(), 4U);
    EXPECT_EQ(observer.told.front(), 0.0);
    EXPECT_TRUE(std::is_sorted(observer.told.begin(), observer.told.end()));
    EXPECT_GT(observer.told.back(), 0.0);
    EXPECT_LT(observer.told.back(), 0.5);
}

TEST(RecordReader, FailsOnWhatIsNoRegularFile) {
    const TemporaryFolder folder;
    WorkObserver unobserved;
    EXPECT_THROW(RecordReader(folder.path(), unobserved), std::ios_base::failure);
    EXPECT_THROW(RecordReader(folder.path() / "missing", unobserved), std::ios_base::failure);
}

}  // namespace
}  // namespace tavinor::test
