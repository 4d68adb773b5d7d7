// SPDX-License-Identifier: MIT
#include "picture.h"

#include <QColor>

#include <gtest/gtest.h>

namespace raincast::test {
namespace {

// Grey, with a black column of this darkness at its edges.
QImage column(int x, int edge = 0) {
    QImage picture(40, 30, QImage::Format_RGB32);
    picture.fill(QColor(200, 200, 200));
    for (int y = 5; y < 25; ++y) {
        picture.setPixel(x - 1, y, qRgb(200 - edge, 200 - edge, 200 - edge));
        picture.setPixel(x, y, qRgb(0, 0, 0));
    }
    return picture;
}

TEST(DifferingPixels, NoneInTheSamePicture) {
    EXPECT_EQ(differingPixels(column(20), column(20)), 0);
}

TEST(DifferingPixels, AnEdgeMayBeSofter) {
    EXPECT_EQ(differingPixels(column(20), column(20, 90)), 0);
}

TEST(DifferingPixels, WhatHasMovedByMoreThanAPixelDiffers) {
    EXPECT_EQ(differingPixels(column(20), column(23)), 40);
}

TEST(DifferingPixels, WhatIsNewOrGoneDiffers) {
    QImage empty(40, 30, QImage::Format_RGB32);
    empty.fill(QColor(200, 200, 200));
    EXPECT_EQ(differingPixels(column(20), empty), 20);
    EXPECT_EQ(differingPixels(empty, column(20)), 20);
}

TEST(DifferingPixels, AnotherShadeDiffersFromWhereItIsSeen) {
    QImage lighter = column(20);
    for (int y = 0; y < 30; ++y) {
        for (int x = 0; x < 15; ++x) {
            lighter.setPixel(x, y, qRgb(206, 206, 206));
        }
    }
    EXPECT_EQ(differingPixels(column(20), lighter), 0);
    for (int y = 0; y < 30; ++y) {
        for (int x = 0; x < 15; ++x) {
            lighter.setPixel(x, y, qRgb(200, 200, 220));
        }
    }
    EXPECT_EQ(differingPixels(column(20), lighter), 15 * 30);
}

} // namespace
} // namespace raincast::test
