#include "machine/Alu.h"

#include <gtest/gtest.h>

#include <memory>

#include "tests/support/Bits.h"
#include "tests/support/Differences.h"
#include "tests/support/TestHost.h"

namespace tavinor {
namespace {

using test::resultBits;
using test::rippleAdd;
using test::rippleSubtract;
using test::Sum;

/// Flag bytes to start from: nothing set, CY alone, everything set but CY, everything.
constexpr std::array<int, 4> startFlags{0x00, 0x01, 0xFE, 0xFF};

struct Outcome {
    int value = 0;
    int F = 0;
};

class AluTest : public ::testing::Test {
  protected:
    using Operation = std::uint8_t (*)(MachineState&, int);
    using Rule = Outcome (*)(int a, int operand, int f);

    void start(int a, int f) {
        m.A = static_cast<std::uint8_t>(a);
        m.F = static_cast<std::uint8_t>(f);
    }

    /// All operand pairs under all start flags: result and F as the rule says, everything else as it was.
    void compareAll(Operation operation, Rule rule) {
        for (const int f : startFlags) {
            for (int a = 0; a < 256; ++a) {
                for (int operand = 0; operand < 256; ++operand) {
                    start(a, f);
                    const int value = operation(m, operand);
                    const Outcome expected = rule(a, operand, f);
                    ASSERT_EQ(value, expected.value) << a << ' ' << operand << ' ' << f;
                    ASSERT_EQ(m.F, expected.F) << a << ' ' << operand << ' ' << f;
                    ASSERT_EQ(m.A, a);
                }
            }
        }
        start(0, 0);
        EXPECT_EQ(test::differences(m, *untouched), "");
    }

