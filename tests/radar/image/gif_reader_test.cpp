// SPDX-License-Identifier: MIT
#include "radar/image/bitmap.h"
#include "radar/image/gif_reader.h"
#include "support/gif_maker.h"

#include <gtest/gtest.h>

namespace raincast {
namespace {

constexpr QRgb kBlack = 0xFF000000;
constexpr QRgb kRed = 0xFFFF0000;

QImage read(const QByteArray& bytes) {
    return readGif(bytes, kMostImagePixels);
}

int diagonal(int column, int row) {
    return column == row ? 2 : 0;
}

TEST(GifReaderTest, KeepsOneByteAPixelAndTheFilesColours) {
    const QImage picture = read(makeGif({.pixel = diagonal}));
    ASSERT_EQ(picture.size(), QSize(8, 8));
    EXPECT_EQ(picture.format(), QImage::Format_Indexed8);
    EXPECT_EQ(picture.colorCount(), 256);
    EXPECT_EQ(picture.pixelIndex(3, 3), 2);
    EXPECT_EQ(picture.pixel(3, 3), kRed);
    EXPECT_EQ(picture.pixel(4, 3), kBlack);
}

TEST(GifReaderTest, ReadsBothVersions) {
    const QByteArray old = makeGif({.pixel = diagonal});
    ASSERT_TRUE(old.startsWith("GIF87a"));
    const QByteArray recent = makeGif({.transparent = 3, .pixel = diagonal});
    ASSERT_TRUE(recent.startsWith("GIF89a"));
    EXPECT_EQ(read(old).pixel(5, 5), kRed);
    EXPECT_EQ(read(recent).pixel(5, 5), kRed);
}

TEST(GifReaderTest, TransparentPixelsAreWhiteWhateverTheirColour) {
    // Published city, river and highway layers: index 0, black, is transparent.
    const QImage picture = read(makeGif({.transparent = 0, .pixel = diagonal}));
    EXPECT_EQ(picture.pixel(4, 3), kTransparentWhite);
    EXPECT_EQ(picture.pixel(3, 3), kRed);
}

TEST(GifReaderTest, ATransparentIndexBeyondTheColoursIsWhite) {
    QByteArray bytes = makeGif({.transparent = 0, .pixel = diagonal});
    const QImage before = read(bytes);
    ASSERT_EQ(before.pixel(0, 1), kTransparentWhite);
    // The control extension stands behind the 13 bytes of the screen and its four colours.
    const qsizetype index = 13 + 4 * 3 + 6;
    ASSERT_EQ(bytes.mid(13 + 4 * 3, 3), QByteArray("\x21\xF9\x04", 3));
    bytes[index] = '\xC8';
    EXPECT_EQ(read(bytes).pixel(0, 1), kBlack);
}

TEST(GifReaderTest, InterlacedRowsComeBackInOrder) {
    const auto rows = [](int, int row) { return row % 4; };
    const QImage plain = read(makeGif({.screen = {5, 21}, .pixel = rows}));
    const QImage interlaced = read(makeGif({.screen = {5, 21}, .interlaced = true, .pixel = rows}));
    ASSERT_FALSE(plain.isNull());
    EXPECT_EQ(interlaced, plain);
}

TEST(GifReaderTest, OfSeveralImagesTheFirstCounts) {
    const QImage picture = read(makeGif({.images = 3, .pixel = diagonal}));
    EXPECT_EQ(picture.pixel(3, 3), kRed);
}

TEST(GifReaderTest, TheImagesOwnColoursComeBeforeTheScreens) {
    const QImage picture = read(makeGif({.localColours = true, .pixel = diagonal}));
    EXPECT_EQ(picture.pixel(3, 3), kRed);
}

TEST(GifReaderTest, AnImageSmallerThanItsScreenStandsOnWhite) {
    const QImage picture =
        read(makeGif({.screen = {10, 6}, .place = {2, 1}, .image = {3, 3}, .pixel = diagonal}));
    ASSERT_EQ(picture.size(), QSize(10, 6));
    EXPECT_EQ(picture.pixel(0, 0), kTransparentWhite);
    EXPECT_EQ(picture.pixel(2, 1), kRed);
    EXPECT_EQ(picture.pixel(3, 1), kBlack);
    EXPECT_EQ(picture.pixel(5, 1), kTransparentWhite);
    EXPECT_EQ(picture.pixel(9, 5), kTransparentWhite);
}

TEST(GifReaderTest, AnImageThatReachesOverItsScreenGrowsIt) {
    const QImage picture =
        read(makeGif({.screen = {4, 4}, .place = {2, 2}, .image = {4, 4}, .pixel = diagonal}));
    ASSERT_EQ(picture.size(), QSize(6, 6));
    EXPECT_EQ(picture.pixel(5, 5), kRed);
}

TEST(GifReaderTest, OnlyTheTrailerMayBeMissing) {
    const QByteArray whole =
        makeGif({.screen = {40, 40}, .transparent = 1, .pixel = [](int column, int row) {
                     return (column * 7 + row * 3) % 4;
                 }});
    ASSERT_EQ(whole.back(), '\x3B');
    EXPECT_FALSE(read(whole.chopped(1)).isNull());
    for (qsizetype size = 0; size < whole.size() - 1; ++size) {
        EXPECT_TRUE(read(whole.first(size)).isNull()) << "cut after " << size << " bytes";
    }
}

TEST(GifReaderTest, ColoursThatTheFileDoesNotDefineAreADefect) {
    // Four colours are written, then the count in the screen's descriptor is lowered to two and
    // the other two taken out.
    QByteArray bytes = makeGif({.pixel = diagonal});
    ASSERT_FALSE(read(bytes).isNull());
    bytes[10] = static_cast<char>(bytes[10] & ~7);
    bytes.remove(13 + 2 * 3, 2 * 3);
    EXPECT_TRUE(read(bytes).isNull());
}

TEST(GifReaderTest, NoColoursAtAllAreADefect) {
    QByteArray bytes = makeGif({.pixel = diagonal});
    bytes[10] = static_cast<char>(bytes[10] & ~0x80);
    bytes.remove(13, 4 * 3);
    EXPECT_TRUE(read(bytes).isNull());
}

TEST(GifReaderTest, AnImageOfNoPixelsIsADefect) {
    QByteArray bytes = makeGif({.pixel = diagonal});
    const qsizetype descriptor = 13 + 4 * 3;
    ASSERT_EQ(bytes[descriptor], ',');
    bytes[descriptor + 5] = 0; // the width's low byte
    EXPECT_TRUE(read(bytes).isNull());
}

TEST(GifReaderTest, ClaimsBeyondTheLimitFailBeforeTheyAreDecoded) {
    QByteArray bytes = makeGif({.pixel = diagonal});
    EXPECT_TRUE(readGif(bytes, 63).isNull());
    EXPECT_FALSE(readGif(bytes, 64).isNull());
    // A screen of 65535 × 65535.
    bytes.replace(6, 4, "\xFF\xFF\xFF\xFF");
    EXPECT_TRUE(read(bytes).isNull());
}

TEST(GifReaderTest, WhatIsNoGifIsNull) {
    EXPECT_TRUE(read({}).isNull());
    EXPECT_TRUE(read("<html>Not found</html>").isNull());
    EXPECT_TRUE(read("GIF89a").isNull());
    EXPECT_TRUE(read(QByteArray("GIF89a\x08\0\x08\0\0\0\0;", 14)).isNull());
}

} // namespace
} // namespace raincast
