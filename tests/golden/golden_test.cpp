// SPDX-License-Identifier: MIT
#include "golden_test.h"

#include "controls.h"
#include "layout_rules.h"
#include "picture.h"
#include "window/screen_metrics.h"
#include "window/screen_style.h"

#include <QApplication>
#include <QFontInfo>
#include <QPixmap>
#include <QStyle>
#include <QWidget>

namespace raincast::test {

namespace {

// The dots of a handheld's screen of 240 by 320 are this small.
constexpr double kHandheldDotsPerMillimetre = 4.4;

void useTouchScreen() {
    ScreenMetrics screen = ScreenMetrics::current();
    screen.touch = true;
    screen.dotsPerMillimetre = kHandheldDotsPerMillimetre;
    ScreenMetrics::use(screen);
}

bool prepare() {
    QApplication::setCursorFlashTime(0);
    if (goldenRun() == u"touch") {
        useTouchScreen();
    }
    useScreenStyle();
    QApplication::setPalette(QApplication::style()->standardPalette());
    return true;
}

} // namespace

QString goldenRun() {
    return qEnvironmentVariable("RAINCAST_GOLDEN_RUN", QStringLiteral("x1"));
}

GoldenTest::GoldenTest() {
    [[maybe_unused]] static const bool prepared = prepare();
    EXPECT_EQ(QFontInfo(QApplication::font()).family().toStdString(), "DejaVu Sans")
        << "The package fonts-dejavu-core is missing.";
}

void GoldenTest::look(const QString& name, QWidget& window) {
    settle();
    EXPECT_EQ(complaintsAbout(window).join(u'\n').toStdString(), "") << qPrintable(name);
    expectGolden(name, window.grab().toImage(), describe(window));
}

} // namespace raincast::test
