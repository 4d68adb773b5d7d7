// SPDX-License-Identifier: MIT
#include "maps/border_file.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace raincast {
namespace {

using ::testing::ElementsAre;
using ::testing::SizeIs;

const QByteArray kTopology = R"({"type":"Topology",
  "transform":{"scale":[0.3,0.25],"translate":[-100.1,40]},
  "objects":{"states":{"type":"GeometryCollection","geometries":[{"type":"Polygon","arcs":[[0]]}]}},
  "arcs":[[[0,0],[2,0],[0,4]],[[300,4],[-2,-70000]]]})";

TEST(BorderFileTest, LinesComeBackToTheLastBit) {
    const auto lines = readBorders(packBorders(kTopology, "states"));
    ASSERT_THAT(lines, SizeIs(2));
    EXPECT_EQ(lines[0].rank, 0);
    EXPECT_EQ(lines[1].rank, 1);
    EXPECT_THAT(
        lines[0].points, ElementsAre(
                             GeoPosition{40, -100.1}, GeoPosition{40, 2 * .3 + -100.1},
                             GeoPosition{41, 2 * .3 + -100.1}
                         )
    );
    EXPECT_THAT(
        lines[1].points,
        ElementsAre(
            GeoPosition{41, 300 * .3 + -100.1}, GeoPosition{-69'996 * .25 + 40, 298 * .3 + -100.1}
        )
    );
}

TEST(BorderFileTest, WhatIsNoWholeStepAwayIsNotPacked) {
    EXPECT_TRUE(packBorders(R"({"arcs":[[[-77.5,39],[-77,38.5]]]})", "states").isEmpty());
    QByteArray half = kTopology;
    EXPECT_TRUE(packBorders(half.replace("[2,0]", "[2,0.5]"), "states").isEmpty());
    EXPECT_TRUE(packBorders("nonsense", "states").isEmpty());
}

TEST(BorderFileTest, ReadingStopsAtTheFirstBadByte) {
    const QByteArray packed = packBorders(kTopology, "states");
    for (qsizetype length = 0; length < packed.size(); ++length) {
        EXPECT_LT(readBorders(packed.first(length)).size(), 2U) << length;
    }
    EXPECT_THAT(readBorders(packed + '\x80'), SizeIs(2));
    EXPECT_THAT(readBorders(packed + QByteArray(40, '\xFF')), SizeIs(2));
    // A number that goes on for ever, in the place of each.
    const QByteArray endless(8, '\xFF');
    EXPECT_THAT(readBorders(packed + endless + "\x01\x01\x01\x01"), SizeIs(2));
    EXPECT_THAT(readBorders(packed + "\x01\x01" + endless + "\x01\x01"), SizeIs(2));
    // A line of as many points as no file has, and steps that lead round the number's range.
    const QByteArray far(QByteArray(7, '\xFF') + '\x7F');
    EXPECT_THAT(readBorders(packed + '\x01' + far), SizeIs(2));
    EXPECT_THAT(readBorders(packed + '\x01' + '\x7F' + far.repeated(254)), SizeIs(3));
}

} // namespace
} // namespace raincast
