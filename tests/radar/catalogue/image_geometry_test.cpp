// SPDX-License-Identifier: MIT
#include "radar/catalogue/image_geometry.h"

#include <QByteArray>
#include <QList>

#include <gtest/gtest.h>

namespace raincast {
namespace {

TEST(ImageGeometryTest, TheAntennaStandsOnItsPixelAndStepsAreSquareInDegrees) {
    const ImageGeometry image(60, -150, Range::shortRange);
    EXPECT_NEAR(image.degreesPerPixel(), 0.014387, 1e-9);
    EXPECT_DOUBLE_EQ(image.longitudeOfColumn(299.5), -150);
    EXPECT_DOUBLE_EQ(image.latitudeOfRow(274.5), 60);
    EXPECT_NEAR(image.longitudeOfColumn(399.5), -148.5613, 1e-9);
    EXPECT_NEAR(image.latitudeOfRow(174.5), 61.4387, 1e-9);
}

TEST(ImageGeometryTest, TheLongRangeIsTwiceAsWide) {
    const ImageGeometry near(35, -97, Range::shortRange);
    const ImageGeometry far(35, -97, Range::longRange);
    EXPECT_DOUBLE_EQ(far.degreesPerPixel(), 2 * near.degreesPerPixel());
}

TEST(ImageGeometryTest, PlacesGoThereAndBack) {
    const ImageGeometry image(35.32, -97.27, Range::longRange);
    for (const double place : {0.0, 17.25, 299.5, 549.0}) {
        EXPECT_NEAR(image.rowOfLatitude(image.latitudeOfRow(place)), place, 1e-9);
        EXPECT_NEAR(image.columnOfLongitude(image.longitudeOfColumn(place)), place, 1e-9);
    }
}

TEST(ImageGeometryTest, TheWorldFileSaysTheSameInSixNumbersWithDecimalPoints) {
    const ImageGeometry image(35.32, -97.27, Range::shortRange);
    const std::string text = image.worldFile();
    EXPECT_LE(text.size(), 255U);
    const QList<QByteArray> lines = QByteArray::fromStdString(text).trimmed().split('\n');
    ASSERT_EQ(lines.size(), 6);
    EXPECT_NEAR(lines[0].toDouble(), image.degreesPerPixel(), 1e-11);
    EXPECT_EQ(lines[1], "0.0");
    EXPECT_EQ(lines[2], "0.0");
    EXPECT_NEAR(lines[3].toDouble(), -image.degreesPerPixel(), 1e-11);
    EXPECT_NEAR(lines[4].toDouble(), image.longitudeOfColumn(0), 1e-11);
    EXPECT_NEAR(lines[5].toDouble(), image.latitudeOfRow(0), 1e-11);
}

TEST(ImageGeometryTest, ASharpPictureCoversTheSameGround) {
    const ImageGeometry small(35, -97, Range::shortRange);
    for (const int detail : {2, 4}) {
        const ImageGeometry image(35, -97, Range::shortRange, detail);
        EXPECT_EQ(image.width(), 600 * detail);
        EXPECT_EQ(image.height(), 550 * detail);
        EXPECT_NEAR(image.longitudeOfColumn(-.5), small.longitudeOfColumn(-.5), 1e-12);
        EXPECT_NEAR(
            image.longitudeOfColumn(image.width() - .5), small.longitudeOfColumn(599.5), 1e-12
        );
        EXPECT_NEAR(image.latitudeOfRow(-.5), small.latitudeOfRow(-.5), 1e-12);
        EXPECT_NEAR(image.latitudeOfRow(image.height() - .5), small.latitudeOfRow(549.5), 1e-12);
        EXPECT_NEAR(image.columnOfLongitude(-97), image.width() / 2 - .5, 1e-9);
        EXPECT_NEAR(image.rowOfLatitude(35), image.height() / 2 - .5, 1e-9);
    }
}

} // namespace
} // namespace raincast
