// A simulation that goes by batches beside the plain one, under the same random commands.

#include "simulation/Simulation.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <random>
#include <tuple>

#include "tests/simulation/Twins.h"

namespace tavinor::test {
namespace {

class SimulationTest : public testing::TestWithParam<std::tuple<std::int64_t, unsigned>> {
  protected:
    [[nodiscard]] std::int64_t slice() const { return std::get<0>(GetParam()); }
    void expectEqual() { ASSERT_EQ(twins.differences(), ""); }
    void expectRows(std::uint64_t first, std::uint64_t count) {
        ASSERT_EQ(twins.rowDifferences(first, count), "");
    }

    Twins twins{[random = std::mt19937(std::get<1>(GetParam()))]() mutable { return random(); }};
};

TEST_P(SimulationTest, DoesWhatThePlainOneDoes) {
    twins.fillMemory();
    const std::uint32_t quiet = 1 + static_cast<std::uint32_t>(twins.any(30));
    const std::uint64_t enough = slice() > 100 ? 70'000 : 4'000;
    for (std::uint64_t turn = 0; turn < 3'000 && twins.rows() < enough; ++turn) {
        twins.run(slice());
        ASSERT_NO_FATAL_FAILURE(expectEqual()) << "turn " << turn;
        if (twins.any(quiet) == 0) twins.disturb();
        if (twins.any(40) == 0) twins.type();
        if (twins.any(100) == 0) twins.toggleBreakpoint();
        if (twins.any(2'000) == 0) twins.clearTrace();
        if (turn % 64 == 0 && twins.rows() > 0) {
            const auto first =
                static_cast<std::uint64_t>(twins.any(static_cast<std::uint32_t>(twins.rows())));
            ASSERT_NO_FATAL_FAILURE(expectRows(first, 20)) << "turn " << turn;
        }
    }
    expectRows(0, twins.rows());
}

INSTANTIATE_TEST_SUITE_P(Slices, SimulationTest,
                         testing::Combine(testing::Values(1, 7, 4096), testing::Range(1U, 9U)));

}  // namespace
}  // namespace tavinor::test
