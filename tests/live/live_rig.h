// SPDX-License-Identifier: MIT
#pragma once

#include "live/live_source.h"
#include "live_sim/live_sim.h"
#include "provider/curl_fetcher.h"
#include "support/level3_maker.h"
#include "support/loopback.h"
#include "support/test_clock.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace raincast {

/// A source of live frames that asks stand-ins over loopback, in the test's own thread and by the
/// test's clock: time goes on only where a test lets it.
class LiveRig : public ::testing::Test {
protected:
    LiveRig() { keepLoopbackFromProxies(); }

    /// A product's bytes: N0B unless another code and heading are given.
    static QByteArray
    product(const std::string& awipsId, FileTime time, int code = 153, std::uint8_t level = 100) {
        Level3ToMake wanted = digitalProduct(awipsId, code, time);
        wanted.packed = true;
        wanted.rows = {{0, 3600, std::vector<std::uint8_t>(200, level)}};
        return QByteArray::fromStdString(makeLevel3(wanted));
    }

    /// Puts a volume of a product into the bucket, a minute and a half after its time.
    void
    put(const std::string& name, FileTime time, int code = 153, const std::string& site = "TLX",
        std::uint8_t level = 100) {
        sim.bucket.put(
            keyOf({site, name}, time), product(name + site, time, code, level),
            time + 90 * kFileTimePerSecond
        );
    }
    /// Puts one into a ring.
    void putRing(
        int number, FileTime time, bool isLast = true, const QByteArray& ring = "p94r0",
        int code = 94, const std::string& awipsId = "N0QTLX", const QByteArray& site = "ktlx"
    ) {
        sim.ring.put(
            ring, site, number, time + 2 * kFileTimePerMinute, product(awipsId, time, code), isLast
        );
    }

    LiveSource& source() {
        if (!m_source) {
            open();
        }
        return *m_source;
    }
    /// As if the program were started again.
    void open() {
        m_source.reset();
        m_fetcher = std::make_unique<CurlFetcher>(
            "Raincast/test", CurlFetcher::Limits{std::chrono::milliseconds(2000), whole}
        );
        m_source = std::make_unique<LiveSource>(
            settings(), *m_fetcher, [this](const QString& line) { log += line + '\n'; }, [] {}
        );
    }
    virtual LiveSource::Settings settings() {
        LiveSource::Settings result;
        result.folder = folder.filePath("live");
        result.hours = hours;
        result.bucket = sim.bucket.url();
        result.ring = useRing ? sim.ring.url() : QByteArray();
        result.warnings = sim.alerts.url();
        result.otherWarnings = sim.alerts.url();
        return result;
    }

    /// Lets all happen that happens at this time. When something is next due.
    FileTime settle() {
        while (true) {
            const FileTime next = source().turn();
            if (m_fetcher->isIdle() && next > clock.now()) {
                return next;
            }
            m_fetcher->pump(std::chrono::milliseconds(m_fetcher->isIdle() ? 0 : 20));
        }
    }
    /// Lets time go on.
    void advance(FileTime time) {
        const FileTime end = clock.now() + time;
        for (FileTime next = settle(); next <= end; next = settle()) {
            clock.set(std::max(next, clock.now() + 1));
        }
        clock.set(end);
        settle();
    }
    /// Waits until something is ready, by the clock of the test.
    template<typename Prepare>
    FileTime waitFor(Prepare prepare) {
        const auto ready = std::make_shared<bool>(false);
        const FileTime begin = clock.now();
        prepare([ready] { *ready = true; });
        for (int turns = 0; !*ready && turns < 10'000; ++turns) {
            const FileTime next = settle();
            if (!*ready) {
                clock.set(std::max(next, clock.now() + 1));
            }
        }
        EXPECT_TRUE(*ready);
        return clock.now() - begin;
    }
    std::vector<FileTime> list(const char* site = "TLX", Product of = Product::baseReflectivity) {
        waited = waitFor([&](FrameSource::Ready ready) {
            source().prepareTimes(site, of, std::move(ready));
        });
        return source().frameTimes(site, of, clock.now());
    }
    std::optional<QByteArray>
    frame(FileTime minute, const char* site = "TLX", Product of = Product::baseReflectivity) {
        waited = waitFor([&](FrameSource::Ready ready) {
            source().prepareFrame(site, of, minute, std::move(ready));
        });
        return source().frame(site, of, minute);
    }

    /// A volume's time, so many minutes ago and at 12 seconds past it.
    [[nodiscard]] FileTime ago(int minutes) const {
        return start - start % kFileTimePerMinute - minutes * kFileTimePerMinute +
               12 * kFileTimePerSecond;
    }
    static FileTime minuteOf(FileTime time) { return time - time % kFileTimePerMinute; }

    const FileTime start = fromCalendar({2026, 11, 21, 17, 52, 30});
    TestClock clock{start};
    QTemporaryDir folder;
    LiveSim sim;
    int hours = 4;
    bool useRing = true;
    std::chrono::milliseconds whole{5000};
    QString log;
    FileTime waited = 0;

private:
    std::unique_ptr<CurlFetcher> m_fetcher;
    std::unique_ptr<LiveSource> m_source;
};

} // namespace raincast
