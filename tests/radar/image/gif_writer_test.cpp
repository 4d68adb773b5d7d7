// SPDX-License-Identifier: MIT
#include "radar/image/bitmap.h"
#include "radar/image/gif_writer.h"
#include "radar/image/image_file.h"

#include <gif_lib.h>
#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <vector>

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

int append(GifFileType* gif, const GifByteType* bytes, int count) {
    static_cast<QByteArray*>(gif->UserData)->append(reinterpret_cast<const char*>(bytes), count);
    return count;
}

/// What the library makes of a picture whose colours are all black.
QByteArray byTheLibrary(IndexedPicture picture, int colours) {
    QByteArray bytes;
    GifFileType* const gif = EGifOpen(&bytes, append, nullptr);
    const std::vector<GifColorType> black(static_cast<std::size_t>(colours));
    ColorMapObject* const map = GifMakeMapObject(colours, black.data());
    const GifByteType control[] = {1, 0, 0, 0};
    EGifSetGifVersion(gif, true);
    EGifPutScreenDesc(gif, picture.width(), picture.height(), map->BitsPerPixel, 0, map);
    EGifPutExtension(gif, GRAPHICS_EXT_FUNC_CODE, 4, control);
    EGifPutImageDesc(gif, 0, 0, picture.width(), picture.height(), false, nullptr);
    for (int row = 0; row < picture.height(); ++row) {
        EGifPutLine(gif, picture.row(row), picture.width());
    }
    EGifCloseFile(gif, nullptr);
    GifFreeMapObject(map);
    return bytes;
}

TEST(GifWriterTest, TheBytesAreThoseOfTheLibrary) {
    std::uint32_t noise = 7;
    for (int bits = 1; bits <= 8; ++bits) {
        const std::vector<QRgb> colours(std::size_t{1} << bits, 0xFF000000);
        // Nothing but ground; a few pixels of noise that become more from row to row; noise.
        for (const std::uint32_t share : {0U, 1U, 600U}) {
            IndexedPicture picture;
            for (std::size_t i = 0; i < picture.pixels().size(); ++i) {
                noise = noise * 1'664'525 + 1'013'904'223;
                const bool isNoise = (noise >> 8U) % 600 < i / 600 * share;
                picture.row(0)[i] = static_cast<std::uint8_t>(isNoise ? noise >> (32 - bits) : 0);
            }
            EXPECT_EQ(writeGif(picture, colours), byTheLibrary(picture, 1 << bits))
                << bits << ' ' << share;
        }
    }
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
