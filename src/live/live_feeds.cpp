// SPDX-License-Identifier: MIT
#include "live/live_feeds.h"

#include "core/clock.h"

#include <algorithm>

namespace raincast {

namespace {

bool offers(const Provider& provider, const std::string& product) {
    return std::any_of(kAllProducts.begin(), kAllProducts.end(), [&](Product of) {
        const LiveChoices& choices = provider.choices(of);
        return std::find(choices.begin(), choices.end(), product) != choices.end();
    });
}

} // namespace

LiveFeeds::LiveFeeds(
    std::unique_ptr<Provider> bucket, std::unique_ptr<Provider> ring, LiveStore& store
)
    : m_bucket(std::move(bucket)), m_ring(std::move(ring)), m_store(store) {
    const FileTime now = Clock::current().now();
    for (const LiveObject& object : m_store.load()) {
        if (object.time > now) {
            continue; // of a replay that came further; found again when its time has come
        }
        for (Provider* const provider : providers()) {
            if (offers(*provider, object.name.product)) {
                feed(*provider, object.name).take(object);
            }
        }
    }
}

std::vector<Provider*> LiveFeeds::providers() const {
    std::vector<Provider*> result;
    for (Provider* const provider : {m_bucket.get(), m_ring.get()}) {
        if (provider != nullptr) {
            result.push_back(provider);
        }
    }
    return result;
}

LiveFeed& LiveFeeds::feed(Provider& provider, const LiveName& name) {
    auto& feed = m_feeds[{&provider, name}];
    if (!feed) {
        feed = std::make_unique<LiveFeed>(provider, m_store, name);
    }
    return *feed;
}

std::vector<LiveFeed*> LiveFeeds::feedsOf(std::string_view radar, Product product) {
    std::vector<LiveFeed*> result;
    for (Provider* const provider : providers()) {
        for (const std::string& choice : provider->choices(product)) {
            const auto found = m_feeds.find({provider, {std::string(radar), choice}});
            if (found != m_feeds.end()) {
                result.push_back(found->second.get());
            }
        }
    }
    return result;
}

FileTime LiveFeeds::newestOf(std::string_view radar) const {
    FileTime newest = 0;
    const std::string site(radar);
    for (const Provider* const provider : providers()) {
        for (auto at = m_feeds.lower_bound({provider, {site, {}}});
             at != m_feeds.end() && at->first.first == provider && at->first.second.site == site;
             ++at) {
            newest = std::max(newest, at->second->newest());
        }
    }
    return newest;
}

void LiveFeeds::forgetOld() {
    for (const auto& [key, feed] : m_feeds) {
        feed->forget(horizon());
    }
}

} // namespace raincast
