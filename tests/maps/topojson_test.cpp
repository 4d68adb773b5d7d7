// SPDX-License-Identifier: MIT
#include "maps/topojson.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace raincast {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

// Two counties side by side in one state: the arc between them is no state's border.
const QByteArray kTopology = R"({"type":"Topology",
  "transform":{"scale":[0.5,0.25],"translate":[-100,40]},
  "objects":{
    "counties":{"type":"GeometryCollection","geometries":[
      {"type":"Polygon","arcs":[[0,1]]},{"type":"MultiPolygon","arcs":[[[-2,2]]]}]},
    "states":{"type":"GeometryCollection","geometries":[{"type":"Polygon","arcs":[[0,-3]]}]}},
  "arcs":[[[0,0],[2,0],[0,4]],[[2,4],[-2,-4]],[[2,4],[2,0]]]})";

TEST(TopoJsonTest, DecodesSteps) {
    const auto lines = readTopology(kTopology, "states");
    ASSERT_EQ(lines.size(), 3U);
    EXPECT_THAT(
        lines[0].points,
        ElementsAre(GeoPosition{40, -100}, GeoPosition{40, -99}, GeoPosition{41, -99})
    );
    EXPECT_THAT(lines[1].points, ElementsAre(GeoPosition{41, -99}, GeoPosition{40, -100}));
}

TEST(TopoJsonTest, ArcsOfTheMajorObjectRankFirst) {
    const auto lines = readTopology(kTopology, "states");
    ASSERT_EQ(lines.size(), 3U);
    EXPECT_EQ(lines[0].rank, 0);
    EXPECT_EQ(lines[1].rank, 1);
    EXPECT_EQ(lines[2].rank, 0);
}

TEST(TopoJsonTest, WithoutTransformPositionsAreDegrees) {
    const auto lines = readTopology(R"({"arcs":[[[-77.5,39],[-77,38.5]]]})", "states");
    ASSERT_EQ(lines.size(), 1U);
    EXPECT_THAT(lines[0].points, ElementsAre(GeoPosition{39, -77.5}, GeoPosition{38.5, -77}));
}

TEST(TopoJsonTest, OtherBytesHaveNoLines) {
    for (const char* bytes :
         {"", "[]", "{", "nonsense", R"({"arcs":{}})", R"({"arcs":[[]]})", R"({"arcs":[[[1,2]]]})",
          R"({"arcs":[5,"x",null]})"}) {
        EXPECT_THAT(readTopology(bytes, "states"), IsEmpty()) << bytes;
    }
}

TEST(TopoJsonTest, ArcNumbersThatDoNotExistAreIgnored) {
    const auto lines = readTopology(
        R"({"objects":{"states":{"arcs":[[7,-9,1e300,-2147483648]]}},"arcs":[[[0,0],[1,1]]]})",
        "states"
    );
    ASSERT_EQ(lines.size(), 1U);
    EXPECT_EQ(lines[0].rank, 1);
}

} // namespace
} // namespace raincast
