// SPDX-License-Identifier: MIT
#include "app/window_place.h"
#include "support/qt_app.h"
#include "window/screen_metrics.h"

#include <QScreen>
#include <QWidget>

#include <gtest/gtest.h>

namespace raincast {
namespace {

class WindowPlaceTest : public test::GuiTest {
protected:
    WindowPlaceTest() { WindowPlace::settings.geometry.clear(); }
    ~WindowPlaceTest() override {
        WindowPlace::settings.geometry.clear();
        ScreenMetrics::use(std::nullopt);
    }
    static void screenOf(const QSize& room) {
        ScreenMetrics metrics;
        metrics.logPixelsY = 96;
        metrics.available = room;
        ScreenMetrics::use(metrics);
    }
};

TEST_F(WindowPlaceTest, TheFirstSizeIsASquareOfTheScreensRoomAtMost) {
    struct Row {
        QSize screen;
        QSize window;
    };
    const Row rows[] = {
        {{1920, 1080}, {640, 640}}, {{240, 320}, {240, 320}}, {{1024, 600}, {640, 600}}};
    for (const Row& row : rows) {
        screenOf(row.screen);
        QWidget window;
        WindowPlace::restore(window, {});
        EXPECT_EQ(window.size(), row.window);
    }
}

TEST_F(WindowPlaceTest, SizeAndPlaceAreFoundAgain) {
    QWidget left;
    left.setGeometry(30, 40, 333, 222);
    test::show(left);
    WindowPlace::keep(left);

    QWidget window;
    WindowPlace::restore(window, {});
    EXPECT_EQ(window.geometry(), QRect(30, 40, 333, 222));
    EXPECT_FALSE(window.isFullScreen());
}

TEST_F(WindowPlaceTest, AFullScreenIsFoundAgainAndLeadsBackToTheFormerSize) {
    QWidget left;
    left.setGeometry(30, 40, 333, 222);
    test::show(left);
    left.setWindowState(Qt::WindowFullScreen);
    test::settle();
    WindowPlace::keep(left);

    QWidget window;
    WindowPlace::restore(window, {});
    test::show(window);
    EXPECT_TRUE(window.isFullScreen());
    window.setWindowState(Qt::WindowNoState);
    test::settle();
    EXPECT_EQ(window.size(), QSize(333, 222));
}

TEST_F(WindowPlaceTest, ADamagedPlaceCountsAsNone) {
    screenOf({1920, 1080});
    for (const char* text : {"AAAA", "%%%%", "AdnQywADAAA"}) {
        WindowPlace::settings.geometry = QString::fromLatin1(text);
        QWidget window;
        WindowPlace::restore(window, {});
        EXPECT_EQ(window.size(), QSize(640, 640)) << text;
    }
}

// Qt takes it for a place of 16,777,215 times as many pixels, 335,544,301 to the left.
TEST_F(WindowPlaceTest, APlaceThatNoScreenHasCountsAsNone) {
    screenOf({1920, 1080});
    WindowPlace::settings.geometry =
        QStringLiteral("AdnQywAAE4gAABOIAAATiAAAE4gAABMT7AAAE+wAAAADAAA=");
    QWidget window;
    WindowPlace::restore(window, {});
    EXPECT_EQ(window.size(), QSize(640, 640));
    EXPECT_TRUE(window.screen()->geometry().intersects(window.geometry()));
}

} // namespace
} // namespace raincast
