#include "assembler/OpcodeTable.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace tavinor {

namespace {

constexpr auto rows = static_cast<std::int16_t>(instructionForms);

const OpcodeTable table = creatabla();

TEST(OpcodeTable, HasItsRowsInOrder) {
    ASSERT_EQ(table.size(), instructionForms);
    EXPECT_EQ(table.rowsOutOfOrder(), 0);
    for (std::int16_t row = 1; row < rows; ++row) {
        EXPECT_LT(table.row(static_cast<std::int16_t>(row - 1)).key, table.row(row).key);
    }
}

TEST(OpcodeTable, FindsEveryKey) {
    for (std::int16_t row = 0; row < rows; ++row) EXPECT_EQ(table.busca(table.row(row).key), row);
}

TEST(OpcodeTable, TakesASourceTextApart) {
    const OpcodeEntry& first = table.row(0);
    EXPECT_EQ(first.key, "ACI");
    EXPECT_EQ(first.operandMark, "{1}");
    EXPECT_EQ(first.hexTemplate, "CE00");
    EXPECT_EQ(first.opcode(), "CE");
    EXPECT_EQ(first.size(), 2U);
    const OpcodeEntry& last = table.row(rows - 1);
    EXPECT_EQ(last.key, "XTHL");
    EXPECT_EQ(last.operandMark, "");
    EXPECT_EQ(last.hexTemplate, "E3");
}

TEST(OpcodeTable, Restart5GivesTheCodeOfRestart3) {
    EXPECT_EQ(opcodeSources[207], "RST5^DF");
    EXPECT_EQ(table.busca("RST5"), 207);
    EXPECT_EQ(table.row(207).hexTemplate, "DF");
    EXPECT_EQ(table.row(table.busca("RST3")).hexTemplate, "DF");
}

/// Every opcode of the processor has exactly one key but 76 and DF, which have two; EF and the undefined ones
/// have none.
TEST(OpcodeTable, CoversTheProcessor) {
    std::multiset<std::string> opcodes;
    for (std::int16_t row = 0; row < rows; ++row) opcodes.emplace(table.row(row).opcode());
    EXPECT_EQ(opcodes.count("76"), 2U);
    EXPECT_EQ(opcodes.count("DF"), 2U);
    for (const char* none : {"08", "10", "18", "28", "38", "CB", "D9", "DD", "ED", "EF", "FD"}) {
        EXPECT_EQ(opcodes.count(none), 0U) << none;
    }
    EXPECT_EQ(std::set<std::string>(opcodes.begin(), opcodes.end()).size(), 245U);
}

TEST(OpcodeTable, SizeAgreesWithTheOperandMark) {
    for (std::int16_t row = 0; row < rows; ++row) {
        const OpcodeEntry& entry = table.row(row);
        const std::size_t operand = entry.operandMark.empty() ? 0U : entry.operandMark == "{1}" ? 1U : 2U;
        EXPECT_EQ(entry.size(), 1 + operand) << entry.key;
        EXPECT_EQ(entry.hexTemplate.substr(2), std::string(2 * operand, '0')) << entry.key;
    }
}

TEST(OpcodeTable, KnowsTheDirectives) {
    const std::vector<std::pair<std::string_view, int>> words{
        {"CPU", -2}, {"HOF", -3}, {"ORG", -4}, {"EQU", -5}, {"DFB", -6}, {"DFW", -7}, {"END", -8}};
    for (const auto& [word, code] : words) EXPECT_EQ(table.busca(word), code) << word;
}

TEST(OpcodeTable, FindsNothingElse) {
    const std::vector<std::string> misses{
        "",       "A",   "AAA",  "ZZZ",   "ORG100H", "org",      "aci",     "MOVA,",
        "MVIA",   "CMP", "LXI",  "LXISP", "DADPSW",  "PUSHSP",   "RST",     "RST8",
        "XTHLX",  "XTH", "ACI ", " ACI",  "ACI{1}",  "\xC3\x91", "NOP\x7F", std::string("NOP\0", 4),
        "MVIA,5", "{",   "^"};
    for (const std::string& key : misses) EXPECT_EQ(table.busca(key), noCode) << key;
}

TEST(OpcodeTable, FindsNothingBetweenTwoRows) {
    for (std::int16_t row = 0; row < rows; ++row) {
        const std::string key(table.row(row).key);
        EXPECT_EQ(table.busca(key + "!"), noCode);
        EXPECT_EQ(table.busca(key + "\xFF"), noCode);
    }
}

TEST(OpcodeTable, TellsNeighboursThatStartAlikeApart) {
    EXPECT_EQ(table.row(table.busca("CM")).hexTemplate, "FC0000");
    EXPECT_EQ(table.row(table.busca("CMA")).hexTemplate, "2F");
    EXPECT_EQ(table.row(table.busca("MVIA,")).hexTemplate, "3E00");
    EXPECT_EQ(table.row(table.busca("LXISP,")).hexTemplate, "310000");
    EXPECT_EQ(table.row(table.busca("DADSP")).hexTemplate, "39");
    EXPECT_EQ(table.row(table.busca("PUSHPSW")).hexTemplate, "F5");
}

TEST(OpcodeTable, CountsRowsOutOfOrderAndGoesOn) {
    constexpr std::array<std::string_view, 5> sources{"B^01", "A^02", "A^03", "D{1}^0400", "C^05"};
    const OpcodeTable disordered = creatabla(sources);
    EXPECT_EQ(disordered.rowsOutOfOrder(), 2);
    EXPECT_EQ(disordered.size(), 5U);
    EXPECT_EQ(disordered.row(3).key, "D");
    EXPECT_EQ(disordered.busca("C"), noCode);  // hidden behind a greater key
}

TEST(OpcodeTable, EmptyTableFindsNothing) {
    EXPECT_EQ(creatabla({}).busca("NOP"), noCode);
}

}  // namespace

}  // namespace tavinor
