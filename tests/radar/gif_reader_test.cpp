// SPDX-License-Identifier: MIT
#include "radar/bitmap.h"
#include "radar/gif_reader.h"
#include "support/gif_maker.h"

#include <gtest/gtest.h>

namespace raincast {
namespace {

constexpr quint32 kBlack = 0xFF000000;
constexpr quint32 kRed = 0xFFFF0000;

PlainPicture read(const QByteArray& bytes) {
    return readGif(bytes, kMostImagePixels);
}

/// The colour of a pixel.
quint32 at(const PlainPicture& picture, int column, int row) {
    const uchar* const bytes = picture.row(row);
    return picture.isIndexed() ? picture.colours()[bytes[column]]
                               : reinterpret_cast<const quint32*>(bytes)[column];
}

int diagonal(int column, int row) {
    return column == row ? 2 : 0;
}

TEST(GifReaderTest, KeepsOneByteAPixelAndTheFilesColours) {
    const PlainPicture picture = read(makeGif({.pixel = diagonal}));
    ASSERT_EQ(picture.size(), QSize(8, 8));
    EXPECT_TRUE(picture.isIndexed());
    EXPECT_EQ(picture.row(3)[3], 2);
    EXPECT_EQ(picture.colours()[255], kTransparentWhite);
    EXPECT_EQ(at(picture, 3, 3), kRed);
    EXPECT_EQ(at(picture, 4, 3), kBlack);
}

TEST(GifReaderTest, ReadsBothVersions) {
    const QByteArray old = makeGif({.pixel = diagonal});
    ASSERT_TRUE(old.startsWith("GIF87a"));
    const QByteArray recent = makeGif({.transparent = 3, .pixel = diagonal});
    ASSERT_TRUE(recent.startsWith("GIF89a"));
    EXPECT_EQ(at(read(old), 5, 5), kRed);
    EXPECT_EQ(at(read(recent), 5, 5), kRed);
}

TEST(GifReaderTest, TransparentPixelsAreWhiteWhateverTheirColour) {
    // Published city, river and highway layers: index 0, black, is transparent.
    const PlainPicture picture = read(makeGif({.transparent = 0, .pixel = diagonal}));
    EXPECT_EQ(at(picture, 4, 3), kTransparentWhite);
    EXPECT_EQ(at(picture, 3, 3), kRed);
}

TEST(GifReaderTest, ATransparentIndexBeyondTheColoursIsWhite) {
    QByteArray bytes = makeGif({.transparent = 0, .pixel = diagonal});
    const PlainPicture before = read(bytes);
    ASSERT_EQ(at(before, 0, 1), kTransparentWhite);
    // The control extension stands behind the 13 bytes of the screen and its four colours.
    const qsizetype index = 13 + 4 * 3 + 6;
    ASSERT_EQ(bytes.mid(13 + 4 * 3, 3), QByteArray("\x21\xF9\x04", 3));
    bytes[index] = '\xC8';
    EXPECT_EQ(at(read(bytes), 0, 1), kBlack);
}

TEST(GifReaderTest, InterlacedRowsComeBackInOrder) {
    const auto rows = [](int, int row) { return row % 4; };
    const PlainPicture plain = read(makeGif({.screen = {5, 21}, .pixel = rows}));
    const PlainPicture interlaced =
        read(makeGif({.screen = {5, 21}, .interlaced = true, .pixel = rows}));
    ASSERT_EQ(plain.size(), QSize(5, 21));
    ASSERT_EQ(interlaced.size(), plain.size());
    for (int row = 0; row < 21; ++row) {
        EXPECT_EQ(interlaced.row(row)[4], plain.row(row)[4]);
        EXPECT_EQ(plain.row(row)[0], row % 4);
    }
}

TEST(GifReaderTest, OfSeveralImagesTheFirstCounts) {
    const PlainPicture picture = read(makeGif({.images = 3, .pixel = diagonal}));
    EXPECT_EQ(at(picture, 3, 3), kRed);
}

TEST(GifReaderTest, TheImagesOwnColoursComeBeforeTheScreens) {
    const PlainPicture picture = read(makeGif({.localColours = true, .pixel = diagonal}));
    EXPECT_EQ(at(picture, 3, 3), kRed);
}

TEST(GifReaderTest, AnImageSmallerThanItsScreenStandsOnWhite) {
    const PlainPicture picture =
        read(makeGif({.screen = {10, 6}, .place = {2, 1}, .image = {3, 3}, .pixel = diagonal}));
    ASSERT_EQ(picture.size(), QSize(10, 6));
    EXPECT_EQ(at(picture, 0, 0), kTransparentWhite);
    EXPECT_EQ(at(picture, 2, 1), kRed);
    EXPECT_EQ(at(picture, 3, 1), kBlack);
    EXPECT_EQ(at(picture, 5, 1), kTransparentWhite);
    EXPECT_EQ(at(picture, 9, 5), kTransparentWhite);
}

TEST(GifReaderTest, AnImageThatReachesOverItsScreenGrowsIt) {
    const PlainPicture picture =
        read(makeGif({.screen = {4, 4}, .place = {2, 2}, .image = {4, 4}, .pixel = diagonal}));
    ASSERT_EQ(picture.size(), QSize(6, 6));
    EXPECT_EQ(at(picture, 5, 5), kRed);
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
    EXPECT_TRUE(read(makeGif({}).replace("GIF87a", "GIF97a")).isNull());
    EXPECT_TRUE(read(QByteArray("GIF89a\x08\0\x08\0\0\0\0;", 14)).isNull());
}

} // namespace
} // namespace raincast
