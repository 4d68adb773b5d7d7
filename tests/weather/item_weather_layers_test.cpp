// SPDX-License-Identifier: MIT
// What a change of product and layers loads again, and what is shown without a layer.
#include "support/files.h"
#include "support/transfers.h"
#include "weather_page.h"

#include <QComboBox>
#include <QListWidget>

#include <algorithm>

namespace raincast {
namespace {

using test::DialogScript;
using ::testing::ElementsAre;

constexpr QRgb kRed = 0xFFFF0000;
constexpr QRgb kBlack = 0xFF000000;
const QString kOverlays = QStringLiteral("/ridge/Overlays/");

class ItemWeatherLayersTest : public test::WeatherPage {
protected:
    void chooseProduct(int index) {
        DialogScript script;
        script.expect("Radar Layers", [index](QDialog& dialog) {
            dialog.findChild<QComboBox*>()->setCurrentIndex(index);
            test::press(dialog, "OK");
        });
        EXPECT_TRUE(m_item->command(kLayers, 0));
        finish();
    }
    /// The paths that were asked for since so many requests, the warnings at the end: they are
    /// fetched beside the frames.
    [[nodiscard]] std::vector<std::string> pathsSince(int first) const {
        std::vector<std::string> paths;
        for (const auto& request : m_server.requests()) {
            paths.push_back(request.path.toStdString());
        }
        paths.erase(paths.begin(), paths.begin() + first);
        std::stable_partition(paths.begin(), paths.end(), [](const std::string& path) {
            return path.find("Warnings") == std::string::npos;
        });
        return paths;
    }
    /// Looks at the image's north-west, where the lines are; returns the colour of a column.
    [[nodiscard]] QRgb lineAt(int column) {
        while (m_item->view().toPage({0, 0}).x < 5) {
            m_item->keyDown(Qt::Key_Left);
        }
        return drawn().pixel(m_item->view().toPage({column, 275}).x, 140);
    }
};

TEST_F(ItemWeatherLayersTest, AnotherProductOfTheSameRangeKeepsTheMaps) {
    test::publishFrames(m_server, {"20190519_0555"}, "MUX", "N0V");
    showSite();
    // Had the maps to be loaded again, the topo would be fetched.
    QDir(m_item->state().cacheFolder + "/MUX").removeRecursively();
    const int before = m_server.count();
    chooseProduct(5);
    EXPECT_THAT(
        pathsSince(before),
        ElementsAre(
            "/ridge/RadarImg/N0V/MUX/", "/ridge/RadarImg/N0V/MUX/MUX_20190519_0555_N0V.gif",
            "/ridge/Warnings/Short/MUX_Warnings_0.gif"
        )
    );
    EXPECT_EQ(shown(), "5:55");
    EXPECT_EQ(lineAt(20), kRed);
}

TEST_F(ItemWeatherLayersTest, LongRangeHasMapsOfItsOwn) {
    test::publishLayers(m_server, "MUX", "Long");
    test::publishFrames(m_server, {"20190519_0550"}, "MUX", "N0Z");
    showSite();
    int before = m_server.count();
    chooseProduct(2);
    EXPECT_THAT(
        pathsSince(before),
        ElementsAre(
            "/ridge/Overlays/Cities/Long/MUX_City_Long.gfw",
            "/ridge/Overlays/Topo/Long/MUX_Topo_Long.jpg",
            "/ridge/Overlays/Rivers/Long/MUX_Rivers_Long.gif",
            "/weather_radar/basemaps/MUX_County_Long.gif",
            "/ridge/Overlays/Highways/Long/MUX_Highways_Long.gif",
            "/weather_radar/basemaps/MUX_City_Long.gif", "/ridge/RadarImg/N0Z/MUX/",
            "/ridge/RadarImg/N0Z/MUX/MUX_20190519_0550_N0Z.gif",
            "/ridge/Warnings/Long/MUX_Warnings_0.gif"
        )
    );
    EXPECT_EQ(shown(), "5:50");
    before = m_server.count();
    chooseProduct(0); // all of which is there
    EXPECT_THAT(
        pathsSince(before),
        ElementsAre("/ridge/RadarImg/N0R/MUX/", "/ridge/Warnings/Short/MUX_Warnings_0.gif")
    );
}

TEST_F(ItemWeatherLayersTest, AMapLayerIsSwitchedWithoutARadarUpdate) {
    showSite();
    const int before = m_server.count();
    EXPECT_EQ(lineAt(20), kRed);
    editLayers({"Highways"});
    EXPECT_EQ(m_server.count(), before);
    EXPECT_EQ(qGreen(lineAt(20)), 120);
    EXPECT_EQ(lineAt(30), kRed);
}

TEST_F(ItemWeatherLayersTest, WarningsAreSwitchedByAnUpdateOfTheRadar) {
    m_server.serve("/ridge/Warnings/Short/MUX_Warnings_0.gif", test::columnGif(250));
    showSite();
    const QPoint warning(250 - 150, 150);
    EXPECT_EQ(drawn().pixel(warning), kRed);
    const int before = m_server.count();
    editLayers({"Warnings"});
    EXPECT_THAT(pathsSince(before), ElementsAre("/ridge/RadarImg/N0R/MUX/"));
    EXPECT_EQ(qGreen(drawn().pixel(warning)), 120);
}

TEST_F(ItemWeatherLayersTest, WithAllLayersOffOnlyTheWorldFileIsFetched) {
    DialogScript script;
    script.expect("Weather Station");
    showPage();
    editLayers({"Topo Map", "Rivers", "Counties", "Highways", "Cities", "Warnings"});
    EXPECT_EQ(m_server.count(), 0);
    chooseSite("San Fr");
    useFullSize();
    EXPECT_THAT(
        pathsSince(0),
        ElementsAre(
            "/ridge/Overlays/Cities/Short/MUX_City_Short.gfw", "/ridge/RadarImg/N0R/MUX/",
            "/ridge/RadarImg/N0R/MUX/MUX_20190519_0554_N0R.gif"
        )
    );
    EXPECT_EQ(drawn().pixel(202 - 150, 150), kRed);
    EXPECT_EQ(drawn().pixel(100, 150), 0xFFFFFFFF) << "no ground: the page shows";
}

TEST_F(ItemWeatherLayersTest, WithoutTopoRiversLieWithTheOtherLinesOnBlack) {
    showSite();
    EXPECT_EQ(lineAt(10), kRed); // burnt into the topo
    editLayers({"Topo Map"});
    for (const int column : {10, 20, 30, 40}) {
        EXPECT_EQ(lineAt(column), kRed) << column;
        EXPECT_EQ(lineAt(column + 5), kBlack) << column;
    }
    EXPECT_EQ(lineAt(202), kRed); // the radar over it
    editLayers({"Counties", "Highways", "Cities"});
    EXPECT_EQ(lineAt(10), kRed);
    EXPECT_EQ(lineAt(15), kBlack);
}

TEST_F(ItemWeatherLayersTest, ALayerThatMayBeMissingIsMissedInSilence) {
    m_server.serve("/weather_radar/basemaps/MUX_County_Short.gif", "", 404);
    m_server.serve(kOverlays + "Highways/Short/MUX_Highways_Short.gif", "no picture");
    showSite();
    EXPECT_EQ(m_item->statusText(), QString());
    EXPECT_EQ(shown(), "5:54");
    EXPECT_EQ(qGreen(lineAt(30)), 120);
    EXPECT_EQ(qGreen(lineAt(20)), 120);
    EXPECT_EQ(lineAt(40), kRed);
}

TEST_F(ItemWeatherLayersTest, ALayerThatMayNotBeMissingEndsTheLoad) {
    m_server.serve(kOverlays + "Rivers/Short/MUX_Rivers_Short.gif", "", 404);
    showSite();
    EXPECT_EQ(
        m_item->statusText(),
        "Failed to access\nthe internet. Please\ncheck your connection\nsettings."
    );
    EXPECT_EQ(m_server.count(test::framesPath("MUX")), 0);
    EXPECT_EQ(qGreen(drawn().pixel(100, 150)), 120) << "what was loaded by then stays";
    // Without that layer there is nothing to miss.
    editLayers({"Rivers"});
    EXPECT_EQ(m_item->statusText(), QString());
    EXPECT_EQ(lineAt(20), kRed);
}

TEST_F(ItemWeatherLayersTest, ADefectiveLayerInTheCacheStaysAwayUntilItCanBeHad) {
    showSite();
    writeFile(m_item->state().cacheFolder + "/MUX/MUX_Highways_Short.gif", "no picture");
    const QString highways = kOverlays + "Highways/Short/MUX_Highways_Short.gif";
    m_server.serve(highways, "", 503);
    restart();
    const int before = m_server.count();
    showPage();
    EXPECT_EQ(pathsSince(before), std::vector<std::string>{highways.toStdString()});
    EXPECT_EQ(qGreen(lineAt(20)), 120);
    EXPECT_EQ(lineAt(40), kRed);
    publishLayers("MUX");
    restart();
    showPage();
    EXPECT_EQ(lineAt(20), kRed);
}

TEST_F(ItemWeatherLayersTest, WithEverythingCachedNobodyAsksForAConnection) {
    showSite();
    restart();
    const int before = m_server.count();
    CountingConnectionManager connection;
    Downloads downloads(connection);
    m_item->useDownloads(downloads);
    showPage();
    m_page->deactivate();
    EXPECT_EQ(shown(), "5:54");
    EXPECT_EQ(connection.established, 0);
    EXPECT_EQ(m_server.count(), before);
}

} // namespace
} // namespace raincast
