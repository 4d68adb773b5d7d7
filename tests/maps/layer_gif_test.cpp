// SPDX-License-Identifier: MIT
#include "image/image_file.h"
#include "maps/layer_gif.h"

#include <QImage>

#include <gtest/gtest.h>

namespace raincast {
namespace {

QImage transparent() {
    QImage picture(600, 550, QImage::Format_ARGB32_Premultiplied);
    picture.fill(Qt::transparent);
    return picture;
}

std::optional<QByteArray> gifOf(const QImage& picture) {
    return layerGif(1, [&](int) { return picture; });
}

TEST(LayerGifTest, KeepsColoursAndGround) {
    QImage picture = transparent();
    picture.setPixel(5, 7, qRgb(10, 20, 30));
    picture.setPixel(599, 549, qRgb(253, 253, 253));
    const QImage read = decodeImage(gifOf(picture).value(), 1'000'000);
    ASSERT_EQ(read.size(), QSize(600, 550));
    EXPECT_EQ(read.pixel(5, 7), qRgb(10, 20, 30));
    EXPECT_EQ(read.pixel(599, 549), qRgb(253, 253, 253));
    EXPECT_EQ(read.pixel(0, 0), 0xFFFF'FFFF);
    EXPECT_EQ(
        QImage::fromData(gifOf(picture).value(), "GIF")
            .convertToFormat(QImage::Format_ARGB32)
            .pixel(0, 0),
        0x00FF'FFFFU
    );
}

TEST(LayerGifTest, HalfCoveredPixelsAreOpaque) {
    QImage picture(600, 550, QImage::Format_ARGB32);
    picture.fill(Qt::transparent);
    picture.setPixel(0, 0, qRgba(200, 0, 0, 128));
    picture.setPixel(1, 0, qRgba(200, 0, 0, 127));
    const QImage read = decodeImage(gifOf(picture).value(), 1'000'000);
    EXPECT_EQ(read.pixel(0, 0), qRgb(200, 0, 0));
    EXPECT_EQ(read.pixel(1, 0), 0xFFFF'FFFF);
}

TEST(LayerGifTest, AnEmptyPictureIsAllGround) {
    const QImage read = decodeImage(gifOf(transparent()).value(), 1'000'000);
    ASSERT_EQ(read.size(), QSize(600, 550));
    EXPECT_EQ(read.pixel(300, 300), 0xFFFF'FFFF);
}

TEST(LayerGifTest, BandsMakeAPicture) {
    QImage picture(1200, 1100, QImage::Format_ARGB32_Premultiplied);
    for (int row = 0; row < 1100; ++row) {
        for (int column = 0; column < 1200; ++column) {
            picture.setPixel(column, row, qRgb(row / 10, column / 10, 7)); // too many colours
        }
    }
    const auto whole = layerGif(2, [&](int) { return picture; });
    std::vector<int> asked;
    const auto inBands = layerGif(2, [&](int top) {
        asked.push_back(top);
        return picture.copy(0, top, 1200, std::min(400, 1100 - top));
    });
    EXPECT_EQ(inBands, whole);
    EXPECT_EQ(std::vector<int>(asked.end() - 3, asked.end()), (std::vector{0, 400, 800}));
    EXPECT_FALSE(layerGif(2, [](int) { return QImage(); })) << "no memory";
}

TEST(LayerGifTest, TooManyColoursBecomeFewer) {
    QImage picture = transparent();
    for (int i = 0; i < 600; ++i) {
        for (int j = 0; j < 550; ++j) {
            picture.setPixel(i, j, qRgb(i % 256, j % 256, (i * j) % 256));
        }
    }
    const QImage read = decodeImage(gifOf(picture).value(), 1'000'000);
    ASSERT_EQ(read.size(), QSize(600, 550));
    const QColor colour = read.pixelColor(200, 100);
    EXPECT_NEAR(colour.red(), 200, 64);
    EXPECT_NEAR(colour.green(), 100, 64);
}

} // namespace
} // namespace raincast
