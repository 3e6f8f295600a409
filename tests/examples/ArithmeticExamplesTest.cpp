// The programs that calculate, against the arithmetic of the compiler.

#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <random>
#include <vector>

#include "machine/Flags.h"
#include "tests/examples/ExampleMachine.h"

namespace tavinor::examples {
namespace {

using Digits = std::vector<int>;  // the units first

/// Pairs of 16-bit numbers: every combination of the awkward ones, and some at random.
std::vector<std::array<int, 2>> wordPairs() {
    constexpr std::array awkward{0,      1,      2,      7,      0xFF,   0x100,  0x101,  0x7FFF,
                                 0x8000, 0x8001, 0xAAAA, 0x5555, 0xFF00, 0xFFFE, 0xFFFF, 0x1234};
    std::vector<std::array<int, 2>> pairs;
    for (const int a : awkward) {
        for (const int b : awkward) pairs.push_back({a, b});
    }
    std::mt19937 random(1);
    std::uniform_int_distribution<int> word(0, 0xFFFF);
    for (int i = 0; i < 300; ++i) {
        const int a = word(random);
        pairs.push_back({a, word(random)});
    }
    return pairs;
}

TEST(ArithmeticExamplesTest, SumaAddsEveryPairOfBytes) {
    ExampleMachine example("01-suma");
    for (int a = 0; a < 256; ++a) {
        for (int b = 0; b < 256; ++b) {
            example.setBytes(dataAddress, {static_cast<std::uint8_t>(a), static_cast<std::uint8_t>(b)});
            ASSERT_TRUE(example.run());
            ASSERT_EQ(example.byte(resultAddress), (a + b) % 256) << a << " + " << b;
            ASSERT_EQ(example.machine().F & flag::CY, (a + b) / 256) << a << " + " << b;
        }
    }
}

TEST(ArithmeticExamplesTest, Suma16AddsWords) {
    ExampleMachine example("02-suma-16-bits");
    for (const auto& [a, b] : wordPairs()) {
        example.setWord(dataAddress, a);
        example.setWord(dataAddress + 2, b);
        ASSERT_TRUE(example.run());
        ASSERT_EQ(example.word(resultAddress), (a + b) % 65536) << a << " + " << b;
        ASSERT_EQ(example.byte(resultAddress + 2), (a + b) / 65536) << a << " + " << b;
    }
}

TEST(ArithmeticExamplesTest, Multiplica8MultipliesEveryPairOfBytes) {
    ExampleMachine example("06-multiplica-8-bits");
    for (int a = 0; a < 256; ++a) {
        for (int b = 0; b < 256; ++b) {
            example.setBytes(dataAddress, {static_cast<std::uint8_t>(a), static_cast<std::uint8_t>(b)});
            ASSERT_TRUE(example.run());
            ASSERT_EQ(example.word(resultAddress), a * b) << a << " * " << b;
        }
    }
}

TEST(ArithmeticExamplesTest, Multiplica16MultipliesWords) {
    ExampleMachine example("07-multiplica-16-bits");
    for (const auto& [a, b] : wordPairs()) {
        example.setWord(dataAddress, a);
        example.setWord(dataAddress + 2, b);
        ASSERT_TRUE(example.run());
        const std::int64_t product = std::int64_t{a} * b;
        ASSERT_EQ(example.word(resultAddress), product % 65536) << a << " * " << b;
        ASSERT_EQ(example.word(resultAddress + 2), product / 65536) << a << " * " << b;
    }
}

TEST(ArithmeticExamplesTest, Divide16DividesWordsAndRefusesZero) {
    constexpr int rubbishWord = ExampleMachine::rubbish * 257;
    ExampleMachine example("08-divide-16-bits");
    for (const auto& [a, b] : wordPairs()) {
        example.setWord(dataAddress, a);
        example.setWord(dataAddress + 2, b);
        ASSERT_TRUE(example.run());
        ASSERT_EQ(example.byte(resultAddress + 4), b == 0 ? 0xFF : 0) << a << " / " << b;
        ASSERT_EQ(example.word(resultAddress), b == 0 ? rubbishWord : a / b) << a << " / " << b;
        ASSERT_EQ(example.word(resultAddress + 2), b == 0 ? rubbishWord : a % b) << a << " / " << b;
    }
}

constexpr std::int32_t firstBcd = 0x1010;
constexpr std::int32_t secondBcd = 0x1020;
constexpr std::int32_t bcdCarry = 0x2010;

Digits addDecimal(const Digits& a, const Digits& b) {
    Digits sum;
    int carry = 0;
    for (std::size_t i = 0; i < a.size(); ++i) {
        const int digit = a[i] + b[i] + carry;
        sum.push_back(digit % 10);
        carry = digit / 10;
    }
    sum.push_back(carry);
    return sum;
}

/// Two digits a byte, the lower one in the low nibble.
std::vector<std::uint8_t> packed(const Digits& digits, std::size_t byteCount) {
    std::vector<std::uint8_t> bytes;
    for (std::size_t i = 0; i < byteCount; ++i) {
        bytes.push_back(static_cast<std::uint8_t>(digits[2 * i] + 16 * digits[2 * i + 1]));
    }
    return bytes;
}

void checkBcdSum(ExampleMachine& example, const Digits& a, const Digits& b) {
    const std::size_t byteCount = a.size() / 2;
    example.setByte(dataAddress, static_cast<int>(byteCount));
    example.setBytes(firstBcd, packed(a, byteCount));
    example.setBytes(secondBcd, packed(b, byteCount));
    ASSERT_TRUE(example.run());
    const Digits sum = addDecimal(a, b);
    EXPECT_EQ(example.bytes(resultAddress, byteCount), packed(sum, byteCount));
    EXPECT_EQ(example.byte(bcdCarry), sum.back());
}

TEST(ArithmeticExamplesTest, SumaBcdAddsEveryPairOfTwoDigits) {
    ExampleMachine example("10-suma-bcd");
    for (int a = 0; a < 100; ++a) {
        for (int b = 0; b < 100; ++b) {
            checkBcdSum(example, {a % 10, a / 10}, {b % 10, b / 10});
            ASSERT_FALSE(HasFailure()) << a << " + " << b;
        }
    }
}

TEST(ArithmeticExamplesTest, SumaBcdAddsNumbersOfEveryLength) {
    ExampleMachine example("10-suma-bcd");
    std::mt19937 random(2);
    std::uniform_int_distribution<int> digit(0, 9);
    for (std::size_t byteCount = 1; byteCount <= 16; ++byteCount) {
        for (int round = 0; round < 20; ++round) {
            Digits a, b;
            for (std::size_t i = 0; i < 2 * byteCount; ++i) {
                a.push_back(digit(random));
                // A run of nines carries through every byte.
                b.push_back(round % 2 == 0 ? digit(random) : 9 - a.back());
            }
            if (round % 2 != 0) b[0] = 9;
            checkBcdSum(example, a, b);
            ASSERT_FALSE(HasFailure()) << byteCount << " bytes";
        }
    }
}

// What the source warns the student of.
TEST(ArithmeticExamplesTest, SumaBcdShowsThatDaaKeepsAnOldZeroFlag) {
    constexpr int daa = 0x27;
    ExampleMachine example("10-suma-bcd");
    example.setByte(dataAddress, 1);
    example.setByte(firstBcd, 0x67);
    example.setByte(secondBcd, 0x99);
    example.start();
    while (example.byte(example.machine().PC) != daa && example.steps() < 100) example.step();
    ASSERT_EQ(example.byte(example.machine().PC), daa);
    EXPECT_EQ(example.machine().A, 0);
    example.step();
    EXPECT_EQ(example.machine().A, 0x66);
    EXPECT_NE(example.machine().F & flag::Z, 0);
    EXPECT_NE(example.machine().F & flag::CY, 0);
}

TEST(ArithmeticExamplesTest, FactorialUsesFourBytesOfStackForEachCall) {
    ExampleMachine example("12-factorial");
    int factorial = 1;
    for (int n = 0; n <= 9; ++n) {
        if (n > 0) factorial *= n;
        example.setByte(dataAddress, n);
        ASSERT_TRUE(example.run());
        EXPECT_EQ(example.word(resultAddress), factorial % 65536) << n;
        EXPECT_EQ(example.machine().SP, stackTop) << n;
        EXPECT_EQ(example.lowestSP(), stackTop - 2 - (n > 1 ? 4 * (n - 1) : 0)) << n;
    }
}

}  // namespace
}  // namespace tavinor::examples
