// SPDX-License-Identifier: MIT
#include "server/readiness.h"

#include <algorithm>
#include <set>

namespace raincast {

namespace {

// Radars that look at clear air take ten minutes for a volume, and the providers' ways take some.
constexpr FileTime kSilent = 30 * kFileTimePerMinute;
// One radar that is down is down; of several, the weather has come to a stop.
constexpr std::size_t kSeveral = 3;

bool isOf(const LiveStatus::Wanted& wanted, std::initializer_list<SourceState> states) {
    return std::find(states.begin(), states.end(), wanted.state) != states.end();
}

/// Nothing new has come for long of anything that is wanted, and not for want of radars.
bool isSilent(const ServerStatus& status, FileTime now) {
    const LiveStatus& live = *status.live;
    const FileTime age = newestAge(live, now).value_or(now);
    if (std::min(age, now - status.started) < kSilent) {
        return false;
    }
    std::set<std::string> down;
    for (const LiveStatus::Wanted& wanted : live.wanted) {
        if (isOf(wanted, {SourceState::provider, SourceState::network})) {
            return true;
        }
        if (isOf(wanted, {SourceState::radarDown})) {
            down.insert(wanted.site);
        }
    }
    return down.size() >= kSeveral;
}

} // namespace

std::optional<FileTime> newestAge(const LiveStatus& live, FileTime now) {
    FileTime newest = 0;
    for (const LiveStatus::Wanted& wanted : live.wanted) {
        newest = std::max(newest, wanted.newest);
    }
    return newest == 0 ? std::nullopt : std::optional(std::max<FileTime>(now - newest, 0));
}

std::string_view whyNotReady(const ServerStatus& status, FileTime now) {
    if (status.isEnding) {
        return "It is about to end.";
    }
    if (!status.isSourceReady) {
        return "It still looks for its frames.";
    }
    // A replay's weather has another time.
    if (status.live && !status.replay && isSilent(status, now)) {
        return "No live weather has come for half an hour.";
    }
    return {};
}

} // namespace raincast
