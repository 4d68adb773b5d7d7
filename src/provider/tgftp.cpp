// SPDX-License-Identifier: MIT
#include "provider/tgftp.h"

#include "core/clock.h"
#include "provider/http_time.h"
#include "provider/live_check.h"

#include <algorithm>
#include <deque>

namespace raincast {

namespace {

constexpr qint64 kMostPageBytes = 1024 * 1024;
constexpr qint64 kMostFileBytes = 2 * 1024 * 1024;
constexpr int kMostAtOnce = 2;
// Volumes follow each other within this time; a longer gap has others in it.
constexpr FileTime kLongestInterval = 11 * kFileTimePerMinute;
constexpr FileTime kStale = 20 * kFileTimePerMinute;
constexpr FileTime kLeastBetweenRings = 10 * kFileTimePerMinute;

bool isGood(const FetchAnswer& answer) {
    return answer.failure == FetchAnswer::Failure::none &&
           (answer.status == 200 || answer.status == 304 || answer.status == 404);
}

bool isNew(const FetchAnswer& answer) {
    return isGood(answer) && answer.status == 200;
}

/// A request for what a site may not have.
FetchRequest requestOf(QByteArray url, qint64 mostBytes) {
    FetchRequest request{std::move(url), mostBytes};
    request.mayBeAbsent = true;
    return request;
}

PoliteFetcher::Check productOf(const std::string& site) {
    return [site](const FetchAnswer& answer) -> std::optional<QString> {
        const auto time = checkProduct(answer.body, site);
        return time ? std::nullopt : std::optional(time.error());
    };
}

} // namespace

/// One question under way.
struct Tgftp::Listing {
    ListQuestion question;
    Found found;
    Listed listed;
    std::deque<RingEntry> wanted{}; ///< files of the ring to be fetched
    int running = 0;
    LiveOutcome outcome = LiveOutcome::good;

