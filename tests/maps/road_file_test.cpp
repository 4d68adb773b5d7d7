// SPDX-License-Identifier: MIT
#include "maps/road_file.h"
#include "support/files.h"

#include <QTemporaryDir>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <shapefil.h>

namespace raincast {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::SizeIs;

TEST(RoadFileTest, ReadsGeoJson) {
    const auto lines = readGeoJsonLines(R"({"type":"FeatureCollection","features":[
      {"type":"Feature","properties":{},"geometry":
        {"type":"LineString","coordinates":[[-77.5,39],[-77,38.5,12]]}},
      {"type":"Feature","geometry":{"type":"GeometryCollection","geometries":[
        {"type":"MultiLineString","coordinates":[[[1,2],[3,4]],[[5,6],[7,8]]]}]}},
      {"type":"Feature","geometry":{"type":"Point","coordinates":[1,2]}},
      {"type":"Feature","geometry":null}]})");
    ASSERT_THAT(lines, SizeIs(3));
    EXPECT_THAT(lines[0].points, ElementsAre(GeoPosition{39, -77.5}, GeoPosition{38.5, -77}));
    EXPECT_THAT(lines[2].points, ElementsAre(GeoPosition{6, 5}, GeoPosition{8, 7}));
}

TEST(RoadFileTest, OtherTextsHaveNoLines) {
    for (const char* text :
         {"", "{}", "[1]", "x", R"({"type":"LineString"})",
          R"({"type":"LineString","coordinates":[[1,2]]})",
          R"({"type":"LineString","coordinates":"no"})"}) {
        EXPECT_THAT(readGeoJsonLines(text), IsEmpty()) << text;
    }
}

TEST(RoadFileTest, DeepNestingEnds) {
    QByteArray text = R"({"type":"LineString","coordinates":[[1,2],[3,4]]})";
    for (int i = 0; i < 100; ++i) {
        text = R"({"geometries":[)" + text + "]}";
    }
    EXPECT_THAT(readGeoJsonLines(text), IsEmpty());
}

TEST(RoadFileTest, ReadsShapefiles) {
    const QTemporaryDir folder;
    const QString file = folder.filePath("roads.shp");
    SHPHandle shapes = SHPCreate(file.toUtf8().constData(), SHPT_ARC);
    ASSERT_NE(shapes, nullptr);
    const int parts[] = {0, 2};
    const double x[] = {-77, -78, 5, 6, 7};
    const double y[] = {38, 39, 1, 2, 3};
    SHPObject* shape = SHPCreateObject(SHPT_ARC, -1, 2, parts, nullptr, 5, x, y, nullptr, nullptr);
    SHPWriteObject(shapes, -1, shape);
    SHPDestroyObject(shape);
    SHPClose(shapes);

    const auto lines = readRoads(file);
    ASSERT_THAT(lines, SizeIs(2));
    EXPECT_THAT(lines[0].points, ElementsAre(GeoPosition{38, -77}, GeoPosition{39, -78}));
    EXPECT_THAT(lines[1].points, SizeIs(3));
}

TEST(RoadFileTest, AFileThatIsNoneHasNoLines) {
    const QTemporaryDir folder;
    writeFile(folder.filePath("bad.shp"), QByteArray(200, 'x'));
    writeFile(folder.filePath("bad.shx"), QByteArray(200, 'x'));
    EXPECT_THAT(readRoads(folder.filePath("bad.shp")), IsEmpty());
    EXPECT_THAT(readRoads(folder.filePath("none.shp")), IsEmpty());
    EXPECT_THAT(readRoads(folder.filePath("none.json")), IsEmpty());
}

} // namespace
} // namespace raincast
