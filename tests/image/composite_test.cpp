// SPDX-License-Identifier: MIT
#include "image/composite.h"
#include "support/gif_maker.h"

#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace raincast {
namespace {

constexpr QRgb kStrongest = 0xFFFDFDFD;
constexpr QRgb kRed = 0xFFFF0000;
constexpr QRgb kBlue = 0xFF0000FF;

/// An indexed picture, all pixels `ground`, with a colour table of `used` first and grey behind.
QImage indexed(QSize size, QList<QRgb> used, uint ground = 0) {
    used.resize(256, kTransparentWhite);
    QImage image(size, QImage::Format_Indexed8);
    image.setColorTable(used);
    image.fill(ground);
    return image;
}

QImage rgb(QSize size, QRgb ground) {
    QImage image(size, QImage::Format_RGB32);
    image.fill(ground);
    return image;
}

TEST(CompositeTest, MakesAWhiteTargetWhereThereIsNone) {
    Bitmap target;
    QImage source = rgb({4, 4}, kTransparentWhite);
    source.setPixel(1, 1, kRed);
    CompositeOnto(target, source, 6, 5);
    ASSERT_TRUE(target);
    EXPECT_EQ(target->size(), QSize(6, 5));
    EXPECT_EQ(target->pixel(1, 1), kRed);
    EXPECT_EQ(target->pixel(0, 0), kTransparentWhite);
    EXPECT_EQ(target->pixel(5, 4), kTransparentWhite);
}

TEST(CompositeTest, OnlyExactlyWhiteIsTransparent) {
    Bitmap target = std::make_shared<QImage>(rgb({3, 1}, kBlue));
    QImage source = rgb({3, 1}, kTransparentWhite);
    source.setPixel(1, 0, kStrongest);
    source.setPixel(2, 0, 0xFFFFFFFE);
    CompositeOnto(target, source, 3, 1);
    EXPECT_EQ(target->pixel(0, 0), kBlue);
    EXPECT_EQ(target->pixel(1, 0), kStrongest);
    EXPECT_EQ(target->pixel(2, 0), 0xFFFFFFFE);
}

TEST(CompositeTest, AFrameKeepsOneByteAPixel) {
    Bitmap frame = std::make_shared<QImage>(indexed({4, 4}, {kTransparentWhite, kBlue}));
    frame->setPixel(2, 2, 1);
    QImage warnings = indexed({4, 4}, {kRed, kTransparentWhite, kBlue}, 1);
    warnings.setPixel(0, 0, 0);
    warnings.setPixel(1, 1, 2);
    CompositeOnto(frame, warnings, 4, 4);
    EXPECT_EQ(frame->format(), QImage::Format_Indexed8);
    EXPECT_EQ(frame->pixel(0, 0), kRed);
    EXPECT_EQ(frame->pixel(1, 1), kBlue);
    EXPECT_EQ(frame->pixel(2, 2), kBlue);
    EXPECT_EQ(frame->pixel(3, 3), kTransparentWhite);
}

TEST(CompositeTest, ColoursThatDoNotFitTogetherCostTheFrameItsByteAPixelOnly) {
    QList<QRgb> greys;
    for (int i = 0; i < 256; ++i) {
        greys.append(qRgb(i, i, i));
    }
    Bitmap frame = std::make_shared<QImage>(indexed({256, 2}, greys));
    for (int i = 0; i < 256; ++i) {
        frame->setPixel(i, 0, static_cast<uint>(i));
    }
    QImage warnings = indexed({256, 2}, {kTransparentWhite, kRed});
    warnings.setPixel(7, 0, 1);
    CompositeOnto(frame, warnings, 256, 2);
    EXPECT_EQ(frame->pixel(7, 0), kRed);
    for (int i = 8; i < 256; ++i) {
        EXPECT_EQ(frame->pixel(i, 0), qRgb(i, i, i));
    }
}

TEST(CompositeTest, IsSeenThroughEveryHandle) {
    for (const bool oneByte : {true, false}) {
        Bitmap frame = std::make_shared<QImage>(
            oneByte ? indexed({2, 2}, {kTransparentWhite}) : rgb({2, 2}, kTransparentWhite)
        );
        const Bitmap onScreen = frame;
        CompositeOnto(frame, rgb({2, 2}, kRed), 2, 2);
        EXPECT_EQ(onScreen, frame);
        EXPECT_EQ(onScreen->pixel(1, 1), kRed);
    }
}

TEST(CompositeTest, SizesThatDifferAreClipped) {
    Bitmap target = std::make_shared<QImage>(indexed({2, 3}, {kTransparentWhite}));
    CompositeOnto(target, indexed({5, 2}, {kRed}), 5, 2);
    EXPECT_EQ(target->size(), QSize(2, 3));
    EXPECT_EQ(target->pixel(1, 1), kRed);
    EXPECT_EQ(target->pixel(1, 2), kTransparentWhite);
}

TEST(CompositeTest, NothingToDrawMakesTheTargetOnly) {
    Bitmap target;
    CompositeOnto(target, QImage(), 2, 2);
    ASSERT_TRUE(target);
    EXPECT_EQ(target->pixel(0, 0), kTransparentWhite);
    Bitmap impossible;
    CompositeOnto(impossible, QImage(), 0, 0);
    EXPECT_FALSE(impossible);
}

TEST(CompositeTest, LoadsAndComposites) {
    QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("layer.gif"));
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(makeGif({.transparent = 0, .pixel = [](int column, int) {
                            return column == 2 ? 2 : 0;
                        }}));
    file.close();
    Bitmap target;
    EXPECT_TRUE(LoadAndComposite(path, target));
    ASSERT_TRUE(target);
    EXPECT_EQ(target->size(), QSize(8, 8));
    EXPECT_EQ(target->pixel(2, 5), kRed);
    EXPECT_EQ(target->pixel(3, 5), kTransparentWhite);

    Bitmap untouched;
    EXPECT_FALSE(LoadAndComposite(folder.filePath(QStringLiteral("missing.gif")), untouched));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(gifThatClaims({8000, 8000}));
    file.close();
    EXPECT_FALSE(LoadAndComposite(path, untouched));
    EXPECT_FALSE(untouched);
}

} // namespace
} // namespace raincast
