// SPDX-License-Identifier: MIT
#include "radar/catalogue/sites.h"
#include "replay/past_storms.h"
#include "support/test_clock.h"

#include <gtest/gtest.h>

namespace raincast {
namespace {

TEST(PastStormsTest, AreFiveWithADateASiteAndALine) {
    ASSERT_EQ(pastStorms().size(), 5U);
    FileTime before = kFirstReplay;
    for (const PastStorm& storm : pastStorms()) {
        EXPECT_GT(storm.replay().begin, before);
        EXPECT_EQ(storm.replay().speed, 1);
        EXPECT_NE(findRadarSite(QString::fromUtf16(storm.siteId)), nullptr);
        before = storm.replay().begin;
    }
    EXPECT_EQ(pastStorms()[2].row(), "2021-12-11 PAH Mayfield");
}

TEST(PastStormsTest, ALineSaysWhenAndHowFast) {
    const TestClock world;
    EXPECT_EQ(replayLine(), "");
    const FileTime begin = fromCalendar({2006, 12, 11, 2, 14});
    for (const auto& [speed, text] : std::initializer_list<std::pair<int, const char*>>{
             {1, "Replay of 2006-12-11 02:14 UTC"},
             {10, "Replay of 2006-12-11 02:14 UTC, 10 times as fast"}}) {
        const ReplayClock clock({begin, speed}, world.now());
        Clock::replayBy(&clock);
        EXPECT_EQ(replayLine(), text);
        Clock::replayBy(nullptr);
    }
}

} // namespace
} // namespace raincast
