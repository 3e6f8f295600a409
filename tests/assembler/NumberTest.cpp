#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <vector>

#include "assembler/Evaluation.h"

namespace tavinor {

namespace {

constexpr NumberContext byte = NumberContext::byte;
constexpr NumberContext word = NumberContext::word;

struct Case {
    std::string text;
    std::int32_t asByte;
    std::int32_t asWord;
};

void PrintTo(const Case& c, std::ostream* out) {
    *out << '"' << c.text << '"';
}

class Number : public testing::TestWithParam<Case> {};

TEST_P(Number, HasItsValue) {
    const auto& [text, asByte, asWord] = GetParam();
    EXPECT_EQ(cmpnum(text, byte), asByte);
    EXPECT_EQ(cmpnum(text, word), asWord);
    std::string operand = text;
    EXPECT_EQ(sacaoperando(operand, byte, SymbolTable()), asByte);
    operand = text;
    EXPECT_EQ(sacaoperando(operand, word, SymbolTable()), asWord);
}

INSTANTIATE_TEST_SUITE_P(Literals, Number,
                         testing::Values(Case{"0", 0, 0}, Case{"10", 10, 10}, Case{"10D", 10, 10},
                                         Case{"0AH", 10, 10}, Case{"1010B", 10, 10}, Case{"0FFH", 255, 255},
                                         Case{"255", 255, 255}, Case{"256", -2, 256}, Case{"100H", -2, 256},
                                         Case{"65535", -2, 65535}, Case{"65536", -2, -2},
                                         Case{"0FFFFH", -2, 65535}, Case{"10000H", -2, -2},
                                         Case{"1BH", 27, 27}, Case{"11B", 3, 3}, Case{"0DH", 13, 13},
                                         Case{"11D", 11, 11}, Case{"0H", 0, 0}, Case{"0B", 0, 0},
                                         Case{"0D", 0, 0}, Case{"0BH", 11, 11}, Case{"9H", 9, 9}));

INSTANTIATE_TEST_SUITE_P(NoLiterals, Number,
                         testing::Values(Case{"", -1, -1}, Case{"H", -1, -1}, Case{"B", -1, -1},
                                         Case{"D", -1, -1}, Case{"AH", -1, -1}, Case{"FFH", -1, -1},
                                         Case{"12B", -1, -1}, Case{"1AD", -1, -1}, Case{"1A", -1, -1},
                                         Case{"1G0H", -1, -1}, Case{"1HH", -1, -1}, Case{"0X10", -1, -1},
                                         Case{"1.5", -1, -1}, Case{"10h", -1, -1}, Case{"-", -1, -1},
                                         Case{"+", -1, -1}, Case{"\xC3\x91", -1, -1},
                                         Case{std::string("1\0", 2), -1, -1}));

INSTANTIATE_TEST_SUITE_P(
    ManyDigits, Number,
    testing::Values(Case{"2147483647", -2, -2}, Case{"2147483648", -1, -1}, Case{"7FFFFFFFH", -2, -2},
                    Case{"80000000H", -1, -1}, Case{std::string(31, '1') + "B", -2, -2},
                    Case{std::string(32, '1') + "B", -1, -1}, Case{std::string(1000, '9'), -1, -1},
                    Case{std::string(1000, '9') + "H", -1, -1}, Case{std::string(1000, '0') + "7", 7, 7},
                    Case{std::string(1000, '0') + "7H", 7, 7}, Case{std::string(1000, '0') + "101B", 5, 5}));

INSTANTIATE_TEST_SUITE_P(Sums, Number,
                         testing::Values(Case{"1+2", 3, 3}, Case{"300-100", 200, 200}, Case{"5-10", -5, -5},
                                         Case{"255+1", -2, 256}, Case{"200+55", 255, 255},
                                         Case{"65535+1", -2, -2}, Case{"65535+65535-65535", -2, 65535},
                                         Case{"0-65535-65535", -131070, -131070}, Case{"0-1+1", 0, 0},
                                         Case{"0FFH-10", 245, 245}, Case{"1+1+1+1+1-1-1", 3, 3},
                                         Case{"-5", -1, -1}, Case{"+5", -1, -1}, Case{"5-", -1, -1},
                                         Case{"5+", -1, -1}, Case{"5--5", -1, -1}, Case{"5+-5", -1, -1},
                                         Case{"65536-1", -1, -1}, Case{"1+X", -1, -1}, Case{"1 + 2", 3, 3}));

TEST(Digits, AreReadInTheirBase) {
    EXPECT_EQ(hextodec("7FFF"), 32767);
    EXPECT_EQ(hextodec("7FFFFFFF"), 2147483647);
    EXPECT_EQ(hextodec("80000000"), -1);
    EXPECT_EQ(hextodec("FFFFFFFFFFFFFFFFFF"), -1);
    EXPECT_EQ(dectodec("2147483647"), 2147483647);
    EXPECT_EQ(dectodec("2147483648"), -1);
    EXPECT_EQ(bintodec("1011"), 11);
    EXPECT_EQ(bintodec(std::string(31, '1')), 2147483647);
    EXPECT_EQ(bintodec("1" + std::string(31, '0')), -1);
}

TEST(Positions, TheSmallerOneThatIsThere) {
    EXPECT_EQ(min(0, 0), 0U);
    EXPECT_EQ(min(0, 5), 5U);
    EXPECT_EQ(min(5, 0), 5U);
    EXPECT_EQ(min(3, 5), 3U);
    EXPECT_EQ(min(5, 3), 3U);
}

TEST(NumbersAlone, KeepTheirBlanks) {
    EXPECT_EQ(cmpnum("1 0", word), -1);
    EXPECT_EQ(separa(" 1 + 2 ", word), 3);
    EXPECT_EQ(separa("1 0+2", word), -1);
    EXPECT_EQ(separa("7", byte), 7);
    EXPECT_EQ(separa("256", byte), -2);
}

TEST(LongSum, IsAddedUpWithoutOverflow) {
    std::string terms = "65535";
    for (int i = 0; i < 70000; ++i) terms += "-65535";
    EXPECT_EQ(cmpnum(terms, word), std::numeric_limits<std::int32_t>::min());
    for (int i = 0; i < 70000; ++i) terms += "+65535";
    EXPECT_EQ(cmpnum(terms, word), 65535);
    EXPECT_EQ(cmpnum(terms + "+1", word), -2);
}

/// The two signs alternate only at the end: looking for each from every term would be quadratic.
TEST(LongSum, OfAMillionTerms) {
    std::string terms = "1";
    for (int i = 0; i < 500000; ++i) terms += "-0";
    terms += "+1";
    EXPECT_EQ(cmpnum(terms, word), 2);
}

class Operand : public testing::Test {
  protected:
    Operand() {
        symbols_.add("N", 16);
        symbols_.add("GRANDE", 256);
        symbols_.add("FIN", 65536);
        symbols_.add("N", 99);
        symbols_.add("10H", 1);
        symbols_.add("A B", 2);
        symbols_.add("A-B", 3);
        symbols_.add("80000000H", 4);
    }

