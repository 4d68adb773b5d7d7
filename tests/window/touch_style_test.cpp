// SPDX-License-Identifier: MIT
#include "support/qt_app.h"
#include "window/screen_metrics.h"
#include "window/touch_style.h"

#include <QApplication>
#include <QMenu>
#include <QPushButton>
#include <QStyleFactory>

#include <gtest/gtest.h>

namespace raincast {
namespace {

class TouchStyleTest : public test::GuiTest {
protected:
    ~TouchStyleTest() override {
        ScreenMetrics::use(std::nullopt);
        QApplication::setStyle(QStringLiteral("Fusion"));
    }

    static void useScreen(bool touch) {
        ScreenMetrics screen;
        screen.touch = touch;
        screen.dotsPerMillimetre = 6;
        ScreenMetrics::use(screen);
        useTouchStyle();
    }
};

TEST_F(TouchStyleTest, ButtonsAndMenuEntriesGrowButSeparatorsDoNot) {
    QMenu menu;
    QAction* entry = menu.addAction(QStringLiteral("Entry"));
    QAction* separator = menu.addSeparator();
    menu.addAction(QStringLiteral("Other"));
    QPushButton button(QStringLiteral("Button"));
    useScreen(true);
    EXPECT_GE(button.sizeHint().height(), 42);
    EXPECT_GE(menu.actionGeometry(entry).height(), 42);
    EXPECT_LT(menu.actionGeometry(separator).height(), 20);
}

TEST_F(TouchStyleTest, WithoutATouchScreenTheStyleStaysAsItIs) {
    const QStyle* before = QApplication::style();
    useScreen(false);
    EXPECT_EQ(QApplication::style(), before);
}

TEST_F(TouchStyleTest, ControlsThatAreHigherAlreadyKeepTheirHeight) {
    QPushButton button(QStringLiteral("Button"));
    const int height = button.sizeHint().height();
    QApplication::setStyle(new TouchStyle(QStyleFactory::create(QStringLiteral("Fusion")), 10));
    EXPECT_EQ(button.sizeHint().height(), height);
}

} // namespace
} // namespace raincast
