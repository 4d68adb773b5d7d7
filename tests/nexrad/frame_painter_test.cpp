// SPDX-License-Identifier: MIT
#include "image/image_file.h"
#include "nexrad/frame_painter.h"
#include "palette/nws_colours.h"
#include "radar/bitmap.h"
#include "radar/catalogue/antenna_positions.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <numeric>

namespace raincast {
namespace {

QImage decoded(const QByteArray& gif) {
    return decodeImage(gif, kMostImagePixels);
}

/// One radial around the whole circle; its cells have levels 1, 2 … 15 at 15 km each.
PolarScan rings(Product product) {
    PolarScan scan;
    scan.site = "TLX";
    scan.product = product;
    scan.latitude = 35.333;
    scan.longitude = -97.278;
    scan.radials = {{0, 3600}};
    scan.rows = 1;
    scan.columns = 15;
    scan.cellKm = 15;
    scan.cells.resize(15);
    std::iota(scan.cells.begin(), scan.cells.end(), std::uint8_t{1});
    for (std::uint8_t level = 0; level < 16; ++level) {
        scan.levels[level] = level;
    }
    return scan;
}

TEST(FramePainterTest, LevelsHaveTheColoursOfTheirQuantity) {
    for (const Product product :
         {Product::baseReflectivity, Product::velocity, Product::totalPrecipitation}) {
        const QImage image = decoded(renderFrame(rings(product), product).value());
        ASSERT_EQ(image.size(), QSize(600, 550));
        const auto& colours = nwsColours(quantityOf(product));
        // Along the antenna's row to the east, 0.8 km a pixel; it stands at column 298.6.
        for (int level = 1; level <= 15; ++level) {
            const int column = 299 + static_cast<int>((level - .5) * 15 / .8);
            EXPECT_EQ(image.pixel(column, 273), colours[static_cast<std::size_t>(level)])
                << codeOf(product) << ' ' << level;
        }
        EXPECT_EQ(image.pixel(299 + 288, 273), kTransparentWhite);
    }
}

TEST(FramePainterTest, AScanMayBeDrawnOnTheLongMap) {
    const PolarScan scan = rings(Product::baseReflectivity);
    const QImage image = decoded(renderFrame(scan, Product::longRangeReflectivity).value());
    const auto& colours = nwsColours(Quantity::reflectivity);
    EXPECT_EQ(image.pixel(299 + 5, 274), colours[1]);
    EXPECT_EQ(image.pixel(299 + 135, 274), colours[15]);
    EXPECT_EQ(image.pixel(299 + 145, 274), kTransparentWhite);
}

TEST(FramePainterTest, FramesOfAKnownSiteLieWhereItsLayersDo) {
    PolarScan scan = rings(Product::baseReflectivity);
    const AntennaPosition* antenna = findAntenna("TLX");
    EXPECT_DOUBLE_EQ(
        frameGeometry(scan, Range::shortRange).latitudeOfRow(274.5), antenna->latitude
    );
    scan.site = "XXX";
    EXPECT_DOUBLE_EQ(frameGeometry(scan, Range::shortRange).latitudeOfRow(274.5), 35.333);
}

TEST(FramePainterTest, OnlySamplesAreMarked) {
    PolarScan scan;
    scan.latitude = 35;
    EXPECT_EQ(
        decoded(renderFrame(scan, Product::baseReflectivity).value()).pixel(12, 532),
        kTransparentWhite
    );
    scan.sample = true;
    const QImage image = decoded(renderFrame(scan, Product::baseReflectivity).value());
    EXPECT_NE(image.pixel(12, 532), kTransparentWhite);
    EXPECT_EQ(image.pixel(300, 274), kTransparentWhite);
}

TEST(FramePainterTest, TheEmptyFrameIsNothingButGround) {
    const QImage image = decoded(emptyFrame().value());
    ASSERT_EQ(image.size(), QSize(600, 550));
    for (int row = 0; row < image.height(); ++row) {
        const uchar* line = image.constScanLine(row);
        ASSERT_TRUE(std::all_of(line, line + 600, [](uchar index) { return index == 0; }));
    }
    EXPECT_EQ(image.pixel(0, 0), kTransparentWhite);
}

} // namespace
} // namespace raincast
