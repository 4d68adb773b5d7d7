// SPDX-License-Identifier: MIT
#include "drawing/shrink.h"
#include "radar/bitmap.h"

#include <gtest/gtest.h>

namespace raincast {
namespace {

constexpr QRgb kRed = 0xFFFF0000;
constexpr QRgb kGreen = 0xFF00FF00;
constexpr QRgb kStrongest = 0xFFFDFDFD;

QImage white(int width, int height) {
    QImage image(width, height, QImage::Format_RGB32);
    image.fill(kTransparentWhite);
    return image;
}

QImage indexed(const QImage& picture) {
    QImage result(picture.size(), QImage::Format_Indexed8);
    QList<QRgb> table(256, kTransparentWhite);
    table[1] = kRed;
    table[2] = kGreen;
    table[3] = kStrongest;
    result.setColorTable(table);
    for (int row = 0; row < picture.height(); ++row) {
        for (int column = 0; column < picture.width(); ++column) {
            const QRgb colour = picture.pixel(column, row);
            result.setPixel(column, row, static_cast<uint>(table.indexOf(colour)));
        }
    }
    return result;
}

TEST(ShrinkTest, PartialBlocksCountTheirPixels) {
    EXPECT_EQ(shrinkGround(white(600, 550), 4).size(), QSize(38, 35));
    EXPECT_EQ(shrinkLines(white(600, 550), 1).size(), QSize(300, 275));
    EXPECT_EQ(shrinkEchoes(indexed(white(5, 3)), 2).size(), QSize(2, 1));
}

TEST(ShrinkTest, GroundIsAveraged) {
    QImage picture(3, 2, QImage::Format_RGB32);
    picture.fill(qRgb(0, 0, 0));
    picture.setPixel(0, 0, qRgb(200, 100, 3));
    picture.setPixel(2, 0, qRgb(10, 10, 10));
    const QImage small = shrinkGround(picture, 1);
    EXPECT_EQ(small.format(), QImage::Format_RGB32);
    EXPECT_EQ(small.pixel(0, 0), qRgb(50, 25, 1));
    EXPECT_EQ(small.pixel(1, 0), qRgb(5, 5, 5));
    EXPECT_EQ(shrinkGround(picture, 0).pixel(0, 0), qRgb(200, 100, 3));
}

TEST(ShrinkTest, ALineThatCrossesABlockCoversIt) {
    QImage picture = white(16, 16);
    for (int row = 0; row < 16; ++row) {
        picture.setPixel(5, row, kRed);
    }
    for (int shift = 0; shift <= 4; ++shift) {
        const QImage small = shrinkLines(picture, shift);
        EXPECT_EQ(small.pixel(5 >> shift, 0), kRed) << shift;
        if (shift < 3) {
            EXPECT_EQ(qAlpha(small.pixel(15 >> shift, 0)), 0) << shift;
        }
    }
}

TEST(ShrinkTest, APieceOfALineCoversInProportionInItsOwnColour) {
    QImage picture = white(4, 4);
    picture.setPixel(1, 1, kRed);
    const QImage small = shrinkLines(picture, 2);
    EXPECT_EQ(small.format(), QImage::Format_ARGB32_Premultiplied);
    EXPECT_EQ(small.pixel(0, 0), qPremultiply(qRgba(255, 0, 0, 63)));
}

TEST(ShrinkTest, EchoesKeepTheirMostFrequentColour) {
    QImage picture = white(4, 4);
    for (const QPoint& point : {QPoint(0, 0), QPoint(3, 0), QPoint(1, 2)}) {
        picture.setPixel(point, kRed);
    }
    picture.setPixel(2, 2, kGreen);
    picture.setPixel(3, 2, kGreen);
    EXPECT_EQ(shrinkEchoes(picture, 2).pixel(0, 0), kRed);
    EXPECT_EQ(shrinkEchoes(indexed(picture), 2).pixel(0, 0), kRed);
    EXPECT_EQ(shrinkEchoes(indexed(picture), 2).format(), QImage::Format_Indexed8);
}

TEST(ShrinkTest, OneEchoInABlockIsNeverLost) {
    for (int shift = 1; shift <= 4; ++shift) {
        QImage picture = white(16, 16);
        picture.setPixel(15, 15, kStrongest);
        const int last = 15 >> shift;
        EXPECT_EQ(shrinkEchoes(picture, shift).pixel(last, last), kStrongest) << shift;
        EXPECT_EQ(shrinkEchoes(indexed(picture), shift).pixel(last, last), kStrongest) << shift;
    }
}

TEST(ShrinkTest, OfEquallyFrequentEchoesTheFirstMetIsShown) {
    QImage picture = white(2, 2);
    picture.setPixel(1, 0, kGreen);
    picture.setPixel(0, 1, kRed);
    EXPECT_EQ(shrinkEchoes(picture, 1).pixel(0, 0), kGreen);
    EXPECT_EQ(shrinkEchoes(indexed(picture), 1).pixel(0, 0), kGreen);
}

TEST(ShrinkTest, WhereNothingIsNothingIsDrawn) {
    EXPECT_EQ(shrinkEchoes(indexed(white(4, 4)), 2).pixel(0, 0), kTransparentWhite);
    EXPECT_EQ(qAlpha(shrinkEchoes(white(4, 4), 2).pixel(0, 0)), 0);
    EXPECT_EQ(qAlpha(shrinkLines(white(4, 4), 2).pixel(0, 0)), 0);
}

} // namespace
} // namespace raincast