    std::unique_ptr<MachineState> machine = std::make_unique<MachineState>();
    std::unique_ptr<const MachineState> untouched = std::make_unique<const MachineState>();
    MachineState& m = *machine;
};

Outcome added(const Sum& sum) {
    return {sum.value, resultBits(sum.value) + (sum.halfCarry ? 0x10 : 0) + (sum.carry ? 0x01 : 0)};
}

Outcome subtracted(const Sum& sum) {
    return {sum.value, resultBits(sum.value) + (sum.halfCarry ? 0x10 : 0) + (sum.carry ? 0 : 0x01)};
}

Outcome logical(int value, int ac) {
    return {value, resultBits(value) + ac};
}

TEST_F(AluTest, AddAgreesWithTheBitwiseAdder) {
    compareAll(OPADD, [](int a, int operand, int) { return added(rippleAdd(a, operand, false)); });
}

TEST_F(AluTest, AddWithCarryAgreesWithTheBitwiseAdder) {
    compareAll(OPADC, [](int a, int operand, int f) { return added(rippleAdd(a, operand, (f & 1) != 0)); });
}

TEST_F(AluTest, SubtractAgreesWithTheBitwiseAdder) {
    compareAll(OPSUB, [](int a, int operand, int) { return subtracted(rippleSubtract(a, operand, false)); });
}

TEST_F(AluTest, SubtractWithBorrowAgreesWithTheBitwiseAdder) {
    compareAll(OPSBB, [](int a, int operand, int f) {
        return subtracted(rippleSubtract(a, operand, (f & 1) != 0));
    });
}

TEST_F(AluTest, CompareSetsTheFlagsOfTheDifferenceButNeverAc) {
    constexpr auto compare = [](MachineState& state, int operand) {
        OPCMP(state, operand);
        return state.A;
    };
    compareAll(compare, [](int a, int operand, int) {
        const Outcome difference = subtracted(rippleSubtract(a, operand, false));
        return Outcome{a, difference.F & 0xC5};
    });
}

TEST_F(AluTest, AndSetsAcAndClearsCy) {
    compareAll(OPAND, [](int a, int operand, int) {
        int both = 0;
        for (int bit = 1; bit < 256; bit *= 2) both += (a & bit) != 0 && (operand & bit) != 0 ? bit : 0;
        return logical(both, 0x10);
    });
}

TEST_F(AluTest, OrClearsAcAndCy) {
    compareAll(OPOR, [](int a, int operand, int) {
        int either = 0;
        for (int bit = 1; bit < 256; bit *= 2) either += (a & bit) != 0 || (operand & bit) != 0 ? bit : 0;
        return logical(either, 0);
    });
}

TEST_F(AluTest, XorClearsAcAndCy) {
    compareAll(OPXOR, [](int a, int operand, int) {
        int one = 0;
        for (int bit = 1; bit < 256; bit *= 2) one += (a & bit) != (operand & bit) ? bit : 0;
        return logical(one, 0);
    });
}

TEST_F(AluTest, IncrementKeepsCyAndClearsTheUnusedBitsForAllValuesAndFlags) {
    for (int f = 0; f < 256; ++f) {
        for (int value = 0; value < 256; ++value) {
            start(0x5A, f);
            auto cell = static_cast<std::uint8_t>(value);
            OPINR(m, cell);
            const Sum sum = rippleAdd(value, 1, false);
            ASSERT_EQ(cell, sum.value) << value;
            ASSERT_EQ(m.F, resultBits(sum.value) + (sum.halfCarry ? 0x10 : 0) + (f & 1)) << value << ' ' << f;
            ASSERT_EQ(m.A, 0x5A);
        }
    }
}

TEST_F(AluTest, DecrementLeavesAcClearAndKeepsCyForAllValuesAndFlags) {
    for (int f = 0; f < 256; ++f) {
        for (int value = 0; value < 256; ++value) {
            start(0x5A, f);
            auto cell = static_cast<std::uint8_t>(value);
            OPDCR(m, cell);
            const Sum sum = rippleSubtract(value, 1, false);
            ASSERT_EQ(cell, sum.value) << value;
            ASSERT_EQ(m.F, resultBits(sum.value) + (f & 1)) << value << ' ' << f;
            ASSERT_EQ(m.A, 0x5A);
        }
    }
}

TEST_F(AluTest, IncrementWorksOnTheAccumulatorItself) {
    start(0xFF, 0x01);
    OPINR(m, m.A);
    EXPECT_EQ(m.A, 0);
    EXPECT_EQ(m.F, 0x55);
}

TEST_F(AluTest, DecimalAdjustAgreesWithItsRuleForAllValuesAndFlags) {
    for (int f = 0; f < 256; ++f) {
        for (int a = 0; a < 256; ++a) {
            start(a, f);
            const int value = OPDAA(m);
            int adjusted = a;
            if ((f & 0x10) != 0 || a % 16 >= 10) adjusted += 6;
            const bool carry = (f & 0x01) != 0 || adjusted >= 0xA0;
            if (carry) adjusted += 0x60;
            adjusted %= 256;
            ASSERT_EQ(value, adjusted) << a << ' ' << f;
            ASSERT_EQ(m.F, f | (carry ? 1 : 0) | resultBits(adjusted)) << a << ' ' << f;
            ASSERT_EQ(m.A, a) << "the stepper stores it";
        }
    }
}

TEST_F(AluTest, DecimalAdjustAfterAnAdditionGivesTheDecimalSum) {
    const auto packed = [](int n) { return n / 10 * 16 + n % 10; };
    for (int x = 0; x < 100; ++x) {
        for (int y = 0; y < 100; ++y) {
            start(packed(x), 0);
            m.A = OPADD(m, packed(y));
            const int sum = OPDAA(m);
            ASSERT_EQ(sum, packed((x + y) % 100)) << x << " + " << y;
            ASSERT_EQ(m.F & flag::CY, (x + y) / 100) << x << " + " << y;
        }
    }
}

TEST_F(AluTest, FlagsAndParityOfEveryByte) {
    for (int value = 0; value < 256; ++value) {
        EXPECT_EQ(flags(value), resultBits(value)) << value;
        EXPECT_EQ(Paridad(value), (resultBits(value) & 4) / 4) << value;
    }
    EXPECT_EQ(flags(0), 68);
}

TEST_F(AluTest, ParityOfZeroIsEvenOfOneOddOf255Even) {
    EXPECT_EQ(Paridad(0), 1);
    EXPECT_EQ(Paridad(1), 0);
    EXPECT_EQ(Paridad(255), 1);
}

TEST_F(AluTest, Add255And1GivesZeroWithZAcPAndCy) {
    start(255, 0);
    EXPECT_EQ(OPADD(m, 1), 0);
    EXPECT_EQ(m.F, 85);
}

TEST_F(AluTest, SubtractingEqualsSetsAcButComparingThemDoesNot) {
    for (const int value : {0, 1, 15, 16, 0x7F, 0x80, 255}) {
        start(value, 0);
        EXPECT_EQ(OPSUB(m, value), 0);
        EXPECT_EQ(m.F, 84);
        OPCMP(m, value);
        EXPECT_EQ(m.F, 68);
        EXPECT_EQ(m.A, value);
    }
}

TEST_F(AluTest, ComparingZeroWithOneSetsSPAndCyAndKeepsA) {
    start(0, 0);
    OPCMP(m, 1);
    EXPECT_EQ(m.F, 133);
    EXPECT_EQ(m.A, 0);
}

TEST_F(AluTest, Decrementing16GivesNoAc) {
    std::uint8_t cell = 16;
    start(0, 0);
    OPDCR(m, cell);
    EXPECT_EQ(cell, 15);
    EXPECT_EQ(m.F, flag::P);
}

TEST_F(AluTest, Decrementing0Gives255WithSAndPAndKeepsCy) {
    for (const int carry : {0, 1}) {
        std::uint8_t cell = 0;
        start(0, carry);
        OPDCR(m, cell);
        EXPECT_EQ(cell, 255);
        EXPECT_EQ(m.F, flag::S | flag::P | carry);
    }
}

TEST_F(AluTest, Incrementing255Gives0WithZPAndAcAndKeepsCy) {
    for (const int carry : {0, 1}) {
        std::uint8_t cell = 255;
        start(0, carry);
        OPINR(m, cell);
        EXPECT_EQ(cell, 0);
        EXPECT_EQ(m.F, flag::Z | flag::P | flag::AC | carry);
    }
}

TEST_F(AluTest, DecimalAdjustOf9AGivesZeroWithZPAndCy) {
    start(0x9A, 0);
    EXPECT_EQ(OPDAA(m), 0);
    EXPECT_EQ(m.F, 69);
}

TEST_F(AluTest, DecimalAdjustLeavesALeftOverZSetWithANonZeroResult) {
    start(0x11, flag::Z);
    EXPECT_EQ(OPDAA(m), 0x11);
    EXPECT_EQ(m.F, flag::Z | flag::P);
}

}  // namespace
}  // namespace tavinor
