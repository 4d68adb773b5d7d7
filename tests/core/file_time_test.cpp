// SPDX-License-Identifier: MIT
#include "core/file_time.h"
#include "support/time_zone.h"

#include <gtest/gtest.h>

namespace raincast {
namespace {

TEST(FileTimeTest, CountsFrom1601) {
    EXPECT_EQ(fromCalendar({1601, 1, 1}), 0);
    EXPECT_EQ(fromCalendar({1601, 1, 2}), 864'000'000'000);
    EXPECT_EQ(fromCalendar({1970, 1, 1}), kUnixEpoch);
    EXPECT_EQ(fromCalendar({2007, 3, 23, 12, 35, 19}), 128'191'269'190'000'000);
    EXPECT_EQ(fromCalendar({1970, 1, 1, 0, 0, 1, 5}), kUnixEpoch + 10'050'000);
}

struct Rejected {
    const char* why;
    CalendarTime time;
};

TEST(FileTimeTest, RejectsWhatNoCalendarHolds) {
    const Rejected rows[] = {
        {"year before the count", {1600, 12, 31}},
        {"year beyond the count", {30828, 1, 1}},
        {"month 0", {2007, 0, 1}},
        {"month 13", {2007, 13, 1}},
        {"day 0", {2007, 1, 0}},
        {"31 April", {2007, 4, 31}},
        {"29 February of a common year", {2007, 2, 29}},
        {"29 February of a common century", {1900, 2, 29}},
        {"hour 24", {2007, 1, 1, 24}},
        {"minute 60", {2007, 1, 1, 0, 60}},
        {"second 60", {2007, 1, 1, 0, 0, 60}},
        {"negative millisecond", {2007, 1, 1, 0, 0, 0, -1}},
    };
    for (const Rejected& row : rows) {
        EXPECT_EQ(fromCalendar(row.time), 0) << row.why;
    }
    EXPECT_NE(fromCalendar({2000, 2, 29}), 0);
}

TEST(FileTimeTest, ShortYearsMeanTheTwoThousandsAndTheNineteenHundreds) {
    EXPECT_EQ(dateToTime(7, 3, 23), fromCalendar({2007, 3, 23}));
    EXPECT_EQ(dateToTime(94, 1, 1), fromCalendar({2094, 1, 1}));
    EXPECT_EQ(dateToTime(99, 1, 1), fromCalendar({2099, 1, 1}));
    EXPECT_EQ(dateToTime(100, 1, 1), fromCalendar({2000, 1, 1}));
    EXPECT_EQ(dateToTime(107, 1, 1), fromCalendar({2007, 1, 1}));
    EXPECT_EQ(dateToTime(199, 1, 1), fromCalendar({2099, 1, 1}));
    EXPECT_EQ(dateToTime(200, 1, 1), 0);
    EXPECT_EQ(dateToTime(1999, 2, 30), 0);
}

TEST(FileTimeTest, CalendarRoundTrips) {
    const CalendarTime rows[] = {
        {1601, 1, 1},
        {1969, 12, 31, 23, 59, 59, 999},
        {2000, 2, 29, 1, 2, 3, 4},
        {2007, 6, 15, 18, 30},
        {30827, 12, 31, 23, 59, 59, 999}};
    for (const CalendarTime& row : rows) {
        EXPECT_EQ(toCalendar(fromCalendar(row)), row) << row.year;
    }
    EXPECT_EQ(toCalendar(-1), CalendarTime{});
    EXPECT_EQ(toCalendar(INT64_MAX), CalendarTime{});
}

// The hour of spring that is left out, and the hour of autumn that comes twice.
TEST(FileTimeTest, LocalTimeGoesOnWhereDaylightSavingBeginsAndEnds) {
    const TimeZone eastern("EST5EDT,M3.2.0,M11.1.0");
    const auto local = [](int month, int day, int hour, int minute) {
        const CalendarTime at = toLocalCalendar(fromCalendar({2024, month, day, hour, minute}));
        return at.hour * 100 + at.minute;
    };
    EXPECT_EQ(local(3, 10, 6, 59), 159);
    EXPECT_EQ(local(3, 10, 7, 0), 300);
    EXPECT_EQ(local(11, 3, 5, 59), 159);
    EXPECT_EQ(local(11, 3, 6, 0), 100);
    EXPECT_EQ(local(11, 3, 6, 59), 159);
    EXPECT_EQ(local(11, 3, 7, 0), 200);
}

TEST(FileTimeTest, LocalTimeFollowsDaylightSavingOfThatDate) {
    const TimeZone eastern("EST5EDT,M3.2.0,M11.1.0");
    EXPECT_EQ(
        toLocalCalendar(fromCalendar({2007, 1, 15, 18, 30})), (CalendarTime{2007, 1, 15, 13, 30})
    );
    EXPECT_EQ(
        toLocalCalendar(fromCalendar({2007, 6, 15, 18, 30})), (CalendarTime{2007, 6, 15, 14, 30})
    );
    EXPECT_EQ(
        toLocalCalendar(fromCalendar({1969, 12, 31, 23, 59, 59, 999})),
        (CalendarTime{1969, 12, 31, 18, 59, 59, 999})
    );
    EXPECT_EQ(toLocalCalendar(-1), CalendarTime{});
}

TEST(FileTimeTest, UnixSeconds) {
    EXPECT_EQ(toUnixSeconds(kUnixEpoch), 0U);
    EXPECT_EQ(toUnixSeconds(kUnixEpoch + 19'999'999), 1U);
    EXPECT_EQ(toUnixSeconds(kUnixEpoch - 1), 0xFFFF'FFFF'FFFF'FFFFU / 10'000'000);
    EXPECT_EQ(fromUnixSeconds(0), kUnixEpoch);
    EXPECT_EQ(fromUnixSeconds(0xFFFFFFFF), kUnixEpoch + 4'294'967'295 * kFileTimePerSecond);
}

} // namespace
} // namespace raincast
