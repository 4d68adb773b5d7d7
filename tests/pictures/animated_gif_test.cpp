// SPDX-License-Identifier: MIT
#include "pictures/animated_gif.h"
#include "pictures/gif_palette.h"

#include <QByteArray>
#include <QColor>

#include <gif_lib.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <memory>
#include <vector>

namespace raincast {
namespace {

QImage plain(QSize size, QRgb colour) {
    QImage picture(size, QImage::Format_RGB32);
    picture.fill(colour);
    return picture;
}

/// A ground of more colours than a GIF has, with a bar of one colour.
QImage shaded(QSize size, QRgb bar) {
    QImage picture(size, QImage::Format_RGB32);
    for (int row = 0; row < size.height(); ++row) {
        for (int column = 0; column < size.width(); ++column) {
            const bool inBar = column >= 10 && column < 20;
            picture.setPixel(column, row, inBar ? bar : qRgb(row, column, (row + column) / 2));
        }
    }
    return picture;
}

struct Played {
    std::vector<QImage> pictures;
    std::vector<int> milliseconds;
    bool endless = false;
};

struct Reading {
    const QByteArray& bytes;
    qsizetype at = 0;
};

int take(GifFileType* gif, GifByteType* to, int count) {
    auto& reading = *static_cast<Reading*>(gif->UserData);
    const auto taken = std::min<qsizetype>(count, reading.bytes.size() - reading.at);
    std::memcpy(to, reading.bytes.constData() + reading.at, static_cast<std::size_t>(taken));
    reading.at += taken;
    return static_cast<int>(taken);
}

/// What a viewer of such files would show.
Played play(const QByteArray& bytes) {
    Played played;
    Reading reading{bytes};
    GifFileType* const gif = DGifOpen(&reading, take, nullptr);
    EXPECT_NE(gif, nullptr);
    EXPECT_EQ(DGifSlurp(gif), GIF_OK);
    QImage screen = plain({gif->SWidth, gif->SHeight}, 0xFFFFFFFF);
    for (int i = 0; i < gif->ImageCount; ++i) {
        const SavedImage& image = gif->SavedImages[i];
        const auto& place = image.ImageDesc;
        for (int row = 0; row < place.Height; ++row) {
            for (int column = 0; column < place.Width; ++column) {
                const auto index = image.RasterBits[row * place.Width + column];
                const GifColorType& colour = gif->SColorMap->Colors[index];
                screen.setPixel(
                    place.Left + column, place.Top + row,
                    qRgb(colour.Red, colour.Green, colour.Blue)
                );
            }
        }
        played.pictures.push_back(screen.copy());
        GraphicsControlBlock control{};
        EXPECT_EQ(DGifSavedExtensionToGCB(gif, i, &control), GIF_OK);
        played.milliseconds.push_back(control.DelayTime * 10);
        for (int j = 0; j < image.ExtensionBlockCount; ++j) {
            const ExtensionBlock& block = image.ExtensionBlocks[j];
            const auto* const name = reinterpret_cast<const char*>(block.Bytes);
            played.endless |= block.Function == APPLICATION_EXT_FUNC_CODE &&
                              QByteArrayView(name, block.ByteCount) == "NETSCAPE2.0";
        }
    }
    DGifCloseFile(gif, nullptr);
    return played;
}

GifPalette paletteOf(const std::vector<AnimatedGif::Frame>& frames) {
    GifColours colours;
    for (const AnimatedGif::Frame& frame : frames) {
        colours.add(frame.picture);
    }
    return GifPalette(colours);
}

bool write(const std::vector<AnimatedGif::Frame>& frames, const AnimatedGif::Sink& sink) {
    AnimatedGif gif(paletteOf(frames), sink);
    for (const AnimatedGif::Frame& frame : frames) {
        if (!gif.add(frame)) {
            break;
        }
    }
    return gif.finish();
}

QByteArray written(const std::vector<AnimatedGif::Frame>& frames) {
    QByteArray bytes;
    EXPECT_TRUE(write(frames, [&bytes](QByteArrayView part) {
        bytes.append(part.data(), part.size());
        return true;
    }));
    return bytes;
}

TEST(AnimatedGifTest, PlaysTheFramesForEver) {
    QImage second = plain({40, 30}, 0xFF102030);
    second.setPixel(7, 5, 0xFFFF0000);
    second.setPixel(30, 20, 0xFF00FF00);
    const QImage first = plain({40, 30}, 0xFF102030);
    const Played played = play(written({{first, 500}, {second, 250}, {first, 1500}, {first, 120}}));
    ASSERT_EQ(played.pictures.size(), 4U);
    EXPECT_EQ(played.pictures[0], first);
    EXPECT_EQ(played.pictures[1], second);
    EXPECT_EQ(played.pictures[2], first);
    EXPECT_EQ(played.pictures[3], first);
    EXPECT_THAT(played.milliseconds, testing::ElementsAre(500, 250, 1500, 120));
    EXPECT_TRUE(played.endless);
}

TEST(AnimatedGifTest, OnlyWhatChangesTakesRoom) {
    QImage second = shaded({200, 200}, 0xFFEE0000);
    second.setPixel(100, 100, 0xFFEE0000);
    const std::vector<AnimatedGif::Frame> one{{shaded({200, 200}, 0xFFEE0000), 500}};
    auto two = one;
    two.push_back({second, 500});
    EXPECT_LT(written(two).size(), written(one).size() + 100);
}

TEST(AnimatedGifTest, NothingIsWrittenOfWhatIsNoPicture) {
    const auto fails = [](const std::vector<AnimatedGif::Frame>& frames) {
        return !write(frames, [](auto) { return true; });
    };
    EXPECT_TRUE(fails({}));
    EXPECT_TRUE(fails({{QImage(), 500}}));
    EXPECT_TRUE(fails({{plain({65536, 1}, 0xFF000000), 500}}));
    EXPECT_FALSE(fails({{plain({65535, 1}, 0xFF000000), 500}}));
    EXPECT_TRUE(fails({{plain({4, 4}, 0xFF000000), 500}, {plain({4, 5}, 0xFF000000), 500}}));
}

TEST(AnimatedGifTest, ASinkThatRefusesEndsIt) {
    const std::vector<AnimatedGif::Frame> frames(5, {shaded({200, 200}, 0xFFEE0000), 500});
    int parts = 0;
    EXPECT_FALSE(write(frames, [&parts](auto) { return ++parts < 3; }));
    EXPECT_LT(parts, 10) << "nothing more is given";
}

TEST(AnimatedGifTest, WhatIsNotFinishedEndsWithoutHarm) {
    const std::vector<AnimatedGif::Frame> frames{{plain({40, 30}, 0xFF102030), 500}};
    AnimatedGif gif(paletteOf(frames), [](auto) { return true; });
    EXPECT_TRUE(gif.add(frames.front()));
}

TEST(GifPaletteTest, FewColoursAreKept) {
    QImage picture(16, 16, QImage::Format_RGB32);
    for (int i = 0; i < 256; ++i) {
        picture.setPixel(i % 16, i / 16, qRgb(i, 255 - i, 7));
    }
    GifPalette palette = paletteOf({{picture}});
    EXPECT_EQ(palette.colours().size(), 256U);
    for (int i = 0; i < 256; ++i) {
        const QRgb colour = qRgb(i, 255 - i, 7);
        EXPECT_EQ(palette.colours()[palette.indexOf(colour)], colour);
    }
    EXPECT_EQ(paletteOf({{plain({2, 2}, 0xFF000000)}}).colours().size(), 2U);
}

TEST(GifPaletteTest, FrequentColoursStayAndTheRestIsNear) {
    const QImage picture = shaded({200, 200}, 0xFFEE0000);
    GifPalette palette = paletteOf({{picture}});
    EXPECT_LE(palette.colours().size(), 256U);
    EXPECT_EQ(palette.colours()[palette.indexOf(0xFFEE0000)], 0xFFEE0000);
    int worst = 0;
    double sum = 0;
    for (int row = 0; row < 200; ++row) {
        for (int column = 0; column < 200; ++column) {
            const QColor wanted(picture.pixel(column, row));
            const QColor got(palette.colours()[palette.indexOf(wanted.rgb())]);
            const int off = std::max(
                {std::abs(wanted.red() - got.red()), std::abs(wanted.green() - got.green()),
                 std::abs(wanted.blue() - got.blue())}
            );
            worst = std::max(worst, off);
            sum += off;
        }
    }
    EXPECT_LE(worst, 32);
    EXPECT_LT(sum / 40000, 8);
}

} // namespace
} // namespace raincast
