// SPDX-License-Identifier: MIT
#include "server/sample_scan.h"
#include "server/sample_sky.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace raincast {
namespace {

constexpr std::int64_t kMinute = 29'900'000;

const SampleStorm& rotatingStorm(const SampleSky& sky) {
    const auto& storms = sky.storms();
    return *std::max_element(
        storms.begin(), storms.end(),
        [](const SampleStorm& a, const SampleStorm& b) {
            const auto rank = [](const SampleStorm& storm) {
                return storm.rotating ? storm.strengthAt(kMinute) : -1;
            };
            return rank(a) < rank(b);
        }
    );
}

TEST(SampleSkyTest, TheBeamRisesWithRange) {
    EXPECT_NEAR(lowestBeamHeightKm(0), 0, 1e-9);
    EXPECT_NEAR(lowestBeamHeightKm(100), 1.46, .01);
    EXPECT_NEAR(lowestBeamHeightKm(230), 5.12, .01);
}

TEST(SampleSkyTest, TheStrongestEchoIsWhereTheSupercellIs) {
    const SampleSky sky(sampleClimate("TLX"), kMinute, 230);
    const SampleStorm& storm = rotatingStorm(sky);
    ASSERT_TRUE(storm.rotating);
    EXPECT_GT(sky.rainDbz(storm.placeAt(kMinute)), 45);
    EXPECT_GE(sky.compositeDbz(storm.placeAt(kMinute)), sky.rainDbz(storm.placeAt(kMinute)));
}

TEST(SampleSkyTest, WindTurnsAgainstTheClockWhereTheSupercellDoes) {
    const SampleSky sky(sampleClimate("TLX"), kMinute, 230);
    const PlaneVector vortex = rotatingStorm(sky).vortexAt(kMinute);
    const PlaneVector across =
        sky.windKnots(vortex + PlaneVector{3, 0}) - sky.windKnots(vortex - PlaneVector{3, 0});
    EXPECT_GT(across.north, 50);
    const PlaneVector along =
        sky.windKnots(vortex + PlaneVector{0, 3}) - sky.windKnots(vortex - PlaneVector{0, 3});
    EXPECT_LT(along.east, -50);
}

TEST(SampleSkyTest, GroundClutterLiesNearTheAntennaOnly) {
    const SampleSky sky(sampleClimate("TLX"), kMinute, 230);
    int near = 0;
    int far = 0;
    for (int east = -120; east <= 120; ++east) {
        for (int north = -120; north <= 120; ++north) {
            const PlaneVector place{east + .5, north + .5};
            (place.length() < 60 ? near : far) += sky.isClutter(place) ? 1 : 0;
        }
    }
    EXPECT_GT(near, 200);
    EXPECT_EQ(far, 0);
}

TEST(SampleSkyTest, WhatIsSkippedForSpeedIsReallyEmpty) {
    // The composite looks wider than the rain: whatever rains is within it.
    const SampleSky sky(sampleClimate("MUX"), kMinute, 230);
    int raining = 0;
    for (int east = -230; east <= 230; east += 3) {
        for (int north = -230; north <= 230; north += 3) {
            const PlaneVector place{east + .5, north + .5};
            const double rain = sky.rainDbz(place);
            EXPECT_LE(rain, sky.compositeDbz(place) + 8);
            raining += rain > 5 ? 1 : 0;
        }
    }
    EXPECT_GT(raining, 500);
}

} // namespace
} // namespace raincast
