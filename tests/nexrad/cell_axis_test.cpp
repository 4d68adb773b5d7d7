// SPDX-License-Identifier: MIT
#include "nexrad/cell_axis.h"

#include <gtest/gtest.h>

#include <limits>

namespace raincast {
namespace {

int cellAt(const CellAxis& axis, float place) {
    CellAxis::Places places{};
    places.back() = place;
    CellAxis::Cells cells{};
    axis.find(places, cells);
    return cells.back();
}

// Ten cells of 2 from 100 to 120, known within 0.01.
const CellAxis kTen(10, 100, 2, .01);

TEST(CellAxisTest, APlaceAwayFromEdgesIsSureOfItsCell) {
    EXPECT_EQ(cellAt(kTen, 100.012F), 0);
    EXPECT_EQ(cellAt(kTen, 101.988F), 0);
    EXPECT_EQ(cellAt(kTen, 102.012F), 1);
    EXPECT_EQ(cellAt(kTen, 119.988F), 9);
}

TEST(CellAxisTest, NextToAnEdgeNothingIsSure) {
    for (const float edge : {100.F, 102.F, 110.F, 118.F, 120.F}) {
        EXPECT_EQ(cellAt(kTen, edge - .009F), CellAxis::kUnsure) << edge;
        EXPECT_EQ(cellAt(kTen, edge), CellAxis::kUnsure) << edge;
        EXPECT_EQ(cellAt(kTen, edge + .009F), CellAxis::kUnsure) << edge;
    }
}

TEST(CellAxisTest, BeyondTheOuterEdgesIsOutside) {
    for (const float place : {-1e30F, 0.F, 99.98F, 120.02F, 1e30F}) {
        EXPECT_EQ(cellAt(kTen, place), CellAxis::kOutside) << place;
    }
}

TEST(CellAxisTest, CellsMayRunBackwards) {
    const CellAxis axis(10, 120, -2, .01);
    EXPECT_EQ(cellAt(axis, 119), 0);
    EXPECT_EQ(cellAt(axis, 101), 9);
    EXPECT_EQ(cellAt(axis, 118.005F), CellAxis::kUnsure);
    EXPECT_EQ(cellAt(axis, 121), CellAxis::kOutside);
}

TEST(CellAxisTest, WithoutAPlaceNothingIsSure) {
    EXPECT_EQ(cellAt(kTen, std::numeric_limits<float>::quiet_NaN()), CellAxis::kUnsure);
}

TEST(CellAxisTest, CellsSmallerThanTheErrorAreNeverSure) {
    const CellAxis axis(1000, 0, 1e-12, .01);
    EXPECT_EQ(cellAt(axis, 5e-10F), CellAxis::kUnsure);
    EXPECT_EQ(cellAt(axis, 1), CellAxis::kOutside);
}

} // namespace
} // namespace raincast
