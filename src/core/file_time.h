// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

namespace raincast {

/// A point in time: 100-nanosecond units since 1 January 1601, 00:00 UTC. 0 means "no time".
using FileTime = std::int64_t;

inline constexpr FileTime kFileTimePerSecond = 10'000'000;
inline constexpr FileTime kFileTimePerMinute = 60 * kFileTimePerSecond;

/// 1 January 1970, 00:00 UTC.
inline constexpr FileTime kUnixEpoch = 116'444'736'000'000'000;

/// A calendar date and time of day, in UTC or local time as the function that made it says.
struct CalendarTime {
    int year = 0;         ///< 1601 to 30827
    int month = 0;        ///< 1 to 12
    int day = 0;          ///< 1 to 31
    int hour = 0;         ///< 0 to 23
    int minute = 0;       ///< 0 to 59
    int second = 0;       ///< 0 to 59
    int milliseconds = 0; ///< 0 to 999

    friend bool operator==(const CalendarTime&, const CalendarTime&) = default;
};

/// The time of a UTC calendar date and time of day; 0 when a field is out of its range or the day
/// does not exist in the (proleptic Gregorian) calendar.
[[nodiscard]] FileTime fromCalendar(const CalendarTime& utc);

/// 00:00 UTC of a date. A year below 100 means 2000 + year, one from 100 to 199 means 1900 + year.
/// 0 for a date that does not exist.
[[nodiscard]] FileTime dateToTime(int year, int month, int day);

/// The UTC calendar fields of a time; all fields 0 for a negative time or one after year 30827.
[[nodiscard]] CalendarTime toCalendar(FileTime time);

/// The calendar fields of a time in the process's local time zone; all 0 as for toCalendar.
[[nodiscard]] CalendarTime toLocalCalendar(FileTime time);

/// Whole seconds since 1970, by an unsigned 64-bit division: a time before 1970 wraps.
[[nodiscard]] std::uint64_t toUnixSeconds(FileTime time);
[[nodiscard]] FileTime fromUnixSeconds(std::uint32_t seconds);

} // namespace raincast
