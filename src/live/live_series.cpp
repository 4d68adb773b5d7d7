// SPDX-License-Identifier: MIT
#include "live/live_series.h"

#include "core/clock.h"
#include "live/live_plan.h"

#include <algorithm>
#include <limits>
#include <set>

namespace raincast {

namespace {

constexpr FileTime kNever = std::numeric_limits<FileTime>::max();
constexpr FileTime kDay = 24 * 60 * kFileTimePerMinute;
// How soon all choices are tried again: when there is nothing, and when what there is is old.
constexpr FileTime kRetryNothing = 120 * kFileTimePerSecond;
constexpr FileTime kRetryOld = 10 * kFileTimePerMinute;

FileTime now() {
    return Clock::current().now();
}

bool isFresh(FileTime newest) {
    return newest >= now() - kFreshFor;
}

} // namespace

LiveSeries::LiveSeries(LiveFeeds& feeds, std::string site, Product product)
    : m_feeds(feeds), m_site(std::move(site)), m_product(product) {}

void LiveSeries::want(FileTime time) {
    m_wantedAt = std::max(m_wantedAt, time);
}

bool LiveSeries::isWanted() const {
    // A clock that went back must not keep it wanted for good.
    return m_wantedAt != 0 && now() < m_wantedAt + kWantedFor && m_wantedAt < now() + kWantedFor;
}

std::string_view LiveSeries::radar() const {
    return radarOf(m_site, now());
}

LiveFeed& LiveSeries::chosen(Provider& provider, const Choice& choice) {
    const LiveChoices& names = provider.choices(m_product);
    return m_feeds.feed(
        provider, {std::string(radar()), names[std::min(choice.index, names.size() - 1)]}
    );
}

bool LiveSeries::pursue() {
    bool isPending = false;
    if (Provider* const bucket = m_feeds.bucket()) {
        isPending = pursue(*bucket, m_bucket, m_feeds.horizon());
    }
    if (needsRing()) {
        isPending = pursue(*m_feeds.ring(), m_ring, ringSince()) || isPending;
    }
    return isPending;
}

// Volumes that the bucket has listed need not come from the ring, unless somebody wants a frame
// whose object the bucket does not give.
FileTime LiveSeries::ringSince() {
    Provider* const bucket = m_feeds.bucket();
    const bool isListed = bucket != nullptr && chosen(*bucket, m_bucket).listedAt() != 0;
    return isListed ? std::max(m_feeds.horizon(), newestIn(*bucket)) : m_feeds.horizon();
}

// Tries the choices in turn until one is fresh, then stays with it for the day.
bool LiveSeries::pursue(Provider& provider, Choice& choice, FileTime since) {
    const FileTime day = now() / kDay;
    const bool isOld = choice.isSettled && hasCome(choice.retryAt, kRetryOld, now()) &&
                       !isFresh(chosen(provider, choice).newest());
    if (choice.day != day || isOld) {
        choice = {.index = 0, .day = day, .isSettled = false, .retryAt = 0};
    }
    while (true) {
        LiveFeed& feed = chosen(provider, choice);
        feed.list(since);
        if (feed.isListing()) {
            return true;
        }
        if (choice.isSettled || feed.hasFailed()) {
            return false;
        }
        if (isFresh(feed.newest())) {
            choice.isSettled = true;
        } else if (choice.index + 1 < provider.choices(m_product).size()) {
            ++choice.index;
        } else {
            choice.index = freshest(provider);
            choice.isSettled = true;
            const bool isEmpty = chosen(provider, choice).newest() == 0;
            choice.retryAt = now() + (isEmpty ? kRetryNothing : kRetryOld);
        }
    }
}

std::size_t LiveSeries::freshest(Provider& provider) {
    std::size_t best = 0;
    FileTime newest = 0;
    for (std::size_t i = 0; i < provider.choices(m_product).size(); ++i) {
        const FileTime of = chosen(provider, {.index = i}).newest();
        if (of > newest) {
            newest = of;
            best = i;
        }
    }
    return best;
}

FileTime LiveSeries::due() {
    FileTime due = kNever;
    const auto take = [&](Provider& provider, const Choice& choice) {
        const LiveFeed& feed = chosen(provider, choice);
        if (!feed.isListing()) {
            due = std::min(due, feed.due());
        }
    };
    if (Provider* const bucket = m_feeds.bucket()) {
        take(*bucket, m_bucket);
    }
    if (needsRing()) {
        take(*m_feeds.ring(), m_ring);
    }
    return due;
}

bool LiveSeries::hasBucketFailed() {
    const Provider* const bucket = m_feeds.bucket();
    return bucket == nullptr || bucket->rests() ||
           bucket->health().failures >= PoliteFetcher::kFailuresToRest;
}

bool LiveSeries::needsRing() {
    if (m_feeds.ring() == nullptr) {
        return false;
    }
    return hasBucketFailed() || (m_bucket.isSettled && !isFresh(newestIn(*m_feeds.bucket())));
}

FileTime LiveSeries::newestIn(Provider& provider) {
    FileTime newest = 0;
    for (const LiveFeed* const feed : m_feeds.feedsOf(radar(), m_product)) {
        newest = &feed->provider() == &provider ? std::max(newest, feed->newest()) : newest;
    }
    return newest;
}

std::vector<FileTime> LiveSeries::minutes() {
    std::set<FileTime> minutes;
    for (const LiveFeed* const feed : m_feeds.feedsOf(radar(), m_product)) {
        const auto of = feed->minutes();
        minutes.insert(of.begin(), of.end());
    }
    const FileTime horizon = m_feeds.horizon();
    return {minutes.lower_bound(horizon - horizon % kFileTimePerMinute), minutes.end()};
}

LiveFeed* LiveSeries::newestFeed() {
    LiveFeed* newest = nullptr;
    for (LiveFeed* const feed : m_feeds.feedsOf(radar(), m_product)) {
        const FileTime before = newest == nullptr ? 0 : newest->newest();
        // The same volume by the first that has it.
        newest = feed->newest() > before ? feed : newest;
    }
    return newest;
}

FileTime LiveSeries::newest() {
    const LiveFeed* const feed = newestFeed();
    return feed == nullptr ? 0 : feed->newest();
}

bool LiveSeries::pursueFrame(FileTime minute) {
    bool isListed = false;
    for (LiveFeed* const feed : m_feeds.feedsOf(radar(), m_product)) {
        isListed = isListed || feed->has(minute);
        switch (feed->bytesOf(minute)) {
        case LiveFeed::Bytes::there:
            return false;
        case LiveFeed::Bytes::wanted:
            feed->fetch(minute);
            return true;
        case LiveFeed::Bytes::underWay:
            return true;
        case LiveFeed::Bytes::none:
            break;
        }
    }
    Provider* const ring = m_feeds.ring();
    if (!isListed || ring == nullptr || ring->rests()) {
        return false;
    }
    // Its provider does not give it; the other one may.
    LiveFeed& feed = chosen(*ring, m_ring);
    feed.listAll(m_feeds.horizon());
    return feed.isListing();
}

std::vector<LiveFeed*> LiveSeries::keptBy(FileTime minute) {
    std::vector<LiveFeed*> result;
    for (LiveFeed* const feed : m_feeds.feedsOf(radar(), m_product)) {
        if (feed->kept(minute)) {
            result.push_back(feed);
        }
    }
    return result;
}

// Whether bytes of a better source may take the place of those of this one.
bool LiveSeries::isSecondBest(const LiveFeed& kept, FileTime minute) {
    for (const LiveFeed* const feed : m_feeds.feedsOf(radar(), m_product)) {
        if (feed == &kept) {
            break;
        }
        if (feed->has(minute)) {
            return true;
        }
    }
    return &kept.provider() != m_feeds.providers().front();
}

FrameStamp LiveSeries::stamp(FileTime minute) {
    const auto kept = keptBy(minute);
    const auto all = minutes();
    FrameStamp stamp;
    stamp.mayChange = kept.empty() || kept.front()->mayChange(minute) ||
                      isSecondBest(*kept.front(), minute) || (!all.empty() && all.back() == minute);
    if (!kept.empty()) {
        const auto object = kept.front()->kept(minute);
        stamp.version =
            QByteArray::fromStdString(keyOf(object->name, object->time)) + ' ' + object->etag;
    }
    return stamp;
}

bool LiveSeries::needsWitness() {
    return m_product != Product::baseReflectivity && newest() == 0 &&
           (m_bucket.isSettled || m_ring.isSettled) && !isFresh(m_feeds.newestOf(radar()));
}

SourceState LiveSeries::state() {
    const FileTime newestFrame = newest();
    if (isFresh(newestFrame)) {
        return SourceState::ok;
    }
    Provider* const first = m_feeds.providers().empty() ? nullptr : m_feeds.providers().front();
    if (first == nullptr) {
        return SourceState::provider;
    }
    const LiveFeed& feed = chosen(*first, first == m_feeds.bucket() ? m_bucket : m_ring);
    if (feed.hasFailed()) {
        const auto providers = m_feeds.providers();
        const bool isReached =
            std::any_of(providers.begin(), providers.end(), [](const Provider* provider) {
                return provider->health().isReached;
            });
        return isReached ? SourceState::provider : SourceState::network;
    }
    if (feed.listedAt() == 0) {
        return SourceState::ok; // nobody knows yet
    }
    const FileTime ofSite = m_feeds.newestOf(radar());
    const bool isSiteFresh = isFresh(ofSite);
    if (newestFrame == 0 && (isSiteFresh || ofSite == 0)) {
        return SourceState::noProduct;
    }
    return isSiteFresh ? SourceState::ok : SourceState::radarDown;
}

} // namespace raincast
