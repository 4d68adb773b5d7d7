// SPDX-License-Identifier: MIT
#include "player/frame_time.h"
#include "support/time_zone.h"

#include <gtest/gtest.h>

namespace raincast {
namespace {

const FileTime kTaken = fromCalendar({2019, 5, 19, 5, 44});

TEST(FrameTimeTest, TheZoneStandsBehindTheTime) {
    EXPECT_EQ(frameTimeText(kTaken, true).toStdString(), "2019-05-19 5:44 UTC");
    const TimeZone pacific("PST8PDT,M3.2.0,M11.1.0");
    EXPECT_EQ(frameTimeText(kTaken, false).toStdString(), "2019-05-18 22:44 PDT");
    EXPECT_EQ(frameTimeText(kTaken, true).toStdString(), "2019-05-19 5:44 UTC");
    const FileTime winter = fromCalendar({2019, 12, 1, 8, 5});
    EXPECT_EQ(frameTimeText(winter, false).toStdString(), "2019-12-01 0:05 PST");
}

TEST(FrameTimeTest, TheAgeIsInWords) {
    const std::pair<int, const char*> rows[] = {
        {0, "just now"},
        {1, "1 minute ago"},
        {59, "59 minutes ago"},
        {60, "1 hour ago"},
        {61, "1 hour 1 minute ago"},
        {125, "2 hours 5 minutes ago"},
        {47 * 60 + 59, "47 hours 59 minutes ago"},
        {48 * 60, "2 days ago"},
        {72 * 60, "3 days ago"},
    };
    for (const auto& [minutes, text] : rows) {
        EXPECT_EQ(frameAgeText(kTaken, kTaken + minutes * kFileTimePerMinute).toStdString(), text);
    }
}

TEST(FrameTimeTest, NoTimeHasNoText) {
    EXPECT_TRUE(frameTimeText(0, true).isEmpty());
    EXPECT_TRUE(frameTimeText(0, false).isEmpty());
    EXPECT_TRUE(frameAgeText(0, kTaken).isEmpty());
    EXPECT_TRUE(frameAgeText(kTaken, kTaken - 1).isEmpty());
}

} // namespace
} // namespace raincast
