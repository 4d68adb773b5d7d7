// SPDX-License-Identifier: MIT
#include "core/replay_clock.h"
#include "support/test_clock.h"

#include <gtest/gtest.h>

namespace raincast {
namespace {

constexpr FileTime kSecond = kFileTimePerSecond;
constexpr FileTime kMinute = kFileTimePerMinute;
const FileTime kBegin = fromCalendar({2021, 12, 11, 2, 0});
const FileTime kWorld = fromCalendar({2026, 11, 21, 17, 0});

TEST(ReplayClockTest, ReadsATimeAndASpeed) {
    EXPECT_EQ(readReplay("2021-12-11T02:00Z"), (Replay{kBegin, 1}));
    EXPECT_EQ(readReplay("2021-12-11T02:00Zx10"), (Replay{kBegin, 10}));
    EXPECT_EQ(readReplay("2021-12-11T02:00Zx60"), (Replay{kBegin, 60}));
    EXPECT_EQ(readReplay("2024-02-29T23:59Z"), (Replay{fromCalendar({2024, 2, 29, 23, 59}), 1}));
    EXPECT_EQ(readReplay("2106-02-07T06:29Z"), (Replay{fromCalendar({2106, 2, 7, 6, 29}), 1}));
    EXPECT_EQ(readReplay("9999-12-31T23:59Z"), (Replay{fromCalendar({9999, 12, 31, 23, 59}), 1}));
}

TEST(ReplayClockTest, RefusesEverythingElse) {
    for (const char* const text :
         {"", "2021-12-11", "2021-12-11T02:00", "2021-12-11T02:00Zx", "2021-12-11T02:00Zx0",
          "2021-12-11T02:00Zx61", "2021-12-11T02:00Zx100", "2021-12-11T02:00Zx-1",
          "2021-12-11T02:00Z x10", "2021-02-29T02:00Z", "2021-13-11T02:00Z", "2021-12-11T24:30Z",
          "1969-12-31T23:59Z", "2021-12-11T02:00:00Z", "2021-12-11T02:00Zx10\n"}) {
        EXPECT_FALSE(readReplay(text)) << text;
    }
}

TEST(ReplayClockTest, WritesWhatItReads) {
    for (const char* const text : {"2021-12-11T02:00Z", "2021-12-11T02:00Zx10"}) {
        EXPECT_EQ(textOf(*readReplay(text)).toStdString(), text);
    }
}

class ReplayClockRuns : public ::testing::Test {
protected:
    TestClock world{kWorld};
};

TEST_F(ReplayClockRuns, AsFastAsItShould) {
    for (const int speed : {1, 10, 60}) {
        world.set(kWorld);
        const ReplayClock clock({kBegin, speed}, kWorld);
        EXPECT_EQ(clock.now(), kBegin);
        world.advance(30 * kSecond);
        EXPECT_EQ(clock.now(), kBegin + speed * 30 * kSecond);
        EXPECT_EQ(clock.until(clock.now() + 60 * kSecond), 60 * kSecond / speed);
        EXPECT_EQ(clock.until(clock.now()), 0);
        EXPECT_LT(clock.until(clock.now() - kSecond), 0);
        EXPECT_EQ(clock.until(clock.now() + 1), 1); // never at once for what is to come
    }
}

TEST_F(ReplayClockRuns, OnAfterTheComputerSlept) {
    const ReplayClock clock({kBegin, 10}, kWorld);
    world.advance(60 * kMinute);
    EXPECT_EQ(clock.now(), kBegin + 600 * kMinute);
}

TEST_F(ReplayClockRuns, NeverBeforeItsBegin) {
    const ReplayClock clock({kBegin, 10}, kWorld);
    world.set(kWorld - 60 * kMinute);
    EXPECT_EQ(clock.now(), kBegin);
}

TEST_F(ReplayClockRuns, NeverIntoTheFutureOfTheWorld) {
    const FileTime begin = kWorld - 59 * kSecond;
    const ReplayClock clock({begin, 60}, kWorld);
    world.advance(kSecond);
    EXPECT_EQ(clock.now(), begin + 60 * kSecond);
    world.advance(10 * kSecond);
    EXPECT_EQ(clock.now(), world.now());
    EXPECT_EQ(clock.until(world.now() + 60 * kSecond), 60 * kSecond);
}

TEST_F(ReplayClockRuns, ToThePresentHoweverLongAgoItStarted) {
    for (const FileTime start : {FileTime{0}, -5 * kWorld}) {
        EXPECT_EQ(ReplayClock({kBegin, 60}, start).now(), kWorld);
    }
}

TEST_F(ReplayClockRuns, ForTheWeatherAlone) {
    const ReplayClock clock({kBegin, 10}, kWorld);
    EXPECT_EQ(Clock::current().now(), kWorld);
    Clock::replayBy(&clock);
    EXPECT_EQ(Clock::current().now(), kBegin);
    EXPECT_EQ(Clock::real().now(), kWorld);
    Clock::replayBy(nullptr);
    EXPECT_EQ(Clock::current().now(), kWorld);
}

} // namespace
} // namespace raincast
