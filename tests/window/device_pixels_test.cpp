// SPDX-License-Identifier: MIT
#include "support/qt_app.h"
#include "window/device_pixels.h"

#include <QPointF>
#include <QWidget>

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace raincast {
namespace {

// Runs at whatever ratio the process has: ctest starts it at 1, 1.5 and 2.
class DevicePixelsTest : public test::GuiTest {
protected:
    QWidget top;
    QWidget* left = new QWidget(&top);
    QWidget* right = new QWidget(&top);
    double ratio = 0;

    DevicePixelsTest() {
        top.resize(101, 51);
        left->setGeometry(0, 0, 33, 51);
        right->setGeometry(33, 7, 68, 44);
        test::show(top);
        ratio = top.devicePixelRatioF();
    }
};

TEST_F(DevicePixelsTest, NeighboursNeitherOverlapNorGape) {
    const QRect a = deviceRect(*left);
    const QRect b = deviceRect(*right);
    const QRect whole = deviceRect(top);
    EXPECT_EQ(whole.topLeft(), QPoint(0, 0));
    EXPECT_EQ(a.x() + a.width(), b.x());
    EXPECT_EQ(b.x() + b.width(), whole.width());
    EXPECT_EQ(b.y() + b.height(), whole.height());
    EXPECT_EQ(b.x(), static_cast<int>(std::floor(33 * ratio + 0.5)));
}

TEST_F(DevicePixelsTest, APointersPlaceCountsFromTheWidgetsDeviceEdge) {
    EXPECT_EQ(toDevicePixels(*right, {33, 7}), QPoint(0, 0));
    const QPointF scene(60 + 1 / 3.0, 20 + 2 / 3.0);
    const QPoint expected(
        static_cast<int>(std::floor(scene.x() * ratio + 0.5)) - deviceRect(*right).x(),
        static_cast<int>(std::floor(scene.y() * ratio + 0.5)) - deviceRect(*right).y()
    );
    EXPECT_EQ(toDevicePixels(*right, scene), expected);
}

TEST_F(DevicePixelsTest, APlaceThatIsNoneLiesFarOutside) {
    constexpr int kFar = 1 << 20;
    constexpr double kInfinite = std::numeric_limits<double>::infinity();
    const QPoint corner = deviceRect(*right).topLeft();
    for (const double far : {kInfinite, std::numeric_limits<double>::max(), 1e12}) {
        EXPECT_EQ(toDevicePixels(*right, {far, -far}), QPoint(kFar, -kFar) - corner);
    }
    constexpr double kNone = std::numeric_limits<double>::quiet_NaN();
    EXPECT_EQ(toDevicePixels(*right, {kNone, kNone}), QPoint(-kFar, -kFar) - corner);
}

TEST_F(DevicePixelsTest, ADevicePixelHasItsPlaceOnTheScreen) {
    const QPointF expected = QPointF(deviceRect(*right).topLeft() + QPoint(12, 9)) / ratio;
    EXPECT_EQ(toScreen(*right, {12, 9}), top.mapToGlobal(expected).toPoint());
    EXPECT_EQ(toScreen(*left, {0, 0}), top.mapToGlobal(QPoint(0, 0)));
}

TEST_F(DevicePixelsTest, TheScaleOfTheEntryIsInForce) {
    bool set = false;
    const double wanted = qEnvironmentVariable("QT_SCALE_FACTOR").toDouble(&set);
    EXPECT_DOUBLE_EQ(ratio, set ? wanted : ratio);
}

} // namespace
} // namespace raincast
