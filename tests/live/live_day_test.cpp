// SPDX-License-Identifier: MIT
// A day of many sites that are wanted all the time, with a clock that runs and providers that fail
// at random. Shorter unless RAINCAST_LONG is set.
#include "live/live_source.h"
#include "radar/catalogue/sites.h"
#include "support/level3_maker.h"
#include "support/test_clock.h"

#include <QDateTime>
#include <QTemporaryDir>
#include <QUrl>
#include <QUrlQuery>

#include <gtest/gtest.h>

#include <fstream>
#include <random>

namespace raincast {
namespace {

constexpr FileTime kSecond = kFileTimePerSecond;
constexpr FileTime kMinute = kFileTimePerMinute;
constexpr FileTime kVolume = 5 * kMinute;

QByteArray isoTime(FileTime time) {
    return QDateTime::fromSecsSinceEpoch(static_cast<qint64>(toUnixSeconds(time)), Qt::UTC)
        .toString(Qt::ISODate)
        .toLatin1();
}

/// Both providers in memory: every site has a volume every five minutes, 90 seconds later.
class DayFetcher : public Fetcher {
public:
    void get(FetchRequest request, Done done) override {
        ++requests[request.url.startsWith("http://bucket")];
        m_waiting.push_back({std::move(request), std::move(done)});
    }
    void answerAll() {
        for (auto& [request, done] : std::exchange(m_waiting, {})) {
            done(m_random() % 100 < failing ? failure() : answer(request));
        }
    }

    unsigned failing = 5; ///< of a hundred requests
    std::map<bool, int> requests;

private:
    FetchAnswer failure() {
        FetchAnswer answer;
        switch (m_random() % 4) {
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
            answer.status = 200;
            answer.body = "<html>Log in</html>";
        }
        return answer;
    }
    static FetchAnswer answer(const FetchRequest& request) {
        FetchAnswer answer;
        answer.status = 404;
        const QUrl url = QUrl::fromEncoded(request.url);
        if (url.host() == u"bucket" && url.hasQuery()) {
            answer.status = 200;
            answer.body = listing(QUrlQuery(url));
        } else if (url.host() == u"bucket") {
            const auto object = readKey(url.path().mid(1).toStdString());
            answer.status = 200;
            answer.etag = "\"1\"";
            answer.body = product("N0B" + object->name.site, 153, object->time);
        }
        return answer;
    }
    static QByteArray listing(const QUrlQuery& query) {
        const std::string prefix = query.queryItemValue("prefix").toStdString();
        const std::string after = query.queryItemValue("start-after").toStdString();
        QByteArray contents;
        const auto day = readKey(prefix + "00_00_00");
        if (day && day->name.product == "N0B") {
            const FileTime last = Clock::current().now() - 90 * kSecond;
            for (FileTime time = day->time; time <= last && time < day->time + 1440 * kMinute;
                 time += kVolume) {
                const std::string key = keyOf(day->name, time);
                if (key > after) {
                    contents += "<Contents><Key>" + QByteArray::fromStdString(key) +
                                "</Key><LastModified>" + isoTime(time + 90 * kSecond) +
                                "</LastModified><ETag>\"1\"</ETag></Contents>";
                }
            }
        }
        return "<ListBucketResult><IsTruncated>false</IsTruncated>" + contents +
               "</ListBucketResult>";
    }
    static QByteArray product(const std::string& awipsId, int code, FileTime time) {
        Level3ToMake wanted;
        wanted.code = code;
        wanted.awipsId = awipsId;
        const std::uint64_t seconds = toUnixSeconds(time);
        wanted.day = static_cast<int>(seconds / 86'400) + 1;
        wanted.second = static_cast<int>(seconds % 86'400);
        wanted.picture = Level3ToMake::Picture::digital;
        wanted.thresholds = digitalThresholds(-320, 5);
        return QByteArray::fromStdString(makeLevel3(wanted));
    }

    std::vector<std::pair<FetchRequest, Done>> m_waiting;
    std::mt19937 m_random{7};
};

double residentMegabytes() {
    std::ifstream file("/proc/self/statm");
    double whole = 0;
    double resident = 0;
    file >> whole >> resident;
    return resident * 4096 / 1e6;
}

TEST(LiveDayTest, EveryVolumeIsFoundWithinThePlan) {
    const bool isLong = qEnvironmentVariableIsSet("RAINCAST_LONG");
    const std::size_t sites = isLong ? kRadarSiteCount : 4;
    const int hours = isLong ? 24 : 3;
    TestClock clock(fromCalendar({2026, 11, 21, 18, 0, 0}));
    const FileTime begin = clock.now();
    const QTemporaryDir folder;
    DayFetcher fetcher;
    LiveSource::Settings settings;
    settings.folder = folder.path();
    settings.hours = 2;
    settings.bucket = "http://bucket";
    settings.ring = "http://ring";
    settings.warnings = settings.otherWarnings = "";
    LiveSource source(
        settings, fetcher, [](const QString&) {}, [] {}
    );
    std::map<std::string, FileTime> seen;
    int frames = 0;
    double middle = 0;
    // Each site's newest frame is looked at every minute.
    for (FileTime next = begin; next < begin + hours * 60 * kMinute; next += kMinute) {
        for (std::size_t i = 0; i < sites; ++i) {
            const std::string site = radarSites()[i].idText().toString().toStdString();
            source.prepareTimes(site, Product::baseReflectivity, [] {});
            const auto times = source.frameTimes(site, Product::baseReflectivity, next);
            if (!times.empty() && times.back() > seen[site]) {
                frames +=
                    seen[site] == 0 ? 1 : static_cast<int>((times.back() - seen[site]) / kVolume);
                seen[site] = times.back();
                source.prepareFrame(site, Product::baseReflectivity, times.back(), [] {});
            }
        }
        for (FileTime due = source.turn(); due < next + kMinute;) {
            if (due > clock.now()) {
                clock.set(due);
            }
            fetcher.answerAll();
            due = source.turn();
            if (due <= clock.now()) {
                clock.advance(kSecond / 10);
            }
        }
        clock.set(std::max(clock.now(), next + kMinute));
        if (next - begin == hours * 30 * kMinute) {
            middle = residentMegabytes();
        }
    }
    const int volumes = static_cast<int>(sites) * hours * 12;
    // Nothing is lost, but for what came in the last minutes.
    EXPECT_GE(frames, volumes - static_cast<int>(sites) * 8);
    // Per volume: a list or two, the bytes, and what failed; the ring while the bucket rests.
    EXPECT_LE(fetcher.requests[true], volumes * 5);
    EXPECT_LE(fetcher.requests[false], volumes);
    // AddressSanitizer keeps what was given back.
#ifndef __SANITIZE_ADDRESS__
    EXPECT_LT(residentMegabytes() - middle, 40);
#endif
    RecordProperty("MegabytesMore", static_cast<int>(residentMegabytes() - middle));
}

} // namespace
} // namespace raincast
