// SPDX-License-Identifier: MIT
// Weather of the past, against a stand-in of the bucket that holds two days.
#include "live_rig.h"

#include <gmock/gmock.h>

namespace raincast {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::SizeIs;

constexpr FileTime kSecond = kFileTimePerSecond;
constexpr FileTime kMinute = kFileTimePerMinute;
const FileTime kBegin = fromCalendar({2021, 12, 11, 22, 0});
const FileTime kFirst = fromCalendar({2021, 12, 11, 17, 0});
constexpr int kLast = 9 * 12; // volumes until 2 o'clock

class LiveReplayTest : public LiveRig {
protected:
    ~LiveReplayTest() override { Clock::replayBy(nullptr); }

    void replay(FileTime begin, int speed = 1) {
        m_replay = {begin, speed};
        m_weather.emplace(m_replay, clock.now());
        Clock::replayBy(&*m_weather);
    }
    /// Puts a volume every five minutes of the hours around midnight, 12 seconds past the minute.
    void
    putNight(const std::string& name = "N0B", int code = 153, const std::string& site = "TLX") {
        for (int i = 0; i <= kLast; ++i) {
            put(name, volume(i), code, site);
        }
    }
    static FileTime volume(int number) { return kFirst + number * 5 * kMinute + 12 * kSecond; }
    static FileTime frameBefore(FileTime time) {
        return kFirst + (time - 12 * kSecond - kFirst) / (5 * kMinute) * (5 * kMinute);
    }
    [[nodiscard]] FileTime weatherNow() const { return m_weather->now(); }
    std::vector<FileTime> listNow(const char* site = "TLX") {
        waitFor([&](FrameSource::Ready ready) {
            source().prepareTimes(site, Product::baseReflectivity, std::move(ready));
        });
        return source().frameTimes(site, Product::baseReflectivity, weatherNow());
    }
    int lists() { return sim.bucket.count("list-type"); }

