// SPDX-License-Identifier: MIT
#include "map/follow_icon.h"

#include <QImage>
#include <QPainter>

#include <gtest/gtest.h>

namespace raincast {
namespace {

TEST(FollowIcon, IsDrawnWithinItsThirteenBySixteenPixels) {
    for (const QColor& ground : {QColor(Qt::black), QColor(Qt::white), QColor(0, 160, 0)}) {
        QImage picture(40, 40, QImage::Format_RGB32);
        picture.fill(ground);
        QPainter painter(&picture);
        drawFollowIcon(painter, {10, 12});
        painter.end();
        int touched = 0;
        for (int y = 0; y < 40; ++y) {
            for (int x = 0; x < 40; ++x) {
                const bool differs = picture.pixelColor(x, y) != ground;
                touched += differs ? 1 : 0;
                EXPECT_TRUE(!differs || QRect(10, 12, 13, 16).contains(x, y)) << x << "," << y;
            }
        }
        EXPECT_GT(touched, 60) << "it stands out from " << qPrintable(ground.name());
    }
}

} // namespace
} // namespace raincast
