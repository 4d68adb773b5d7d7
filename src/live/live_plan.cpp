// SPDX-License-Identifier: MIT
#include "live/live_plan.h"

#include <algorithm>

namespace raincast {

namespace {

constexpr FileTime kLeast = 15 * kFileTimePerSecond;
constexpr FileTime kWay = 15 * kFileTimePerSecond;
constexpr FileTime kLate = 30 * kFileTimePerSecond;
constexpr FileTime kVeryLate = 120 * kFileTimePerSecond;
constexpr int kMostLate = 6;
constexpr FileTime kUsualInterval = 5 * kFileTimePerMinute;
constexpr FileTime kShortestInterval = 2 * kFileTimePerMinute;
constexpr FileTime kLongestInterval = 12 * kFileTimePerMinute;
constexpr FileTime kUsualDelay = 90 * kFileTimePerSecond;

} // namespace

FileTime nextListing(const VolumeTimes& volumes, FileTime now) {
    if (volumes.newest == 0) {
        return now + kVeryLate;
    }
    const FileTime interval =
        volumes.previous == 0
            ? kUsualInterval
            : std::clamp(volumes.newest - volumes.previous, kShortestInterval, kLongestInterval);
    const FileTime came =
        volumes.modified == 0 ? volumes.newest + interval + kUsualDelay : volumes.modified;
    const FileTime expected = came + interval + kWay;
    // Clocks differ: one that is wrong by hours must not stop the listings.
    if (expected > now && expected <= now + kLongestInterval + kWay) {
        return std::max(expected, now + kLeast);
    }
    return now + (volumes.misses < kMostLate && expected <= now ? kLate : kVeryLate);
}

} // namespace raincast
