// SPDX-License-Identifier: MIT
#include "page/back_buffer.h"
#include "support/qt_app.h"

#include <QPainter>
#include <QWidget>

namespace raincast {
namespace {

class BackBufferTest : public test::GuiTest {
protected:
    QWidget window;
    BackBuffer buffer;
};

TEST_F(BackBufferTest, HasOnePixelForEachOfTheDevices) {
    buffer.fit(window, {31, 17});
    EXPECT_EQ(buffer.image().size(), QSize(31, 17));
    EXPECT_EQ(buffer.image().devicePixelRatio(), 1);
}

TEST_F(BackBufferTest, ItsTextHasTheSizeThatItHasInTheWindow) {
    buffer.fit(window, {31, 17});
    const double dotsPerInch = window.logicalDpiY() * window.devicePixelRatioF();
    EXPECT_NEAR(buffer.image().logicalDpiY(), dotsPerInch, 1);
    EXPECT_NEAR(buffer.image().logicalDpiX(), dotsPerInch, 1);
}

TEST_F(BackBufferTest, KeepsItsPictureWhileTheSizeStays) {
    buffer.fit(window, {31, 17});
    buffer.image().fill(Qt::red);
    buffer.fit(window, {31, 17});
    EXPECT_EQ(buffer.image().pixelColor(30, 16), QColor(Qt::red));
    buffer.fit(window, {32, 17});
    EXPECT_EQ(buffer.image().size(), QSize(32, 17));
}

TEST_F(BackBufferTest, WithoutAPictureNothingIsCopied) {
    QImage target(4, 4, QImage::Format_RGB32);
    target.fill(Qt::green);
    buffer.blit(target);
    buffer.fit(window, {4, 4});
    buffer.release();
    buffer.blit(target);
    EXPECT_EQ(target.pixelColor(0, 0), QColor(Qt::green));
}

TEST_F(BackBufferTest, IsCopiedOneToOneToADeviceOfAnyRatio) {
    buffer.fit(window, {4, 4});
    buffer.image().fill(Qt::red);
    buffer.image().setPixelColor(3, 2, Qt::blue);
    for (const double ratio : {1.0, 1.25, 1.5, 2.0}) {
        QImage target(6, 6, QImage::Format_RGB32);
        target.fill(Qt::green);
        target.setDevicePixelRatio(ratio);
        buffer.blit(target);
        EXPECT_EQ(target.pixelColor(3, 2), QColor(Qt::blue)) << ratio;
        EXPECT_EQ(target.pixelColor(3, 3), QColor(Qt::red)) << ratio;
        EXPECT_EQ(target.pixelColor(4, 3), QColor(Qt::green)) << ratio;
    }
}

} // namespace
} // namespace raincast
