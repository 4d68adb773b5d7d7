// SPDX-License-Identifier: MIT
#include "image/gif_writer.h"
#include "image/image_file.h"
#include "radar/bitmap.h"

#include <gtest/gtest.h>

#include <array>

namespace raincast {
namespace {

QImage decoded(const QByteArray& gif) {
    return decodeImage(gif, kMostImagePixels);
}

TEST(GifWriterTest, PicturesComeBackAsTheyWere) {
    const std::array<QRgb, 5> colours = {
        kTransparentWhite, 0xFF04E9E7, 0xFFFDFDFD, 0xFF0300F4, 0xFF000000};
    IndexedPicture picture;
    for (std::size_t i = 0; i < picture.pixels().size(); ++i) {
        picture.row(0)[i] = static_cast<std::uint8_t>(i * i / 7 % colours.size());
    }
    const QImage image = decoded(writeGif(picture, colours).value());
    ASSERT_EQ(image.size(), QSize(600, 550));
    ASSERT_EQ(image.format(), QImage::Format_Indexed8);
    for (const int index : {0, 1, 599, 600, 123'456, 329'999}) {
        EXPECT_EQ(
            image.pixel(index % 600, index / 600),
            colours[picture.pixels()[static_cast<std::size_t>(index)]]
        ) << index;
    }
}

TEST(GifWriterTest, SharpPicturesAreLarger) {
    const std::array<QRgb, 2> colours = {kTransparentWhite, 0xFF000000};
    IndexedPicture picture(4);
    picture.row(2199)[2399] = 1;
    const QImage image = decoded(writeGif(picture, colours).value());
    ASSERT_EQ(image.size(), QSize(2400, 2200));
    EXPECT_EQ(image.pixel(2399, 2199), colours[1]);
    EXPECT_EQ(image.pixel(2398, 2199), colours[0]);
}

TEST(GifWriterTest, TheGroundIsTransparentAndTheVersionKnowsThat) {
    const std::array<QRgb, 2> colours = {kTransparentWhite, 0xFF000000};
    const QByteArray gif = writeGif(IndexedPicture(), colours).value();
    EXPECT_EQ(gif.first(6), "GIF89a");
    // Behind the head (13 bytes) and two colours: extension, control, 4 bytes, transparency on.
    EXPECT_EQ(gif.sliced(13 + 6, 3), "\x21\xF9\x04");
    EXPECT_EQ(gif[13 + 6 + 3] & 1, 1);
    EXPECT_EQ(gif[13 + 6 + 6], 0);
    EXPECT_EQ(gif.back(), ';');
}

} // namespace
} // namespace raincast
