// SPDX-License-Identifier: MIT
#pragma once

#include "core/file_time.h"

// When a product is asked for again.
namespace raincast {

/// Nobody asked for it for so long: it rests.
inline constexpr FileTime kWantedFor = 15 * kFileTimePerMinute;
/// A radar whose newest volume is older than this is down, or its provider is.
inline constexpr FileTime kFreshFor = 20 * kFileTimePerMinute;
/// How soon the newest volume may be asked for again, whether it was replaced.
inline constexpr FileTime kRecheckAfter = 30 * kFileTimePerSecond;
/// An object that was gone or wrong is not asked for again for so long.
inline constexpr FileTime kRefusedFor = 10 * kFileTimePerMinute;
/// The same after no answer at all.
inline constexpr FileTime kFailedFor = 30 * kFileTimePerSecond;
/// An asker waits for a listing so long when nothing is known, and when something is.
inline constexpr FileTime kColdWait = 8 * kFileTimePerSecond;
inline constexpr FileTime kWarmWait = 1 * kFileTimePerSecond;
/// An asker waits for a frame so long.
inline constexpr FileTime kFrameWait = 20 * kFileTimePerSecond;

/// Whether a time has come that was at most so far ahead when it was set. A clock that has been set
/// back since does not keep anybody waiting.
[[nodiscard]] constexpr bool hasCome(FileTime time, FileTime longestWait, FileTime now) {
    return time <= now || time > now + longestWait;
}

/// What is known of a product's volumes after a listing.
struct VolumeTimes {
    FileTime newest = 0;   ///< 0: there is none
    FileTime previous = 0; ///< the volume before it; 0: unknown
    FileTime modified = 0; ///< when the newest was put there; 0: unknown
    int misses = 0;        ///< listings since it, that brought no later one
};

/// When to list next: when the next volume is expected, as long after this one as this one after
/// the one before, and 15 seconds for its way; when it is late every 30 seconds, six times, then
/// every two minutes.
[[nodiscard]] FileTime nextListing(const VolumeTimes& volumes, FileTime now);

} // namespace raincast
