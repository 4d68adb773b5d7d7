// SPDX-License-Identifier: MIT
#pragma once

#include "provider/live_object.h"
#include "provider/live_products.h"
#include "provider/polite_fetcher.h"

#include <QByteArray>
#include <QString>

#include <functional>
#include <vector>

namespace raincast {

/// What there may be new of a product.
struct ListQuestion {
    LiveName name;
    FileTime since = 0;    ///< older volumes are of no use
    FileTime known = 0;    ///< the newest volume that is known; 0 for none
    FileTime listedAt = 0; ///< when this was last answered; 0: never
    bool all = false;      ///< volumes between the known ones, too
};

/// How a question to a provider ended.
enum class LiveOutcome {
    good,    ///< it answered, if only that there is nothing
    refused, ///< an object that is gone or wrong
    failed,  ///< it did not answer, or not as it should
};

/// How a request for an object ended.
[[nodiscard]] inline LiveOutcome outcomeOf(const FetchAnswer& answer) {
    const bool hasCome = answer.failure == FetchAnswer::Failure::none;
    if (hasCome && (answer.status == 200 || answer.status == 304)) {
        return LiveOutcome::good;
    }
    const bool isWrong = !hasCome && answer.status == 200 && !answer.body.isEmpty();
    const bool isGone = hasCome && answer.status >= 400 && answer.status < 500;
    return isWrong || isGone ? LiveOutcome::refused : LiveOutcome::failed;
}

/// Somebody who publishes Level III products of all sites. Questions are asked through a
/// PoliteFetcher; answers are called from within its turn().
class Provider {
public:
    /// Takes volumes that a listing found, in any order; called any number of times.
    using Found = std::function<void(std::vector<LiveObject>)>;
    using Listed = std::function<void(LiveOutcome)>;
    /// Takes the object with its bytes and its present tag, or, with `good`, nothing: it is as it
    /// was.
    using Got = std::function<void(LiveOutcome, std::optional<LiveObject>)>;

    virtual ~Provider() = default;

    /// Asks for the volumes of a product. `listed` is called once, after the last `found`.
    virtual void list(const ListQuestion& question, Found found, Listed listed) = 0;

    /// Asks for the bytes of a volume; only for changed ones if the object has a tag and `isKept`.
    virtual void get(const LiveObject& object, bool isKept, Got got) = 0;

    /// How the host has behaved.
    [[nodiscard]] virtual const HostHealth& health() const = 0;

    /// Whether it is not worth asking now.
    [[nodiscard]] virtual bool rests() const = 0;

    /// For people: "NOAA/Unidata (AWS)".
    [[nodiscard]] virtual QString name() const = 0;
    [[nodiscard]] virtual QString host() const = 0;

    /// The provider's names of a product of the tree.
    [[nodiscard]] virtual const LiveChoices& choices(Product product) const = 0;

    /// How soon it may be asked for the same list again.
    [[nodiscard]] virtual FileTime leastInterval() const = 0;
};

} // namespace raincast
