// SPDX-License-Identifier: MIT
#pragma once

#include "live/live_feed.h"

#include <map>
#include <memory>
#include <vector>

namespace raincast {

/// The providers in the order in which they are believed, and all their feeds. For one thread at a
/// time.
class LiveFeeds {
public:
    /// Either provider may be missing; the store is borrowed.
    /// Volumes that it has are known from the beginning.
    LiveFeeds(std::unique_ptr<Provider> bucket, std::unique_ptr<Provider> ring, LiveStore& store);

    [[nodiscard]] Provider* bucket() const { return m_bucket.get(); }
    [[nodiscard]] Provider* ring() const { return m_ring.get(); }
    [[nodiscard]] std::vector<Provider*> providers() const;

    [[nodiscard]] LiveFeed& feed(Provider& provider, const LiveName& name);

    /// The feeds of a radar that may have a product of the tree, the best first.
    [[nodiscard]] std::vector<LiveFeed*> feedsOf(std::string_view radar, Product product);

    /// The newest volume of a radar, whatever the product; 0 for none.
    [[nodiscard]] FileTime newestOf(std::string_view radar) const;

    /// Volumes before this time are of no use.
    [[nodiscard]] FileTime horizon() const { return m_store.horizon(); }
    void forgetOld();

private:
    using Key = std::pair<const Provider*, LiveName>;

    std::unique_ptr<Provider> m_bucket;
    std::unique_ptr<Provider> m_ring;
    LiveStore& m_store;
    std::map<Key, std::unique_ptr<LiveFeed>> m_feeds;
};

} // namespace raincast
