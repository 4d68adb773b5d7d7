// SPDX-License-Identifier: MIT
#include "sample/sample_noise.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

namespace raincast {
namespace {

TEST(SampleNoiseTest, ChanceIsTheSameOnEveryMachine) {
    // The second is the published first output of SplitMix64 for seed 0.
    EXPECT_EQ(mixed(1), 0x910A2DEC89025CC1U);
    EXPECT_EQ(mixed(0), 0xE220A8397B1DCDAFU);
    EXPECT_NE(mixed(7, 1), mixed(7, 2));
    EXPECT_NE(mixed(7, 1), mixed(8, 1));
}

TEST(SampleNoiseTest, DiceStayWithinTheirBoundsAndFillThem) {
    Dice dice(42);
    double least = 1e9;
    double most = -1e9;
    for (int i = 0; i < 10'000; ++i) {
        const double value = dice.between(-3, 5);
        least = std::min(least, value);
        most = std::max(most, value);
    }
    EXPECT_GE(least, -3);
    EXPECT_LT(most, 5);
    EXPECT_LT(least, -2.9);
    EXPECT_GT(most, 4.9);
}

TEST(SampleNoiseTest, NoiseIsSmoothAndBounded) {
    double previous = fractalNoise(5, -3, 2, 4);
    for (int i = 1; i < 5000; ++i) {
        const double value = fractalNoise(5, -3 + i * .001, 2, 4);
        EXPECT_LT(std::abs(value), 1.2);
        EXPECT_LT(std::abs(value - previous), .02) << i;
        previous = value;
    }
}

TEST(SampleNoiseTest, NoiseMeetsItsLatticeOnBothSidesOfIt) {
    for (const double x : {-2.0, 0.0, 3.0}) {
        EXPECT_NEAR(smoothNoise(9, x - 1e-9, .5), smoothNoise(9, x + 1e-9, .5), 1e-6) << x;
    }
}

TEST(SampleNoiseTest, StepsGoEitherWay) {
    EXPECT_DOUBLE_EQ(smoothStep(0, 2, -1), 0);
    EXPECT_DOUBLE_EQ(smoothStep(0, 2, 1), .5);
    EXPECT_DOUBLE_EQ(smoothStep(0, 2, 3), 1);
    EXPECT_DOUBLE_EQ(smoothStep(2, 0, 3), 0);
    EXPECT_DOUBLE_EQ(smoothStep(2, 0, -1), 1);
}

} // namespace
} // namespace raincast
