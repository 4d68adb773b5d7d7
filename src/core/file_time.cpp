// SPDX-License-Identifier: MIT
#include "core/file_time.h"

#include <chrono>
#include <ctime>

namespace raincast {

namespace {

using std::chrono::days;
using std::chrono::sys_days;
using std::chrono::year_month_day;

// The last year that the 64-bit count can name.
constexpr int kLastYear = 30827;
constexpr FileTime kPerDay = 24 * 60 * kFileTimePerMinute;
constexpr sys_days kEpoch{std::chrono::year{1601} / 1 / 1};

bool within(int value, int low, int high) {
    return low <= value && value <= high;
}

bool representable(FileTime time) {
    static const FileTime end = fromCalendar({kLastYear, 12, 31, 23, 59, 59, 999});
    return time >= 0 && time <= end;
}

} // namespace

FileTime fromCalendar(const CalendarTime& utc) {
    const bool inRange = within(utc.year, 1601, kLastYear) && within(utc.month, 1, 12) &&
                         within(utc.day, 1, 31) && within(utc.hour, 0, 23) &&
                         within(utc.minute, 0, 59) && within(utc.second, 0, 59) &&
                         within(utc.milliseconds, 0, 999);
    if (!inRange) {
        return 0;
    }
    const year_month_day date{
        std::chrono::year{utc.year}, std::chrono::month{static_cast<unsigned>(utc.month)},
        std::chrono::day{static_cast<unsigned>(utc.day)}};
    if (!date.ok()) {
        return 0;
    }
    const FileTime wholeDays = (sys_days{date} - kEpoch).count();
    const FileTime seconds = (utc.hour * 60 + utc.minute) * 60 + utc.second;
    return wholeDays * kPerDay + seconds * kFileTimePerSecond + utc.milliseconds * FileTime{10'000};
}

FileTime dateToTime(int year, int month, int day) {
    if (year < 100) {
        year += 2000;
    } else if (year < 200) {
        year += 1900;
    }
    return fromCalendar({year, month, day});
}

CalendarTime toCalendar(FileTime time) {
    if (!representable(time)) {
        return {};
    }
    const year_month_day date{kEpoch + days{time / kPerDay}};
    const auto ofDay = static_cast<int>(time % kPerDay / 10'000);
    return {
        static_cast<int>(date.year()),
        static_cast<int>(static_cast<unsigned>(date.month())),
        static_cast<int>(static_cast<unsigned>(date.day())),
        ofDay / 3'600'000,
        ofDay / 60'000 % 60,
        ofDay / 1000 % 60,
        ofDay % 1000};
}

CalendarTime toLocalCalendar(FileTime time) {
    if (!representable(time)) {
        return {};
    }
    // The C library knows the zone's rules for that very date, daylight saving included.
    const FileTime sinceEpoch = time - kUnixEpoch;
    const FileTime ofSecond =
        ((sinceEpoch % kFileTimePerSecond) + kFileTimePerSecond) % kFileTimePerSecond;
    const std::time_t seconds = (sinceEpoch - ofSecond) / kFileTimePerSecond;
    std::tm local{};
    if (localtime_r(&seconds, &local) == nullptr) {
        return {};
    }
    return {
        local.tm_year + 1900,
        local.tm_mon + 1,
        local.tm_mday,
        local.tm_hour,
        local.tm_min,
        local.tm_sec,
        static_cast<int>(ofSecond / 10'000)};
}

std::uint64_t toUnixSeconds(FileTime time) {
    return static_cast<std::uint64_t>(time - kUnixEpoch) / kFileTimePerSecond;
}

FileTime fromUnixSeconds(std::uint32_t seconds) {
    return static_cast<FileTime>(seconds) * kFileTimePerSecond + kUnixEpoch;
}

} // namespace raincast
