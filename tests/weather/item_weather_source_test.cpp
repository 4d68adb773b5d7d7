// SPDX-License-Identifier: MIT
// A radar item whose weather comes from one source and then from another.
#include "map/fitted_view.h"
#include "net/downloads.h"
#include "weather_page.h"

#include <QComboBox>
#include <QDir>
#include <QThreadPool>

#include <gmock/gmock.h>

namespace raincast {
namespace {

using testing::ElementsAre;

const QString kBranch = QStringLiteral("/.sample");

/// Knows where the viewer's own servers are.
class OwnServers : public ConnectionManager {
public:
    OwnServers(QString live, QString sample)
        : m_live(std::move(live)), m_sample(std::move(sample)) {}

    [[nodiscard]] QString addressOf(const QString& host) const override {
        return host == QStringView(kOwnLiveServer) || host.startsWith(u"Raincast's replay") ? m_live
               : host == QStringView(kOwnSampleServer) ? m_sample
                                                       : host;
    }

private:
    QString m_live;
    QString m_sample;
};

/// Live radar is what the page's server has; sample weather has frames of other times.
class ItemWeatherSourceTest : public test::WeatherPage {
protected:
    ItemWeatherSourceTest() {
        test::publishLayers(m_sampleServer, "MUX");
        publishSample({"20190519_0530", "20190519_0550"});
        ServersSetting::choose(WeatherSource::sample, ServersSetting::hosts());
        makePage();
        m_item->useDownloads(m_downloads);
    }
    ~ItemWeatherSourceTest() override {
        m_page->deactivate();
        m_page.reset();
        makePage(); // without the downloads, which go
    }

    void publishSample(const QStringList& stamps) {
        test::publishFrames(m_sampleServer, stamps, "MUX");
    }
    void choose(WeatherSource source) {
        ServersSetting::choose(source, ServersSetting::hosts());
        finish();
    }
    [[nodiscard]] QString root() const { return m_item->state().cacheFolder; }
    /// The times of a source's cached frames.
    [[nodiscard]] std::vector<std::string> cached(const QString& branch = {}) const {
        std::vector<std::string> times;
        for (const QString& name : QDir(root() + branch + "/MUX").entryList({"MUX_2*"})) {
            times.push_back(name.mid(13, 4).toStdString());
        }
        return times;
    }

