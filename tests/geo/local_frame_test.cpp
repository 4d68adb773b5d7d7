// SPDX-License-Identifier: MIT
#include "geo/local_frame.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace raincast {
namespace {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

TEST(LocalFrameTest, StartsWithoutAScale) {
    const LocalFrame frame;
    EXPECT_EQ(frame.origin(), (GeoPosition{0, 0}));
    EXPECT_EQ(frame.metresPerDegreeLat(), 0);
    EXPECT_EQ(frame.metresPerDegreeLon(), 0);
    EXPECT_EQ(frame.distanceMetres({1, 1}), 0);
}

struct Scale {
    double latitude;
    double latitudeMiles;
    double longitudeMiles;
};

TEST(LocalFrameTest, ScalesFollowTheLatitude) {
    const Scale rows[] = {
        {0, 59.70533251357, 60.10771641105},
        {-0.0, 59.70533251357, 60.10771641105},
        {45, 60.00737452742, 42.57388503989},
        {-45, 60.00737452742, 42.57388503989},
        {44.5, (59.99682493821 + 60.00737452742) / 2, -1},
        {-44.75, 0.25 * 59.99682493821 + 0.75 * 60.00737452742, -1},
        {0.25, 0.75 * 59.70533251357 + 0.25 * 59.70551635746, -1},
        {89, 60.30973970626, 1.052552228475},
        {89.5, 60.30973970626, 1.052552228475 / 2},
        {90, 60.30973970626, 0},
        {-90, 60.30973970626, 0},
        {90.5, 60.00737452742, 42.57388503989},
        {-91, 60.00737452742, 42.57388503989},
        {95, 60.00737452742, 42.57388503989},
        {1e300, 60.00737452742, 42.57388503989},
        {-std::numeric_limits<double>::infinity(), 60.00737452742, 42.57388503989},
        {kNaN, 60.00737452742, 42.57388503989},
    };
    for (const Scale& row : rows) {
        const LocalFrame frame({row.latitude, -100});
        EXPECT_NEAR(frame.metresPerDegreeLat() / 1852, row.latitudeMiles, 1e-10) << row.latitude;
        if (row.longitudeMiles >= 0) {
            EXPECT_NEAR(frame.metresPerDegreeLon() / 1852, row.longitudeMiles, 1e-10)
                << row.latitude;
        }
    }
    EXPECT_EQ(LocalFrame({90, 0}).metresPerDegreeLon(), 0);
    EXPECT_NEAR(LocalFrame({0, 0}).metresPerDegreeLon(), 111319.49, 0.005);
}

TEST(LocalFrameTest, BetweenWholeDegreesTheScaleIsOnTheStraightLine) {
    for (int degree = 0; degree < 90; ++degree) {
        const double below = LocalFrame({static_cast<double>(degree), 0}).metresPerDegreeLon();
        const double above = LocalFrame({degree + 1.0, 0}).metresPerDegreeLon();
        const double between = LocalFrame({degree + 0.25, 0}).metresPerDegreeLon();
        EXPECT_LT(above, below) << degree;
        EXPECT_NEAR(between, 0.75 * below + 0.25 * above, 1e-9) << degree;
    }
}

TEST(LocalFrameTest, GoesToMetresAndBack) {
    const LocalFrame frame({37.0, -122.0});
    EXPECT_EQ(frame.toMetres({37.0, -122.0}), (LocalOffset{0, 0}));
    const LocalOffset way = frame.toMetres({38.5, -123.0});
    EXPECT_NEAR(way.eastMetres, -frame.metresPerDegreeLon(), 1e-6);
    EXPECT_NEAR(way.northMetres, 1.5 * frame.metresPerDegreeLat(), 1e-6);
    EXPECT_NEAR(
        frame.distanceMetres({38.5, -123.0}), std::hypot(way.eastMetres, way.northMetres), 1e-6
    );
    const GeoPosition back = frame.fromMetres(way);
    EXPECT_NEAR(back.latitude, 38.5, 1e-12);
    EXPECT_NEAR(back.longitude, -123.0, 1e-12);
}

TEST(LocalFrameTest, DoesNotWrapAtTheDateLine) {
    const LocalFrame frame({52.0, 179.5});
    const LocalOffset way = frame.toMetres({52.0, -179.5});
    EXPECT_NEAR(way.eastMetres, -359 * frame.metresPerDegreeLon(), 1e-3);
}

TEST(LocalFrameTest, AtThePolesEastLeadsNowhere) {
    const LocalFrame pole({90, 10});
    EXPECT_EQ(pole.toMetres({90, 50}).eastMetres, 0);
    EXPECT_TRUE(std::isinf(pole.fromMetres({1, 0}).longitude));
    EXPECT_TRUE(std::isnan(pole.fromMetres({0, 0}).longitude));
    EXPECT_EQ(pole.fromMetres({0, 0}).latitude, 90);
}

TEST(LocalFrameTest, ABearingTurnsClockwiseFromNorth) {
    struct Row {
        float bearing;
        float length;
        double east;
        double north;
    };
    const Row rows[] = {
        {0, 1000, 0, 1000},       {90, 1000, 1000, 0},   {180, 1000, 0, -1000},
        {270, 1000, -1000, 0},    {360, 1000, 0, 1000},  {-90, 1000, -1000, 0},
        {45, 1000, 707.1, 707.1}, {30, -10, -5, -8.660}, {123, 0, 0, 0},
    };
    for (const Row& row : rows) {
        const LocalOffset way = LocalFrame::alongBearing(row.bearing, row.length);
        EXPECT_NEAR(way.eastMetres, row.east, 0.02) << row.bearing;
        EXPECT_NEAR(way.northMetres, row.north, 0.02) << row.bearing;
        // Every result is a single-precision number.
        EXPECT_EQ(way.eastMetres, static_cast<float>(way.eastMetres)) << row.bearing;
        EXPECT_EQ(way.northMetres, static_cast<float>(way.northMetres)) << row.bearing;
    }
}

} // namespace
} // namespace raincast
