// SPDX-License-Identifier: MIT
#include "support/http_server.h"
#include "support/manual_timers.h"
#include "support/qt_app.h"
#include "watch/live_watch.h"

#include <QTest>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace raincast {
namespace {

using testing::ElementsAre;

const QString kListing = QStringLiteral("/ridge/RadarImg/N0R/TLX/");

/// The viewer's own server for live radar is at an address, or nowhere.
class LiveAt : public ConnectionManager {
public:
    [[nodiscard]] QString addressOf(const QString& host) const override {
        EXPECT_EQ(host, QString::fromUtf16(kOwnLiveServer));
        return address;
    }
    void EstablishConnection(const QString& /*host*/, Ready ready) override {
        ++established;
        ready(true);
    }
    QString address;
    int established = 0;
};

class LiveWatchTest : public test::GuiTest {
protected:
    LiveWatchTest() {
        forget();
        ServersSetting::choose(WeatherSource::live, ServersSetting::hosts());
        connection.address = server.host();
        server.serve(kListing, "");
        say("false");
        watch.begin();
    }
    ~LiveWatchTest() override { forget(); }

    /// As an installation that nobody has used.
    static void forget() {
        ServersSetting::set({ServersSetting::defaultHost(), ServersSetting::defaultHost()});
    }
    void say(const QByteArray& reachable) {
        server.serve("/status", "{\"reachable\": " + reachable + "}");
    }
    /// Fires the alarm and waits for the next one; its delay.
    int fire() {
        const int delay = timers.fire();
        settle();
        return delay;
    }
    void settle() {
        EXPECT_TRUE(QTest::qWaitFor([this] { return !timers.running().empty(); }, 30'000));
    }

    HttpServer server;
    LiveAt connection;
    Downloads downloads{connection};
    ManualTimers timers;
    QString listing = kListing;
    std::vector<bool> told;
    LiveWatch watch{
        downloads, timers, [this] { return listing; },
        [this](bool standsIn) { told.push_back(standsIn); }};
};

TEST_F(LiveWatchTest, SampleWeatherStandsInAfterFiveSecondsUntilLiveCanBeReached) {
    EXPECT_TRUE(watch.undecided());
    EXPECT_EQ(ServersSetting::inUse(), WeatherSource::live);
    EXPECT_EQ(fire(), 5000);
    EXPECT_FALSE(watch.undecided());
    EXPECT_EQ(ServersSetting::inUse(), WeatherSource::sample);
    EXPECT_EQ(ServersSetting::source(), WeatherSource::live);
    EXPECT_EQ(server.count(kListing), 0);

    EXPECT_EQ(fire(), 30'000);
    EXPECT_EQ(ServersSetting::inUse(), WeatherSource::sample);
    EXPECT_EQ(server.count(kListing), 1) << "it has the providers tried again";
    say("true");
    EXPECT_EQ(fire(), 30'000);
    EXPECT_EQ(ServersSetting::inUse(), WeatherSource::live);
    EXPECT_THAT(told, ElementsAre(true, false));
    EXPECT_THAT(timers.running(), ElementsAre(5000)) << "it may get lost again";
}

TEST_F(LiveWatchTest, TheUserMayAskSooner) {
    fire();
    say("true");
    watch.ask();
    settle();
    EXPECT_EQ(ServersSetting::inUse(), WeatherSource::live);
}

TEST_F(LiveWatchTest, OnceLiveRadarWasSeenNothingStandsIn) {
    ServersSetting::noteLive();
    EXPECT_FALSE(watch.undecided());
    EXPECT_EQ(timers.fire(), 5000);
    EXPECT_TRUE(timers.running().empty());
    EXPECT_EQ(server.count(), 0);
    EXPECT_EQ(ServersSetting::inUse(), WeatherSource::live);
}

TEST_F(LiveWatchTest, WhatCanBeReachedIsAskedAgainUntilItIsSeen) {
    say("true");
    EXPECT_EQ(fire(), 5000);
    EXPECT_EQ(ServersSetting::inUse(), WeatherSource::live);
    EXPECT_TRUE(watch.undecided()) << "its providers may not have failed yet";
    fire();
    fire();
    EXPECT_FALSE(watch.undecided());
    say("false");
    EXPECT_EQ(fire(), 5000);
    EXPECT_EQ(ServersSetting::inUse(), WeatherSource::sample);
}

TEST_F(LiveWatchTest, OnlyAClearWordCounts) {
    for (const char* page : {"", "[1]", "{\"reachable\": \"no\"}", "<html>", "{}"}) {
        server.serve("/status", page);
        fire();
        EXPECT_EQ(ServersSetting::inUse(), WeatherSource::live) << page;
    }
}

TEST_F(LiveWatchTest, AServerThatDoesNotRunIsNotStarted) {
    connection.address.clear();
    EXPECT_EQ(fire(), 5000);
    EXPECT_TRUE(watch.undecided()) << "it may be slow to start";
    EXPECT_EQ(fire(), 5000);
    EXPECT_EQ(fire(), 5000);
    EXPECT_FALSE(watch.undecided());
    EXPECT_EQ(connection.established, 0);
    connection.address = server.host();
    fire();
    EXPECT_EQ(ServersSetting::inUse(), WeatherSource::sample);
    connection.address.clear();
    fire();
    EXPECT_EQ(connection.established, 2) << "it has ended, and is wanted to look";
    EXPECT_EQ(ServersSetting::inUse(), WeatherSource::sample);
}

TEST_F(LiveWatchTest, WhileNobodyLooksAtRadarNobodyIsAsked) {
    listing.clear();
    EXPECT_FALSE(watch.undecided());
    EXPECT_EQ(fire(), 5000);
    EXPECT_EQ(server.count(), 0);
}

TEST_F(LiveWatchTest, AChoiceOfTheUsersEndsItAndBeginsItAnew) {
    fire();
    ServersSetting::choose(WeatherSource::sample, ServersSetting::hosts());
    EXPECT_TRUE(timers.running().empty());
    EXPECT_FALSE(watch.undecided());
    ServersSetting::choose(WeatherSource::live, ServersSetting::hosts());
    EXPECT_EQ(ServersSetting::inUse(), WeatherSource::live);
    EXPECT_TRUE(watch.undecided());
    EXPECT_THAT(timers.running(), ElementsAre(5000));
    EXPECT_THAT(told, ElementsAre(true, false, false));
}

} // namespace
} // namespace raincast
