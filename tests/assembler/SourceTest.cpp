#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <vector>

#include "assembler/OpcodeTable.h"
#include "assembler/OutputPaths.h"
#include "assembler/SourceText.h"
#include "assembler/StatementSplitter.h"

namespace tavinor {

namespace {

using Lines = std::vector<std::string_view>;

Lines statementTexts(const SourceText& source) {
    Lines texts;
    for (const SourceStatement& statement : source.statements()) texts.push_back(statement.text);
    return texts;
}

TEST(SourceText, CleansTheLines) {
    WorkObserver unobserved;
    const SourceText source("\tmvi\ta,5 ; x\n  \t \n;only\n a ;b;c\nñ : nop", unobserved);
    EXPECT_EQ(statementTexts(source), (Lines{"MVI A,5", "A", "Ñ : NOP"}));
    EXPECT_EQ(source.statements()[0].line, 0);
    EXPECT_EQ(source.statements()[1].line, 3);
    EXPECT_EQ(source.statements()[2].line, 4);
    EXPECT_EQ(source.rawLines()[0], "\tmvi\ta,5 ; x");
    EXPECT_EQ(source.rawLine(source.statements()[1]), " a ;b;c");
}

TEST(SourceText, LosesEmptyLinesAtTheTop) {
    WorkObserver unobserved;
    const SourceText source("\n\nNOP\n\nHLT\n", unobserved);
    EXPECT_EQ(source.rawLines(), (Lines{"NOP", "", "HLT"}));
    EXPECT_EQ(source.statements()[1].line, 2);
    EXPECT_EQ(SourceText(" \n\nNOP", unobserved).rawLines(), (Lines{" ", "", "NOP"}));
}

TEST(SourceText, HasAlwaysALineAndAStatement) {
    WorkObserver unobserved;
    for (const char* text : {"\n\n\n", "", "; x\n"}) {
        const SourceText source(text, unobserved);
        ASSERT_EQ(source.rawLines().size(), 1U);
        ASSERT_EQ(source.statements().size(), 1U);
        EXPECT_EQ(source.statements()[0].text, "");
        EXPECT_EQ(source.statements()[0].code, noCode);
        EXPECT_EQ(source.statements()[0].line, 0);
    }
}

struct SplitCase {
    std::string text;
    std::string label;
    std::string key;  ///< Of the row, or the directive word; empty for no code.
    std::string operand;
    std::string error;
};

void PrintTo(const SplitCase& c, std::ostream* out) {
    *out << '"' << c.text << '"';
}

class Split : public testing::TestWithParam<SplitCase> {};

TEST_P(Split, GivesLabelCodeAndOperand) {
    const SplitCase& expected = GetParam();
    const OpcodeTable table = creatabla();
    WorkObserver unobserved;
    SourceText source(expected.text, unobserved);
    SourceStatement& statement = source.statements()[0];
    const SplitErrors errors = StatementSplitter(table, source).split(statement);
    EXPECT_EQ(statement.label, expected.label);
    EXPECT_EQ(statement.code, expected.key.empty() ? noCode : table.busca(expected.key));
    EXPECT_EQ(statement.operand, expected.operand);
    EXPECT_EQ(errors.message, expected.error);
    EXPECT_EQ(errors.nullLabel, expected.text.starts_with(":"));
}

const std::string badOperation = "Código de operación no valido";
const std::string badSyntax = "Sintaxis incorrecta";

INSTANTIATE_TEST_SUITE_P(
    Statements, Split,
    testing::Values(
        SplitCase{"NOP", "", "NOP", "", ""}, SplitCase{"MOV A,B", "", "MOVA,B", "", ""},
        SplitCase{"MOV  A , B", "", "MOVA,B", "", ""}, SplitCase{"MOVA,B", "", "", "", badSyntax},
        SplitCase{"MOVA,B C", "", "MOVA,B", "C", ""}, SplitCase{"MVI A,12H", "", "MVIA,", "12H", ""},
        SplitCase{"MVI A, 1 2 H", "", "MVIA,", "12H", ""}, SplitCase{"MVI A,", "", "MVIA,", "", ""},
        SplitCase{"LXI SP,1", "", "LXISP,", "1", ""}, SplitCase{"JMP  FIN", "", "JMP", "FIN", ""},
        SplitCase{"JMP A B", "", "JMP", "A B", ""}, SplitCase{"JMP  A, B", "", "JMP", " A, B", ""},
        SplitCase{"RST 5", "", "RST5", "", ""}, SplitCase{"DFB 1, 2", "", "DFB", "1, 2", ""},
        SplitCase{"ORG 1 + 2", "", "ORG", "1 + 2", ""}, SplitCase{"ORG100H", "", "", "", badOperation},
        SplitCase{"CPU 8085", "", "CPU", "8085", ""}, SplitCase{"HOLA", "", "", "", badOperation},
        SplitCase{"HOLA 1", "", "", "1", badOperation}, SplitCase{"HOLA 1,2", "", "", "1,2", badOperation}));

INSTANTIATE_TEST_SUITE_P(
    BlankFreeFormFirst, Split,
    testing::Values(SplitCase{"CM A", "", "CMA", "", ""}, SplitCase{"CM B", "", "CM", "B", ""},
                    SplitCase{"CP U", "", "CPU", "", ""}, SplitCase{"JP E", "", "JPE", "", ""},
                    SplitCase{"IN RA", "", "INRA", "", ""}, SplitCase{"E ND", "", "END", "", ""},
                    SplitCase{"M V I A,5", "", "MVIA,", "5", ""},
                    SplitCase{"J MP 5", "", "", "MP 5", badOperation}));

INSTANTIATE_TEST_SUITE_P(
    Labels, Split,
    testing::Values(SplitCase{"A:", "A", "", "", ""}, SplitCase{"A: NOP", "A", "NOP", "", ""},
                    SplitCase{"A:NOP", "A", "NOP", "", ""},
                    SplitCase{" MI CASA : NOP", "MI CASA", "NOP", "", ""},
                    SplitCase{"A: B: NOP", "A", "", "NOP", badOperation},
                    SplitCase{"A,B: NOP", "A,B", "NOP", "", ""}, SplitCase{":", "", "", "", ""},
                    SplitCase{": NOP", "", "NOP", "", ""}, SplitCase{":MOVA,B", "", "", "", badSyntax},
                    SplitCase{"A:MOVA,B", "A", "", "", badSyntax}));

TEST(OutputPaths, ReplaceTheExtensionOfASource) {
    const auto paths = [](const char* source) {
        const OutputPaths result = outputPaths(source);
        return std::vector<std::string>{result.hex.string(), result.listing.string()};
    };
    using Paths = std::vector<std::string>;
    EXPECT_EQ(paths("prog.asm"), (Paths{"prog.HEX", "prog.LST"}));
    EXPECT_EQ(paths("PROG.ASM"), (Paths{"PROG.HEX", "PROG.LST"}));
    EXPECT_EQ(paths("Prog.aSm"), (Paths{"Prog.HEX", "Prog.LST"}));
    EXPECT_EQ(paths("prog.s"), (Paths{"prog.s.HEX", "prog.s.LST"}));
    EXPECT_EQ(paths("/tmp/año.dir/miasm"), (Paths{"/tmp/año.dir/miHEX", "/tmp/año.dir/miLST"}));
    EXPECT_EQ(paths("asm"), (Paths{"HEX", "LST"}));
    EXPECT_EQ(paths("sm"), (Paths{"sm.HEX", "sm.LST"}));
    EXPECT_EQ(paths("prog.asm.txt"), (Paths{"prog.asm.txt.HEX", "prog.asm.txt.LST"}));
    EXPECT_EQ(paths("prog.asm "), (Paths{"prog.asm .HEX", "prog.asm .LST"}));
}

}  // namespace

}  // namespace tavinor
