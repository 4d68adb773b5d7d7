// SPDX-License-Identifier: MIT
#include "sharp/sharp_picture.h"

#include <gtest/gtest.h>

namespace raincast {
namespace {

/// Its width is no multiple of four, so that lines are filled up.
QImage echoes() {
    QImage picture(1201, 37, QImage::Format_Indexed8);
    QList<QRgb> table(256, kTransparentWhite);
    table[1] = 0xFF00FF00;
    table[7] = 0xFFFDFDFD;
    picture.setColorTable(table);
    picture.fill(0);
    for (int i = 0; i < 500; ++i) {
        picture.setPixel(i * 37 % picture.width(), i % picture.height(), i % 2 == 0 ? 1 : 7);
    }
    return picture;
}

TEST(SharpPictureTest, NoneIsNone) {
    const SharpPicture none;
    EXPECT_FALSE(none);
    EXPECT_EQ(none.detail(), 1);
    EXPECT_FALSE(none.unpacked());
}

TEST(SharpPictureTest, WhatIsPackedComesBackAsItWas) {
    for (const bool packed : {false, true}) {
        const SharpPicture picture(echoes(), 4, packed);
        EXPECT_TRUE(picture);
        const DetailedBitmap back = picture.unpacked();
        ASSERT_TRUE(back);
        EXPECT_EQ(back.detail, 4);
        EXPECT_EQ(*back, echoes());
        EXPECT_EQ(back->colorTable(), echoes().colorTable());
        EXPECT_EQ(back->format(), QImage::Format_Indexed8);
    }
}

TEST(SharpPictureTest, APictureOf32BitsStaysAsItIs) {
    const QImage colours = echoes().convertToFormat(QImage::Format_RGB32);
    EXPECT_EQ(*SharpPicture(colours, 2, true).unpacked(), colours);
}

TEST(SharpPictureTest, AnUnpackedOneIsHandedOutWithoutACopy) {
    const SharpPicture picture(echoes(), 2, false);
    EXPECT_EQ(picture.unpacked().bitmap, picture.unpacked().bitmap);
}

} // namespace
} // namespace raincast
