// SPDX-License-Identifier: MIT
#include "live/live_feed.h"

#include "core/clock.h"
#include "live/live_plan.h"

#include <algorithm>

namespace raincast {

namespace {

// Clocks differ.
constexpr FileTime kMostAhead = 10 * kFileTimePerMinute;
constexpr FileTime kLongestWait = 15 * kFileTimePerMinute;

FileTime now() {
    return Clock::current().now();
}

} // namespace

LiveFeed::LiveFeed(Provider& provider, LiveStore& store, LiveName name)
    : m_provider(provider), m_store(store), m_name(std::move(name)) {}

void LiveFeed::take(const LiveObject& kept) {
    Volume& volume = m_volumes[kept.minute()];
    volume.object = kept;
    volume.kept = kept.etag;
}

bool LiveFeed::isDue() const {
    return !m_isListing && hasCome(m_due, kLongestWait, now());
}

void LiveFeed::list(FileTime since) {
    if (isDue()) {
        begin(since, false);
    }
}

void LiveFeed::listAll(FileTime since) {
    if (!m_isListing && hasCome(m_listedAllAt + kRefusedFor, kRefusedFor, now())) {
        m_listedAllAt = now();
        begin(since, true);
    }
}

void LiveFeed::begin(FileTime since, bool all) {
    m_isListing = true;
    m_oldest = since;
    // What is of the future now came by a clock that was wrong.
    m_volumes.erase(m_volumes.upper_bound(now() + kMostAhead), m_volumes.end());
    if (m_listedAt > now()) {
        m_listedAt = 0;
    }
    // Volumes of an earlier run say nothing of those between them.
    const bool isFirst = m_listedAt == 0 || all;
    const ListQuestion question{
        m_name, since, isFirst ? 0 : std::max(newest(), since), m_listedAt, all};
    m_provider.list(
        question, [this](std::vector<LiveObject> objects) { find(std::move(objects)); },
        [this, before = newest()](LiveOutcome outcome) { end(outcome, before); }
    );
}

void LiveFeed::find(std::vector<LiveObject> objects) {
    for (LiveObject& object : objects) {
        const bool isOfUse = object.time >= m_oldest && object.time <= now() + kMostAhead;
        if (!isOfUse) {
            continue;
        }
        Volume& volume = m_volumes[object.minute()];
        // Of two that began within a minute the later one stands for it.
        if (object.time < volume.object.time) {
            continue;
        }
        const bool isOther = object.etag != volume.object.etag || object.time != volume.object.time;
        if (isOther) {
            volume.notBefore = 0;
        }
        if (!object.body.isEmpty()) {
            m_store.keep(object);
            volume.kept = object.etag;
            volume.checkedAt = now();
            object.body.clear();
        } else if (object.time != volume.object.time) {
            volume.kept = m_store.has(object) ? std::optional(object.etag) : std::nullopt;
        }
        volume.object = std::move(object);
    }
}

void LiveFeed::end(LiveOutcome outcome, FileTime newestBefore) {
    m_isListing = false;
    m_hasFailed = outcome != LiveOutcome::good;
    if (m_hasFailed) {
        m_due = now() + m_provider.leastInterval();
        return;
    }
    m_listedAt = now();
    m_misses = newest() > newestBefore ? 0 : m_misses + 1;
    VolumeTimes times;
    times.misses = m_misses;
    if (!m_volumes.empty()) {
        const auto last = std::prev(m_volumes.end());
        times.newest = last->second.object.time;
        times.modified = last->second.object.modified;
        times.previous = last == m_volumes.begin() ? 0 : std::prev(last)->second.object.time;
    }
    m_due = std::max(nextListing(times, now()), now() + m_provider.leastInterval());
}

FileTime LiveFeed::newest() const {
    return m_volumes.empty() ? 0 : m_volumes.rbegin()->second.object.time;
}

std::vector<FileTime> LiveFeed::minutes() const {
    std::vector<FileTime> result;
    result.reserve(m_volumes.size());
    for (const auto& [minute, volume] : m_volumes) {
        result.push_back(minute);
    }
    return result;
}

bool LiveFeed::isNewest(FileTime minute) const {
    return !m_volumes.empty() && m_volumes.rbegin()->first == minute;
}

LiveFeed::Bytes LiveFeed::bytesOf(FileTime minute) const {
    const auto found = m_volumes.find(minute);
    if (found == m_volumes.end()) {
        return Bytes::none;
    }
    const Volume& volume = found->second;
    if (volume.isFetching) {
        return Bytes::underWay;
    }
    const QByteArray& etag = volume.object.etag;
    const bool isReplaced = volume.kept && *volume.kept != etag;
    const bool isDoubtful = volume.kept && !etag.isEmpty() && isNewest(minute) &&
                            hasCome(volume.checkedAt + kRecheckAfter, kRecheckAfter, now());
    const bool mayAsk = hasCome(volume.notBefore, kRefusedFor, now()) && !m_provider.rests();
    if (mayAsk && (!volume.kept || isReplaced || isDoubtful)) {
        return Bytes::wanted;
    }
    return volume.kept ? Bytes::there : Bytes::none;
}

void LiveFeed::fetch(FileTime minute) {
    if (bytesOf(minute) != Bytes::wanted) {
        return;
    }
    Volume& volume = m_volumes[minute];
    volume.isFetching = true;
    LiveObject asked = volume.object;
    const bool isSame = volume.kept && *volume.kept == asked.etag;
    m_provider.get(
        asked, isSame,
        [this, minute](LiveOutcome outcome, std::optional<LiveObject> object) {
            takeBytes(minute, outcome, std::move(object));
        }
    );
}

void LiveFeed::takeBytes(FileTime minute, LiveOutcome outcome, std::optional<LiveObject> object) {
    const auto found = m_volumes.find(minute);
    if (found == m_volumes.end()) {
        return; // it has grown too old meanwhile
    }
    Volume& volume = found->second;
    volume.isFetching = false;
    if (outcome != LiveOutcome::good) {
        const bool isRefused = outcome == LiveOutcome::refused;
        volume.notBefore = now() + (isRefused ? kRefusedFor : kFailedFor);
        return;
    }
    volume.checkedAt = now();
    if (object && object->time == volume.object.time) {
        m_store.keep(*object);
        volume.kept = object->etag;
        volume.object.etag = object->etag;
    }
}

std::optional<LiveObject> LiveFeed::kept(FileTime minute) const {
    const auto found = m_volumes.find(minute);
    if (found == m_volumes.end() || !found->second.kept) {
        return std::nullopt;
    }
    LiveObject object = found->second.object;
    object.etag = *found->second.kept;
    return object;
}

bool LiveFeed::mayChange(FileTime minute) const {
    const auto found = m_volumes.find(minute);
    if (found == m_volumes.end()) {
        return false;
    }
    const Volume& volume = found->second;
    // What the provider has now is not known before its first answer.
    return m_listedAt == 0 || isNewest(minute) ||
           (volume.kept && *volume.kept != volume.object.etag);
}

void LiveFeed::lose(FileTime minute, Loss loss) {
    const auto found = m_volumes.find(minute);
    if (found != m_volumes.end() && found->second.kept) {
        found->second.notBefore = loss == Loss::useless ? now() + kRefusedFor : 0;
        LiveObject object = found->second.object;
        object.etag = *std::exchange(found->second.kept, std::nullopt);
        m_store.drop(object);
    }
}

void LiveFeed::forget(FileTime oldest) {
    while (!m_volumes.empty() && m_volumes.begin()->second.object.time < oldest) {
        m_volumes.erase(m_volumes.begin());
    }
}

} // namespace raincast
