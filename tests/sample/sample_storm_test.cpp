// SPDX-License-Identifier: MIT
#include "radar/catalogue/antenna_positions.h"
#include "sample/sample_scan.h"
#include "sample/sample_storm.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace raincast {
namespace {

constexpr double kMinute = 29'900'000; // in November 2026

const SampleStorm* find(const std::vector<SampleStorm>& storms, std::uint64_t seed) {
    const auto found = std::find_if(storms.begin(), storms.end(), [&](const SampleStorm& storm) {
        return storm.seed == seed;
    });
    return found != storms.end() ? &*found : nullptr;
}

TEST(SampleStormTest, StormsMoveAndChangeLittleFromFrameToFrame) {
    const SampleClimate climate = sampleClimate("TLX");
    const auto now = stormsAt(climate, kMinute, 460);
    const auto later = stormsAt(climate, kMinute + 5, 520);
    EXPECT_GT(now.size(), 10U);
    for (const SampleStorm& storm : now) {
        const SampleStorm* same = find(later, storm.seed);
        const double change = storm.strengthAt(kMinute + 5) - storm.strengthAt(kMinute);
        EXPECT_LT(std::abs(change), .5);
        if (storm.strengthAt(kMinute + 5) > 0) {
            ASSERT_NE(same, nullptr);
            const double moved = (same->placeAt(kMinute + 5) - storm.placeAt(kMinute)).length();
            EXPECT_GT(moved, 2);
            EXPECT_LT(moved, 8);
        }
    }
}

TEST(SampleStormTest, StormsGrowAndDie) {
    SampleStorm storm;
    storm.birthMinute = 100;
    storm.lifeMinutes = 60;
    EXPECT_EQ(storm.strengthAt(100), 0);
    EXPECT_GT(storm.strengthAt(110), 0);
    EXPECT_GT(storm.strengthAt(125), storm.strengthAt(110));
    EXPECT_GT(storm.strengthAt(125), storm.strengthAt(150));
    EXPECT_EQ(storm.strengthAt(160), 0);
    EXPECT_EQ(storm.strengthAt(90), 0);
}

TEST(SampleStormTest, EverySiteHasARotatingStormInReachAtAnyTime) {
    for (const AntennaPosition& antenna : antennaPositions()) {
        const SampleClimate climate = sampleClimate(antenna.id);
        for (const double minute : {kMinute, kMinute + 777, kMinute + 12'345}) {
            const auto storms = stormsAt(climate, minute, 230);
            EXPECT_TRUE(std::any_of(
                storms.begin(), storms.end(),
                [&](const SampleStorm& storm) {
                    return storm.rotating && storm.strengthAt(minute) > .3;
                }
            )) << antenna.id
               << ' ' << minute;
        }
    }
}

TEST(SampleStormTest, LinesNearTheAntennaAreThoseWithinReach) {
    const SampleClimate climate = sampleClimate("OKX");
    const auto lines = climate.linesNear(1000, kMinute);
    EXPECT_GE(lines.size(), 3U);
    EXPECT_LE(lines.size(), 4U);
    for (const std::int64_t line : lines) {
        EXPECT_LE(std::abs(climate.lineAt(line, kMinute)), 1000);
    }
    EXPECT_GT(std::abs(climate.lineAt(lines.front() - 1, kMinute)), 1000);
    EXPECT_GT(std::abs(climate.lineAt(lines.back() + 1, kMinute)), 1000);
}

TEST(SampleStormTest, FramesOfReferenceAgree) {
    SampleStorm storm;
    storm.birthPlace = {10, 20};
    storm.motion = {0, 1};
    storm.sizeKm = 10;
    const PlaneVector place = storm.inItsFrame({13, 29}, 4);
    EXPECT_DOUBLE_EQ(place.east, 5);   // ahead
    EXPECT_DOUBLE_EQ(place.north, -3); // to the right
    const PlaneVector vortex = storm.inItsFrame(storm.vortexAt(4), 4);
    EXPECT_LT(vortex.east, 0);
    EXPECT_LT(vortex.north, 0);
}

// Servers of other makes show one sky.
TEST(SampleStormTest, StormsAreTheSameOnEveryMachine) {
    const SampleClimate climate = sampleClimate("TLX");
    PlaneVector motions;
    PlaneVector places;
    for (const SampleStorm& storm : stormsAt(climate, kMinute, 460)) {
        motions = motions + storm.motion;
        places = places + storm.placeAt(kMinute);
    }
    EXPECT_NEAR(motions.east, 47.8621216327636, 1e-9);
    EXPECT_NEAR(motions.north, 21.766324338395, 1e-9);
    EXPECT_NEAR(places.east, -285.700281823918, 1e-9);
    EXPECT_NEAR(places.north, 2053.94597207297, 1e-9);
}

} // namespace
} // namespace raincast
