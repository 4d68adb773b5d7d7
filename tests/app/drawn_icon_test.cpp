// SPDX-License-Identifier: MIT
#include "app/drawn_icon.h"
#include "support/qt_app.h"

#include <QApplication>
#include <QImage>
#include <QPalette>
#include <QPixmap>

#include <gtest/gtest.h>

#include <set>

namespace raincast {
namespace {

class DrawnIconTest : public test::GuiTest {
protected:
    static QImage at(const QIcon& icon, int extent, QIcon::Mode mode = QIcon::Normal) {
        return icon.pixmap(QSize(extent, extent), 1, mode)
            .toImage()
            .convertToFormat(QImage::Format_ARGB32);
    }
    /// The alpha of the strongest pixel of the outermost rows and columns.
    static int atEdge(const QImage& image) {
        int most = 0;
        for (int i = 0; i < image.width(); ++i) {
            for (const QPoint& place :
                 {QPoint(i, 0), QPoint(0, i), QPoint(i, image.height() - 1),
                  QPoint(image.width() - 1, i)}) {
                most = qMax(most, qAlpha(image.pixel(place)));
            }
        }
        return most;
    }
};

TEST_F(DrawnIconTest, EachIconIsAnotherPictureAndNoneIsCut) {
    std::set<QByteArray> pictures;
    for (const QIcon& icon : {zoomInIcon(), zoomOutIcon(), updateIcon()}) {
        const QImage image = at(icon, 24);
        EXPECT_EQ(atEdge(image), 0);
        pictures.insert(
            QByteArray(reinterpret_cast<const char*>(image.constBits()), image.sizeInBytes())
        );
    }
    EXPECT_EQ(pictures.size(), 3U);
}

TEST_F(DrawnIconTest, ADenserScreenGetsMorePixelsNotLargerOnes) {
    const QPixmap dense = zoomInIcon().pixmap(QSize(24, 24), 2.0);
    EXPECT_EQ(dense.size(), QSize(48, 48));
    EXPECT_EQ(dense.devicePixelRatio(), 2);
    const QImage sharp = dense.toImage().convertToFormat(QImage::Format_ARGB32);
    const QImage blocks = at(zoomInIcon(), 24).scaled(48, 48);
    EXPECT_NE(sharp, blocks);
    // The ink is still whole in the middle of a stroke: column 20 of the minus sign's row.
    EXPECT_EQ(qAlpha(sharp.pixel(16, 20)), 255);
}

TEST_F(DrawnIconTest, ToolIconsTakeThePalettesInk) {
    const QPalette before = QApplication::palette();
    QPalette night = before;
    night.setColor(QPalette::Active, QPalette::ButtonText, Qt::yellow);
    night.setColor(QPalette::Disabled, QPalette::ButtonText, Qt::red);
    QApplication::setPalette(night);
    EXPECT_EQ(at(zoomOutIcon(), 24).pixelColor(10, 10), QColor(Qt::yellow));
    EXPECT_EQ(at(zoomOutIcon(), 24, QIcon::Disabled).pixelColor(10, 10), QColor(Qt::red));
    QApplication::setPalette(before);
}

TEST_F(DrawnIconTest, TheProgramsIconFillsItsSquare) {
    for (const int extent : {16, 32, 256}) {
        const QImage image = at(programIcon(), extent);
        EXPECT_EQ(qAlpha(image.pixel(extent / 2, extent / 12)), 255) << extent;
        EXPECT_FALSE(image.convertToFormat(QImage::Format_RGB32).allGray()) << extent;
    }
}

} // namespace
} // namespace raincast
