// SPDX-License-Identifier: MIT
#include "nexrad/pixel_places.h"
#include "radar/catalogue/antenna_positions.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <memory>

namespace raincast {
namespace {

constexpr double kDegree = 3.14159265358979323846 / 180;
constexpr double kAll = 1e9;

TEST(PixelPlacesTest, PixelsLieWhereTheirCentresAre) {
    const ImageGeometry image(35.32, -97.27, Range::shortRange);
    const PixelPlaces places(image, 35.333, -97.278, kAll);
    for (const int row : {0, 137, 549}) {
        for (const int column : {0, 412, 599}) {
            const PolarPlace expected = seenFrom(
                35.333, -97.278, image.latitudeOfRow(row), image.longitudeOfColumn(column)
            );
            const PolarPlace place = places.exact(row, column);
            EXPECT_FLOAT_EQ(place.km, expected.km) << row << ' ' << column;
            EXPECT_FLOAT_EQ(place.azimuthDegrees, expected.azimuthDegrees) << row << ' ' << column;
        }
    }
}

/// How far quick places lie from exact ones, at most.
struct Error {
    double km = 0;
    double tenths = 0;
    double planeKm = 0;

    void add(const PolarPlace& exact, float km_, float tenths_, float eastKm, float northKm) {
        const double azimuth = exact.azimuthDegrees * kDegree;
        const double turn = std::abs(exact.azimuthDegrees * 10.0 - double{tenths_});
        km = std::max(km, std::abs(double{exact.km} - double{km_}));
        tenths = std::max(tenths, std::min(turn, 3600 - turn));
        planeKm = std::max(
            {planeKm, std::abs(exact.km * std::sin(azimuth) - double{eastKm}),
             std::abs(exact.km * std::cos(azimuth) - double{northKm})}
        );
    }
};

/// Every pixel of some rows: they are close to each other around the antenna.
Error errorOf(const AntennaPosition& antenna, Range range) {
    const ImageGeometry image(antenna.latitude, antenna.longitude, range);
    const PixelPlaces places(image, antenna.latitude + .004, antenna.longitude - .003, kAll);
    Error error;
    PolarRun polar;
    PlaneRun plane;
    for (int row = 0; row<kFrameHeight; row += row> 265 && row < 285 ? 1 : 61) {
        for (std::size_t run = 0; run < places.runs(); ++run) {
            places.place(row, run, polar);
            places.place(row, run, plane);
            for (std::size_t i = 0; i < kRunLength; ++i) {
                error.add(
                    places.exact(row, static_cast<int>(run * kRunLength + i)), polar.km[i],
                    polar.tenths[i], plane.eastKm[i], plane.northKm[i]
                );
            }
        }
    }
    return error;
}

TEST(PixelPlacesTest, QuickPlacesAreWithinTheirBoundsOfExactOnesAtEverySite) {
    // A tenth of a pixel is some 80 metres; these are of metres.
    for (const AntennaPosition& antenna : antennaPositions()) {
        for (const Range range : {Range::shortRange, Range::longRange}) {
            const Error error = errorOf(antenna, range);
            EXPECT_LT(error.km, kQuickKm * .75) << antenna.id;
            EXPECT_LT(error.tenths, kQuickTenths * .75) << antenna.id;
            EXPECT_LT(error.planeKm, kQuickKm * .75) << antenna.id;
        }
    }
}

TEST(PixelPlacesTest, TheAntennaItselfLiesInNoDirection) {
    const ImageGeometry image(35, -97, Range::shortRange);
    const PixelPlaces places(image, image.latitudeOfRow(200), image.longitudeOfColumn(100), kAll);
    PolarRun polar;
    PlaneRun plane;
    constexpr std::size_t kRun = 100 / kRunLength;
    constexpr std::size_t kPixel = 100 % kRunLength;
    places.place(200, kRun, polar);
    places.place(200, kRun, plane);
    EXPECT_NEAR(polar.km[kPixel], 0, 1e-3);
    EXPECT_TRUE(std::isnan(polar.tenths[kPixel]) || polar.km[kPixel] > 0);
    EXPECT_TRUE(std::isnan(plane.eastKm[kPixel]) || std::abs(plane.eastKm[kPixel]) < 1e-3);
}

TEST(PixelPlacesTest, WhatNoRadarSeesHasNoQuickPlace) {
    const ImageGeometry image(80, 0, Range::longRange);
    const PixelPlaces places(image, 35, -97, kAll);
    PolarRun polar;
    PlaneRun plane;
    places.place(0, 0, polar);
    places.place(0, 0, plane);
    EXPECT_TRUE(std::isnan(polar.km[0]));
    EXPECT_TRUE(std::isnan(plane.eastKm[0]));
    EXPECT_TRUE(std::isnan(plane.northKm[0]));
    EXPECT_GT(places.exact(0, 0).km, kFurthestQuickKm);
}

/// The pixels of a run nearest to the antenna and furthest from it.
struct Nearness {
    float nearest;
    float furthest;
};
Nearness nearnessOf(const PixelPlaces& places, int row, std::size_t run) {
    Nearness result{1e9F, 0};
    for (std::size_t i = 0; i < kRunLength; ++i) {
        const float km = places.exact(row, static_cast<int>(run * kRunLength + i)).km;
        result = {std::min(result.nearest, km), std::max(result.furthest, km)};
    }
    return result;
}

TEST(PixelPlacesTest, OnlyRunsOutOfReachAreLeftOut) {
    struct Antenna {
        double latitude;
        double longitude;
    };
    constexpr float kReach = 230;
    // In the middle, far to the side, at another edge of the map, and where a run's end is on its
    // meridian.
    for (const auto& [latitude, longitude] :
         {Antenna{35.333, -97.278}, Antenna{36.5, -99.8}, Antenna{33, 262.9},
          Antenna{35.32, -97.27}}) {
        const ImageGeometry image(35.32, -97.27, Range::shortRange);
        const PixelPlaces places(image, latitude, longitude, kReach);
        int left = 0;
        for (int row = 0; row < kFrameHeight; row += 3) {
            for (std::size_t run = 0; run < places.runs(); ++run) {
                const auto [nearest, furthest] = nearnessOf(places, row, run);
                if (!places.isInReach(row, run)) {
                    EXPECT_GT(nearest, kReach) << row << ' ' << run;
                    ++left;
                } else {
                    // No further than where the meridian leaves the run behind.
                    EXPECT_LT(nearest, kReach + 40) << row << ' ' << run;
                }
            }
        }
        EXPECT_GT(left, 300);
    }
}

TEST(PixelPlacesTest, AnyReachLeavesNothingOutThatIsInIt) {
    const ImageGeometry image(35.32, -97.27, Range::longRange);
    for (const double reach : {0., 15'000., 1e9}) {
        const PixelPlaces places(image, 35.32, -97.27, reach);
        EXPECT_TRUE(places.isInReach(kFrameHeight / 2, places.runs() / 2));
        EXPECT_EQ(places.isInReach(0, 0), reach > 0);
    }
}

} // namespace
} // namespace raincast
