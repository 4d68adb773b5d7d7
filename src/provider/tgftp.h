// SPDX-License-Identifier: MIT
#pragma once

#include "provider/provider.h"
#include "provider/ring_page.h"

#include <map>

namespace raincast {

/// Folders with a ring of some 250 files for each product and site, and a copy of the newest,
/// sn.last. Neither their numbers nor their dates tell the volume: only the files do, so that a
/// volume is found by fetching it. What is missing between the newest known volume and sn.last is
/// taken from the ring, newest first, two at a time, each file once.
class Tgftp : public Provider {
public:
    /// `base` is the address above the folders "DS.…". The fetcher is borrowed.
    Tgftp(PoliteFetcher& fetcher, QByteArray base);

    void list(const ListQuestion& question, Found found, Listed listed) override;
    void get(const LiveObject& object, bool isKept, Got got) override;
    [[nodiscard]] const HostHealth& health() const override { return m_fetcher.health(m_host); }
    [[nodiscard]] bool rests() const override { return m_fetcher.rests(m_host); }
    [[nodiscard]] QString name() const override;
    [[nodiscard]] QString host() const override { return QString::fromUtf8(m_host); }
    [[nodiscard]] const LiveChoices& choices(Product product) const override {
        return ringChoices(product);
    }
    [[nodiscard]] FileTime leastInterval() const override { return 150 * kFileTimePerSecond; }

private:
    struct File {
        FileTime modified = 0;
        FileTime volume = 0; ///< 0: of no use
    };
    struct Ring {
        QByteArray lastModified; ///< of sn.last
        FileTime newest = 0;     ///< the volume in sn.last
        FileTime listedAt = 0;
        std::map<QByteArray, File> files; ///< those that were fetched
    };
    struct Listing;

    [[nodiscard]] QByteArray folderOf(const LiveName& name) const;
    void takeLast(const std::shared_ptr<Listing>& listing, const FetchAnswer& answer);
    [[nodiscard]] bool
    needsRing(const ListQuestion& question, const Ring& ring, FileTime before) const;
    void listRing(const std::shared_ptr<Listing>& listing);
    void planRing(const std::shared_ptr<Listing>& listing, const FetchAnswer& answer);
    void fetchNext(const std::shared_ptr<Listing>& listing);
    void
    takeFile(const std::shared_ptr<Listing>& listing, const RingEntry& entry, FetchAnswer answer);

    PoliteFetcher& m_fetcher;
    QByteArray m_base;
    QByteArray m_host;
    std::map<LiveName, Ring> m_rings;
};

} // namespace raincast
