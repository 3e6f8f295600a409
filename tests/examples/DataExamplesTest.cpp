// The programs that move, search and sort, against the algorithms of the standard library.

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <random>
#include <string>
#include <vector>

#include "tests/examples/ExampleMachine.h"

namespace tavinor::examples {
namespace {

using Bytes = std::vector<std::uint8_t>;

/// Small values repeat themselves in a table, large ones cross the sign bit.
Bytes randomBytes(std::mt19937& random, std::size_t count, int highest = 255) {
    std::uniform_int_distribution<int> value(0, highest);
    Bytes bytes(count);
    std::generate(bytes.begin(), bytes.end(), [&] { return static_cast<std::uint8_t>(value(random)); });
    return bytes;
}

std::uint8_t lengthByte(const Bytes& table) {
    return static_cast<std::uint8_t>(table.size());
}

struct Copy {
    int from, to, count;
};

TEST(DataExamplesTest, CopiaCopiesUpwardsByteByByte) {
    constexpr Copy copies[] = {{0x1010, 0x2000, 8},      {0x1010, 0x2000, 0},      {0x1010, 0x2000, 1},
                               {0x5000, 0x6000, 0x100},  {0x5000, 0x6003, 0x101},  {0x50F0, 0x8000, 0x1234},
                               {0x5000, 0x4FF0, 0x0200}, {0x5000, 0x5001, 0x0200}, {0x5000, 0x5000, 0x10},
                               {0x5000, 0xFFF0, 0x10}};
    std::mt19937 random(3);
    for (const auto& [from, to, count] : copies) {
        ExampleMachine example("04-copia-bloque");
        example.setBytes(0x5000, randomBytes(random, 0x2000));
        example.setWord(dataAddress, from);
        example.setWord(dataAddress + 2, to);
        example.setWord(dataAddress + 4, count);
        example.start();
        Bytes expected = example.bytes(0, memorySize);
        for (int i = 0; i < count; ++i) {
            expected[static_cast<std::size_t>(to + i)] = expected[static_cast<std::size_t>(from + i)];
        }
        ASSERT_TRUE(example.finish());
        EXPECT_TRUE(example.bytes(0, memorySize) == expected) << from << " to " << to << ", " << count;
    }
}

TEST(DataExamplesTest, MaximoFindsTheFirstOfTheGreatest) {
    ExampleMachine example("05-maximo");
    std::mt19937 random(4);
    for (std::size_t count = 1; count <= 255; ++count) {
        for (const int highest : {0, 3, 255}) {
            const Bytes table = randomBytes(random, count, highest);
            example.setByte(dataAddress, lengthByte(table));
            example.setBytes(dataAddress + 1, table);
            ASSERT_TRUE(example.run());
            const auto greatest = std::max_element(table.begin(), table.end());
            ASSERT_EQ(example.byte(resultAddress), *greatest) << count;
            ASSERT_EQ(example.byte(resultAddress + 1), greatest - table.begin()) << count;
        }
    }
}

void checkSort(ExampleMachine& example, Bytes table) {
    constexpr std::int32_t room = 0x200;
    example.setBytes(dataAddress, Bytes(room, 0x11));
    example.setByte(dataAddress, lengthByte(table));
    example.setBytes(dataAddress + 1, table);
    ASSERT_TRUE(example.run());
    std::sort(table.begin(), table.end());
    table.insert(table.begin(), lengthByte(table));
    table.resize(room, 0x11);
    EXPECT_EQ(example.bytes(dataAddress, room), table);
}

TEST(DataExamplesTest, BurbujaSortsTheTableAndNothingElse) {
    ExampleMachine example("09-burbuja");
    std::mt19937 random(5);
    for (const std::size_t count : {0U, 1U, 2U, 3U, 8U, 17U, 100U, 255U}) {
        for (const int highest : {0, 3, 255}) {
            Bytes table = randomBytes(random, count, highest);
            checkSort(example, table);
            std::sort(table.begin(), table.end());
            checkSort(example, table);
            std::reverse(table.begin(), table.end());
            checkSort(example, table);
            ASSERT_FALSE(HasFailure()) << count << " elements";
        }
    }
}

TEST(DataExamplesTest, BurbujaSortsEveryOrderOfFive) {
    ExampleMachine example("09-burbuja");
    Bytes table{0x00, 0x7F, 0x80, 0x80, 0xFF};
    do {
        checkSort(example, table);
        ASSERT_FALSE(HasFailure());
    } while (std::next_permutation(table.begin(), table.end()));
}

Bytes zeroTerminated(const std::string& text) {
    Bytes bytes(text.begin(), text.end());
    bytes.push_back(0);
    return bytes;
}

void checkSearch(ExampleMachine& example, const std::string& text, const std::string& pattern) {
    example.setBytes(0x1000, zeroTerminated(text));
    example.setBytes(0x1100, zeroTerminated(pattern));
    ASSERT_TRUE(example.run());
    const std::size_t place = text.find(pattern);
    const int expected = place == std::string::npos ? 0xFFFF : 0x1000 + static_cast<int>(place);
    EXPECT_EQ(example.word(resultAddress), expected) << '"' << pattern << "\" in \"" << text << '"';
}

TEST(DataExamplesTest, BuscaFindsTheFirstPlaceOfAString) {
    struct Case {
        const char* text;
        const char* pattern;
    };
    constexpr Case cases[] = {{"", ""},        {"A", ""},      {"", "A"},       {"AAB", "AB"},
                              {"AAAB", "AAB"}, {"AB", "ABC"},  {"ABC", "ABC"},  {"ABABABC", "ABABC"},
                              {"ABC", "D"},    {"XABX", "AB"}, {"AAAA", "AAA"}, {"EL 8085", "85"}};
    ExampleMachine example("11-busca-cadena");
    for (const Case& each : cases) checkSearch(example, each.text, each.pattern);
}

TEST(DataExamplesTest, BuscaFindsStringsOfAFewLetters) {
    ExampleMachine example("11-busca-cadena");
    std::mt19937 random(6);
    std::uniform_int_distribution<int> letter('A', 'B');
    std::uniform_int_distribution<std::size_t> textLength(0, 255);
    std::uniform_int_distribution<std::size_t> patternLength(0, 10);
    const auto randomText = [&](std::size_t length) {
        std::string text(length, ' ');
        std::generate(text.begin(), text.end(), [&] { return static_cast<char>(letter(random)); });
        return text;
    };
    for (int round = 0; round < 300; ++round) {
        const std::string text = randomText(textLength(random));
        checkSearch(example, text, randomText(patternLength(random)));
        ASSERT_FALSE(HasFailure());
    }
}

}  // namespace
}  // namespace tavinor::examples
