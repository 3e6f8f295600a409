// The programs about the stack, the table of jumps and the flags.

#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <numeric>
#include <random>
#include <vector>

#include "machine/Flags.h"
#include "tests/examples/ExampleMachine.h"

namespace tavinor::examples {
namespace {

// --- 15-parametros ----------------------------------------------------------------------------------------

using Bytes = std::vector<std::uint8_t>;

Bytes randomBytes(std::mt19937& random, std::size_t count) {
    std::uniform_int_distribution<int> value(0, 255);
    Bytes bytes(count);
    for (std::uint8_t& byte : bytes) byte = static_cast<std::uint8_t>(value(random));
    return bytes;
}

TEST(StackExamplesTest, ParametrosAddsTwoTablesAndLeavesTheStackAsItWas) {
    constexpr std::int32_t tables[] = {0x1010, 0x1110};
    std::mt19937 random(8);
    for (const std::size_t count : {0U, 1U, 2U, 100U, 256U}) {
        ExampleMachine example("15-parametros");
        const std::size_t second = 256 - count;
        const std::array contents{randomBytes(random, count), randomBytes(random, second)};
        for (std::int32_t i = 0; i < 2; ++i) {
            const Bytes& table = contents[static_cast<std::size_t>(i)];
            example.setWord(dataAddress + 2 * i, static_cast<int>(table.size()));
            example.setBytes(tables[i], table);
        }
        ASSERT_TRUE(example.run());
        for (std::int32_t i = 0; i < 2; ++i) {
            const Bytes& table = contents[static_cast<std::size_t>(i)];
            EXPECT_EQ(example.word(resultAddress + 2 * i), std::accumulate(table.begin(), table.end(), 0))
                << table.size();
        }
        EXPECT_EQ(example.machine().SP, stackTop);
        // Two parameters, the return address, BC, DE and the place of the result.
        EXPECT_EQ(example.lowestSP(), stackTop - 12);
    }
}

TEST(StackExamplesTest, ParametrosKeepsTheRegistersItPromisesToKeep) {
    constexpr int pushB = 0xC5;
    ExampleMachine example("15-parametros");
    example.start();
    while (example.byte(example.machine().PC) != pushB && example.steps() < 100) example.step();
    ASSERT_EQ(example.byte(example.machine().PC), pushB);
    MachineState& m = example.machine();
    const std::int32_t atEntry = m.SP;
    m.B = 0x12;
    m.C = 0x34;
    m.D = 0x56;
    m.E = 0x78;
    m.BC = 0x1234;
    m.DE = 0x5678;
    while (m.SP <= atEntry && example.steps() < 1'000) example.step();
    EXPECT_EQ(m.SP, atEntry + 2);
    EXPECT_EQ(m.BC, 0x1234);
    EXPECT_EQ(m.DE, 0x5678);
}

// --- 16-calculadora ---------------------------------------------------------------------------------------

constexpr std::size_t operandPort = 0;
constexpr std::size_t orderPort = 1;
constexpr std::size_t totalPort = 2;
constexpr std::size_t warningPort = 3;

enum Order : std::uint8_t { add = 1, subtract, clear, finish };

/// What the order leaves of the total.
int obeyed(int order, int total, int operand) {
    switch (order) {
        case add: return (total + operand) % 256;
        case subtract: return (total + 256 - operand) % 256;
        case clear: return 0;
        default: return total;
    }
}

void give(ExampleMachine& example, int order, int operand) {
    example.machine().port[operandPort] = static_cast<std::uint8_t>(operand);
    example.machine().port[orderPort] = static_cast<std::uint8_t>(order);
    const int limit = example.steps() + 200;
    while (example.machine().port[orderPort] != 0 && example.steps() < limit) example.step();
    EXPECT_EQ(example.machine().port[orderPort], 0) << "order " << order << " is not answered";
}

TEST(StackExamplesTest, CalculadoraObeysEveryOrderAndRefusesTheOthers) {
    std::mt19937 random(9);
    std::uniform_int_distribution<int> anyOrder(1, 255), anyByte(0, 255), anyPause(0, 30);
    ExampleMachine example("16-calculadora");
    example.start();
    for (int i = 0; i < 20; ++i) example.step();
    int total = 0, done = 0;
    for (int i = 0; i < 400; ++i) {
        int order = i % 2 == 0 ? 1 + i / 2 % 3 : anyOrder(random);
        if (order == Order::finish) order = 0xFF;
        const int operand = anyByte(random);
        give(example, order, operand);
        const bool known = order < Order::finish;
        if (known) ++done;
        total = obeyed(order, total, operand);
        ASSERT_EQ(example.machine().port[totalPort], total) << order;
        ASSERT_EQ(example.machine().port[warningPort], known ? 0x00 : 0xFF) << order;
        const int pause = anyPause(random);
        for (int turn = 0; turn < pause; ++turn) example.step();
    }
    give(example, Order::finish, 0);
    ASSERT_TRUE(example.finish());
    EXPECT_EQ(example.byte(resultAddress), total);
    EXPECT_EQ(example.byte(resultAddress + 1), done % 256);
}

// --- 19-indicadores ---------------------------------------------------------------------------------------

constexpr std::size_t rowSize = 6;
constexpr std::uint8_t zero = 0;

TEST(StackExamplesTest, IndicadoresFindsBothKindsOfDifference) {
    ExampleMachine example("19-indicadores");
    // INR A of 00H, which leaves F = 00H: expected by both, by this machine, by the other, by neither.
    constexpr std::array<std::array<std::uint8_t, 2>, 4> expected{{{0, 0}, {0, 1}, {1, 0}, {1, 1}}};
    Bytes table;
    for (const auto& [here, chip] : expected) {
        for (const std::uint8_t byte : {std::uint8_t{0x3C}, zero, zero, zero, here, chip}) {
            table.push_back(byte);
        }
    }
    table.push_back(zero);
    example.setBytes(dataAddress, table);
    ASSERT_TRUE(example.run());
    EXPECT_EQ(example.bytes(resultAddress, 4), (Bytes{3, 1, 2, 0}));
    EXPECT_EQ(example.byte(resultAddress + 0x10), 3);
}

// The column of this simulator in the program's own table.
TEST(StackExamplesTest, IndicadoresHasTheFlagsOfThisMachineInItsTable) {
    ExampleMachine example("19-indicadores");
    ASSERT_TRUE(example.run());
    std::size_t tests = 0;
    const auto row = [](std::size_t i) { return dataAddress + static_cast<std::int32_t>(rowSize * i); };
    while (example.byte(row(tests)) != 0) ++tests;
    ASSERT_EQ(tests, 8U);
    int differences = 0;
    for (std::size_t i = 0; i < tests; ++i) {
        const bool alike = example.byte(row(i) + 4) == example.byte(row(i) + 5);
        EXPECT_EQ(example.byte(resultAddress + static_cast<std::int32_t>(i)), alike ? 3 : 1) << i;
        if (!alike) ++differences;
    }
    EXPECT_EQ(example.byte(resultAddress + 0x10), differences);
}

}  // namespace
}  // namespace tavinor::examples
