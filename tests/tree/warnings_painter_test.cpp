// SPDX-License-Identifier: MIT
#include "radar/image/bitmap.h"
#include "radar/image/image_file.h"
#include "tree/warnings_painter.h"

#include <gtest/gtest.h>

namespace raincast {
namespace {

using Kind = WarningPolygon::Kind;

const ImageGeometry kImage(35, -97, Range::shortRange);

QImage painted(const std::vector<WarningPolygon>& warnings, bool sample = false) {
    return decodeImage(renderWarnings(kImage, warnings, sample).value(), kMostImagePixels);
}

/// A rectangle between pixels.
WarningPolygon rectangle(Kind kind, int left, int top, int right, int bottom) {
    const auto corner = [](int column, int row) {
        return WarningPolygon::Corner{kImage.latitudeOfRow(row), kImage.longitudeOfColumn(column)};
    };
    return {
        kind, {corner(left, top), corner(right, top), corner(right, bottom), corner(left, bottom)}};
}

TEST(WarningsPainterTest, OutlinesAreYellowAndRedOnTransparentGround) {
    const QImage image = painted(
        {rectangle(Kind::tornado, 100, 100, 200, 160),
         rectangle(Kind::severeThunderstorm, 300, 100, 400, 160)}
    );
    ASSERT_EQ(image.size(), QSize(600, 550));
    EXPECT_EQ(image.pixel(150, 100), 0xFFFF0000);
    EXPECT_EQ(image.pixel(350, 100), 0xFFFFFF00);
    EXPECT_EQ(image.pixel(100, 130), 0xFFFF0000);
    EXPECT_EQ(image.pixel(150, 130), kTransparentWhite);
    EXPECT_EQ(image.pixel(250, 130), kTransparentWhite);
    EXPECT_EQ(image.pixel(12, 532), kTransparentWhite);
}

TEST(WarningsPainterTest, RedLiesOverYellowWhateverTheOrder) {
    for (const bool redFirst : {false, true}) {
        std::vector<WarningPolygon> warnings = {
            rectangle(Kind::severeThunderstorm, 100, 100, 200, 160),
            rectangle(Kind::tornado, 150, 80, 250, 160)};
        if (redFirst) {
            std::swap(warnings[0], warnings[1]);
        }
        EXPECT_EQ(painted(warnings).pixel(150, 100), 0xFFFF0000) << redFirst;
    }
}

TEST(WarningsPainterTest, WhatLiesOutsideIsCutOff) {
    const QImage image = painted({rectangle(Kind::tornado, -5000, -4000, 300, 100000)});
    EXPECT_EQ(image.pixel(300, 200), 0xFFFF0000);
    EXPECT_EQ(image.pixel(300, 549), 0xFFFF0000);
}

TEST(WarningsPainterTest, SamplesSaySo) {
    EXPECT_NE(painted({}, true).pixel(12, 532), kTransparentWhite);
}

} // namespace
} // namespace raincast
