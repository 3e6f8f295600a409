#include "ui/trace/RowScale.h"

#include <gtest/gtest.h>

#include <cstdint>

using namespace tavinor;

namespace {

TEST(RowScale, OneStepIsOneRowAsLongAsTheRowsFit) {
    for (const std::uint64_t last : {std::uint64_t{0}, std::uint64_t{1}, rowscale::longestBar}) {
        EXPECT_EQ(rowscale::barMaximum(last), static_cast<int>(last));
        for (const std::uint64_t first : {std::uint64_t{0}, last / 2, last}) {
            EXPECT_EQ(rowscale::firstRow(rowscale::barValue(first, last), last), first);
        }
    }
}

TEST(RowScale, BeyondThatTheEndsAreExactAndTheMiddleIsTheMiddle) {
    for (const std::uint64_t last :
         {rowscale::longestBar + 1, std::uint64_t{7000000000}, (std::uint64_t{1} << 60) - 1}) {
        const int maximum = rowscale::barMaximum(last);
        EXPECT_EQ(maximum, static_cast<int>(rowscale::longestBar));
        EXPECT_EQ(rowscale::barValue(0, last), 0);
        EXPECT_EQ(rowscale::barValue(last, last), maximum);
        EXPECT_EQ(rowscale::firstRow(0, last), 0U);
        EXPECT_EQ(rowscale::firstRow(maximum, last), last);
        const std::uint64_t middle = rowscale::firstRow(maximum / 2, last);
        EXPECT_NEAR(static_cast<double>(middle) / static_cast<double>(last), 0.5, 1e-6);
        EXPECT_NEAR(rowscale::barValue(middle, last), maximum / 2.0, 1);
    }
}

}  // namespace
