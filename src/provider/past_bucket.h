// SPDX-License-Identifier: MIT
#pragma once

#include "provider/provider.h"

#include <map>
#include <memory>

namespace raincast {

/// A bucket as it was, by a clock of the past (Clock::current()): a volume is there from its own
/// time on. The past does not change: a day is asked for once, however fast the clock runs, and an
/// object that is kept is never asked for again.
class PastBucket : public Provider {
public:
    explicit PastBucket(std::unique_ptr<Provider> bucket) : m_bucket(std::move(bucket)) {}

    void list(const ListQuestion& question, Found found, Listed listed) override;
    void get(const LiveObject& object, bool isKept, Got got) override;
    [[nodiscard]] const HostHealth& health() const override { return m_bucket->health(); }
    [[nodiscard]] bool rests() const override { return m_bucket->rests(); }
    [[nodiscard]] QString name() const override { return m_bucket->name(); }
    [[nodiscard]] QString host() const override { return m_bucket->host(); }
    [[nodiscard]] const LiveChoices& choices(Product product) const override {
        return m_bucket->choices(product);
    }
    [[nodiscard]] FileTime leastInterval() const override { return m_bucket->leastInterval(); }

private:
    /// What is known of a product, up to a time that may lie ahead of the clock.
    struct Known {
        std::map<FileTime, LiveObject> volumes; ///< by their time
        FileTime upTo = 0;
    };

    void tell(const ListQuestion& question, const Found& found);

    std::unique_ptr<Provider> m_bucket;
    std::map<LiveName, Known> m_known;
};

} // namespace raincast