    HttpServer m_sampleServer;
    OwnServers m_servers{m_server.host(), m_sampleServer.host()};
    Downloads m_downloads{m_servers};
};

TEST_F(ItemWeatherSourceTest, NoSourceReadsOrCleansAnothersFrames) {
    showSite();
    EXPECT_EQ(shown(), "5:50");
    EXPECT_THAT(cached(kBranch), ElementsAre("0550"));
    EXPECT_THAT(cached(), ElementsAre());

    choose(WeatherSource::live);
    EXPECT_EQ(shown(), "5:54");
    EXPECT_THAT(cached(), ElementsAre("0554"));
    EXPECT_THAT(cached(kBranch), ElementsAre("0550"));

    publishSample({"20190519_0540", "20190519_0556"});
    choose(WeatherSource::sample);
    EXPECT_EQ(shown(), "5:56");
    EXPECT_THAT(cached(kBranch), ElementsAre("0556")); // the other is not listed any more
    EXPECT_THAT(cached(), ElementsAre("0554"));

    choose(WeatherSource::live);
    EXPECT_EQ(shown(), "5:54");
    EXPECT_THAT(cached(), ElementsAre("0554"));
    EXPECT_THAT(cached(kBranch), ElementsAre("0556"));
    EXPECT_TRUE(QFile::exists(root() + "/MUX/MUX_Topo_Short.jpg"));
    EXPECT_TRUE(QFile::exists(root() + kBranch + "/MUX/MUX_Topo_Short.jpg"));
}

TEST_F(ItemWeatherSourceTest, WhatIsFittedStaysSoWithAnotherSource) {
    showSite();
    m_server.serve( // what is in the middle is two pixels beside it there
        "/ridge/Overlays/Cities/Short/MUX_City_Short.gfw", "0.009\n0\n0\n-0.009\n-124.618\n39.618\n"
    );
    EXPECT_TRUE(m_item->keyDown(Qt::Key_Home));
    const ViewTransform fitted = m_item->view();
    choose(WeatherSource::live);
    EXPECT_EQ(shown(), "5:54");
    EXPECT_EQ(m_item->view(), fitted);
    m_window.resize(640, 571);
    m_page->size(640, 571);
    EXPECT_EQ(m_item->view(), fittedView(m_item->rectangle(), {600, 550}));
}

TEST_F(ItemWeatherSourceTest, APastStormHasAFolderThatGoesWithIt) {
    const QString branch = "/.replay-2021-12-11T0200Z";
    for (const bool keeps : {true, false}) {
        showSite();
        test::publishFrames(m_server, {"20190519_0548"}, "MUX");
        ServersSetting::choosePast({*readReplay("2021-12-11T02:00Z"), keeps});
        finish();
        EXPECT_EQ(shown(), "5:48");
        EXPECT_THAT(cached(branch), ElementsAre("0548"));
        EXPECT_FALSE(ServersSetting::hadLive());
        ServersSetting::choosePast({*readReplay("2021-12-11T02:00Zx10"), keeps}); // the same storm
        finish();
        QThreadPool::globalInstance()->waitForDone();
        EXPECT_THAT(cached(branch), ElementsAre("0548"));
        choose(WeatherSource::sample);
        QThreadPool::globalInstance()->waitForDone();
        EXPECT_EQ(QDir(root() + branch).exists(), keeps);
        EXPECT_THAT(cached(kBranch), ElementsAre("0550"));
    }
}

TEST_F(ItemWeatherSourceTest, APastStormIsShownWhereItWas) {
    showSite();
    test::publishLayers(m_server, "HNX");
    test::publishFrames(m_server, {"20190519_0548"}, "HNX");
    ServersSetting::choosePast({*readReplay("2021-12-11T02:00Z"), false, "HNX"});
    finish();
    EXPECT_EQ(m_item->state().siteId, "HNX");
    EXPECT_EQ(shown(), "5:48");
}

TEST_F(ItemWeatherSourceTest, ThePictureAndTheTitleSayThatItIsAReplay) {
    showSite();
    EXPECT_THAT(m_item->caption().toStdString(), testing::Not(testing::HasSubstr("Replay")));
    const ReplayClock clock({fromCalendar({2006, 12, 11, 2, 0}), 10}, Clock::real().now());
    Clock::replayBy(&clock);
    EXPECT_THAT(
        m_item->caption().toStdString(),
        testing::EndsWith(" - Replay of 2006-12-11 02:00 UTC, 10 times as fast")
    );
    Clock::replayBy(nullptr);
}

TEST_F(ItemWeatherSourceTest, TheViewStaysWhereItWas) {
    showSite();
    EXPECT_TRUE(m_item->stylusDown(150, 140, {}));
    m_item->stylusMove(90, 100);
    m_item->stylusUp(90, 100);
    const GeoPosition before = m_item->centrePosition();
    choose(WeatherSource::live);
    EXPECT_NEAR(m_item->centrePosition().latitude, before.latitude, 0.01);
    EXPECT_NEAR(m_item->centrePosition().longitude, before.longitude, 0.01);
}

TEST_F(ItemWeatherSourceTest, TheOtherSourcesFramesGoFromTheScreenEvenIfItHasNone) {
    showSite();
    test::publishFrames(m_server, {}, "MUX");
    choose(WeatherSource::live);
    EXPECT_TRUE(m_item->state().frames.empty());
    EXPECT_EQ(m_item->state().current.bitmap, nullptr);
    EXPECT_EQ(m_item->state().status, "No radar images found on server.\n");
    EXPECT_FALSE(ServersSetting::hadLive());
}

TEST_F(ItemWeatherSourceTest, ItNotesThatLiveRadarWasSeen) {
    showSite();
    EXPECT_FALSE(ServersSetting::hadLive()) << "that was sample weather";
    choose(WeatherSource::live);
    EXPECT_TRUE(ServersSetting::hadLive());
}

TEST_F(ItemWeatherSourceTest, SampleWeatherThatStandsInIsSampleWeather) {
    choose(WeatherSource::live);
    ServersSetting::standIn(true);
    showSite();
    EXPECT_EQ(shown(), "5:50");
    EXPECT_THAT(cached(kBranch), ElementsAre("0550"));
    EXPECT_FALSE(ServersSetting::hadLive());
    ServersSetting::standIn(false);
    finish();
    EXPECT_EQ(shown(), "5:54");
    EXPECT_THAT(cached(kBranch), ElementsAre("0550"));
}

TEST_F(ItemWeatherSourceTest, AnItemThatIsNotOnTheScreenFollowsWhenItIs) {
    showSite();
    m_page->deactivate();
    const int before = m_server.count();
    choose(WeatherSource::live);
    EXPECT_EQ(m_server.count(), before);
    EXPECT_TRUE(m_item->state().frames.empty());
    showPage();
    EXPECT_EQ(shown(), "5:54");
}

TEST_F(ItemWeatherSourceTest, TheSameChoiceAgainLoadsNothing) {
    showSite();
    const int before = m_sampleServer.count();
    choose(WeatherSource::sample);
    EXPECT_EQ(m_sampleServer.count(), before);
}

TEST_F(ItemWeatherSourceTest, AStartWithAnotherSourceShowsNoFramesOfThePageFile) {
    showSite();
    ServersSetting::set({m_server.host(), m_server.host()});
    test::publishFrames(m_server, {}, "MUX");
    restart();
    ASSERT_EQ(m_item->state().frames.size(), 1U);
    showPage();
    EXPECT_TRUE(m_item->state().frames.empty());
    EXPECT_EQ(shown(), "");
    EXPECT_TRUE(QFile::exists(root() + kBranch + "/MUX/MUX_20190519_0550_N0R.gif"));
}

TEST_F(ItemWeatherSourceTest, StorageMovesAndCleansAll) {
    QDir(m_folder.path()).mkpath("cards/one");
    showSite();
    choose(WeatherSource::live);
    choose(WeatherSource::sample);
    const auto useStorage = [this](bool clean) {
        test::DialogScript script;
        script.expect("Radar Image Storage", [&](QDialog& dialog) {
            test::check(dialog, "Cleanup cached files", clean);
            dialog.findChild<QComboBox*>()->setCurrentIndex(1);
            test::press(dialog, "OK");
            EXPECT_TRUE(QTest::qWaitFor([&] { return !dialog.isVisible(); }, 60'000));
        });
        EXPECT_TRUE(m_item->command(kStorage, 0));
        finish();
    };
    const QString before = root();
    useStorage(false);
    EXPECT_NE(root(), before);
    EXPECT_FALSE(QFile::exists(before));
    EXPECT_THAT(cached(), ElementsAre("0554"));
    EXPECT_THAT(cached(kBranch), ElementsAre("0550"));
    EXPECT_TRUE(m_item->state().frames.at(0).path.startsWith(root() + kBranch));
    EXPECT_TRUE(QFile::exists(m_item->state().frames.at(0).path));
    useStorage(true);
    EXPECT_THAT(cached(), ElementsAre());
    EXPECT_THAT(cached(kBranch), ElementsAre());
}

} // namespace
} // namespace raincast
