// SPDX-License-Identifier: MIT
#include "warnings/warning_area.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace raincast {
namespace {

using Ring = WarningText::Ring;

WarningText warningOf(std::vector<WarningText::Polygon> polygons) {
    WarningText warning;
    warning.polygons = std::move(polygons);
    return warning;
}

const Ring kSquare = {{35, -98}, {35, -97}, {36, -97}, {36, -98}};

TEST(WarningAreaTest, HoldsInsideAndNotBeside) {
    const WarningText square = warningOf({{kSquare}});
    EXPECT_TRUE(warnsAt(square, {35.5, -97.5}));
    EXPECT_FALSE(warnsAt(square, {34.9, -97.5}));
    EXPECT_FALSE(warnsAt(square, {36.1, -97.5}));
    EXPECT_FALSE(warnsAt(square, {35.5, -98.1}));
    EXPECT_FALSE(warnsAt(square, {35.5, -96.9}));
}

TEST(WarningAreaTest, HoldsOnItsSidesAndCorners) {
    const WarningText square = warningOf({{kSquare}});
    EXPECT_TRUE(warnsAt(square, {35, -97.5}));
    EXPECT_TRUE(warnsAt(square, {36, -97.5}));
    EXPECT_TRUE(warnsAt(square, {35.5, -98}));
    EXPECT_TRUE(warnsAt(square, {35.5, -97}));
    EXPECT_TRUE(warnsAt(square, {36, -98}));
    EXPECT_FALSE(warnsAt(square, {36, -98.5})) << "on the line of a side, not on the side";
    const WarningText slope = warningOf({{{{0, 0}, {3, 3}, {0, 3}}}});
    EXPECT_TRUE(warnsAt(slope, {1, 1}));
}

// A ray through a corner meets two sides there, or none.
TEST(WarningAreaTest, CornersAtThePositionsLatitudeCountOnce) {
    const WarningText diamond = warningOf({{{{1, 0}, {2, 1}, {1, 2}, {0, 1}}}});
    EXPECT_TRUE(warnsAt(diamond, {1, 1}));
    EXPECT_FALSE(warnsAt(diamond, {1, -1}));
    EXPECT_FALSE(warnsAt(diamond, {2, 0}));
    EXPECT_FALSE(warnsAt(diamond, {0, 0}));
}

TEST(WarningAreaTest, AHollowIsOutside) {
    const WarningText horseshoe =
        warningOf({{{{0, 0}, {0, 5}, {5, 5}, {5, 4}, {1, 4}, {1, 1}, {5, 1}, {5, 0}}}});
    EXPECT_TRUE(warnsAt(horseshoe, {3, .5}));
    EXPECT_TRUE(warnsAt(horseshoe, {3, 4.5}));
    EXPECT_TRUE(warnsAt(horseshoe, {.5, 2.5}));
    EXPECT_FALSE(warnsAt(horseshoe, {3, 2.5}));
}

TEST(WarningAreaTest, HolesAreOutsideAndTheirEdgesAreNot) {
    const Ring hole = {{35.4, -97.6}, {35.4, -97.4}, {35.6, -97.4}, {35.6, -97.6}};
    const WarningText ring = warningOf({{kSquare, hole}});
    EXPECT_FALSE(warnsAt(ring, {35.5, -97.5}));
    EXPECT_TRUE(warnsAt(ring, {35.4, -97.5}));
    EXPECT_TRUE(warnsAt(ring, {35.2, -97.5}));
}

TEST(WarningAreaTest, EachOfSeveralPolygonsHolds) {
    const Ring other = {{10, 10}, {10, 11}, {11, 11}};
    const WarningText two = warningOf({{kSquare}, {other}});
    EXPECT_TRUE(warnsAt(two, {35.5, -97.5}));
    EXPECT_TRUE(warnsAt(two, {10.1, 10.9}));
    EXPECT_FALSE(warnsAt(two, {20, -40}));
}

TEST(WarningAreaTest, MayLeadOverThe180thMeridian) {
    const WarningText both = warningOf({{{{51, 179}, {51, -179}, {53, -179}, {53, 179}}}});
    EXPECT_TRUE(warnsAt(both, {52, 179.5}));
    EXPECT_TRUE(warnsAt(both, {52, -179.5}));
    EXPECT_FALSE(warnsAt(both, {52, 178}));
    EXPECT_FALSE(warnsAt(both, {52, 0}));
    const WarningText beyond = warningOf({{{{51, 190}, {51, 192}, {53, 192}}}});
    EXPECT_TRUE(warnsAt(beyond, {51.5, -168.5}));
}

TEST(WarningAreaTest, WhatIsNoAreaHoldsNowhere) {
    EXPECT_FALSE(warnsAt(warningOf({}), {35, -97}));
    EXPECT_FALSE(warnsAt(warningOf({{}}), {35, -97}));
    EXPECT_FALSE(warnsAt(warningOf({{Ring{}}}), {35, -97}));
    EXPECT_FALSE(warnsAt(warningOf({{{{35, -97}}}}), {35, -97}));
    EXPECT_FALSE(warnsAt(warningOf({{{{35, -97}, {36, -97}}}}), {35.5, -97}));
    const double nan = std::numeric_limits<double>::quiet_NaN();
    EXPECT_FALSE(warnsAt(warningOf({{kSquare}}), {nan, nan}));
    EXPECT_FALSE(warnsAt(warningOf({{kSquare}}), {35.5, INFINITY}));
}

// Three corners in one place are no more than that place.
TEST(WarningAreaTest, CornersInOnePlaceHoldThere) {
    const WarningText point = warningOf({{{{35, -97}, {35, -97}, {35, -97}}}});
    EXPECT_TRUE(warnsAt(point, {35, -97}));
    EXPECT_FALSE(warnsAt(point, {35, -97.001}));
}

} // namespace
} // namespace raincast
