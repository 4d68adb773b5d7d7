// SPDX-License-Identifier: MIT
#include "maps/map_line.h"

#include <gtest/gtest.h>

namespace raincast {
namespace {

TEST(MapLineTest, TheBoxHoldsAllPoints) {
    const GeoBox box = boxAround({{40, -100}, {42, -99}, {41, -103}});
    EXPECT_EQ(box.south, 40);
    EXPECT_EQ(box.west, -103);
    EXPECT_EQ(box.north, 42);
    EXPECT_EQ(box.east, -99);
    EXPECT_EQ(boxAround({}).north, 0);
}

TEST(MapLineTest, BoxesKnowWhatTheyTouch) {
    const GeoBox box{40, -100, 42, -98};
    EXPECT_TRUE(box.contains({40, -98}));
    EXPECT_FALSE(box.contains({39.9, -99}));
    EXPECT_FALSE(box.contains({41, -97.9}));
    EXPECT_TRUE(box.overlaps({42, -98, 43, -97}));
    EXPECT_FALSE(box.overlaps({42.1, -99, 43, -98}));
    EXPECT_FALSE(box.overlaps({41, -97.9, 43, -97}));
}

} // namespace
} // namespace raincast
