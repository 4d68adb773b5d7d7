// SPDX-License-Identifier: MIT
#include "position/data_gps_position.h"

#include <gtest/gtest.h>

#include <climits>

namespace raincast {
namespace {

TEST(DataGPSPositionTest, StartsWithoutAFix) {
    const CDataGPSPosition position;
    EXPECT_FALSE(position.valid());
    EXPECT_EQ(position.latitude, 0);
    EXPECT_EQ(position.longitude, 0);
    EXPECT_EQ(position.time, 0);
    EXPECT_EQ(position.extra1, 400.0F);
    EXPECT_EQ(position.extra2, 0.0F);
}

TEST(DataGPSPositionTest, FixTypeFollowsTheQualityDigit) {
    const struct {
        std::int32_t quality;
        std::int32_t fixType;
    } rows[] = {{0, 0}, {1, 1}, {2, 2}, {3, 6}, {4, 5}, {5, 5}, {6, 4}, {7, 7}, {8, 3}};
    for (const auto& row : rows) {
        CDataGPSPosition position;
        position.fixType = -1;
        position.setFixTypeFromQuality(row.quality);
        EXPECT_EQ(position.fixType, row.fixType) << row.quality;
    }
}

TEST(DataGPSPositionTest, AnyOtherQualityLeavesTheFixType) {
    for (const std::int32_t quality : {9, 10, -1, INT_MIN, INT_MAX}) {
        CDataGPSPosition position;
        position.fixType = kFixPrecise;
        position.setFixTypeFromQuality(quality);
        EXPECT_EQ(position.fixType, kFixPrecise) << quality;
    }
}

} // namespace
} // namespace raincast