    LiveSource::Settings settings() override {
        auto result = LiveRig::settings();
        result.ring = "";
        result.replay = m_replay;
        return result;
    }

private:
    Replay m_replay;
    std::optional<ReplayClock> m_weather;
};

TEST_F(LiveReplayTest, ListsWhatThereWasAndNothingOfTheFuture) {
    putNight();
    replay(kBegin);
    const auto times = listNow();
    ASSERT_THAT(times, SizeIs(4 * 12));
    EXPECT_EQ(times.back(), frameBefore(kBegin));
    EXPECT_EQ(times.front(), frameBefore(kBegin) - 47 * 5 * kMinute);
    EXPECT_EQ(source().status().wanted[0].newest, times.back() + 12 * kSecond);
    EXPECT_EQ(source().state("TLX", Product::baseReflectivity), SourceState::ok);
}

TEST_F(LiveReplayTest, AFrameOfTheFutureCannotBeHad) {
    putNight();
    replay(kBegin);
    listNow();
    EXPECT_TRUE(frame(frameBefore(kBegin)));
    EXPECT_FALSE(frame(frameBefore(kBegin) + 5 * kMinute));
    EXPECT_EQ(sim.bucket.count("/TLX_"), 1);
}

TEST_F(LiveReplayTest, GoesOnAtItsSpeedThroughMidnightAndAsksForEachDayOnce) {
    for (const int speed : {1, 60}) {
        putNight();
        replay(kBegin, speed);
        open();
        listNow();
        const int before = lists();
        for (int step = 0; step < 3 * 12; ++step) {
            advance(5 * kMinute / speed);
            // At most half a minute of the weather late.
            EXPECT_GE(listNow().back(), frameBefore(weatherNow() - 30 * kSecond)) << speed;
            EXPECT_LE(listNow().back(), weatherNow());
        }
        EXPECT_GT(weatherNow(), kBegin + 179 * kMinute);
        EXPECT_EQ(lists() - before, 1) << speed; // of the new day
    }
}

TEST_F(LiveReplayTest, TheEndOfTheDataIsARadarThatIsDown) {
    putNight();
    replay(volume(kLast) + 10 * kMinute, 10);
    EXPECT_EQ(listNow().back(), minuteOf(volume(kLast)));
    advance(2 * kMinute);
    listNow();
    EXPECT_EQ(source().state("TLX", Product::baseReflectivity), SourceState::radarDown);
    EXPECT_LE(lists(), 20);
}

TEST_F(LiveReplayTest, FindsTheProductOfTheDay) {
    putNight("N0Q", 94);
    replay(kBegin);
    EXPECT_EQ(listNow().back(), frameBefore(kBegin));
    EXPECT_TRUE(frame(frameBefore(kBegin)));
}

TEST_F(LiveReplayTest, ASiteThatWasOpenThenIsItself) {
    putNight("N0B", 153, "LIX");
    replay(kBegin);
    EXPECT_EQ(listNow("LIX").back(), frameBefore(kBegin));
}

TEST_F(LiveReplayTest, ARestartFindsOnDiskWhatCameInTheFirstRun) {
    putNight();
    replay(kBegin, 10);
    listNow();
    ASSERT_TRUE(frame(frameBefore(kBegin)));
    advance(kMinute);
    listNow();
    const FileTime later = frameBefore(weatherNow());
    ASSERT_TRUE(frame(later));
    ASSERT_EQ(sim.bucket.count("/TLX_"), 2);

    replay(kBegin, 10); // from its begin again
    open();
    EXPECT_EQ(listNow().back(), frameBefore(kBegin));
    ASSERT_TRUE(frame(frameBefore(kBegin)));
    advance(kMinute);
    EXPECT_EQ(listNow().back(), later);
    ASSERT_TRUE(frame(later));
    EXPECT_EQ(sim.bucket.count("/TLX_"), 2);
}

TEST_F(LiveReplayTest, AComputerThatSleptGoesOnWhereTheWeatherIs) {
    putNight();
    replay(kBegin, 10);
    listNow();
    clock.advance(10 * kMinute);
    EXPECT_GE(listNow().back(), frameBefore(weatherNow() - 30 * kSecond));
    EXPECT_THAT(listNow(), SizeIs(4 * 12));
}

TEST_F(LiveReplayTest, WaitsByTheClockOfTheWorld) {
    putNight();
    sim.bucket.breakBy(sim_errors::slowDown());
    replay(kBegin, 60);
    const FileTime asked = clock.now();
    listNow();
    EXPECT_LE(clock.now() - asked, 9 * kSecond);
    const int before = sim.bucket.count();
    advance(50 * kSecond); // the host rests for a minute
    EXPECT_LE(sim.bucket.count() - before, 3);
}

constexpr auto kStorm = R"({"type":"FeatureCollection","features":[{"type":"Feature","properties":{
"status":"NEW","phenomena":"TO","significance":"W","ps":"Tornado Warning","wfo":"PAH","eventid":2,
"polygon_begin":"2021-12-11T21:50:00Z","polygon_end":"2021-12-11T22:05:00Z",
"expire":"2021-12-11T22:05:00Z","year":2021},"geometry":{"type":"MultiPolygon","coordinates":
[[[[-97.5,35.1],[-97.2,35.1],[-97.2,35.4],[-97.5,35.1]]]]}}]})";

TEST_F(LiveReplayTest, ShowsTheWarningsOfThatMoment) {
    sim.alerts.setStormWarnings(kStorm);
    replay(kBegin, 10);
    const auto warnings = [&] {
        waitFor([&](FrameSource::Ready ready) { source().prepareWarnings(std::move(ready)); });
        return source().warnings("TLX", Range::shortRange, weatherNow()).warnings.size();
    };
    EXPECT_EQ(warnings(), 1U);
    EXPECT_EQ(sim.alerts.count("/alerts/active"), 0);
    ASSERT_EQ(sim.alerts.count(), 1);
    EXPECT_THAT(
        sim.alerts.targets()[0].toStdString(), HasSubstr("sbw.geojson?ts=2021-12-11T22:00:00Z")
    );
    clock.advance(40 * kSecond); // 22:06:40
    EXPECT_EQ(source().warnings("TLX", Range::shortRange, weatherNow()).warnings.size(), 0U);
}

TEST_F(LiveReplayTest, AsksForWarningsNoOftenerAtAnySpeed) {
    replay(kBegin, 60);
    for (int second = 0; second < 60; ++second) {
        waitFor([&](FrameSource::Ready ready) { source().prepareWarnings(std::move(ready)); });
        clock.advance(kSecond);
    }
    EXPECT_LE(sim.alerts.count(), 5);
    EXPECT_GE(sim.alerts.count(), 3);
}

} // namespace
} // namespace raincast
