// SPDX-License-Identifier: MIT
#pragma once

#include "provider/provider.h"

namespace raincast {

/// A bucket of products whose keys are made of site, product and volume time: what there is, and
/// of when, is known without fetching it. Lists are asked for by day (UTC), from the newest known
/// volume on, that one included: it may have been replaced.
class S3Bucket : public Provider {
public:
    /// `base` is the address that keys follow. The fetcher is borrowed.
    S3Bucket(PoliteFetcher& fetcher, QByteArray base);

    void list(const ListQuestion& question, Found found, Listed listed) override;
    void get(const LiveObject& object, bool isKept, Got got) override;
    [[nodiscard]] const HostHealth& health() const override { return m_fetcher.health(m_host); }
    [[nodiscard]] bool rests() const override { return m_fetcher.rests(m_host); }
    [[nodiscard]] QString name() const override;
    [[nodiscard]] QString host() const override { return QString::fromUtf8(m_host); }
    [[nodiscard]] const LiveChoices& choices(Product product) const override {
        return bucketChoices(product);
    }
    [[nodiscard]] FileTime leastInterval() const override { return 15 * kFileTimePerSecond; }

private:
    struct Listing;

    void listPage(
        const std::shared_ptr<Listing>& listing, const QByteArray& query, const QByteArray& token,
        int page
    );

    PoliteFetcher& m_fetcher;
    QByteArray m_base;
    QByteArray m_host;
};

} // namespace raincast
