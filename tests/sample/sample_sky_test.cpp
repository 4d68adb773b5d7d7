// SPDX-License-Identifier: MIT
#include "sample/sample_scan.h"
#include "sample/sample_sky.h"

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

using Echo = double (SampleSky::*)(PlaneVector) const;

/// The strongest echo that stands beside nothing, along lines over the sky in both directions.
double strongestAtAnEdge(const SampleSky& sky, Echo echo) {
    constexpr double kReachKm = 226;
    constexpr double kStepKm = .25;
    constexpr double kMostOfNothing = SampleSky::kNothing + 3; // composites add as much
    double strongest = SampleSky::kNothing;
    const auto lookAlong = [&](PlaneVector from, PlaneVector direction) {
        double before = (sky.*echo)(from);
        for (double along = kStepKm; along <= 2 * kReachKm; along += kStepKm) {
            const double now = (sky.*echo)(from + along * direction);
            if ((now <= kMostOfNothing) != (before <= kMostOfNothing)) {
                strongest = std::max({strongest, now, before});
            }
            before = now;
        }
    };
    for (double line = -kReachKm; line <= kReachKm; line += 23.7) {
        lookAlong({-kReachKm, line}, {1, 0});
        lookAlong({line, -kReachKm}, {0, 1});
    }
    return strongest;
}

TEST(SampleSkyTest, WhatIsSkippedForSpeedIsReallyEmpty) {
    for (const char* site : {"MUX", "TLX", "LWX"}) {
        for (const int minutes : {0, 100}) {
            const SampleSky sky(sampleClimate(site), kMinute + minutes, 230);
            // Where an echo ends, it has grown weaker than any that is drawn or measured.
            const struct {
                Echo echo;
                double weakest;
            } rows[] = {
                {&SampleSky::rainDbz, 5},
                {&SampleSky::compositeDbz, 5},
                {&SampleSky::lowestBeamDbz, -1}, // velocities are measured of that
            };
            for (const auto& row : rows) {
                const double strongest = strongestAtAnEdge(sky, row.echo);
                EXPECT_GT(strongest, SampleSky::kNothing) << site;
                EXPECT_LT(strongest, row.weakest) << site << ", " << minutes << " minutes later";
            }
        }
    }
}

TEST(SampleSkyTest, StormsThatAreLeftOutForSpeedDoNotReachThePicture) {
    for (const char* site : {"MUX", "TLX", "LWX"}) {
        const SampleSky sky(sampleClimate(site), kMinute, 230);
        const SampleSky wider(sampleClimate(site), kMinute, 460);
        EXPECT_GT(wider.storms().size(), sky.storms().size());
        int raining = 0;
        for (int east = -228; east <= 228; east += 4) {
            for (int north = -228; north <= 228; north += 4) {
                const PlaneVector place{east + .5, north + .5};
                if (place.length() > 230) {
                    continue;
                }
                EXPECT_EQ(sky.rainDbz(place), wider.rainDbz(place)) << site;
                EXPECT_EQ(sky.compositeDbz(place), wider.compositeDbz(place)) << site;
                raining += sky.rainDbz(place) > 5 ? 1 : 0;
            }
        }
        EXPECT_GT(raining, 500) << site;
    }
}

} // namespace
} // namespace raincast
