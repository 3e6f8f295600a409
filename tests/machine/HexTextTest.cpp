#include "machine/HexText.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <limits>
#include <random>

#include "tests/support/Errors.h"

namespace tavinor {
namespace {

using test::errorOf;
using test::overflowError;

constexpr std::int32_t lowest32 = std::numeric_limits<std::int32_t>::min();
constexpr std::int32_t highest32 = std::numeric_limits<std::int32_t>::max();

// --- hexa ---

TEST(Hexa, PadsWithZerosToTheWidth) {
    EXPECT_EQ(hexa(10, 2), "0A");
    EXPECT_EQ(hexa(10, 4), "000A");
    EXPECT_EQ(hexa(0, 4), "0000");
    EXPECT_EQ(hexa(0, 2), "00");
    EXPECT_EQ(hexa(0, 1), "0");
}

TEST(Hexa, CutsAValueWiderThanTheWidthToItsLowDigits) {
    EXPECT_EQ(hexa(4660, 2), "34");
    EXPECT_EQ(hexa(256, 2), "00");
    EXPECT_EQ(hexa(65536, 4), "0000");
    EXPECT_EQ(hexa(0x12345, 4), "2345");
}

TEST(Hexa, ShowsTheGreatestByteAndTheGreatestWord) {
    EXPECT_EQ(hexa(255, 2), "FF");
    EXPECT_EQ(hexa(65535, 4), "FFFF");
}

TEST(Hexa, ReturnsAllOfThePaddedTextWhenTheWidthIsLarger) {
    EXPECT_EQ(hexa(0, 5), "00000");
    EXPECT_EQ(hexa(0, 9), "00000");
    EXPECT_EQ(hexa(0xAB, 6), "0000AB");
    EXPECT_EQ(hexa(0xAB, 100), "0000AB");
    EXPECT_EQ(hexa(0x12345678, 20), "000012345678");
}

TEST(Hexa, ReturnsNothingForWidthZeroOrLess) {
    EXPECT_EQ(hexa(255, 0), "");
    EXPECT_EQ(hexa(255, -1), "");
    EXPECT_EQ(hexa(1.0, 0), "");
}

TEST(Hexa, ShowsANegative16BitValueInFourDigits) {
    EXPECT_EQ(hexa(std::int16_t{-1}, 4), "FFFF");
    EXPECT_EQ(hexa(std::int16_t{-1}, 8), "0000FFFF");
    EXPECT_EQ(hexa(std::int16_t{-2}, 2), "FE");
    EXPECT_EQ(hexa(std::numeric_limits<std::int16_t>::min(), 8), "00008000");
    EXPECT_EQ(hexa(std::int16_t{127}, 4), "007F");
}

TEST(Hexa, ShowsANegative32BitValueInEightDigits) {
    EXPECT_EQ(hexa(-1, 4), "FFFF");
    EXPECT_EQ(hexa(-1, 8), "FFFFFFFF");
    EXPECT_EQ(hexa(-1, 20), "0000FFFFFFFF");
    EXPECT_EQ(hexa(lowest32, 8), "80000000");
    EXPECT_EQ(hexa(highest32, 8), "7FFFFFFF");
}

TEST(Hexa, RoundsHalvesToTheEvenNeighbour) {
    EXPECT_EQ(hexa(0.5, 2), "00");
    EXPECT_EQ(hexa(1.5, 2), "02");
    EXPECT_EQ(hexa(2.5, 2), "02");
    EXPECT_EQ(hexa(3.5, 2), "04");
    EXPECT_EQ(hexa(254.5, 2), "FE");
    EXPECT_EQ(hexa(-0.5, 4), "0000");
    EXPECT_EQ(hexa(-1.5, 8), "FFFFFFFE");
}

TEST(Hexa, RoundsOtherFractionsToTheNearest) {
    EXPECT_EQ(hexa(2.4999, 2), "02");
    EXPECT_EQ(hexa(2.5001, 2), "03");
    EXPECT_EQ(hexa(9.75, 2), "0A");
}

TEST(Hexa, FailsWithOverflowWhenAFractionIsNo32BitInteger) {
    EXPECT_EQ(hexa(2147483647.25, 8), "7FFFFFFF");
    EXPECT_EQ(hexa(-2147483648.5, 8), "80000000");
    EXPECT_EQ(errorOf([] { hexa(2147483647.5, 8); }), overflowError);
    EXPECT_EQ(errorOf([] { hexa(-2147483649.0, 8); }), overflowError);
    EXPECT_EQ(errorOf([] { hexa(std::numeric_limits<double>::quiet_NaN(), 8); }), overflowError);
    EXPECT_EQ(errorOf([] { hexa(std::numeric_limits<double>::infinity(), 8); }), overflowError);
}

TEST(Ls, GivesDecimalDigitsWithoutBlanks) {
    EXPECT_EQ(ls(5), "5");
    EXPECT_EQ(ls(-3), "-3");
    EXPECT_EQ(ls(255), "255");
    EXPECT_EQ(ls(0), "0");
    EXPECT_EQ(ls(lowest32), "-2147483648");
    EXPECT_EQ(ls(highest32), "2147483647");
}

// --- dec ---

TEST(Dec, ReadsBothCases) {
    EXPECT_EQ(dec("FF"), 255);
    EXPECT_EQ(dec("ff"), 255);
    EXPECT_EQ(dec("aBcD"), 0xABCD);
}

TEST(Dec, CorrectsAWordThatReadsAsNegative) {
    EXPECT_EQ(dec("ffff"), 65535);
    EXPECT_EQ(dec("8000"), 32768);
    EXPECT_EQ(dec("7FFF"), 32767);
}

TEST(Dec, ReturnsValuesAbove65535AsTheyAre) {
    EXPECT_EQ(dec("12345"), 74565);
    EXPECT_EQ(dec("10000"), 65536);
    EXPECT_EQ(dec("7FFFFFFF"), highest32);
}

TEST(Dec, CorrectsANegative32BitValueByTheSame65536) {
    EXPECT_EQ(dec("FFFFFFFF"), 65535);
    EXPECT_EQ(dec("FFFF8000"), 32768);
    EXPECT_EQ(dec("FFFF0000"), 0);
    EXPECT_EQ(dec("FFFEFFFF"), -1);
    EXPECT_EQ(dec("80000000"), lowest32 + 65536);
}

TEST(Dec, CountsLeadingZerosAsDigits) {
    EXPECT_EQ(dec("0FFFF"), 65535);
    EXPECT_EQ(dec("08000"), 32768);
    EXPECT_EQ(dec("0000FFFF"), 65535);
}

TEST(Dec, IsZeroWithoutADigit) {
    EXPECT_EQ(dec(""), 0);
    EXPECT_EQ(dec("    "), 0);
    EXPECT_EQ(dec("G1"), 0);
    EXPECT_EQ(dec("-1"), 0);
    EXPECT_EQ(dec("+1"), 0);
    EXPECT_EQ(dec("xyz"), 0);
}

TEST(Dec, ReadsZeroAndTheGreatestWord) {
    EXPECT_EQ(dec("0000"), 0);
    EXPECT_EQ(dec("FFFF"), 65535);
}

TEST(Dec, StopsAtTheFirstOtherCharacter) {
    EXPECT_EQ(dec("1G"), 1);
    EXPECT_EQ(dec("12.34"), 0x12);
    EXPECT_EQ(dec("0x10"), 0);
    EXPECT_EQ(dec("10H"), 16);
    EXPECT_EQ(dec("1&h2"), 1);
    EXPECT_EQ(dec("12Á34"), 0x12);
}

TEST(Dec, SkipsBlanksTabsAndLineFeeds) {
    EXPECT_EQ(dec("1 0"), 16);
    EXPECT_EQ(dec("1\t0"), 16);
    EXPECT_EQ(dec("1\n0"), 16);
    EXPECT_EQ(dec("  \t\n F \t F \n"), 255);
    EXPECT_EQ(dec("8 0 0 0"), 32768);
}

TEST(Dec, StopsAtACarriageReturnAndOtherControlCharacters) {
    EXPECT_EQ(dec("1\r0"), 1);
    EXPECT_EQ(dec("\r10"), 0);
    EXPECT_EQ(dec(std::string_view("1\0002", 3)), 1);
    EXPECT_EQ(dec("1\v0"), 1);
    EXPECT_EQ(dec("1\f0"), 1);
}

TEST(Dec, KeepsTheLastEightOfMoreDigits) {
    EXPECT_EQ(dec("100000000"), 0);
    EXPECT_EQ(dec("123456789"), 0x23456789);
    EXPECT_EQ(dec("ABCFFFFFFFF"), 65535);
    EXPECT_EQ(dec(std::string(1'000'000, '0') + "12345678"), 0x12345678);
    EXPECT_EQ(dec(std::string(1'000'000, 'F')), 65535);
    EXPECT_EQ(dec("1 2345 6789"), 0x23456789);
}

TEST(Dec, ReadsBackEveryWordThatHexaWrites) {
    for (std::int32_t value = 0; value <= 65535; ++value) {
        std::string text = hexa(value, 4);
        ASSERT_EQ(text.size(), 4U);
        ASSERT_EQ(dec(text), value) << text;
        std::transform(text.begin(), text.end(), text.begin(),
                       [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
        ASSERT_EQ(dec(text), value) << text;
        ASSERT_EQ(hexa(static_cast<std::int16_t>(static_cast<std::uint16_t>(value)), 4), hexa(value, 4));
    }
}

TEST(Dec, ReadsBackEveryByteThatHexaWrites) {
    for (std::int32_t value = 0; value <= 255; ++value) {
        ASSERT_EQ(hexa(value, 2).size(), 2U);
        ASSERT_EQ(dec(hexa(value, 2)), value);
    }
}

TEST(Dec, AgreesWithTheStandardReaderOnLongDigits) {
    std::mt19937 random(8085);
    for (int i = 0; i < 20'000; ++i) {
        const auto bits = static_cast<std::uint32_t>(random());
        const auto value = static_cast<std::int32_t>(bits);
        const std::string text = hexa(value, 8);
        ASSERT_EQ(std::stoul(text, nullptr, 16), bits);
        const std::int32_t expected = value < 0 ? value + 65536 : value;
        ASSERT_EQ(dec(text), expected) << text;
    }
}

}  // namespace
}  // namespace tavinor