    FileTime add(FetchAnswer answer) const {
        const FileTime time = checkProduct(answer.body, question.name.site).value_or(0);
        LiveObject object{question.name, time};
        object.bytes = answer.body.size();
        object.body = std::move(answer.body);
        std::vector<LiveObject> objects;
        objects.push_back(std::move(object));
        found(std::move(objects));
        return time;
    }
};

Tgftp::Tgftp(PoliteFetcher& fetcher, QByteArray base)
    : m_fetcher(fetcher), m_base(std::move(base)), m_host(PoliteFetcher::hostOf(m_base)) {}

QString Tgftp::name() const {
    return QStringLiteral("NOAA/NWS (tgftp)");
}

QByteArray Tgftp::folderOf(const LiveName& name) const {
    return m_base + "/DS." + QByteArray::fromStdString(name.product) + "/SI." +
           QByteArray::fromStdString(ringSite(name.site)) + '/';
}

void Tgftp::list(const ListQuestion& question, Found found, Listed listed) {
    auto listing =
        std::make_shared<Listing>(Listing{question, std::move(found), std::move(listed)});
    FetchRequest request = requestOf(folderOf(question.name) + "sn.last", kMostFileBytes);
    request.lastModified = m_rings[question.name].lastModified;
    m_fetcher.get(
        request, productOf(question.name.site),
        [this, listing](const FetchAnswer& answer) { takeLast(listing, answer); }
    );
}

void Tgftp::takeLast(const std::shared_ptr<Listing>& listing, const FetchAnswer& answer) {
    Ring& ring = m_rings[listing->question.name];
    const FileTime before = ring.newest;
    if (!isGood(answer)) {
        return listing->listed(LiveOutcome::failed);
    }
    if (isNew(answer)) {
        ring.lastModified = answer.lastModified;
        ring.newest = listing->add(answer);
    }
    if (answer.status == 404 || !needsRing(listing->question, ring, before)) {
        return listing->listed(LiveOutcome::good);
    }
    listRing(listing);
}

// Whether there may be volumes beside the one in sn.last that are not known.
bool Tgftp::needsRing(const ListQuestion& question, const Ring& ring, FileTime before) const {
    const FileTime now = Clock::current().now();
    const FileTime known = std::max({before, question.known, question.since});
    const bool hasGap = ring.newest > known + kLongestInterval;
    const bool isStale = ring.newest < now - kStale;
    const bool isFirst = ring.listedAt == 0 && ring.newest > known;
    const bool isWorthIt = hasGap || isStale || isFirst;
    return question.all || (isWorthIt && now >= ring.listedAt + kLeastBetweenRings);
}

void Tgftp::listRing(const std::shared_ptr<Listing>& listing) {
    const FetchRequest request = requestOf(folderOf(listing->question.name), kMostPageBytes);
    m_fetcher.get(request, {}, [this, listing](const FetchAnswer& answer) {
        if (!isGood(answer)) {
            return listing->listed(LiveOutcome::failed);
        }
        planRing(listing, answer);
        fetchNext(listing);
    });
}

// Chooses the files to be fetched.
void Tgftp::planRing(const std::shared_ptr<Listing>& listing, const FetchAnswer& answer) {
    const FileTime now = Clock::current().now();
    const ListQuestion& question = listing->question;
    Ring& ring = m_rings[question.name];
    ring.listedAt = now;
    const FileTime since = std::max(question.since, question.known);
    const FileTime last = readHttpTime(ring.lastModified);
    const FileTime lastMinute = last - last % kFileTimePerMinute;
    for (const RingEntry& entry : readRingPage(answer.body, now)) {
        const auto seen = ring.files.find(entry.name);
        const bool isSeen = seen != ring.files.end() && seen->second.modified == entry.modified;
        const bool isOfUse = entry.modified == 0 || entry.modified >= since;
        const bool isLast = last != 0 && entry.modified == lastMinute; // sn.last is a copy of it
        if (!isSeen && isOfUse && !isLast) {
            listing->wanted.push_back(entry);
        }
    }
}

void Tgftp::fetchNext(const std::shared_ptr<Listing>& listing) {
    while (!listing->wanted.empty() && listing->running < kMostAtOnce) {
        const RingEntry entry = listing->wanted.front();
        listing->wanted.pop_front();
        ++listing->running;
        const LiveName& name = listing->question.name;
        m_fetcher.get(
            requestOf(folderOf(name) + entry.name, kMostFileBytes), productOf(name.site),
            [this, listing, entry](FetchAnswer answer) {
                takeFile(listing, entry, std::move(answer));
            }
        );
    }
    if (listing->running == 0) {
        listing->listed(listing->outcome);
    }
}

void Tgftp::takeFile(
    const std::shared_ptr<Listing>& listing, const RingEntry& entry, FetchAnswer answer
) {
    --listing->running;
    Ring& ring = m_rings[listing->question.name];
    if (isNew(answer)) {
        ring.files[entry.name] = {entry.modified, listing->add(std::move(answer))};
    } else if (rests()) {
        listing->wanted.clear();
        listing->outcome = LiveOutcome::failed;
        ring.listedAt = 0; // the rest is fetched when the host answers again
    } else {
        ring.files[entry.name] = {entry.modified, 0};
    }
    fetchNext(listing);
}

void Tgftp::get(const LiveObject& object, bool, Got got) {
    const auto ring = m_rings.find(object.name);
    const QByteArray name = [&] {
        if (ring != m_rings.end()) {
            for (const auto& [file, what] : ring->second.files) {
                if (what.volume == object.time) {
                    return file;
                }
            }
        }
        return QByteArrayLiteral("sn.last");
    }();
    const auto check = [object](const FetchAnswer& answer) { return whyNot(object, answer.body); };
    m_fetcher.get(
        requestOf(folderOf(object.name) + name, kMostFileBytes), check,
        [object, got = std::move(got)](FetchAnswer answer) {
            if (const auto outcome = outcomeOf(answer); outcome != LiveOutcome::good) {
                return got(outcome, std::nullopt);
            }
            LiveObject fetched = object;
            fetched.body = std::move(answer.body);
            got(LiveOutcome::good, std::move(fetched));
        }
    );
}

} // namespace raincast
