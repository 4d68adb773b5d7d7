// SPDX-License-Identifier: MIT
// The radar item on a real page, fed by a real server.
#include "map/map_lines_setting.h"
#include "map/map_menu.h"
#include "map/overlay_gps_position.h"
#include "persist/record_writer.h"
#include "radar/catalogue/sites.h"
#include "support/files.h"
#include "support/serial_bytes.h"
#include "weather_page.h"

#include <QListWidget>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>

namespace raincast {
namespace {

using test::DialogScript;
using ::testing::HasSubstr;

const QString kFrames = test::framesPath("MUX");

using ItemWeatherTest = test::WeatherPage;

TEST_F(ItemWeatherTest, ANewItemAsksForAStation) {
    DialogScript script;
    script.expect("Weather Station", [](QDialog& dialog) {
        auto* list = dialog.findChild<QListWidget*>();
        EXPECT_EQ(list->count(), 155);
        QTest::keyClicks(list, "San Fr");
        QTest::keyClick(&dialog, Qt::Key_Return);
    });
    showPage();
    EXPECT_EQ(m_item->state().siteId, QStringLiteral("MUX"));
    EXPECT_EQ(shown(), "5:54");
    EXPECT_EQ(m_item->statusText(), QString());
    EXPECT_EQ(m_item->view().zoom(), 1) << "the whole image";
    EXPECT_NEAR(m_item->centrePixel().column, 300, 2);
    EXPECT_NEAR(m_item->centrePixel().row, 275, 2);
}

TEST_F(ItemWeatherTest, ASiteAloneLeavesTheProductThatWasStored) {
    test::publishFrames(m_server, {"20190519_0555"}, "MUX", "N0V");
    m_item->beginWith({FirstShow::Choice{"MUX", 5}, std::nullopt});
    showPage();
    EXPECT_EQ(m_item->state().product, 5);
    restart();
    m_item->beginWith({FirstShow::Choice{"MUX", std::nullopt}, std::nullopt});
    showPage();
    EXPECT_EQ(m_item->state().product, 5);
    EXPECT_THAT(m_item->state().current.path.toStdString(), HasSubstr("20190519_0555_N0V"));
}

TEST_F(ItemWeatherTest, AWelcomeShowsMovingWeatherWithoutAQuestion) {
    m_item->beginWith({std::nullopt, "MUX"});
    showPage(); // would wait for a dialog's end
    EXPECT_EQ(m_item->state().siteId, "MUX");
    EXPECT_TRUE(m_item->state().animate);
    EXPECT_EQ(m_item->state().frames.size(), 3U);
}

TEST_F(ItemWeatherTest, AWelcomeLeavesWhatWasChosenAlone) {
    showSite();
    restart();
    m_item->beginWith({std::nullopt, "LWX"});
    showPage();
    EXPECT_EQ(m_item->state().siteId, "MUX");
    EXPECT_FALSE(m_item->state().animate);
}

TEST_F(ItemWeatherTest, WithoutAStationItSaysHowToChooseOne) {
    DialogScript script;
    script.expect("Weather Station", [](QDialog& dialog) { dialog.reject(); });
    showPage();
    EXPECT_EQ(m_item->state().siteId, QString());
    EXPECT_EQ(m_server.count(), 0);
    int dark = 0;
    const QImage picture = drawn();
    for (int x = 0; x < picture.width(); ++x) {
        for (int y = 0; y < 60; ++y) {
            dark += qGray(picture.pixel(x, y)) < 100 ? 1 : 0;
        }
    }
    EXPECT_GT(dark, 100);
}

TEST_F(ItemWeatherTest, LayersLieOverEachOtherInTheirOrder) {
    showSite();
    // Image column 200 of the newest frame is at page column 200 - 150.
    const QImage picture = drawn();
    const int left = 300 - 150;
    EXPECT_EQ(qGreen(picture.pixel(210 - left, 150)), 120);
    EXPECT_EQ(picture.pixel(202 - left, 150), 0xFFFF0000); // the frame's echo
    m_item->keyDown(Qt::Key_Left);
    for (int i = 0; i < 4; ++i) {
        m_item->keyDown(Qt::Key_Left);
    }
    const QImage west = drawn();
    for (const int column : {10, 20, 30, 40}) {
        EXPECT_EQ(west.pixel(column - (left - 160), 150), 0xFFFF0000) << column;
    }
}

TEST_F(ItemWeatherTest, TheSecondStartAsksTheServerForNothing) {
    showSite();
    const int before = m_server.count();
    restart();
    showPage();
    EXPECT_EQ(m_server.count(), before);
    EXPECT_EQ(shown(), "5:54");
    EXPECT_TRUE(m_item->state().current.bitmap);
    EXPECT_EQ(m_item->statusText(), QString());
}

TEST_F(ItemWeatherTest, ACachedFrameThatIsGoneAsksForAnUpdate) {
    showSite();
    QFile::remove(m_item->state().frames[0].path);
    restart();
    EXPECT_EQ(m_item->state().frames.size(), 1U);
    showPage();
    EXPECT_EQ(m_server.count(kFrames), 2);
    EXPECT_EQ(shown(), "5:54");
}

TEST_F(ItemWeatherTest, FramesComeBackWithTheirTimesAndPaths) {
    showSite();
    editAnimation(3);
    const auto frames = m_item->state().frames;
    ASSERT_EQ(frames.size(), 3U);
    restart();
    ASSERT_EQ(m_item->state().frames.size(), 3U);
    for (std::size_t i = 0; i < 3; ++i) {
        EXPECT_EQ(m_item->state().frames[i].path, frames[i].path);
        EXPECT_EQ(m_item->state().frames[i].timeText, frames[i].timeText);
        EXPECT_FALSE(m_item->state().frames[i].bitmap);
    }
    showPage();
    EXPECT_EQ(shown(), "5:34"); // the oldest one, until the animation moves
}

TEST_F(ItemWeatherTest, FramesMoveByTicksWhileThePageIsOnTheScreen) {
    showSite();
    editAnimation(3);
    std::string seen;
    for (int i = 0; i < 8; ++i) {
        tick();
        seen += shown().empty() ? " -" : " " + shown();
    }
    EXPECT_EQ(seen, " 5:54 - 5:34 5:44 5:54 5:54 5:54 -");
    m_page->deactivate();
    const auto position = m_item->state().position;
    m_item->Tick();
    EXPECT_EQ(m_item->state().position, position);
}

TEST_F(ItemWeatherTest, AutomaticUpdatesComeWhenTheyAreDue) {
    showSite();
    editAnimation(2, true);
    const int before = m_server.count(kFrames);
    beatAt(fromCalendar({2019, 5, 19, 6, 2}));
    EXPECT_EQ(m_server.count(kFrames), before); // due eight minutes after the newest frame
    publishFrames({"20190519_0554", "20190519_0600"});
    beatAt(fromCalendar({2019, 5, 19, 6, 3}));
    EXPECT_EQ(m_server.count(kFrames), before + 1);
    EXPECT_EQ(shown(), "6:00");
    beatAt(fromCalendar({2019, 5, 19, 6, 4}));
    EXPECT_EQ(m_server.count(kFrames), before + 1);
}

TEST_F(ItemWeatherTest, AHiddenPageUpdatesAndKeepsItsSite) {
    showSite();
    editAnimation(2, true);
    m_page->deactivate();
    publishFrames({"20190519_0554", "20190519_0600"});
    beatAt(fromCalendar({2019, 5, 19, 6, 3}));
    EXPECT_EQ(m_item->state().siteId, QStringLiteral("MUX"));
    EXPECT_EQ(shown(), "6:00");
}

TEST_F(ItemWeatherTest, APageThatWasNeverShownKeepsItsSiteToo) {
    showSite();
    editAnimation(2, true);
    restart();
    beatAt(fromCalendar({2019, 5, 19, 6, 3}));
    EXPECT_EQ(m_item->state().siteId, QStringLiteral("MUX"));
    EXPECT_EQ(shown(), "5:54");
}

TEST_F(ItemWeatherTest, WithoutASiteNothingUpdatesByItself) {
    DialogScript script;
    script.expect("Weather Station");
    showPage();
    script.expect("Animation", [](QDialog& dialog) {
        test::check(dialog, "Auto-Update ", true);
        test::press(dialog, "OK");
    });
    m_item->command(kAnimation, 0);
    finish();
    beatAt(fromCalendar({2019, 5, 19, 6, 3}));
    EXPECT_EQ(m_server.count(), 0);
    script.expect("Weather Station");
    update();
}

TEST_F(ItemWeatherTest, LeavingTheImageChangesToTheNearestSite) {
    showSite();
    for (int i = 0; i < 12; ++i) {
        m_item->keyDown(Qt::Key_Right);
    }
    const GeoPosition centre = m_item->centrePosition();
    const QString nearest = NearestSite(centre.latitude, centre.longitude)->toString();
    ASSERT_NE(nearest, QStringLiteral("MUX"));
    publishLayers(nearest);
    publishFrames({"20190519_0558"}, nearest);
    update();
    EXPECT_EQ(m_item->state().siteId, nearest);
    EXPECT_EQ(shown(), "5:58");
}

TEST_F(ItemWeatherTest, WithTheWholeImageInViewTheSiteStays) {
    showSite();
    for (int i = 0; i < 4; ++i) {
        m_item->command(kZoomOut, 0);
    }
    m_item->keyDown(Qt::Key_Right);
    m_item->keyDown(Qt::Key_Right); // 64 pixels: the image is 38 wide
    update();
    EXPECT_EQ(m_item->state().siteId, QStringLiteral("MUX"));
    EXPECT_EQ(m_server.count(kFrames), 2);
}

TEST_F(ItemWeatherTest, WithoutTopoTheGroundIsBlack) {
    showSite();
    editLayers({"Topo Map"});
    const QImage picture = drawn();
    EXPECT_EQ(picture.pixel(100, 150), 0xFF000000);
    EXPECT_EQ(m_server.count(kFrames), 1);
    editLayers({"Rivers", "Counties", "Highways", "Cities"});
    EXPECT_EQ(drawn().pixel(100, 150), 0xFFFFFFFF); // with nothing at all the page shows
}

TEST_F(ItemWeatherTest, AFaultIsShownAndTheNextUpdateWorks) {
    m_server.serve(kFrames, "", 500);
    showSite();
    EXPECT_EQ(m_item->statusText(), QStringLiteral("No radar images found on server.\n"));
    publishFrames({"20190519_0554"});
    update();
    EXPECT_EQ(m_item->statusText(), QString());
    EXPECT_EQ(shown(), "5:54");
}

TEST_F(ItemWeatherTest, LayersThatCannotBeHadAreToldAndTriedAgain) {
    const QString world = "/ridge/Overlays/Cities/Short/MUX_City_Short.gfw";
    m_server.serve(world, "", 404);
    showSite();
    EXPECT_THAT(m_item->statusText().toStdString(), HasSubstr("Failed to access\nthe internet."));
    publishLayers("MUX");
    update();
    EXPECT_EQ(m_item->statusText(), QString());
    EXPECT_EQ(shown(), "5:54");
}

TEST_F(ItemWeatherTest, AStoredViewIsLeftAlone) {
    showSite();
    m_item->keyDown(Qt::Key_Right);
    m_item->command(kZoomOut, 0);
    const ViewTransform before = m_item->view();
    restart();
    showPage();
    EXPECT_EQ(m_item->view(), before);
}

// The map's lines have the top; the item's own texts make room for them.
TEST_F(ItemWeatherTest, TheStatusStandsBelowTheLinesOfTheMap) {
    const QImage alone = drawn();
    const int height = QFontMetrics(QFont()).height();
    COverlayGPSPosition position;
    position.latitude = 37;
    position.longitude = -122;
    position.fixType = kFixGps;
    position.publish();
    const QImage below = drawn();
    const QRect status(0, 8, 300, 3 * height);
    EXPECT_EQ(below.copy(status.translated(0, height)), alone.copy(status));
    EXPECT_NE(below.copy(0, 0, 300, height), alone.copy(0, 0, 300, height));
    MapLinesSetting::show(MapLinesSetting::position, false);
    EXPECT_EQ(drawn(), alone);
    MapLinesSetting::show(MapLinesSetting::position, true);
}

TEST_F(ItemWeatherTest, ItsMenuHasTheMapsEntriesBesideItsOwn) {
    const auto popUp = MenuTableRecord::find(CItemWeather::kMenu)[0].rows;
    ASSERT_EQ(popUp.size(), 3U);
    EXPECT_EQ(popUp[0].rows.size(), 10U);
    EXPECT_EQ(popUp[1].rows.size(), 5U);
    EXPECT_EQ(popUp[2].rows.data(), kMapMenu.rows.data());
}

TEST_F(ItemWeatherTest, ItTakesTheMapsCommands) {
    showSite();
    EXPECT_TRUE(m_page->command(kFollowPosition, clicked));
    EXPECT_TRUE(m_item->following());
    EXPECT_TRUE(m_page->command(kFollowPosition, clicked));
    EXPECT_FALSE(m_item->following());
}

TEST_F(ItemWeatherTest, TheCaptionNamesSiteProductAndDate) {
    EXPECT_EQ(m_item->caption(), QString());
    showSite();
    EXPECT_EQ(m_item->caption(), QStringLiteral("MUX Base Reflectivity 2019-05-19"));
}

TEST_F(ItemWeatherTest, APageFileIsNotBelieved) {
    // As the item writes itself: its placement, its view, its own record; all but the last as new.
    const QByteArray bytes = test::bytesFrom([](CSerialWriter& writer) {
        EXPECT_TRUE(CItemWeather().CItemMapView::Write(writer));
        CRecordWriter record(writer);
        record.string(u"../");
        record.bytes(std::array<std::uint8_t, 28>{});
        record.value(std::int32_t{0x7FFFFFFF});
        record.string(u"/dev/zero");
        record.string(u"1:00");
        record.string(u"not/absolute");
        return record.end();
    });
    CItemWeather item;
    const QString folder = item.state().cacheFolder;
    EXPECT_TRUE(test::read(item, bytes));
    EXPECT_EQ(item.state().siteId, QString());
    EXPECT_EQ(item.state().frameCount, 6);
    EXPECT_EQ(item.state().cacheFolder, folder);
    EXPECT_LE(item.state().frames.size(), 25U);
}

} // namespace
} // namespace raincast
