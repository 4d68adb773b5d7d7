// SPDX-License-Identifier: MIT
#include "nexrad/scan_placement.h"
#include "sample/sample_scan.h"
#include "sample/sample_warnings.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace raincast {
namespace {

const WeatherWarning::Ring& outlineOf(const WeatherWarning& warning) {
    return warning.polygons.at(0).at(0);
}

const FileTime kTime = fromCalendar({2026, 11, 20, 10, 30});

TEST(SampleWarningsTest, StrongStormsAreWarnedOfAndTurningOnesInRed) {
    int red = 0;
    int yellow = 0;
    for (const char* site : {"TLX", "OKX", "MUX", "AMX"}) {
        for (const WeatherWarning& warning :
             sampleWarnings(*findAntenna(site), Range::longRange, kTime)) {
            EXPECT_EQ(outlineOf(warning).size(), 4U);
            (warning.kind == WarningKind::tornado ? red : yellow) += 1;
        }
    }
    EXPECT_GT(red, 0);
    EXPECT_GT(yellow, 0);
}

TEST(SampleWarningsTest, AWarningStandsStillWhileItHolds) {
    const AntennaPosition& antenna = *findAntenna("TLX");
    const auto now = sampleWarnings(antenna, Range::shortRange, kTime);
    ASSERT_FALSE(now.empty());
    const auto later = sampleWarnings(antenna, Range::shortRange, kTime + kFileTimePerMinute);
    const auto samePlace = [](const WeatherWarning& a, const WeatherWarning& b) {
        return outlineOf(a)[0].latitude == outlineOf(b)[0].latitude &&
               outlineOf(a)[0].longitude == outlineOf(b)[0].longitude;
    };
    const auto kept = std::count_if(now.begin(), now.end(), [&](const WeatherWarning& warning) {
        return std::any_of(later.begin(), later.end(), [&](const WeatherWarning& other) {
            return samePlace(warning, other);
        });
    });
    EXPECT_GE(kept, static_cast<std::ptrdiff_t>(now.size()) - 1);
}

TEST(SampleWarningsTest, TheWarnedStormIsWithinItsPolygon) {
    const AntennaPosition& antenna = *findAntenna("TLX");
    const auto minute = static_cast<double>((kTime - kUnixEpoch) / kFileTimePerMinute);
    const auto storms = stormsAt(sampleClimate("TLX"), minute, 230);
    for (const WeatherWarning& warning : sampleWarnings(antenna, Range::shortRange, kTime)) {
        double east = 0;
        double north = 0;
        for (const auto& corner : outlineOf(warning)) {
            const PolarPlace place =
                seenFrom(antenna.latitude, antenna.longitude, corner.latitude, corner.longitude);
            east += place.km * towards(place.azimuthDegrees).east / 4;
            north += place.km * towards(place.azimuthDegrees).north / 4;
        }
        EXPECT_TRUE(std::any_of(storms.begin(), storms.end(), [&](const SampleStorm& storm) {
            return (storm.placeAt(minute) - PlaneVector{east, north}).length() < 40;
        }));
    }
}

} // namespace
} // namespace raincast
