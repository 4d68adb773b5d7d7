// SPDX-License-Identifier: MIT
#include "nexrad/scan_placement.h"

#include <gtest/gtest.h>

#include <cmath>

namespace raincast {
namespace {

struct Way {
    double fromLatitude;
    double fromLongitude;
    double toLatitude;
    double toLongitude;
    double azimuth; ///< degrees
    double km;
};

// Geodesics on the ellipsoid by Vincenty's formulas (1975): plains, Alaska, tropics, the date line.
constexpr Way kGeodesics[] = {
    {35.32, -97.27, 35.32, -94.7, 89.2570, 233.6870},
    {35.32, -97.27, 37.4, -97.27, 0.0000, 230.8087},
    {35.32, -97.27, 33.3, -99.4, 221.7906, 297.7226},
    {60.793, -161.87399, 64.8, -156.0, 31.2797, 537.3835},
    {60.793, -161.87399, 57.0, -168.0, 222.5465, 550.2043},
    {18.1, -66.1, 20.0, -62.3, 61.6538, 451.8836},
    {13.45, 144.81, 9.5, 147.3, 147.8707, 514.4873},
    {64.5, -165.3, 66.0, -172.0, 301.1231, 354.7357},
    {40, 179.5, 41, -178, 61.5379, 239.2363},
};

TEST(ScanPlacementTest, DirectionsAndDistancesAreThoseOfTheEarth) {
    for (const Way& way : kGeodesics) {
        const PolarPlace place =
            seenFrom(way.fromLatitude, way.fromLongitude, way.toLatitude, way.toLongitude);
        EXPECT_NEAR(place.km, way.km, .1) << way.toLatitude << ' ' << way.toLongitude;
        EXPECT_NEAR(place.azimuthDegrees, way.azimuth, .02)
            << way.toLatitude << ' ' << way.toLongitude;
    }
}

TEST(ScanPlacementTest, JustWestOfNorthIsBelowTheFullCircle) {
    const PolarPlace place = seenFrom(35, -97, 36, -97.0000000001);
    EXPECT_GE(place.azimuthDegrees, 0);
    EXPECT_LT(place.azimuthDegrees, 360);
}

TEST(ScanPlacementTest, TheAntennasOwnPlaceIsNoDistanceAway) {
    EXPECT_NEAR(seenFrom(35, -97, 35, -97).km, 0, 1e-6);
}

} // namespace
} // namespace raincast
