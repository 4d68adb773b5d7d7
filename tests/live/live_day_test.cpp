// SPDX-License-Identifier: MIT
// All sites, wanted all the time, for a day of a clock that runs: both providers fail at random,
// the first one does not answer for some time, and later neither does. A few sites for some hours
// unless RAINCAST_LONG is set. Prints the seed; RAINCAST_SEED=NUMBER repeats it.
#include "core/utc_date_time.h"
#include "live/live_source.h"
#include "radar/catalogue/sites.h"
#include "support/level3_maker.h"
#include "support/test_clock.h"

#include <QTemporaryDir>
#include <QUrl>
#include <QUrlQuery>

#include <gtest/gtest.h>

#include <fstream>
#include <iostream>
#include <random>
#include <set>

namespace raincast {
namespace {

constexpr FileTime kSecond = kFileTimePerSecond;
constexpr FileTime kMinute = kFileTimePerMinute;
constexpr FileTime kDay = 24 * 60 * kMinute;
constexpr FileTime kVolume = 5 * kMinute;
constexpr FileTime kDelay = 90 * kSecond; ///< until a provider has a volume
constexpr int kFilesInRing = 30;

QByteArray text(FileTime time, const char* format) {
    return utcDateTime(time).toString(QLatin1String(format)).toLatin1();
}

QByteArray product(const std::string& awipsId, int code, FileTime time) {
    return QByteArray::fromStdString(makeLevel3(digitalProduct(awipsId, code, time)));
}

FetchAnswer good(const QByteArray& body) {
    FetchAnswer answer;
    answer.status = 200;
    answer.body = body;
    return answer;
}

FetchAnswer notFound() {
    FetchAnswer answer;
    answer.status = 404;
    return answer;
}

/// The newest volume that a provider has.
FileTime newestVolume() {
    const FileTime last = Clock::current().now() - kDelay;
    return last - last % kVolume;
}

/// The bucket and the ring, in memory: every site has a volume every five minutes, from the day
/// before on.
class DayFetcher : public Fetcher {
public:
    struct Host {
        int requests = 0;
        int failed = 0;
        std::size_t mostAtOnce = 0;
        int tooSoon = 0;                       ///< the same list within 15 seconds of its answer
        int twice = 0;                         ///< objects that were sent again
        std::set<QByteArray> sent;             ///< in the last hours, by address
        std::map<QByteArray, FileTime> listed; ///< when lists were answered
        bool isSilent = false;
    };

    explicit DayFetcher(unsigned seed) : m_random(seed) {}

    void get(FetchRequest request, Done done) override {
        Host& host = hostOf(request.url);
        ++host.requests;
        m_waiting.push_back({std::move(request), std::move(done)});
        const auto running =
            std::count_if(m_waiting.begin(), m_waiting.end(), [&](const auto& one) {
                return &hostOf(one.first.url) == &host;
            });
        host.mostAtOnce = std::max(host.mostAtOnce, static_cast<std::size_t>(running));
    }
    void answerAll() {
        for (auto& [request, done] : std::exchange(m_waiting, {})) {
            Host& host = hostOf(request.url);
            const bool fails = host.isSilent || m_random() % 100 < kFailing;
            host.failed += fails ? 1 : 0;
            done(fails ? failure(host) : answer(request, host));
        }
    }

    [[nodiscard]] bool isIdle() const { return m_waiting.empty(); }

    Host bucket;
    Host ring;

private:
    static constexpr unsigned kFailing = 5; ///< of a hundred requests

    Host& hostOf(const QByteArray& url) { return url.startsWith("http://bucket") ? bucket : ring; }

