// SPDX-License-Identifier: MIT
// The radar item and its cache: what cannot be kept there, what it must not keep, and what is tried
// again.
#include "support/fault_server.h"
#include "support/files.h"
#include "support/full_disk.h"
#include "weather_page.h"

#include <cerrno>

namespace raincast {
namespace {

constexpr QRgb kRed = 0xFFFF0000;
const QString kRivers = QStringLiteral("/ridge/Overlays/Rivers/Short/MUX_Rivers_Short.gif");
const QString kCounties = QStringLiteral("/weather_radar/basemaps/MUX_County_Short.gif");
const QString kTopo = QStringLiteral("/ridge/Overlays/Topo/Short/MUX_Topo_Short.jpg");
const char* const kNoInternet =
    "Failed to access\nthe internet. Please\ncheck your connection\nsettings.";

class ItemWeatherCacheTest : public test::WeatherPage {
protected:
    [[nodiscard]] QString folder() const { return m_item->state().cacheFolder + "/MUX"; }
    /// Looks at the image's north-west, where the lines are; returns the colour of a column.
    [[nodiscard]] QRgb lineAt(int column) {
        while (m_item->view().toPage({0, 0}).x < 5) {
            m_item->keyDown(Qt::Key_Left);
        }
        return drawn().pixel(m_item->view().toPage({column, 275}).x, 140);
    }
    void expectAllLines(const char* what) {
        for (const int column : {10, 20, 30, 40}) {
            EXPECT_EQ(lineAt(column), kRed) << what << ' ' << column;
        }
        EXPECT_EQ(qGreen(lineAt(15)), 120) << what << ", topo";
    }
    [[nodiscard]] QString cacheFailure(int error) const {
        return QStringLiteral("Could not write to\nthe cache folder\n%1:\n%2.\n")
            .arg(m_item->state().cacheFolder, qt_error_string(error));
    }
};

TEST_F(ItemWeatherCacheTest, WhatALogInPageLeftIsGoneOnTheNextNetwork) {
    const FaultServer portal(answers::respond(200, "<html>Please <a href=\"/\">log in</a>"));
    ServersSetting::set({portal.host(), portal.host()});
    showSite();
    EXPECT_EQ(m_item->statusText(), kNoInternet);
    ServersSetting::set({m_server.host(), m_server.host()});
    update();
    useFullSize();
    EXPECT_EQ(m_item->statusText(), QString());
    EXPECT_EQ(shown(), "5:54");
    expectAllLines("after the log-in");
}

// As programs kept them that took every answer for what they had asked for.
TEST_F(ItemWeatherCacheTest, APageThatIsKeptInAFilesPlaceIsFetchedAgain) {
    showSite();
    const QStringList names = QDir(folder()).entryList(QDir::Files);
    ASSERT_EQ(names.size(), 7); // six of the map, and a frame
    for (const QString& name : names) {
        writeFile(folder() + '/' + name, "<html>Please log in</html>");
    }
    restart();
    showPage();
    EXPECT_EQ(m_item->statusText(), QString());
    EXPECT_EQ(shown(), "5:54");
    expectAllLines("fetched again");
}

TEST_F(ItemWeatherCacheTest, LayersThatCouldNotBeHadComeWithTheNextUpdate) {
    for (const QString& path : {kTopo, kRivers, kCounties}) {
        SCOPED_TRACE(path.toStdString());
        QDir(folder()).removeRecursively();
        publishLayers("MUX");
        m_server.serve(path, "gone", 404);
        showSite();
        publishLayers("MUX");
        update();
        EXPECT_EQ(m_item->statusText(), QString());
        EXPECT_EQ(shown(), "5:54");
        expectAllLines("by command");
        m_page->deactivate();
        makePage();
    }
}

TEST_F(ItemWeatherCacheTest, LayersThatCouldNotBeHadComeWithTheNextAutomaticUpdate) {
    m_server.serve(kRivers, "gone", 404);
    showSite();
    EXPECT_EQ(m_item->statusText(), kNoInternet);
    editAnimation(2, true); // updates
    EXPECT_EQ(shown(), "5:54") << "the radar does not wait for the rivers";
    EXPECT_EQ(lineAt(30), kRed) << "nor do the counties";
    EXPECT_NE(lineAt(10), kRed);
    publishLayers("MUX");
    beatAt(fromCalendar({2019, 5, 19, 6, 3}));
    expectAllLines("by itself");
}

TEST_F(ItemWeatherCacheTest, ACacheThatCannotBeWrittenIsNamed) {
    showSite();
    QDir(folder()).removeRecursively();
    writeFile(folder(), "in the way");
    update();
    EXPECT_EQ(m_item->statusText(), cacheFailure(ENOTDIR));
    ASSERT_TRUE(QFile::remove(folder()));
    update();
    EXPECT_EQ(m_item->statusText(), QString());
    EXPECT_EQ(shown(), "5:54");
}

TEST_F(ItemWeatherCacheTest, AFullDiskIsNamed) {
    {
        const FullDisk disk(100);
        showSite();
    }
    EXPECT_EQ(m_item->statusText(), cacheFailure(EFBIG));
    update();
    EXPECT_EQ(m_item->statusText(), QString());
    expectAllLines("with room");
}

TEST_F(ItemWeatherCacheTest, WhatAKilledProgramLeftGoesWithTheStaleFrames) {
    showSite();
    const QString left = folder() + "/MUX_20190519_0544_N0R.gif.part";
    writeFile(left, "half a fra");
    backdate(left, 3'700);
    update();
    EXPECT_FALSE(QFile::exists(left));
}

TEST_F(ItemWeatherCacheTest, AFrameOfTheFutureDoesNotStopAutomaticUpdates) {
    publishFrames({"20190519_0554", "29991231_2359"});
    showSite();
    EXPECT_EQ(shown(), "5:54");
    editAnimation(2, true);
    publishFrames({"20190519_0554", "20190519_0604", "29991231_2359"});
    beatAt(fromCalendar({2019, 5, 19, 6, 5}));
    EXPECT_EQ(shown(), "6:04");
}

} // namespace
} // namespace raincast
