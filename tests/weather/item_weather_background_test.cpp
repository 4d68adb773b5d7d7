// SPDX-License-Identifier: MIT
// What goes on while a radar item loads, and what ends a load.
#include "net/downloads.h"
#include "support/fault_server.h"
#include "support/files.h"
#include "weather_page.h"

#include <atomic>
#include <chrono>
#include <thread>

namespace raincast {
namespace {

using test::DialogScript;

const QString kFrames = test::framesPath("MUX");

class ItemWeatherBackgroundTest : public test::WeatherPage {
protected:
    ItemWeatherBackgroundTest() {
        m_silent.otherwise(answers::silence());
        httpLimits().stallTime = std::chrono::seconds(60);
    }
    /// Begins an update from a server that takes the request and says nothing.
    void beginEndlessUpdate() {
        const auto before = m_silent.requests().size();
        ServersSetting::set({m_silent.host(), m_silent.host()});
        EXPECT_TRUE(m_item->command(kUpdate, 0));
        EXPECT_TRUE(m_item->loading());
        EXPECT_TRUE(QTest::qWaitFor([&] { return m_silent.requests().size() > before; }));
    }
    /// The silent server's connections end when what waits for them does.
    [[nodiscard]] bool serverIsLeft() {
        return QTest::qWaitFor([this] { return m_silent.openConnections() == 0; });
    }
    void useGoodServer() { ServersSetting::set({m_server.host(), m_server.host()}); }
    [[nodiscard]] int updates() const { return m_server.count(kFrames); }

    FaultServer m_silent;
};

TEST_F(ItemWeatherBackgroundTest, AnUpdateHoldsNothingUp) {
    showSite();
    beginEndlessUpdate();
    const ViewTransform before = m_item->view();
    EXPECT_TRUE(m_page->keyDown(Qt::Key_Left));
    EXPECT_NE(m_item->view(), before);
    EXPECT_TRUE(m_item->command(kZoomIn, 0));
    EXPECT_FALSE(m_window.grab().isNull());
    DialogScript script;
    script.expect("Radar Layers");
    EXPECT_TRUE(m_item->command(kLayers, 0));
    EXPECT_TRUE(m_item->loading()) << "a dialog that is cancelled changes nothing";
}

TEST_F(ItemWeatherBackgroundTest, OneUpdateRunsAtATime) {
    showSite();
    beginEndlessUpdate();
    EXPECT_TRUE(m_item->command(kUpdate, 0));
    EXPECT_TRUE(m_item->command(kUpdate, 0));
    test::settle();
    EXPECT_EQ(m_silent.requests().size(), 1U);
}

TEST_F(ItemWeatherBackgroundTest, StopEndsItAndTheNextOneWorks) {
    showSite();
    beginEndlessUpdate();
    m_page->command(kStop, clicked);
    EXPECT_FALSE(m_item->loading());
    EXPECT_EQ(m_item->statusText(), QString());
    EXPECT_EQ(shown(), "5:54") << "the frame of before";
    EXPECT_TRUE(serverIsLeft());
    useGoodServer();
    update();
    EXPECT_EQ(shown(), "5:54");
    EXPECT_EQ(m_item->statusText(), QString());
    m_page->command(kStop, clicked); // nothing runs
    EXPECT_EQ(m_item->statusText(), QString());
    EXPECT_EQ(shown(), "5:54");
}

TEST_F(ItemWeatherBackgroundTest, AnotherSiteTakesItsPlace) {
    test::publishLayers(m_server, "LWX");
    test::publishFrames(m_server, {"20190519_0553"}, "LWX");
    showSite();
    beginEndlessUpdate();
    useGoodServer();
    chooseSite("Sterling");
    EXPECT_EQ(m_item->state().siteId, "LWX");
    EXPECT_EQ(shown(), "5:53");
    EXPECT_TRUE(serverIsLeft());
}

TEST_F(ItemWeatherBackgroundTest, AnotherPageEndsItAndItIsMadeUpForThere) {
    showSite();
    beginEndlessUpdate();
    m_page->deactivate();
    test::settle();
    EXPECT_FALSE(m_item->loading());
    EXPECT_EQ(m_item->statusText(), QString());
    EXPECT_TRUE(serverIsLeft());
    useGoodServer();
    const int before = updates();
    showPage();
    EXPECT_EQ(updates(), before + 1);
    EXPECT_EQ(shown(), "5:54");
}

TEST_F(ItemWeatherBackgroundTest, AnItemThatGoesEndsIt) {
    showSite();
    beginEndlessUpdate();
    m_page->deactivate();
    m_page.reset();
    EXPECT_TRUE(serverIsLeft());
    makePage();
}

TEST_F(ItemWeatherBackgroundTest, AHiddenPagesUpdateGoesOn) {
    showSite();
    editAnimation(2, true);
    m_page->deactivate();
    test::settle();
    publishFrames({"20190519_0554", "20190519_0604"});
    beatAt(fromCalendar({2019, 5, 19, 6, 5}));
    EXPECT_EQ(shown(), "6:04");
}

TEST_F(ItemWeatherBackgroundTest, AnUpdateThatIsDueIsCountedWhenItEnds) {
    showSite();
    editAnimation(2, true);
    const FileTime due = m_item->state().nextUpdate;
    ServersSetting::set({m_silent.host(), m_silent.host()});
    m_clock.set(fromCalendar({2019, 5, 19, 6, 3}));
    CHeartbeat::program().Beat();
    for (int i = 0; i < 12; ++i) {
        CHeartbeat::program().Beat();
    }
    EXPECT_TRUE(QTest::qWaitFor([&] { return m_silent.requests().size() == 1; }));
    EXPECT_TRUE(m_item->loading());
    EXPECT_EQ(m_item->state().nextUpdate, due) << "it has not ended";
    m_page->command(kStop, clicked);
    EXPECT_EQ(m_item->state().nextUpdate, due + 5 * kFileTimePerMinute);
}

TEST_F(ItemWeatherBackgroundTest, TwoItemsOnOneSiteShareOneFetch) {
    Downloads downloads;
    m_item->useDownloads(downloads);
    showSite();
    auto* const other =
        static_cast<CItemWeather*>(&m_page->addItem(std::make_unique<CItemWeather>()));
    other->setRectangle({0, 0, 300, 280});
    other->useDownloads(downloads);
    other->beginWith({FirstShow::Choice{"MUX", 0}, std::nullopt});
    other->windowCreated();
    finish();
    EXPECT_TRUE(QTest::qWaitFor([&] { return !other->loading(); }));
    QDir(m_item->state().cacheFolder + "/MUX").removeRecursively();
    const int listings = updates();
    std::atomic<bool> go = false;
    m_server.handle(kFrames, [&go](const auto&) {
        while (!go) {
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        }
        HttpServer::Response response;
        response.body = "\"MUX_20190519_0554_N0R.gif\"";
        return response;
    });
    EXPECT_TRUE(m_item->command(kUpdate, 0));
    EXPECT_TRUE(other->command(kUpdate, 0));
    EXPECT_TRUE(QTest::qWaitFor([&] { return updates() > listings; }));
    go = true;
    finish();
    EXPECT_TRUE(QTest::qWaitFor([&] { return !other->loading(); }));
    EXPECT_EQ(updates(), listings + 1);
    EXPECT_EQ(other->state().current.timeText, "5:54");
    EXPECT_EQ(shown(), "5:54");
    m_page->deactivate();
    m_page.reset(); // before the downloads
    makePage();
}

} // namespace
} // namespace raincast
