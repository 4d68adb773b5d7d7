// SPDX-License-Identifier: MIT
#include "image/image_file.h"
#include "support/gif_maker.h"
#include "support/little_memory.h"

#include <QBuffer>
#include <QDir>
#include <QImageWriter>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace raincast {
namespace {

class ImageFileTest : public ::testing::Test {
protected:
    QString write(const QByteArray& bytes) {
        const QString path = m_folder.filePath(QStringLiteral("picture"));
        QFile file(path);
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        EXPECT_EQ(file.write(bytes), bytes.size());
        return path;
    }
    Bitmap load(const QByteArray& bytes) { return LoadImageFile(write(bytes)); }

    QTemporaryDir m_folder;
};

QByteArray makeJpeg(QSize size, bool progressive = false) {
    QImage image(size, QImage::Format_RGB32);
    for (int row = 0; row < size.height(); ++row) {
        for (int column = 0; column < size.width(); ++column) {
            image.setPixel(column, row, qRgb(column * 5 % 256, row * 7 % 256, 90));
        }
    }
    QByteArray bytes;
    QBuffer buffer(&bytes);
    QImageWriter writer(&buffer, "jpeg");
    writer.setProgressiveScanWrite(progressive);
    EXPECT_TRUE(writer.write(image));
    return bytes;
}

TEST_F(ImageFileTest, LoadsAGif) {
    const Bitmap bitmap = load(makeGif({.screen = {60, 55}, .pixel = [](int, int) { return 2; }}));
    ASSERT_TRUE(bitmap);
    EXPECT_EQ(bitmap->size(), QSize(60, 55));
    EXPECT_EQ(bitmap->format(), QImage::Format_Indexed8);
    EXPECT_EQ(bitmap->pixel(10, 10), 0xFFFF0000);
}

TEST_F(ImageFileTest, LoadsAJpegWholeOnly) {
    for (const bool progressive : {false, true}) {
        const QByteArray bytes = makeJpeg({64, 48}, progressive);
        const Bitmap bitmap = load(bytes);
        ASSERT_TRUE(bitmap);
        EXPECT_EQ(bitmap->size(), QSize(64, 48));
        EXPECT_EQ(bitmap->format(), QImage::Format_RGB32);
        EXPECT_FALSE(load(bytes.chopped(1)));
        EXPECT_FALSE(load(bytes.first(bytes.size() / 2)));
        EXPECT_TRUE(load(bytes + "trailing bytes"));
    }
}

TEST_F(ImageFileTest, AJpegThatClaimsTooMuchFails) {
    QByteArray bytes = makeJpeg({64, 48});
    const qsizetype frame = bytes.indexOf(QByteArray::fromHex("FFC0"));
    ASSERT_GT(frame, 0);
    // Height and width: 8001 × 8001 is just beyond the limit.
    bytes.replace(frame + 5, 4, QByteArray::fromHex("1F411F41"));
    EXPECT_FALSE(load(bytes));
}

TEST_F(ImageFileTest, TheCallersLimitIsKept) {
    for (const QByteArray& bytes : {makeGif({.screen = {64, 48}}), makeJpeg({64, 48})}) {
        EXPECT_FALSE(decodeImage(bytes, 64 * 48).isNull());
        EXPECT_TRUE(decodeImage(bytes, 64 * 48 - 1).isNull());
        EXPECT_TRUE(LoadImageFile(write(bytes), 64 * 48));
        EXPECT_FALSE(LoadImageFile(write(bytes), 64 * 48 - 1));
    }
}

TEST_F(ImageFileTest, AFileOfMoreBytesThanItsPixelsNeedIsNotRead) {
    const QByteArray bytes = makeGif({.screen = {64, 48}});
    EXPECT_TRUE(LoadImageFile(write(bytes + QByteArray(1'000'000, 'x')), 64 * 48));
    EXPECT_FALSE(LoadImageFile(write(bytes + QByteArray(1'100'000, 'x')), 64 * 48));
}

TEST_F(ImageFileTest, ASmallPictureNeedsLittleMemoryWhateverTheLimitIs) {
    const QString path = write(makeGif({.screen = {60, 55}}));
    constexpr rlim_t kLittle = 32'000'000;
    const LittleMemory memory(kLittle);
    EXPECT_TRUE(LoadImageFile(path));
}

TEST_F(ImageFileTest, WhatIsNoImageFails) {
    EXPECT_FALSE(load({}));
    EXPECT_FALSE(load("<html><body>404</body></html>"));
    EXPECT_FALSE(load("\xFF\xD8"));
    EXPECT_FALSE(load(QByteArray("\x89PNG\r\n\x1a\n", 8)));
    EXPECT_FALSE(LoadImageFile(m_folder.filePath(QStringLiteral("missing"))));
    EXPECT_FALSE(LoadImageFile(m_folder.path()));
}

/// Published images; how many there are of each kind is known.
TEST(RealDataImageFileTest, LoadsEveryPublishedImage) {
    const QString tree = qEnvironmentVariable("RAINCAST_TEST_DATA") + QStringLiteral("/radar-tree");
    if (!QDir(tree).exists()) {
        GTEST_SKIP() << "no recorded images";
    }
    struct Kind {
        const char* folder;
        const char* pattern;
        int count;
        QImage::Format format;
    };
    const Kind kinds[] = {
        {"/ridge/RadarImg/N0R/MUX", "*.gif", 13, QImage::Format_Indexed8},
        {"/ridge/RadarImg/N0R/LWX", "*.gif", 1, QImage::Format_Indexed8},
        {"/ridge/Overlays/Highways/Short", "*.gif", 2, QImage::Format_Indexed8},
        {"/ridge/Overlays/Rivers/Short", "*.gif", 2, QImage::Format_Indexed8},
        {"/ridge/Overlays/Topo/Short", "*.jpg", 2, QImage::Format_RGB32},
        {"/weather_radar/basemaps", "*.gif", 4, QImage::Format_Indexed8},
    };
    for (const Kind& kind : kinds) {
        const QDir folder(tree + QLatin1String(kind.folder));
        const QStringList names = folder.entryList({QLatin1String(kind.pattern)}, QDir::Files);
        EXPECT_EQ(names.size(), kind.count) << kind.folder;
        for (const QString& name : names) {
            const Bitmap bitmap = LoadImageFile(folder.filePath(name));
            ASSERT_TRUE(bitmap) << name.toStdString();
            EXPECT_EQ(bitmap->size(), QSize(600, 550)) << name.toStdString();
            EXPECT_EQ(bitmap->format(), kind.format) << name.toStdString();
        }
    }
}

/// Layers whose transparent colour is black: no ground of them may be left black.
TEST(RealDataImageFileTest, TransparentBlackLayersLoadWhite) {
    const QString tree = qEnvironmentVariable("RAINCAST_TEST_DATA") + QStringLiteral("/radar-tree");
    if (!QDir(tree).exists()) {
        GTEST_SKIP() << "no recorded images";
    }
    for (const char* name :
         {"/weather_radar/basemaps/MUX_City_Short.gif",
          "/ridge/Overlays/Highways/Short/MUX_Highways_Short.gif"}) {
        const Bitmap bitmap = LoadImageFile(tree + QLatin1String(name));
        ASSERT_TRUE(bitmap) << name;
        EXPECT_EQ(bitmap->pixel(0, 0), kTransparentWhite) << name;
        EXPECT_EQ(bitmap->color(0), kTransparentWhite) << name;
    }
}

/// Frames show the same colours in whichever order their palettes have them.
TEST(RealDataImageFileTest, FramesOfDifferentPaletteOrderHaveTheSameGround) {
    const QString folder = qEnvironmentVariable("RAINCAST_TEST_DATA") +
                           QStringLiteral("/radar-tree/ridge/RadarImg/N0R/MUX/");
    if (!QDir(folder).exists()) {
        GTEST_SKIP() << "no recorded images";
    }
    const Bitmap eight = LoadImageFile(folder + QStringLiteral("MUX_20190519_0446_N0R.gif"));
    const Bitmap nine = LoadImageFile(folder + QStringLiteral("MUX_20190519_0503_N0R.gif"));
    ASSERT_TRUE(eight && nine);
    EXPECT_EQ(eight->color(8), kTransparentWhite);
    EXPECT_EQ(nine->color(9), kTransparentWhite);
    EXPECT_EQ(eight->pixel(2, 300), nine->pixel(2, 300));
}

} // namespace
} // namespace raincast
