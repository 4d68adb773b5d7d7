// SPDX-License-Identifier: MIT
#include "image/image_file.h"
#include "palette/warning_kinds.h"
#include "radar/bitmap.h"
#include "tree/warnings_painter.h"

#include <gtest/gtest.h>

namespace raincast {
namespace {

using Kind = WarningKind;

const ImageGeometry kImage(35, -97, Range::shortRange);

QImage painted(const std::vector<WeatherWarning>& warnings, bool sample = false) {
    return decodeImage(renderWarnings(kImage, {warnings, sample}).value(), kMostImagePixels);
}

WeatherWarning::Ring ring(int left, int top, int right, int bottom) {
    const auto corner = [](int column, int row) {
        return WeatherWarning::Corner{kImage.latitudeOfRow(row), kImage.longitudeOfColumn(column)};
    };
    return {corner(left, top), corner(right, top), corner(right, bottom), corner(left, bottom)};
}

/// A rectangle between pixels.
WeatherWarning rectangle(Kind kind, int left, int top, int right, int bottom) {
    WeatherWarning warning;
    warning.kind = kind;
    warning.polygons = {{ring(left, top, right, bottom)}};
    return warning;
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

TEST(WarningsPainterTest, SharpOutlinesAreAsThinAndWithoutGaps) {
    const WeatherWarning warning = rectangle(Kind::tornado, 100, 40, 500, 520);
    for (const int detail : {2, 4}) {
        const ImageGeometry sharp(35, -97, Range::shortRange, detail);
        const QImage image =
            decodeImage(renderWarnings(sharp, {{warning}, false}).value(), 10'000'000);
        ASSERT_EQ(image.size(), QSize(600, 550) * detail);
        const WeatherWarning::Ring& ring = warning.polygons[0][0];
        const int left = qRound(sharp.columnOfLongitude(ring[0].longitude));
        const int top = qRound(sharp.rowOfLatitude(ring[0].latitude));
        const int bottom = qRound(sharp.rowOfLatitude(ring[2].latitude));
        for (int row = top + 3; row < bottom - 3; ++row) {
            int red = 0;
            int drawn = 0;
            for (int column = left - 5; column <= left + 5; ++column) {
                red += image.pixel(column, row) == 0xFFFF0000 ? 1 : 0;
                drawn += image.pixel(column, row) != kTransparentWhite ? 1 : 0;
            }
            ASSERT_EQ(red, 2) << "row " << row << " at detail " << detail;
            ASSERT_EQ(drawn, 4);
        }
        EXPECT_EQ(image.pixel(left + 20, bottom - 20), kTransparentWhite);
    }
}

TEST(WarningsPainterTest, RedLiesOverYellowWhateverTheOrder) {
    for (const bool redFirst : {false, true}) {
        std::vector<WeatherWarning> warnings = {
            rectangle(Kind::severeThunderstorm, 100, 100, 200, 160),
            rectangle(Kind::tornado, 150, 80, 250, 160)};
        if (redFirst) {
            std::swap(warnings[0], warnings[1]);
        }
        EXPECT_EQ(painted(warnings).pixel(150, 100), 0xFFFF0000) << redFirst;
    }
}

TEST(WarningsPainterTest, EachKindHasAColourOfItsOwn) {
    std::set<QRgb> colours;
    for (const Kind kind : kAllWarningKinds) {
        const QImage image = painted({rectangle(kind, 100, 100, 200, 160)});
        EXPECT_EQ(image.pixel(150, 100), colourOf(kind));
        const bool hasRim =
            image.pixel(150, 99) == 0xFF202020 && image.pixel(150, 102) == 0xFF202020;
        EXPECT_TRUE(hasRim);
        colours.insert(colourOf(kind));
    }
    EXPECT_EQ(colours.size(), kAllWarningKinds.size());
}

TEST(WarningsPainterTest, HolesAndFurtherPolygonsHaveOutlinesToo) {
    WeatherWarning warning = rectangle(Kind::flashFlood, 100, 100, 300, 300);
    warning.polygons[0].push_back(ring(150, 150, 250, 250));
    warning.polygons.push_back({ring(400, 100, 500, 200)});
    const QImage image = painted({warning});
    for (const int row : {100, 150}) {
        EXPECT_EQ(image.pixel(200, row), 0xFF00FF00) << row;
    }
    EXPECT_EQ(image.pixel(450, 100), 0xFF00FF00);
    EXPECT_EQ(image.pixel(200, 200), kTransparentWhite);
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