    FetchAnswer failure(const Host& host) {
        FetchAnswer answer;
        switch (host.isSilent ? m_random() % 2 : m_random() % 4) {
        case 0:
            answer.failure = FetchAnswer::Failure::unreachable;
            answer.problem = "unreachable";
            break;
        case 1:
            answer.failure = FetchAnswer::Failure::broken;
            answer.problem = "broken";
            break;
        case 2:
            answer.status = 503;
            break;
        default:
            answer = good("<html>Log in</html>");
        }
        return answer;
    }
    static FetchAnswer answer(const FetchRequest& request, Host& host) {
        const QUrl url = QUrl::fromEncoded(request.url);
        const bool isList = url.hasQuery() || request.url.endsWith('/');
        if (isList) {
            const QByteArray what = url.toEncoded(QUrl::RemoveQuery) +
                                    QUrlQuery(url).queryItemValue("prefix").toLatin1();
            FileTime& listed = host.listed[what];
            const FileTime now = Clock::current().now();
            host.tooSoon += listed != 0 && now < listed + 15 * kSecond ? 1 : 0;
            listed = now;
        }
        FetchAnswer answer = url.hasQuery()            ? good(listing(QUrlQuery(url)))
                             : url.host() == u"bucket" ? object(request, url)
                                                       : ringFile(url.path());
        if (!isList && answer.status == 200 && !request.url.endsWith("sn.last")) {
            host.twice += host.sent.insert(request.url).second ? 0 : 1;
        }
        return answer;
    }
    static QByteArray listing(const QUrlQuery& query) {
        const std::string prefix = query.queryItemValue("prefix").toStdString();
        const std::string after = query.queryItemValue("start-after").toStdString();
        QByteArray contents;
        const auto day = readKey(prefix + "00_00_00");
        if (day && day->name.product == "N0B") {
            const FileTime end = std::min(newestVolume(), day->time + kDay - 1);
            for (FileTime time = day->time; time <= end; time += kVolume) {
                const std::string key = keyOf(day->name, time);
                if (key > after) {
                    contents += "<Contents><Key>" + QByteArray::fromStdString(key) +
                                "</Key><LastModified>" +
                                text(time + kDelay, "yyyy-MM-ddTHH:mm:ssZ") +
                                "</LastModified><ETag>\"1\"</ETag></Contents>";
                }
            }
        }
        return "<ListBucketResult><IsTruncated>false</IsTruncated>" + contents +
               "</ListBucketResult>";
    }
    static FetchAnswer object(const FetchRequest& request, const QUrl& url) {
        const auto key = readKey(url.path().mid(1).toStdString());
        if (!key || key->name.product != "N0B" || key->time > newestVolume()) {
            return notFound();
        }
        FetchAnswer answer = good(product("N0B" + key->name.site, 153, key->time));
        answer.etag = "\"1\"";
        if (request.etag == answer.etag) {
            answer.status = 304;
            answer.body.clear();
        }
        return answer;
    }
    /// "/DS.p94r0/SI.ktlx/sn.0012"
    static FetchAnswer ringFile(const QString& path) {
        const QStringList parts = path.split(u'/');
        if (parts.size() != 4 || parts[1] != u"DS.p94r0") {
            return notFound();
        }
        const std::string awipsId = "N0Q" + parts[2].right(3).toUpper().toStdString();
        const FileTime newest = newestVolume();
        QByteArray page;
        for (int i = 0; i < kFilesInRing; ++i) {
            const FileTime time = newest - i * kVolume;
            const int number = static_cast<int>(time / kVolume % kFilesInRing);
            const QByteArray name = "sn." + QByteArray::number(number).rightJustified(4, '0');
            if (parts[3] == QLatin1String(name) || (i == 0 && parts[3] == u"sn.last")) {
                FetchAnswer answer = good(product(awipsId, 94, time));
                answer.lastModified = text(time + kDelay, "ddd, dd MMM yyyy HH:mm:ss 'GMT'");
                return answer;
            }
            page += "<a href=\"" + name + "\">" + name + "</a></td><td>" +
                    text(time + kDelay, "dd-MMM-yyyy HH:mm") + "</td>\n";
        }
        return parts[3].isEmpty() ? good(page) : notFound();
    }

    std::vector<std::pair<FetchRequest, Done>> m_waiting;
    std::mt19937 m_random;
};

double residentMegabytes() {
    std::ifstream file("/proc/self/statm");
    double whole = 0;
    double resident = 0;
    file >> whole >> resident;
    return resident * 4096 / 1e6;
}

unsigned seedOfRun() {
    bool isGiven = false;
    const unsigned given = qEnvironmentVariable("RAINCAST_SEED").toUInt(&isGiven);
    const bool isLong = qEnvironmentVariableIsSet("RAINCAST_LONG");
    return isGiven ? given : isLong ? std::random_device()() : 7;
}

struct Length {
    std::size_t sites;
    int hours;
};

Length lengthOfRun() {
    if (!qEnvironmentVariableIsSet("RAINCAST_LONG")) {
        return {4, 8};
    }
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
    return {kRadarSiteCount, 8}; // these take ten times as long
#else
    return {kRadarSiteCount, 24};
#endif
}

class LiveDayTest : public ::testing::Test {
protected:
    /// Somebody looks at every site and fetches the frames that are new to him.
    void look() {
        for (std::size_t i = 0; i < length.sites; ++i) {
            const std::string site = radarSites()[i].idText().toString().toStdString();
            m_source.prepareTimes(site, kProduct, [] {});
            for (const FileTime time : m_source.frameTimes(site, kProduct, clock.now())) {
                if (!m_there[site].contains(time)) {
                    fetch(site, time);
                }
            }
        }
    }
    /// Lets all that is due happen until a time.
    void run(FileTime end) {
        while (clock.now() < end) {
            const FileTime due = m_source.turn();
            // Answers take a moment; without questions under way nothing happens until the next.
            clock.set(
                fetcher.isIdle() ? std::clamp(due, clock.now(), end) : clock.now() + kSecond / 10
            );
            fetcher.answerAll();
        }
    }
    /// Counts the volumes up to a time that nobody could see, and forgets about those.
    void settle(FileTime to) {
        for (; m_settled <= to; m_settled += kVolume) {
            for (auto& [site, times] : m_there) {
                lost += times.erase(m_settled) == 0 ? 1 : 0;
                times.erase(times.begin(), times.lower_bound(m_settled));
            }
        }
    }

