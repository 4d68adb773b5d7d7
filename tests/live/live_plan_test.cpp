// SPDX-License-Identifier: MIT
#include "live/live_plan.h"

#include <gtest/gtest.h>

namespace raincast {
namespace {

constexpr FileTime kSecond = kFileTimePerSecond;
constexpr FileTime kMinute = kFileTimePerMinute;
const FileTime kNow = fromCalendar({2026, 11, 21, 17, 50});

TEST(LivePlanTest, AClockThatIsSetBackKeepsNobodyWaiting) {
    const FileTime due = kNow + 10 * kMinute;
    EXPECT_FALSE(hasCome(due, 10 * kMinute, kNow));
    EXPECT_FALSE(hasCome(due, 10 * kMinute, due - 1));
    EXPECT_TRUE(hasCome(due, 10 * kMinute, due));
    EXPECT_TRUE(hasCome(due, 10 * kMinute, kNow - 1)) << "set back";
    EXPECT_TRUE(hasCome(0, 10 * kMinute, kNow)) << "never set";
}

TEST(LivePlanTest, ListsWhenTheNextVolumeIsExpected) {
    const VolumeTimes times{kNow - 4 * kMinute, kNow - 9 * kMinute, kNow - kMinute, 0};
    EXPECT_EQ(nextListing(times, kNow), kNow - kMinute + 5 * kMinute + 15 * kSecond);
}

TEST(LivePlanTest, NeverListsSoonerThanAfterFifteenSeconds) {
    const VolumeTimes times{kNow - 9 * kMinute, kNow - 14 * kMinute, kNow - 5 * kMinute, 0};
    EXPECT_EQ(nextListing(times, kNow), kNow + 15 * kSecond);
}

TEST(LivePlanTest, ListsALateVolumeEveryHalfMinuteThenEveryTwoMinutes) {
    VolumeTimes times{kNow - 19 * kMinute, kNow - 24 * kMinute, kNow - 17 * kMinute, 0};
    for (times.misses = 0; times.misses < 6; ++times.misses) {
        EXPECT_EQ(nextListing(times, kNow), kNow + 30 * kSecond) << times.misses;
    }
    EXPECT_EQ(nextListing(times, kNow), kNow + 120 * kSecond);
}

TEST(LivePlanTest, WhereNothingIsItLooksEveryTwoMinutes) {
    EXPECT_EQ(nextListing({}, kNow), kNow + 120 * kSecond);
}

TEST(LivePlanTest, AnOddIntervalIsNotBelieved) {
    // Volumes of one minute apart, and a day apart.
    EXPECT_EQ(
        nextListing({kNow - 60 * kSecond, kNow - 61 * kSecond, kNow, 0}, kNow),
        kNow + 2 * kMinute + 15 * kSecond
    );
    EXPECT_EQ(
        nextListing({kNow - kMinute, kNow - 1500 * kMinute, kNow, 0}, kNow),
        kNow + 12 * kMinute + 15 * kSecond
    );
}

TEST(LivePlanTest, AVolumeOfTheFutureDoesNotStopTheListings) {
    const VolumeTimes times{kNow + 500 * kMinute, kNow, kNow + 500 * kMinute, 0};
    EXPECT_EQ(nextListing(times, kNow), kNow + 120 * kSecond);
}

} // namespace
} // namespace raincast
