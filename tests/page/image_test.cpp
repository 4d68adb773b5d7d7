// SPDX-License-Identifier: MIT
#include "core/program_paths.h"
#include "page/image.h"
#include "page_window.h"
#include "support/files.h"
#include "support/gif_maker.h"

#include <QTemporaryDir>

namespace raincast {
namespace {

// Three columns and two rows, each pixel of a colour of its own.
const QList<QRgb> kColours{0xFF10'0000, 0xFF20'0000, 0xFF30'0000,
                           0xFF00'1000, 0xFF00'2000, 0xFF00'3000};

QByteArray texture() {
    GifToMake gif;
    gif.screen = {3, 2};
    gif.colours = kColours;
    gif.pixel = [](int column, int row) { return row * 3 + column; };
    return makeGif(gif);
}

class ImageTest : public test::GuiTest {
protected:
    void draw(CPageDisplay::CImage& image) {
        picture.fill(Qt::white);
        QPainter painter(&picture);
        image.draw(painter);
    }

    QTemporaryDir folder;
    QString file = folder.filePath(QStringLiteral("texture.jpg"));
    QImage picture{40, 30, QImage::Format_RGB32};
};

TEST_F(ImageTest, RepeatsInBothDirectionsAndIsCutAtTheFarEdges) {
    writeFile(file, texture());
    CPageDisplay::CImage image(file);
    const PageRectangle place{5, 7, 5 + 7, 7 + 5}; // two and a third by two and a half
    image.setRectangle(place);
    draw(image);
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x) {
            const QRgb expected =
                place.contains({x, y}) ? kColours[(y - 7) % 2 * 3 + (x - 5) % 3] : 0xFFFF'FFFF;
            ASSERT_EQ(picture.pixel(x, y), expected) << x << "," << y;
        }
    }
}

TEST_F(ImageTest, AnItemThatReachesFarBeyondThePageIsDrawnAtOnce) {
    writeFile(file, texture());
    CPageDisplay::CImage image(file);
    image.setRectangle({-1'000'000, -1'000'000, 1'000'000, 1'000'000});
    draw(image);
    // 1,000,000 is one more than a multiple of three.
    EXPECT_EQ(picture.pixel(0, 0), kColours[1]);
    EXPECT_EQ(picture.pixel(39, 29), kColours[1 * 3 + (39 + 1) % 3]);
}

TEST_F(ImageTest, WithoutAFileItIsBlankAndTriesAgain) {
    CPageDisplay::CImage image(file);
    draw(image);
    EXPECT_EQ(picture.pixel(5, 5), 0xFFFF'FFFF);
    writeFile(file, "no picture");
    draw(image);
    EXPECT_EQ(picture.pixel(5, 5), 0xFFFF'FFFF);
    writeFile(file, texture());
    draw(image);
    EXPECT_NE(picture.pixel(5, 5), 0xFFFF'FFFF);
}

TEST_F(ImageTest, KeepsAPictureThatItLoaded) {
    writeFile(file, texture());
    CPageDisplay::CImage image(file);
    draw(image);
    QFile::remove(file);
    draw(image);
    EXPECT_EQ(picture.pixel(0, 0), kColours[0]);
}

TEST_F(ImageTest, TakesItsPictureFromTheProgramsFolder) {
    const QString own = programFolder() + QStringLiteral("/texture.jpg");
    const bool there = QFile::exists(own);
    if (!there) {
        writeFile(own, texture());
    }
    const auto image = CSerializable::Type::create(28);
    draw(dynamic_cast<CPageDisplay::CImage&>(*image));
    EXPECT_NE(picture.pixel(0, 0), 0xFFFF'FFFF);
    if (!there) {
        QFile::remove(own);
    }
}

} // namespace
} // namespace raincast
