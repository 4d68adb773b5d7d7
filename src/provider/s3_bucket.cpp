// SPDX-License-Identifier: MIT
#include "provider/s3_bucket.h"

#include "core/clock.h"
#include "provider/bucket_listing.h"
#include "provider/live_check.h"

#include <algorithm>

namespace raincast {

namespace {

constexpr qint64 kMostListBytes = 1024 * 1024;
constexpr qint64 kMostObjectBytes = 2 * 1024 * 1024;
// A day of the quickest radar has some 400 volumes, a page a thousand.
constexpr int kMostPages = 8;
constexpr FileTime kDay = 24 * 60 * kFileTimePerMinute;
// A volume may be put there so long after it began.
constexpr FileTime kLatest = 20 * kFileTimePerMinute;

FileTime dayOf(FileTime time) {
    return time - time % kDay;
}

QByteArray bytesOf(const std::string& text) {
    return QByteArray::fromStdString(text);
}

/// From when on a question needs an answer.
FileTime beginOf(const ListQuestion& question) {
    return question.known == 0 ? question.since
                               : std::max(question.known, question.listedAt - kLatest);
}

/// The key after which the list of a day is to begin.
std::string startAfter(const ListQuestion& question, FileTime day) {
    const FileTime from = question.known == 0 ? question.since : question.known;
    if (dayOf(from) != day) {
        return {};
    }
    std::string key = keyOf(question.name, from);
    key.pop_back(); // so that the list has the volume itself
    return key;
}

} // namespace

/// One question: pages of some days under way.
struct S3Bucket::Listing {
    LiveName name;
    Found found;
    Listed listed;
    int running = 0;
    LiveOutcome outcome = LiveOutcome::good;

    void take(const BucketListing& page) const {
        std::vector<LiveObject> objects;
        for (const BucketListing::Entry& entry : page.entries) {
            auto object = readKey(entry.key);
            if (object && object->name == name) {
                object->etag = entry.etag;
                object->bytes = entry.bytes;
                object->modified = entry.modified;
                objects.push_back(std::move(*object));
            }
        }
        found(std::move(objects));
    }

    void end(LiveOutcome result) {
        outcome = result == LiveOutcome::failed ? result : outcome;
        if (--running == 0) {
            listed(outcome);
        }
    }
};

S3Bucket::S3Bucket(PoliteFetcher& fetcher, QByteArray base)
    : m_fetcher(fetcher), m_base(std::move(base)), m_host(PoliteFetcher::hostOf(m_base)) {}

QString S3Bucket::name() const {
    return QStringLiteral("NOAA/NWS NEXRAD via Unidata (AWS Open Data)");
}

void S3Bucket::list(const ListQuestion& question, Found found, Listed listed) {
    auto listing = std::make_shared<Listing>();
    listing->name = question.name;
    listing->found = std::move(found);
    listing->listed = std::move(listed);
    // The newest day first: people wait for it.
    const FileTime first = dayOf(beginOf(question));
    for (FileTime day = dayOf(Clock::current().now()); day >= first; day -= kDay) {
        QByteArray query = "/?list-type=2&prefix=" + bytesOf(dayKeyOf(question.name, day));
        if (const std::string after = startAfter(question, day); !after.empty()) {
            query += "&start-after=" + bytesOf(after);
        }
        ++listing->running;
        listPage(listing, query, {}, 1);
    }
}

void S3Bucket::listPage(
    const std::shared_ptr<Listing>& listing, const QByteArray& query, const QByteArray& token,
    int page
) {
    FetchRequest request{m_base + query, kMostListBytes};
    if (!token.isEmpty()) {
        request.url += "&continuation-token=" + token.toPercentEncoding();
    }
    const auto check = [](const FetchAnswer& answer) {
        const auto read = readBucketListing(answer.body);
        return read ? std::nullopt : std::optional(read.error());
    };
    m_fetcher.get(request, check, [this, listing, query, page](const FetchAnswer& answer) {
        const auto read = answer.status == 200 && answer.failure == FetchAnswer::Failure::none
                              ? readBucketListing(answer.body)
                              : tl::unexpected(QString());
        if (!read) {
            return listing->end(LiveOutcome::failed);
        }
        listing->take(*read);
        if (read->nextToken.isEmpty() || page == kMostPages) {
            return listing->end(LiveOutcome::good);
        }
        listPage(listing, query, read->nextToken, page + 1);
    });
}

void S3Bucket::get(const LiveObject& object, bool isKept, Got got) {
    FetchRequest request{m_base + '/' + bytesOf(keyOf(object.name, object.time)), kMostObjectBytes};
    request.mayBeAbsent = true;
    if (isKept && !object.etag.isEmpty()) {
        request.etag = '"' + object.etag + '"';
    }
    const auto check = [object](const FetchAnswer& answer) -> std::optional<QString> {
        const bool isAsListed = bareEtag(answer.etag) == object.etag;
        if (isAsListed && object.bytes >= 0 && answer.body.size() != object.bytes) {
            return QStringLiteral("the object has %1 of its %2 bytes")
                .arg(answer.body.size())
                .arg(object.bytes);
        }
        return whyNot(object, answer.body);
    };
    m_fetcher.get(request, check, [object, got = std::move(got)](FetchAnswer answer) {
        if (const auto outcome = outcomeOf(answer); outcome != LiveOutcome::good) {
            return got(outcome, std::nullopt);
        }
        if (answer.status == 304) {
            return got(LiveOutcome::good, std::nullopt);
        }
        LiveObject fetched = object;
        fetched.etag = answer.etag.isEmpty() ? object.etag : bareEtag(answer.etag);
        fetched.bytes = answer.body.size();
        fetched.body = std::move(answer.body);
        got(LiveOutcome::good, std::move(fetched));
    });
}

} // namespace raincast
