// SPDX-License-Identifier: MIT
#include "support/qt_app.h"
#include "window/screen_metrics.h"
#include "window/screen_style.h"

#include <QApplication>
#include <QMenu>
#include <QPushButton>
#include <QScreen>
#include <QStyleFactory>
#include <QTest>

#include <gtest/gtest.h>

namespace raincast {
namespace {

class ScreenStyleTest : public test::GuiTest {
protected:
    ~ScreenStyleTest() override {
        ScreenMetrics::use(std::nullopt);
        QApplication::setStyle(QStringLiteral("Fusion"));
    }

    static void useScreen(bool touch) {
        ScreenMetrics screen;
        screen.touch = touch;
        screen.dotsPerMillimetre = 6;
        ScreenMetrics::use(screen);
        useScreenStyle();
    }
};

TEST_F(ScreenStyleTest, ButtonsAndMenuEntriesGrowButSeparatorsDoNot) {
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

TEST_F(ScreenStyleTest, WithoutATouchScreenControlsKeepTheirHeight) {
    QPushButton button(QStringLiteral("Button"));
    const int height = button.sizeHint().height();
    useScreen(false);
    EXPECT_EQ(button.sizeHint().height(), height);
}

TEST_F(ScreenStyleTest, TheDesktopsStyleIsKnownBelowIt) {
    QApplication::setStyle(QStringLiteral("Windows"));
    for (int times = 0; times < 2; ++times) {
        useScreenStyle();
        const std::unique_ptr<QStyle> desktop(makeDesktopStyle());
        ASSERT_NE(desktop, nullptr);
        EXPECT_EQ(desktop->name(), QStringLiteral("windows"));
    }
}

TEST_F(ScreenStyleTest, AMenuThatIsHigherThanTheScreenScrolls) {
    useScreen(false);
    QMenu menu;
    const QRect screen = menu.screen()->availableGeometry();
    while (menu.sizeHint().height() < 2 * screen.height() && menu.actions().size() < 1000) {
        menu.addAction(QStringLiteral("Entry"));
    }
    QAction* const last = menu.addAction(QStringLiteral("Last"));
    menu.popup(screen.topLeft());
    EXPECT_LE(menu.height(), screen.height());
    EXPECT_FALSE(menu.rect().contains(menu.actionGeometry(last)));
    QTest::keyClick(&menu, Qt::Key_Down);
    QTest::keyClick(&menu, Qt::Key_Up); // around to the end
    EXPECT_EQ(menu.activeAction(), last);
    EXPECT_TRUE(menu.rect().contains(menu.actionGeometry(last)));
}

TEST_F(ScreenStyleTest, ControlsThatAreHigherAlreadyKeepTheirHeight) {
    QPushButton button(QStringLiteral("Button"));
    const int height = button.sizeHint().height();
    QApplication::setStyle(new ScreenStyle(QStyleFactory::create(QStringLiteral("Fusion")), 10));
    EXPECT_EQ(button.sizeHint().height(), height);
}

} // namespace
} // namespace raincast
