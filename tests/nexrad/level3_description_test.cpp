// SPDX-License-Identifier: MIT
#include "nexrad/level3_cursor.h"
#include "nexrad/level3_description.h"
#include "support/level3_maker.h"

#include <gtest/gtest.h>

namespace raincast {
namespace {

std::string bare(Level3ToMake product) {
    product.wmoHeading.clear();
    product.awipsId.clear();
    return makeLevel3(product);
}

std::string errorOf(const Level3ToMake& product) {
    const std::string bytes = bare(product);
    Level3Cursor cursor(bytes);
    static_cast<void>(readLevel3Description(cursor));
    return cursor.ok() ? std::string() : cursor.result().error().toStdString();
}

TEST(Level3DescriptionTest, FieldsAreRead) {
    const std::string bytes = bare({.elevationTenths = 15});
    Level3Cursor cursor(bytes);
    const Level3Description description = readLevel3Description(cursor);
    ASSERT_TRUE(cursor.ok());
    EXPECT_EQ(cursor.offset(), kLevel3HeadBytes);
    EXPECT_DOUBLE_EQ(description.latitude, 35.333);
    EXPECT_DOUBLE_EQ(description.longitude, -97.278);
    EXPECT_EQ(description.code, 19);
    EXPECT_EQ(description.volumeTime, fromCalendar({2013, 5, 20, 20, 16, 43}));
    EXPECT_DOUBLE_EQ(description.elevationDegrees, 1.5);
    EXPECT_EQ(description.thresholds[0], 0x8002);
    EXPECT_EQ(description.thresholds[15], 75);
    EXPECT_EQ(description.symbologyOffset, 60U);
}

TEST(Level3DescriptionTest, ImpossibleFieldsAreNamed) {
    EXPECT_EQ(
        errorOf({.latitude = 90001}),
        "the radar's latitude at byte 20 is 90001 thousandths of a degree"
    );
    EXPECT_EQ(
        errorOf({.longitude = -180001}),
        "the radar's longitude at byte 24 is -180001 thousandths of a degree"
    );
    EXPECT_EQ(errorOf({.day = 0}), "the volume scan's date at byte 40 is 0");
    EXPECT_EQ(errorOf({.second = 86400}), "the volume scan's time at byte 42 is 86400 seconds");
}

TEST(Level3DescriptionTest, EveryCutIsNoticed) {
    const std::string bytes = bare({});
    for (std::size_t size = 0; size < kLevel3HeadBytes; ++size) {
        Level3Cursor cursor(std::string_view(bytes).substr(0, size));
        static_cast<void>(readLevel3Description(cursor));
        EXPECT_FALSE(cursor.ok()) << size;
    }
}

} // namespace
} // namespace raincast
