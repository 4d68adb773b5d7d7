// SPDX-License-Identifier: MIT
// What a user without a network sees: never an empty map where there are pictures in the cache.
#include "support/files.h"
#include "support/gif_maker.h"
#include "support/loopback.h"
#include "weather_page.h"
#include "window/command_set.h"
#include "window/menu_table.h"

#include <QDir>
#include <QMenu>

namespace raincast {
namespace {

using testing::ElementsAre;

class ItemWeatherOfflineTest : public test::WeatherPage {
protected:
    void loseNetwork() { ServersSetting::set({m_refusing.host(), m_refusing.host()}); }
    [[nodiscard]] std::vector<std::string> frames() const {
        std::vector<std::string> times;
        for (const RadarFrame& frame : m_item->state().frames) {
            times.push_back(frame.timeText.toStdString());
        }
        return times;
    }
    [[nodiscard]] bool savesLoop() {
        CommandSet commands(m_window);
        const auto menu = commands.load(CItemWeather::kMenu);
        m_page->menuPopUp(*menu);
        return findCommand(*menu, kSaveLoop)->isEnabled();
    }
    [[nodiscard]] QString siteFolder() const {
        return m_item->state().cacheFolder + QStringLiteral("/MUX/");
    }

    const RefusingPort m_refusing;
};

TEST_F(ItemWeatherOfflineTest, AStartShowsTheFramesOfTheLastOne) {
    showSite();
    editAnimation(3);
    loseNetwork();
    restart();
    showPage();
    EXPECT_THAT(frames(), ElementsAre("5:34", "5:44", "5:54"));
    EXPECT_EQ(shown(), "5:34");
    EXPECT_EQ(m_item->statusText(), QString());
}

TEST_F(ItemWeatherOfflineTest, AStartShowsItsFirstFrameBeforeItReadsTheOthers) {
    showSite();
    editAnimation(3);
    loseNetwork();
    restart();
    std::vector<std::string> seen;
    watch([&](const QImage&) {
        const RadarState& state = m_item->state();
        if (state.current.bitmap && m_item->placed()) {
            seen.push_back(shown() + (state.frames.back().bitmap ? " of all" : " alone"));
        }
    });
    showPage();
    ASSERT_FALSE(seen.empty());
    EXPECT_EQ(seen.front(), "5:34 alone");
    EXPECT_EQ(seen.back(), "5:34 of all");
    for (const RadarFrame& frame : m_item->state().frames) {
        EXPECT_TRUE(frame.bitmap) << qPrintable(frame.path);
    }
    // The loop begins as ever.
    std::string ticks;
    for (int i = 0; i < 7; ++i) {
        tick();
        ticks += shown() + ' ';
    }
    EXPECT_EQ(ticks, "5:34 5:44 5:54 5:54 5:54 5:54  ");
}

TEST_F(ItemWeatherOfflineTest, FramesAreReadEvenIfNobodyLooks) {
    showSite();
    editAnimation(3);
    loseNetwork();
    restart();
    m_window.hide();
    m_page->activate(m_window, true);
    EXPECT_TRUE(QTest::qWaitFor([this] { return !m_item->pictureComing(); }, 30'000));
    EXPECT_EQ(shown(), "5:34");
    EXPECT_FALSE(m_item->state().frames.back().bitmap);
    EXPECT_FALSE(savesLoop()) << "its other frames are blank";
    tick();
    EXPECT_TRUE(savesLoop());
    EXPECT_TRUE(m_item->state().frames.back().bitmap);
}

TEST_F(ItemWeatherOfflineTest, AFrameThatCannotBeReadBehindTheFirstPictureAsksForAnUpdate) {
    showSite();
    editAnimation(3);
    restart();
    writeFile(siteFolder() + "MUX_20190519_0544_N0R.gif", "no picture");
    showPage();
    EXPECT_THAT(frames(), ElementsAre("5:34", "5:44", "5:54"));
    EXPECT_EQ(m_item->statusText(), QString());
    for (const RadarFrame& frame : m_item->state().frames) {
        EXPECT_TRUE(frame.bitmap) << qPrintable(frame.path);
    }
}

TEST_F(ItemWeatherOfflineTest, AStartShowsTheNewestFramesWhateverThePageFileHolds) {
    showSite();
    editAnimation(3);
    // Another program keeps the cache up to date.
    ASSERT_TRUE(QFile::copy(
        siteFolder() + "MUX_20190519_0554_N0R.gif", siteFolder() + "MUX_20190519_0604_N0R.gif"
    ));
    writeFile(siteFolder() + "MUX_20190519_0614_N0R.gif", "no picture");
    writeFile(siteFolder() + "MUX_20190519_0614_N0V.gif", "another product");
    loseNetwork();
    restart();
    showPage();
    EXPECT_THAT(frames(), ElementsAre("5:44", "5:54", "6:04"));
    // A frame of the page file that has gone asks for an update, which fails; what there is stays.
    restart();
    ASSERT_TRUE(QFile::remove(siteFolder() + "MUX_20190519_0554_N0R.gif"));
    showPage();
    EXPECT_THAT(frames(), ElementsAre("5:34", "5:44", "6:04"));
    EXPECT_EQ(m_item->statusText(), "Could not access server.\n");
    EXPECT_EQ(
        m_item->overPicture(),
        "Could not access server.\n" + m_refusing.host() + " does not answer."
    );
}

TEST_F(ItemWeatherOfflineTest, AStartThatShowsOldFramesDoesNotAskOnEachTick) {
    showSite();
    editAnimation(3, true);
    loseNetwork();
    restart();
    QDir(siteFolder()).remove("MUX_20190519_0534_N0R.gif");
    m_clock.set(fromCalendar({2019, 5, 19, 18, 0}));
    showPage();
    const FileTime due = m_item->state().nextUpdate;
    beginBeatAt(fromCalendar({2019, 5, 19, 18, 0, 10}));
    EXPECT_FALSE(m_item->loading());
    EXPECT_EQ(m_item->state().nextUpdate, due);
    EXPECT_THAT(frames(), ElementsAre("5:44", "5:54"));
}

TEST_F(ItemWeatherOfflineTest, AStartWithTheSiteOfThePageShowsItFromTheCache) {
    showSite();
    loseNetwork();
    restart();
    m_item->beginWith({FirstShow::Choice{"MUX", std::nullopt}, std::nullopt});
    showPage();
    EXPECT_EQ(shown(), "5:54");
    ASSERT_TRUE(m_item->state().current.bitmap);
    EXPECT_EQ(m_item->statusText(), "Could not access server.\n");
}

TEST_F(ItemWeatherOfflineTest, ASiteThatWasSeenBeforeIsShownFromTheCache) {
    publishLayers("LWX");
    publishFrames({"20190519_0553"}, "LWX");
    showSite();
    m_page->deactivate();
    m_item->beginWith({FirstShow::Choice{"LWX", 0}, std::nullopt});
    showPage();
    EXPECT_EQ(shown(), "5:53");
    loseNetwork();
    m_page->deactivate();
    m_item->beginWith({FirstShow::Choice{"MUX", 0}, std::nullopt});
    showPage();
    EXPECT_EQ(m_item->state().siteId, "MUX");
    EXPECT_EQ(shown(), "5:54");
    EXPECT_EQ(m_item->statusText(), "Could not access server.\n");
}

// A picture with one red pixel in its middle line, at the bottom right of the page's part.
TEST_F(ItemWeatherOfflineTest, WarningsStayOverTheLoopAndASecondLineSaysWhenTheyAreTooOld) {
    constexpr QRgb kOutline = 0xFFFF0000;
    const QByteArray outline =
        makeGif({.screen = {600, 550}, .transparent = 0, .pixel = [](int column, int row) {
                     return column == 300 && row == 275 ? 2 : 0;
                 }});
    m_server.serve("/ridge/Warnings/Short/MUX_Warnings_0.gif", outline);
    showSite();
    const PagePoint place = m_item->view().toPage(CItemWeather::kImageCentre);
    const auto outlined = [&] { return drawn().pixel(place.x, place.y) == kOutline; };
    EXPECT_TRUE(outlined());
    loseNetwork();
    restart();
    showPage();
    EXPECT_TRUE(outlined()) << "at a restart too";
    EXPECT_EQ(m_item->overPicture(), QString());

    // Newer frames come, but no warnings: after a quarter of an hour they are no longer shown.
    m_server.serve("/ridge/Warnings/Short/MUX_Warnings_0.gif", "", 503);
    ServersSetting::set({m_server.host(), m_server.host()});
    publishFrames({"20190519_0615"});
    update();
    EXPECT_TRUE(outlined());
    publishFrames({"20190519_0616"});
    update();
    EXPECT_FALSE(outlined());
    EXPECT_EQ(m_item->overPicture(), "Warnings of 6:00 are not shown");
    editLayers({"Warnings"});
    EXPECT_EQ(m_item->overPicture(), QString());
}

} // namespace
} // namespace raincast