    std::int32_t value(std::string text, NumberContext context) {
        return sacaoperando(text, context, symbols_);
    }

    SymbolTable symbols_;
};

TEST_F(Operand, FindsTheFirstLabel) {
    EXPECT_EQ(value("N", byte), 16);
    EXPECT_EQ(value("N", word), 16);
    EXPECT_EQ(value("n", word), -1);
}

TEST_F(Operand, HoldsALabelAgainstTheByte) {
    EXPECT_EQ(value("GRANDE", byte), -2);
    EXPECT_EQ(value("GRANDE", word), 256);
    EXPECT_EQ(value("GRANDE-1", byte), 255);
}

TEST_F(Operand, TakesALabelBehindTheMemoryAsAWord) {
    EXPECT_EQ(value("FIN", word), 65536);
    EXPECT_EQ(value("FIN", byte), -2);
    EXPECT_EQ(value("FIN+0", word), -2);
    EXPECT_EQ(value("FIN-1", word), 65535);
}

TEST_F(Operand, PrefersNumbers) {
    EXPECT_EQ(value("10H", word), 16);
    EXPECT_EQ(value("80000000H", word), 4);  // no number at all
}

TEST_F(Operand, NeverFindsLabelsWithBlanksOrSigns) {
    EXPECT_EQ(value("A B", word), -1);
    EXPECT_EQ(value("A-B", word), -1);
}

TEST_F(Operand, RemovesBlanksFromTheCallersText) {
    std::string text = " 1 0 + N ";
    EXPECT_EQ(sacaoperando(text, word, symbols_), 26);
    EXPECT_EQ(text, "10+N");
}

TEST_F(Operand, AddsLabelsAndNumbers) {
    EXPECT_EQ(value("N+N-1", byte), 31);
    EXPECT_EQ(value("1-N", byte), -15);
    EXPECT_EQ(value("N+NADA", byte), -1);
    EXPECT_EQ(sepoperando(" N + 1 ", word, symbols_), 17);
}

TEST(SymbolTable, WithoutLabelsFindsNothing) {
    const SymbolTable symbols;
    EXPECT_TRUE(symbols.rows().empty());
    EXPECT_FALSE(symbols.find("").has_value());
    std::string nothing;
    EXPECT_EQ(sacaoperando(nothing, word, symbols), -1);
}

TEST(SymbolTable, KeepsDuplicatesAndOrder) {
    SymbolTable symbols;
    symbols.add("B", 1);
    symbols.add("A", 2);
    symbols.add("B", 3);
    std::string rows;
    for (const SymbolEntry& row : symbols.rows()) {
        rows += std::string(row.name) + std::to_string(row.value) + ' ';
    }
    EXPECT_EQ(rows, "B1 A2 B3 ");
    EXPECT_EQ(symbols.count("B"), 2U);
    EXPECT_EQ(symbols.count("C"), 0U);
    EXPECT_EQ(symbols.find("B"), 1);
}

}  // namespace

}  // namespace tavinor
