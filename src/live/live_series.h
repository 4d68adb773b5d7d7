// SPDX-License-Identifier: MIT
#pragma once

#include "live/live_feeds.h"
#include "tree/frame_source.h"

#include <string>
#include <vector>

namespace raincast {

/// The frames of a product of the tree at a site: chooses among the feeds that may have them, and
/// merges what they have by volume time. For one thread at a time.
class LiveSeries {
public:
    /// The feeds are borrowed.
    LiveSeries(LiveFeeds& feeds, std::string site, Product product);

    /// Somebody asked for it at a time.
    void want(FileTime time);
    [[nodiscard]] bool isWanted() const;
    [[nodiscard]] FileTime wantedAt() const { return m_wantedAt; }

    /// Asks for the lists that are due. True while answers are under way that may bring frames.
    bool pursue();
    /// When the next list is due; for a series that is pursued.
    [[nodiscard]] FileTime due();

    /// The minutes of all frames, in order, none twice.
    [[nodiscard]] std::vector<FileTime> minutes();
    /// The newest volume and its feed; null where there is none.
    [[nodiscard]] LiveFeed* newestFeed();
    [[nodiscard]] FileTime newest();

    /// Asks for the bytes of a frame where they are not there. True while it is worth waiting.
    bool pursueFrame(FileTime minute);
    /// The feeds that have bytes of a frame in the store, the best first.
    [[nodiscard]] std::vector<LiveFeed*> keptBy(FileTime minute);
    [[nodiscard]] FrameStamp stamp(FileTime minute);

    [[nodiscard]] SourceState state();
    /// Whether only another product of the site can tell why there is nothing.
    [[nodiscard]] bool needsWitness();

    [[nodiscard]] const std::string& site() const { return m_site; }
    [[nodiscard]] Product product() const { return m_product; }
    [[nodiscard]] std::string_view radar() const;

private:
    /// Which of a provider's products is taken; remembered for a day (UTC).
    struct Choice {
        std::size_t index = 0;
        FileTime day = 0;
        bool isSettled = false;
        FileTime retryAt = 0; ///< unless it is fresh
    };

    [[nodiscard]] bool isSecondBest(const LiveFeed& kept, FileTime minute);
    bool pursue(Provider& provider, Choice& choice, FileTime since);
    [[nodiscard]] LiveFeed& chosen(Provider& provider, const Choice& choice);
    [[nodiscard]] std::size_t freshest(Provider& provider);
    [[nodiscard]] FileTime newestIn(Provider& provider);
    [[nodiscard]] FileTime ringSince();
    [[nodiscard]] bool needsRing();
    [[nodiscard]] bool hasBucketFailed();

    LiveFeeds& m_feeds;
    std::string m_site;
    Product m_product;
    FileTime m_wantedAt = 0;
    Choice m_bucket;
    Choice m_ring;
};

} // namespace raincast
