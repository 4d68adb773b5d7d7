// SPDX-License-Identifier: MIT
#include "maps/layer_canvas.h"
#include "maps/map_data.h"
#include "radar/catalogue/antenna_positions.h"
#include "radar/catalogue/image_geometry.h"
#include "support/files.h"

#include <QTemporaryDir>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

namespace raincast {
namespace {

using ::testing::IsEmpty;
using ::testing::Not;
using ::testing::SizeIs;

constexpr GeoBox kBox{38, -78, 39, -77};

TEST(MapDataTest, NamesWhatBringsWhatIsMissing) {
    MapDataFiles files;
    const QString all = files.missing().join('\n');
    for (const char* word : {"gmt-gshhg-full", "ferret-datasets", "--roads"}) {
        EXPECT_TRUE(all.contains(word)) << word;
    }
    files.roads = "roads.json";
    EXPECT_FALSE(files.missing().join('\n').contains("--roads"));
}

TEST(MapDataTest, HasTheBordersOfTheCountryWithTheProgram) {
    const MapDataFiles files = MapDataFiles::find("my-roads");
    EXPECT_EQ(files.roads, "my-roads");
    const MapData data(files);
    const auto borders = data.borders(kBox);
    EXPECT_GT(
        std::count_if(borders.begin(), borders.end(), [](auto& line) { return line.rank == 0; }), 2
    );
    EXPECT_GT(
        std::count_if(borders.begin(), borders.end(), [](auto& line) { return line.rank == 1; }), 20
    );
}

TEST(MapDataTest, TheBordersThatArePackedAreThoseOfTheTopology) {
    MapDataFiles all;
    all.borders = QStringLiteral(RAINCAST_COUNTIES);
    constexpr GeoBox kWorld{-90, -180, 90, 180};
    const auto wanted = MapData(all).borders(kWorld);
    const auto packed = MapData(MapDataFiles::find({})).borders(kWorld);
    ASSERT_GT(wanted.size(), 9'000U);
    ASSERT_EQ(packed.size(), wanted.size());
    for (std::size_t i = 0; i < wanted.size(); ++i) {
        ASSERT_EQ(packed[i].rank, wanted[i].rank) << i;
        ASSERT_EQ(packed[i].points, wanted[i].points) << i;
    }
}

/// What is packed into the program shows the same places in the pictures of each site.
TEST(MapDataTest, HasThePlacesOfEverySiteWithTheProgram) {
    MapDataFiles all;
    all.cities = QStringLiteral(RAINCAST_ALL_CITIES);
    const MapData before(all);
    const MapData packed(MapDataFiles::find({}));
    for (const AntennaPosition& antenna : antennaPositions()) {
        const ImageGeometry picture(antenna.latitude, antenna.longitude, Range::longRange);
        const GeoBox box = LayerCanvas(picture).box();
        const auto wanted = before.cities(box);
        const auto found = packed.cities(box);
        ASSERT_EQ(found.size(), wanted.size()) << antenna.id;
        for (std::size_t i = 0; i < wanted.size(); ++i) {
            ASSERT_EQ(found[i].name, wanted[i].name);
            ASSERT_EQ(found[i].population, wanted[i].population);
            ASSERT_NEAR(found[i].position.latitude, wanted[i].position.latitude, 1e-7);
            ASSERT_NEAR(found[i].position.longitude, wanted[i].position.longitude, 1e-7);
        }
    }
    EXPECT_THAT(packed.cities({35.6, 139.6, 35.8, 139.8}), IsEmpty()) << "Tokyo is in no picture";
    EXPECT_THAT(before.cities({35.6, 139.6, 35.8, 139.8}), Not(IsEmpty()));
}

TEST(MapDataTest, TheStampChangesWithTheFiles) {
    const QTemporaryDir folder;
    MapDataFiles files;
    const QByteArray none = files.stamp();
    files.roads = folder.filePath("roads.json");
    const QByteArray absent = files.stamp();
    writeFile(files.roads, "{}");
    const QByteArray present = files.stamp();
    EXPECT_NE(none, absent);
    EXPECT_NE(absent, present);
    EXPECT_EQ(files.stamp(), present);
}

TEST(MapDataTest, GivesWhatLiesInTheBox) {
    const QTemporaryDir folder;
    MapDataFiles files;
    files.roads = folder.filePath("roads.json");
    writeFile(
        files.roads,
        R"({"type":"MultiLineString","coordinates":[[[-77.5,38.5],[-77.4,38.4]],[[0,0],[1,1]]]})"
    );
    const MapData data(files);
    EXPECT_THAT(data.roads(kBox), SizeIs(1));
    EXPECT_THAT(data.roads({10, 10, 11, 11}), IsEmpty());
}

TEST(MapDataTest, WhatIsMissingHasNothingInIt) {
    const MapData data{MapDataFiles()};
    EXPECT_THAT(data.shores(kBox), IsEmpty());
    EXPECT_THAT(data.rivers(kBox), IsEmpty());
    EXPECT_TRUE(data.relief(kBox).isEmpty());
    EXPECT_THAT(data.borders(kBox), IsEmpty());
    EXPECT_THAT(data.roads(kBox), IsEmpty());
    EXPECT_THAT(data.cities(kBox), IsEmpty());
}

TEST(MapDataTest, KnowsWhetherRoadsCanBeRead) {
    const QTemporaryDir folder;
    MapDataFiles files;
    EXPECT_FALSE(MapData(files).hasRoads());
    files.roads = folder.filePath("roads.json");
    writeFile(files.roads, "no roads");
    EXPECT_FALSE(MapData(files).hasRoads());
    writeFile(files.roads, R"({"type":"LineString","coordinates":[[-97.1,34.9],[-97,35]]})");
    EXPECT_TRUE(MapData(files).hasRoads());
}

} // namespace
} // namespace raincast
