// SPDX-License-Identifier: MIT
#include "maps/map_data.h"
#include "radar/catalogue/sites.h"
#include "server/home_page.h"
#include "support/files.h"

#include <QRegularExpression>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace raincast {
namespace {

TEST(HomePageTest, HasEverySiteOnTheMapAndInTheList) {
    const QByteArray page = homePage(MapData(MapDataFiles()), SourceKind::level3);
    for (const RadarSite& site : radarSites()) {
        const QByteArray mark = "data-site=\"" + site.idText().toUtf8() + '"';
        EXPECT_EQ(page.count(mark), 2) << mark.constData();
    }
    EXPECT_EQ(page.count("<circle"), 155);
}

TEST(HomePageTest, SaysThatItIsSampleWeather) {
    const MapData maps{MapDataFiles()};
    EXPECT_TRUE(homePage(maps, SourceKind::sample).contains("Sample weather"));
    EXPECT_FALSE(homePage(maps, SourceKind::level3).contains("Sample weather"));
}

TEST(HomePageTest, SaysWhereLiveRadarComesFrom) {
    const MapData maps{MapDataFiles()};
    const QByteArray credit = "NOAA/NWS NEXRAD via Unidata (AWS Open Data)";
    EXPECT_TRUE(homePage(maps, SourceKind::live).contains(credit));
    EXPECT_FALSE(homePage(maps, SourceKind::sample).contains(credit));
}

TEST(HomePageTest, SaysWhatColoursMean) {
    const QByteArray page = homePage(MapData(MapDataFiles()), SourceKind::sample);
    EXPECT_TRUE(page.contains(R"(["#04e9e7","5"])"));
    EXPECT_TRUE(page.contains(R"("unit":"knots")"));
}

TEST(HomePageTest, LeavesNoPlaceEmpty) {
    const QByteArray page = homePage(MapData(MapDataFiles()), SourceKind::sample);
    EXPECT_FALSE(QRegularExpression("@[A-Z]+@").match(page).hasMatch());
}

TEST(HomePageTest, KnowsWhetherThereAreSharpPictures) {
    const MapData maps{MapDataFiles()};
    EXPECT_TRUE(homePage(maps, SourceKind::sample).contains("let detail = 2;"));
    EXPECT_TRUE(homePage(maps, SourceKind::sample, {}, 4).contains("let detail = 2;"));
    EXPECT_TRUE(homePage(maps, SourceKind::sample, {}, 1).contains("let detail = 1;"));
}

TEST(HomePageTest, AsksForNothingOutsideOfTheTree) {
    const QByteArray page = homePage(MapData(MapDataFiles()), SourceKind::sample);
    for (const char* const loaded : {"src=\"http", "src=\"//", "@import", "<link", "url("}) {
        EXPECT_FALSE(page.contains(loaded)) << loaded;
    }
    // Links are relative, so that a tree published below a folder has them right.
    EXPECT_FALSE(page.contains("href=\"/"));
}

TEST(HomePageTest, DrawsTheStates) {
    const QTemporaryDir folder;
    MapDataFiles files;
    files.borders = folder.filePath("borders.json");
    writeFile(
        files.borders,
        R"({"objects":{"states":{"arcs":[0]}},"arcs":[[[-100,40],[-95,40],[-95,35]]]})"
    );
    EXPECT_TRUE(homePage(MapData(files), SourceKind::live).contains("d=\"M"));
}

} // namespace
} // namespace raincast
