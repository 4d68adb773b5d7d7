// SPDX-License-Identifier: MIT
#include "sample/sample_accumulation.h"
#include "sample/sample_scan.h"

#include <gtest/gtest.h>

namespace raincast {
namespace {

constexpr std::int64_t kMinute = 29'900'000;

TEST(SampleAccumulationTest, RainFollowsTheRadarsRelation) {
    EXPECT_EQ(rainMillimetresAnHour(4.9), 0);
    EXPECT_NEAR(rainMillimetresAnHour(40), 12.2, .1);
    EXPECT_NEAR(rainMillimetresAnHour(53), 103.8, .5);
    EXPECT_EQ(rainMillimetresAnHour(70), rainMillimetresAnHour(53));
}

TEST(SampleAccumulationTest, MoreTimeMeansMoreRainEverywhere) {
    SampleMemory memory;
    const SampleClimate climate = sampleClimate("TLX");
    const SampleAccumulation shorter(climate, kMinute - 30, kMinute, 60, memory);
    const SampleAccumulation longer(climate, kMinute - 60, kMinute, 60, memory);
    double sum = 0;
    for (int east = -60; east <= 60; east += 4) {
        for (int north = -60; north <= 60; north += 4) {
            const PlaneVector place{static_cast<double>(east), static_cast<double>(north)};
            EXPECT_GE(longer.inchesAt(place), shorter.inchesAt(place));
            sum += longer.inchesAt(place);
        }
    }
    EXPECT_GT(sum, 0);
}

TEST(SampleAccumulationTest, PartsAddUp) {
    SampleMemory memory;
    const SampleClimate climate = sampleClimate("TLX");
    const SampleAccumulation first(climate, kMinute - 33, kMinute - 12, 60, memory);
    const SampleAccumulation second(climate, kMinute - 12, kMinute, 60, memory);
    const SampleAccumulation both(climate, kMinute - 33, kMinute, 60, memory);
    for (int east = -58; east <= 58; east += 7) {
        const PlaneVector place{static_cast<double>(east), 11};
        EXPECT_NEAR(first.inchesAt(place) + second.inchesAt(place), both.inchesAt(place), 1e-5);
    }
}

TEST(SampleAccumulationTest, OutsideItsReachNothingFell) {
    SampleMemory memory;
    const SampleAccumulation fallen(sampleClimate("TLX"), kMinute - 5, kMinute, 30, memory);
    EXPECT_EQ(fallen.inchesAt({31, 0}), 0);
    EXPECT_EQ(fallen.inchesAt({0, -400}), 0);
}

} // namespace
} // namespace raincast
