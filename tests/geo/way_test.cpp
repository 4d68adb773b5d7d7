// SPDX-License-Identifier: MIT
#include "geo/way.h"

#include <gtest/gtest.h>

#include <cmath>

namespace raincast {
namespace {

TEST(ShortWay, IsTheFramesWhereNoDateLineLiesBetween) {
    const GeoPosition origin{41.5, -105};
    const GeoPosition position{41.25, -104.5};
    EXPECT_EQ(shortWay(origin, position), LocalFrame(origin).toMetres(position));
    EXPECT_EQ(shortWay(origin, origin), LocalOffset());
    for (const double longitude : {124.6, 165.7, -194.1, -150.1}) {
        const GeoPosition west{0, -14.2};
        const GeoPosition there{0, longitude};
        EXPECT_EQ(shortWay(west, there), LocalFrame(west).toMetres(there)) << longitude;
    }
}

TEST(ShortWay, CrossesTheDateLine) {
    const LocalOffset east = shortWay({-17, 179.5}, {-17, -179.5});
    EXPECT_NEAR(east.eastMetres, LocalFrame({-17, 0}).metresPerDegreeLon(), 0.01);
    EXPECT_NEAR(east.northMetres, 0, 0.01);
    const LocalOffset west = shortWay({-17, -179.5}, {-17, 179.5});
    EXPECT_NEAR(west.eastMetres, -east.eastMetres, 0.01);
    const LocalOffset beyond = shortWay({-17, 359.5}, {-17, 0.5});
    EXPECT_NEAR(beyond.eastMetres, east.eastMetres, 0.01);
}

TEST(BearingBack, LeadsFromTheEndOfAWayToItsOrigin) {
    struct Case {
        float east;
        float north;
        float bearing;
    };
    const Case cases[] = {{0, -100, 0},  {-100, -100, 45}, {-100, 0, 90},        {0, 100, 180},
                          {100, 0, 270}, {100, -100, 315}, {1, -100, 359.42706F}};
    for (const Case& each : cases) {
        EXPECT_NEAR(bearingBack(each.east, each.north), each.bearing, 1e-4)
            << each.east << ", " << each.north;
    }
    const float nowhere = bearingBack(0, 0);
    EXPECT_TRUE(nowhere >= 0 && nowhere <= 360);
}

} // namespace
} // namespace raincast
