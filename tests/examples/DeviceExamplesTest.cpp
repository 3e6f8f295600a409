// The programs that talk to ports and answer interrupts, with a user at the switches.

#include <gtest/gtest.h>

#include <array>
#include <cstddef>
#include <random>
#include <vector>

#include "machine/Interrupts.h"
#include "tests/examples/ExampleMachine.h"

namespace tavinor::examples {
namespace {

constexpr std::size_t inputPort = 0;
constexpr std::int32_t outputPort = 1;

// --- 03-retardo -------------------------------------------------------------------------------------------

struct Delay {
    int turns;    ///< As stored: 0 stands for 65536.
    int changes;  ///< As stored: 0 stands for 256.
};

TEST(DeviceExamplesTest, RetardoWaitsBetweenChanges) {
    constexpr int instructionsOfATurn = 4;
    constexpr int instructionsBesides = 8;
    ExampleMachine example("03-retardo");
    for (const auto& [turns, changes] :
         {Delay{1, 1}, Delay{16, 5}, Delay{300, 2}, Delay{0, 2}, Delay{2, 0}}) {
        example.setWord(dataAddress, turns);
        example.setByte(dataAddress + 2, changes);
        ASSERT_TRUE(example.run());
        const std::vector<Output>& outputs = example.outputs();
        ASSERT_EQ(outputs.size(), changes == 0 ? 256U : static_cast<std::size_t>(changes));
        const int gap = instructionsBesides + instructionsOfATurn * (turns == 0 ? 65536 : turns);
        for (std::size_t i = 0; i < outputs.size(); ++i) {
            EXPECT_EQ(outputs[i].port, outputPort);
            EXPECT_EQ(outputs[i].value, i % 2 == 0 ? 0xFF : 0x00);
            if (i > 0) {
                EXPECT_EQ(outputs[i].step - outputs[i - 1].step, gap);
            }
        }
    }
}

// --- 13-semaforo ------------------------------------------------------------------------------------------

constexpr int button = 0x01;
constexpr int endOfDay = 0x80;
constexpr int goLights = 0x14;
constexpr int faultLight = 0x02;

struct Phase {
    int lights;
    int units;
};
constexpr std::array phases{Phase{0x12, 2}, Phase{0x21, 5}, Phase{0x11, 1}};

/// The lights of a day with so many people at the button, one after the other.
std::vector<int> lightsOfADay(int people) {
    std::vector<int> lights{goLights};
    for (int i = 0; i < people; ++i) {
        for (const Phase& phase : phases) lights.push_back(phase.lights);
        lights.push_back(goLights);
    }
    lights.push_back(faultLight);
    return lights;
}

void stepUntilGo(ExampleMachine& example, std::size_t outputs) {
    while (example.outputs().size() < outputs && example.steps() < 100'000) example.step();
}

TEST(DeviceExamplesTest, SemaforoServesAllWhoPress) {
    for (int people = 0; people <= 5; ++people) {
        ExampleMachine example("13-semaforo");
        example.start();
        for (int i = 0; i < people; ++i) {
            stepUntilGo(example, 1 + (phases.size() + 1) * static_cast<std::size_t>(i));
            for (int idle = 0; idle < 100 * i; ++idle) example.step();
            example.machine().port[inputPort] = button | 0x7E;  // the other switches mean nothing
            const std::size_t seen = example.outputs().size();
            while (example.outputs().size() == seen && example.steps() < 100'000) example.step();
            example.machine().port[inputPort] = 0x7E;
        }
        stepUntilGo(example, 1 + (phases.size() + 1) * static_cast<std::size_t>(people));
        example.machine().port[inputPort] = endOfDay;
        ASSERT_TRUE(example.finish());
        EXPECT_EQ(example.outputValues(), lightsOfADay(people));
        EXPECT_EQ(example.machine().SP, stackTop);
    }
}

TEST(DeviceExamplesTest, SemaforoWaitsForTheButtonAsLongAsItTakes) {
    ExampleMachine example("13-semaforo");
    example.start();
    for (int i = 0; i < 5'000; ++i) example.step();
    EXPECT_EQ(example.outputValues(), std::vector{goLights});
    EXPECT_FALSE(example.halted());
}

TEST(DeviceExamplesTest, SemaforoGivesEachPhaseItsTime) {
    constexpr int instructionsOfAUnit = 43;
    constexpr int instructionsBesides = 9;
    ExampleMachine example("13-semaforo");
    example.start();
    example.machine().port[inputPort] = button;
    stepUntilGo(example, 2 + phases.size());
    const std::vector<Output>& outputs = example.outputs();
    ASSERT_EQ(outputs.size(), 2 + phases.size());
    for (std::size_t i = 0; i + 1 < phases.size(); ++i) {
        EXPECT_EQ(outputs[i + 2].step - outputs[i + 1].step,
                  instructionsOfAUnit * phases[i].units + instructionsBesides);
    }
}

TEST(DeviceExamplesTest, SemaforoEndsTheDayOnlyWhenTheCarsHaveGreen) {
    ExampleMachine example("13-semaforo");
    example.start();
    example.machine().port[inputPort] = button;
    stepUntilGo(example, 3);
    example.machine().port[inputPort] = endOfDay;
    ASSERT_TRUE(example.finish());
    EXPECT_EQ(example.outputValues(), lightsOfADay(1));
}

// --- 14-interrupcion --------------------------------------------------------------------------------------

constexpr int emergency = 0xEE;

int bcd(int count) {
    return count / 10 * 16 + count % 10;
}

/// Runs on until the button of RST 7.5 can be pressed, and then some instructions more.
void waitForTheButton(ExampleMachine& example, int more) {
    const auto enabled = [&] { return example.machine().intState.IE && !example.machine().intState.M75; };
    for (int i = 0; i < more; ++i) example.step();
    while (!enabled() && example.steps() < 100'000) example.step();
    ASSERT_TRUE(enabled());
}

struct Pulses {
    int ups, downs;  ///< In this order; what is left is the count to stop at.
};

void checkPulses(const Pulses& pulses, std::mt19937& random) {
    const int last = (100 + (pulses.ups - pulses.downs) % 100) % 100;
    ExampleMachine example("14-interrupcion");
    example.setByte(dataAddress, bcd(last));
    example.start();
    std::uniform_int_distribution<int> pause(0, 45);
    std::vector<int> expected{0};
    int count = 0;
    for (int i = 0; i < pulses.ups + pulses.downs; ++i) {
        ASSERT_NO_FATAL_FAILURE(waitForTheButton(example, pause(random)));
        const bool down = i >= pulses.ups;
        example.machine().SID = down;
        acceptRst75(example.machine(), example);
        count = (count + (down ? 99 : 1)) % 100;
        expected.push_back(bcd(count));
    }
    ASSERT_TRUE(example.finish());
    const MachineState& m = example.machine();
    EXPECT_EQ(example.outputValues(), expected);
    EXPECT_EQ(example.byte(resultAddress), bcd(last));
    EXPECT_EQ(m.SOD, (pulses.ups + pulses.downs) % 2 != 0);
    EXPECT_EQ(m.SP, stackTop);
    EXPECT_EQ(m.intState,
              (InterruptState{.IE = false, .M55 = true, .M65 = true, .M75 = false, .R75 = false}));
}

// Each list ends at a count that it has not met before, where the program stops.
TEST(DeviceExamplesTest, InterrupcionCountsPulsesUpAndDown) {
    constexpr Pulses lists[] = {{1, 0}, {5, 0}, {12, 0}, {99, 0}, {0, 1}, {0, 5}, {0, 99}, {3, 8}, {9, 30}};
    std::mt19937 random(7);
    for (const Pulses& pulses : lists) {
        for (int round = 0; round < 10; ++round) {
            checkPulses(pulses, random);
            ASSERT_FALSE(HasFailure()) << pulses.ups << " up, " << pulses.downs << " down";
        }
    }
}

TEST(DeviceExamplesTest, InterrupcionNeedsNoPulseForACountOfZero) {
    ExampleMachine example("14-interrupcion");
    example.setByte(dataAddress, 0);
    ASSERT_TRUE(example.run());
    EXPECT_EQ(example.outputValues(), std::vector{0});
}

// A pulse at any moment of the main loop, or of the routine behind its EI, leaves the registers as they were.
TEST(DeviceExamplesTest, InterrupcionDisturbsNoRegisterOfTheInterruptedProgram) {
    for (int moment = 0; moment < 12; ++moment) {
        ExampleMachine example("14-interrupcion");
        example.setByte(dataAddress, 0x42);
        example.start();
        ASSERT_NO_FATAL_FAILURE(waitForTheButton(example, 0));
        for (int i = 0; i < moment; ++i) example.step();
        const Registers before = example.machine();
        acceptRst75(example.machine(), example);
        while (example.machine().SP != before.SP && example.steps() < 1'000) example.step();
        EXPECT_EQ(static_cast<const Registers&>(example.machine()), before) << moment;
        EXPECT_EQ(example.byte(resultAddress), 1) << moment;
    }
}

TEST(DeviceExamplesTest, InterrupcionStopsAtATrapWhereverItIs) {
    for (int moment = 1; moment < 60; ++moment) {
        ExampleMachine example("14-interrupcion");
        example.start();
        for (int i = 0; i < moment; ++i) example.step();
        if (moment == 40) acceptRst75(example.machine(), example);
        acceptInterrupt(example.machine(), example, vector::trap);
        ASSERT_TRUE(example.finish());
        EXPECT_EQ(example.machine().port[outputPort], emergency);
        EXPECT_FALSE(example.machine().intState.IE);
        EXPECT_LT(example.steps(), moment + 10);
    }
}

}  // namespace
}  // namespace tavinor::examples
