// The programs about the serial lines and the interrupt masks.

#include <gtest/gtest.h>

#include <cstdint>
#include <random>
#include <string>
#include <vector>

#include "machine/Interrupts.h"
#include "tests/examples/ExampleMachine.h"

namespace tavinor::examples {
namespace {

constexpr int sim = 0x30;

// --- 17-serie ---------------------------------------------------------------------------------------------

constexpr std::size_t bitsOfACharacter = 10;

/// SOD after each SIM. The first one only brings the line to rest.
std::vector<bool> transmitted(ExampleMachine& example) {
    std::vector<bool> line;
    while (!example.halted() && example.steps() < 1'000'000) {
        const bool moves = example.byte(example.machine().PC) == sim;
        example.step();
        if (moves) line.push_back(example.machine().SOD);
    }
    return line;
}

/// What a receiver makes of the line: characters between a start bit 0 and a stop bit 1.
std::string received(const std::vector<bool>& line) {
    std::string text;
    for (std::size_t i = 1; i + bitsOfACharacter <= line.size(); i += bitsOfACharacter) {
        EXPECT_FALSE(line[i]) << "start bit of character " << text.size();
        EXPECT_TRUE(line[i + bitsOfACharacter - 1]) << "stop bit of character " << text.size();
        int character = 0;
        for (std::size_t bit = 0; bit < 8; ++bit) character |= line[i + 1 + bit] << bit;
        text += static_cast<char>(character);
    }
    return text;
}

TEST(LineExamplesTest, SerieSendsWhatAReceiverUnderstands) {
    std::string all;
    for (int c = 1; c < 256; ++c) all += static_cast<char>(c);
    for (const std::string& text : {std::string(), std::string("OK"), std::string("Tavinor"), all}) {
        ExampleMachine example("17-serie");
        std::vector<std::uint8_t> bytes(text.begin(), text.end());
        bytes.push_back(0);
        example.setBytes(dataAddress, bytes);
        example.machine().SID = true;
        example.start();
        const std::vector<bool> line = transmitted(example);
        ASSERT_TRUE(example.halted());
        ASSERT_EQ(line.size(), 1 + bitsOfACharacter * text.size());
        EXPECT_TRUE(line.front());
        EXPECT_EQ(received(line), text);
        for (std::size_t i = 1; i < line.size(); ++i) {
            const auto place = resultAddress + static_cast<std::int32_t>(i) - 1;
            EXPECT_EQ(example.byte(place), line[i] ? 0x80 : 0x00) << i;
        }
        EXPECT_EQ(example.machine().SP, stackTop);
        EXPECT_EQ(example.machine().intState, (InterruptState{false, true, true, true, false}));
    }
}

TEST(LineExamplesTest, SerieWaitsForTheReceiverBeforeEveryCharacter) {
    ExampleMachine example("17-serie");
    example.start();
    example.machine().SID = false;
    for (int i = 0; i < 2'000; ++i) example.step();
    EXPECT_EQ(example.byte(resultAddress), ExampleMachine::rubbish);
    EXPECT_TRUE(example.machine().SOD);

    example.machine().SID = true;
    while (example.byte(resultAddress) == ExampleMachine::rubbish && example.steps() < 3'000) example.step();
    example.machine().SID = false;
    for (int i = 0; i < 2'000; ++i) example.step();
    EXPECT_EQ(example.byte(resultAddress + 9), 0x80);  // the first character is sent to its end
    EXPECT_EQ(example.byte(resultAddress + 10), ExampleMachine::rubbish);
    EXPECT_FALSE(example.halted());
}

// --- 18-dos-interrupciones --------------------------------------------------------------------------------

/// Presses an interrupt button, as far as it can be pressed.
class Buttons {
  public:
    explicit Buttons(ExampleMachine& example) : example_(example) {}

    bool rst55() { return press(!state().M55, vector::rst55); }
    bool rst65() { return press(!state().M65, vector::rst65); }

  private:
    [[nodiscard]] const InterruptState& state() const { return example_.machine().intState; }

    bool press(bool allowed, std::int32_t address) {
        if (!state().IE || !allowed) return false;
        acceptInterrupt(example_.machine(), example_, address);
        return true;
    }

    ExampleMachine& example_;
};

struct Counts {
    int rounds = 0, urgent = 0, nested = 0;
};

// A user presses both buttons and moves SID at random moments.
TEST(LineExamplesTest, DosInterrupcionesCountsEveryPressThatCounts) {
    std::mt19937 random(10);
    std::uniform_int_distribution<int> dice(0, 19);
    for (int round = 0; round < 50; ++round) {
        ExampleMachine example("18-dos-interrupciones");
        example.setByte(dataAddress, 20);
        example.start();
        Buttons buttons(example);
        Counts counts;
        while (!example.halted() && example.steps() < 20'000) {
            switch (dice(random)) {
                case 0: counts.rounds += buttons.rst55() ? 1 : 0; break;
                case 1:
                    // The routine says itself whether it is waiting: before the press, not after.
                    if (const bool inside = example.byte(resultAddress + 3) == 1; buttons.rst65()) {
                        ++counts.urgent;
                        counts.nested += inside ? 1 : 0;
                    }
                    break;
                case 2: example.machine().SID = !example.machine().SID; break;
                default: break;
            }
            example.step();
        }
        ASSERT_TRUE(example.halted());
        EXPECT_GE(counts.rounds, 20);
        EXPECT_EQ(example.byte(resultAddress), counts.rounds);
        EXPECT_EQ(example.byte(resultAddress + 1), counts.urgent);
        EXPECT_EQ(example.byte(resultAddress + 2), counts.nested);
        EXPECT_EQ(example.machine().SP, stackTop);
    }
}

TEST(LineExamplesTest, DosInterrupcionesLetsOnlyTheUrgentOneIntoARound) {
    ExampleMachine example("18-dos-interrupciones");
    example.setByte(dataAddress, 1);
    example.start();
    Buttons buttons(example);
    const auto idle = [&] {
        for (int i = 0; i < 60; ++i) example.step();
    };
    idle();
    EXPECT_TRUE(buttons.rst65());
    idle();
    EXPECT_TRUE(buttons.rst55());
    idle();
    EXPECT_FALSE(buttons.rst55());
    EXPECT_TRUE(buttons.rst65());
    EXPECT_FALSE(buttons.rst65());  // nor does the urgent one interrupt itself
    idle();
    EXPECT_TRUE(buttons.rst65());
    idle();
    EXPECT_EQ(example.byte(resultAddress), 0);
    example.machine().SID = true;
    ASSERT_TRUE(example.finish());
    EXPECT_EQ(example.byte(resultAddress), 1);
    EXPECT_EQ(example.byte(resultAddress + 1), 3);
    EXPECT_EQ(example.byte(resultAddress + 2), 2);
    EXPECT_EQ(example.machine().port[2], 3);
    EXPECT_EQ(example.machine().SP, stackTop);
    EXPECT_FALSE(example.machine().intState.M55);
    EXPECT_FALSE(example.machine().intState.M65);
    EXPECT_TRUE(example.machine().intState.M75);
}

}  // namespace
}  // namespace tavinor::examples