    static constexpr Product kProduct = Product::baseReflectivity;

    const Length length = lengthOfRun();
    const unsigned seed = seedOfRun();
    TestClock clock{fromCalendar({2026, 11, 21, 18, 0, 0})};
    DayFetcher fetcher{seed};
    int lost = 0;  ///< volumes that did not come
    int wrong = 0; ///< frames of times at which there is no volume, or that cannot be drawn

private:
    static LiveSource::Settings settings(const QTemporaryDir& folder) {
        LiveSource::Settings result;
        result.folder = folder.path();
        result.hours = 2;
        result.bucket = "http://bucket";
        result.ring = "http://ring";
        result.warnings = result.otherWarnings = "";
        return result;
    }
    void fetch(const std::string& site, FileTime time) {
        if (time < m_settled) {
            return;
        }
        if (m_source.stamp(site, kProduct, time).version.isEmpty()) {
            return m_source.prepareFrame(site, kProduct, time, [] {});
        }
        m_there[site].insert(time);
        // Drawing all of them would take hours.
        const bool isSample = ++m_fetched % 500 == 0;
        const bool isWrong =
            time % kVolume != 0 || (isSample && !m_source.frame(site, kProduct, time));
        wrong += isWrong ? 1 : 0;
    }

    QTemporaryDir m_folder;
    LiveSource m_source{settings(m_folder), fetcher, [](const QString&) {}, [] {}};
    std::map<std::string, std::set<FileTime>> m_there;
    FileTime m_settled = clock.now();
    int m_fetched = 0;
};

TEST_F(LiveDayTest, EveryVolumeIsFoundWithinThePlan) {
    std::cout << "RAINCAST_SEED=" << seed << '\n';
    const FileTime begin = clock.now();
    const FileTime end = begin + length.hours * 60 * kMinute;
    double early = 0;
    for (FileTime next = begin; next < end; next += kMinute) {
        const auto minute = static_cast<int>((next - begin) / kMinute);
        fetcher.bucket.isSilent = minute >= 180 && minute < 270;
        fetcher.ring.isSilent = minute >= 240 && minute < 270;
        look();
        run(next + kMinute);
        if (minute % 60 == 59) {
            settle(next - 60 * kMinute);
            fetcher.bucket.sent.clear();
        }
        early = minute == 170 ? residentMegabytes() : early;
    }
    const double more = residentMegabytes() - early;
    const int volumes = static_cast<int>(length.sites) * length.hours * 12;
    const auto perVolume = [volumes](int count) { return static_cast<double>(count) / volumes; };
    const DayFetcher::Host& bucket = fetcher.bucket;
    const DayFetcher::Host& ring = fetcher.ring;
    std::cout << volumes << " volumes; for each " << perVolume(bucket.requests)
              << " requests to the bucket and " << perVolume(ring.requests) << " to the ring, "
              << perVolume(bucket.failed + ring.failed) << " without an answer; " << more
              << " MB more in memory than after three hours\n";

    // But for what has come in the last minutes, and what fails then.
    settle(end - 20 * kMinute);
    EXPECT_EQ(lost, 0);
    EXPECT_EQ(wrong, 0);
    // A list and an object for each volume, and some more for those that fail; while it is silent
    // an attempt now and then, of whichever site.
    EXPECT_LE(bucket.requests, volumes * 2.4 + 90 * 60 / 20);
    // In the hour and a half that it stands in: the newest every 150 seconds, and the ring's files;
    // and the files once more of a site whose object was refused, some of a hundred.
    const int standingIn = static_cast<int>(length.sites) * (90 * 60 / 150 + 2 * kFilesInRing);
    EXPECT_LE(ring.requests, standingIn + volumes * .3);
    for (const DayFetcher::Host* const host : {&bucket, &ring}) {
        EXPECT_LE(host->mostAtOnce, 4U);
        EXPECT_EQ(host->tooSoon, 0);
    }
    EXPECT_EQ(bucket.twice, 0);
    // AddressSanitizer keeps what was given back.
#ifndef __SANITIZE_ADDRESS__
    EXPECT_LT(more, 8);
#endif
    RecordProperty("MegabytesMore", static_cast<int>(more));
}

} // namespace
} // namespace raincast
