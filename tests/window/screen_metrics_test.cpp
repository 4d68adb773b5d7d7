// SPDX-License-Identifier: MIT
#include "support/qt_app.h"
#include "window/screen_metrics.h"

#include <QGuiApplication>
#include <QScreen>

#include <gtest/gtest.h>

namespace raincast {
namespace {

TEST(ScreenMetricsTest, AScreenIsHighlyResolvedAbove120DevicePixelsPerInch) {
    struct Row {
        int logPixelsY;
        double ratio;
        bool high;
    };
    const Row rows[] = {{96, 1, false},   {120, 1, false}, {121, 1, true}, {96, 1.25, false},
                        {96, 1.26, true}, {96, 2, true},   {-1, 2, false}};
    for (const Row& row : rows) {
        ScreenMetrics screen;
        screen.logPixelsY = row.logPixelsY;
        screen.devicePixelRatio = row.ratio;
        EXPECT_EQ(screen.highResolution(), row.high) << row.logPixelsY << " x " << row.ratio;
    }
}

TEST(ScreenMetricsTest, ASystemIconGrowsWithTheDotsPerInch) {
    struct Row {
        int logPixelsY;
        double ratio;
        int width;
    };
    const Row rows[] = {{96, 1, 32}, {96, 1.5, 48}, {96, 2, 64}, {191, 1, 63}, {192, 1, 64}};
    for (const Row& row : rows) {
        ScreenMetrics screen;
        screen.logPixelsY = row.logPixelsY;
        screen.devicePixelRatio = row.ratio;
        EXPECT_EQ(screen.iconWidth(), row.width) << row.logPixelsY << " x " << row.ratio;
    }
}

TEST(ScreenMetricsTest, WithoutAScreenTheDotsPerInchAreMinusOne) {
    EXPECT_EQ(ScreenMetrics().logPixelsY, -1);
}

TEST(ScreenMetricsTest, SevenMillimetresAreRoundedUp) {
    ScreenMetrics screen;
    screen.dotsPerMillimetre = 6;
    EXPECT_EQ(screen.touchHeight(), 42);
    screen.dotsPerMillimetre = 96 / 25.4;
    EXPECT_EQ(screen.touchHeight(), 27);
}

TEST(ScreenMetricsTest, TheScreensFiguresAreReadAndCanBeReplaced) {
    test::qtApp();
    const QScreen* screen = QGuiApplication::primaryScreen();
    const ScreenMetrics read = ScreenMetrics::current();
    EXPECT_EQ(read.logPixelsY, qRound(screen->logicalDotsPerInchY()));
    EXPECT_DOUBLE_EQ(read.devicePixelRatio, screen->devicePixelRatio());
    EXPECT_EQ(read.available, screen->availableSize());

    ScreenMetrics other;
    other.available = {240, 320};
    ScreenMetrics::use(other);
    EXPECT_EQ(ScreenMetrics::current().available, QSize(240, 320));
    EXPECT_EQ(ScreenMetrics::current().logPixelsY, -1);
    ScreenMetrics::use(std::nullopt);
    EXPECT_EQ(ScreenMetrics::current().available, read.available);
}

} // namespace
} // namespace raincast
