// SPDX-License-Identifier: MIT
// The loop's bar on a radar item, worked by mouse, finger and keys.
#include "player/loop_setting.h"
#include "player/player_bar.h"
#include "support/pointer.h"
#include "weather_page.h"
#include "window/command_set.h"

#include <QComboBox>
#include <QLabel>
#include <QMenu>
#include <QPointingDevice>
#include <QSlider>
#include <QTimer>
#include <QToolButton>

namespace raincast {
namespace {

class ItemWeatherLoopTest : public test::WeatherPage {
protected:
    ItemWeatherLoopTest() {
        showSite();
        editAnimation(3);
        EXPECT_EQ(m_item->state().frames.size(), 3U);
    }
    ~ItemWeatherLoopTest() override {
        LoopSetting::setSpeed(LoopSpeed::normal);
        LoopSetting::setUtc(false);
        LoopSetting::setBar(LoopSetting::Bar::whereRoomIs);
    }

    /// The bar that is seen; null for none.
    PlayerBar* bar() {
        for (int i = 0; i < 3; ++i) { // it follows a painting
            test::settle();
        }
        for (QWidget* const each : m_window.findChildren<QWidget*>(QStringLiteral("loopBar"))) {
            if (each->isVisible()) {
                return static_cast<PlayerBar*>(each);
            }
        }
        return nullptr;
    }
    void showBar() {
        EXPECT_TRUE(m_page->command(40948, clicked));
        ASSERT_NE(bar(), nullptr);
    }
    QToolButton& button(const QString& name) {
        for (QToolButton* each : bar()->findChildren<QToolButton*>()) {
            if (each->accessibleName() == name) {
                return *each;
            }
        }
        ADD_FAILURE() << qPrintable(name);
        return *bar()->findChild<QToolButton*>();
    }
    static void click(QWidget& control) { test::click(control, control.rect().center()); }
    [[nodiscard]] std::string timeInBar() {
        return bar()->findChild<QLabel*>()->text().toStdString();
    }
    /// What is shown after each of some ticks; "-" for nothing.
    std::string ticks(int count) {
        std::string seen;
        for (int i = 0; i < count; ++i) {
            tick();
            seen += (shown().empty() ? "-" : shown()) + ' ';
        }
        return seen;
    }
    void resizeWindow(int width, int height) {
        m_window.resize(width, height);
        m_page->size(width, height);
        m_item->setRectangle({0, 0, width, height});
        test::settle();
    }
};

TEST_F(ItemWeatherLoopTest, ALowItemShowsTheBarWhenAsked) {
    EXPECT_EQ(bar(), nullptr);
    showBar();
    EXPECT_EQ(bar()->geometry().bottom(), 279);
    EXPECT_EQ(LoopSetting::bar(), LoopSetting::Bar::always);
    EXPECT_TRUE(m_page->command(40948, clicked));
    EXPECT_EQ(bar(), nullptr);
    EXPECT_EQ(LoopSetting::bar(), LoopSetting::Bar::whereRoomIs);
}

TEST_F(ItemWeatherLoopTest, ATapShowsAndHidesTheBar) {
    QWidget& page = *m_page->widget();
    test::click(page, {150, 100});
    EXPECT_EQ(bar(), nullptr) << "a second tap may follow";
    EXPECT_TRUE(QTest::qWaitFor([&] { return bar() != nullptr; }, 5000));
    test::click(page, {150, 100});
    EXPECT_TRUE(QTest::qWaitFor([&] { return bar() == nullptr; }, 5000));
}

TEST_F(ItemWeatherLoopTest, ADragAndADoublePressAreNoTaps) {
    const int interval = QApplication::doubleClickInterval();
    QApplication::setDoubleClickInterval(1000);
    QWidget& page = *m_page->widget();
    test::press(page, {150, 100});
    test::moveTo(page, {120, 80});
    test::release(page, {120, 80});
    test::doubleClick(page, {220, 160}); // elsewhere: it is no third press of a row
    QTimer later;                        // than the alarm of a tap would be
    later.setSingleShot(true);
    later.start(1001);
    EXPECT_TRUE(QTest::qWaitFor([&] { return !later.isActive(); }, 5000));
    EXPECT_EQ(bar(), nullptr);
    QApplication::setDoubleClickInterval(interval);
}

TEST_F(ItemWeatherLoopTest, AHighItemShowsItByItself) {
    resizeWindow(500, 420);
    ASSERT_NE(bar(), nullptr);
    EXPECT_EQ(bar()->geometry().bottom(), 419);
    EXPECT_TRUE(m_page->command(40948, clicked));
    EXPECT_EQ(bar(), nullptr);
    EXPECT_EQ(LoopSetting::bar(), LoopSetting::Bar::never);
    resizeWindow(500, 390);
    EXPECT_EQ(bar(), nullptr);
}

TEST_F(ItemWeatherLoopTest, ThePictureEndsAboveTheBar) {
    int height = 0;
    watch([&](const QImage& picture) {
        height = 0;
        for (int row = 0; row < picture.height(); ++row) {
            height +=
                picture.pixelColor(150, row) == m_window.palette().color(QPalette::Base) ? 0 : 1;
        }
    });
    m_page->items().back()->setRectangle({0, 0, 1, 1}); // not over the bar
    m_page->invalidate();
    test::settle();
    const int before = height;
    showBar();
    EXPECT_LT(height, before);
    EXPECT_LE(height, bar()->y());
}

TEST_F(ItemWeatherLoopTest, PlayAndPauseByMouseAndKeys) {
    showBar();
    click(button("Pause"));
    const std::string at = shown();
    EXPECT_EQ(ticks(3), at + ' ' + at + ' ' + at + ' ');
    EXPECT_TRUE(m_page->character(u' '));
    EXPECT_NE(ticks(3), at + ' ' + at + ' ' + at + ' ');
    EXPECT_TRUE(m_page->character(u' '));
    EXPECT_EQ(button("Play").toolTip().toStdString(), "Play (Space)");
}

TEST_F(ItemWeatherLoopTest, APausedLoopPaintsNothing) {
    int paints = 0;
    watch([&](const QImage&) { ++paints; });
    m_page->character(u' ');
    test::settle();
    paints = 0;
    for (int i = 0; i < 10; ++i) {
        tick();
        test::settle();
    }
    EXPECT_EQ(paints, 0);
    m_page->character(u' ');
    tick();
    test::settle();
    EXPECT_GT(paints, 0);
}

TEST_F(ItemWeatherLoopTest, StepsByMouseAndKeys) {
    showBar();
    m_page->character(u' ');
    while (shown() != "5:34") {
        click(button("Step back"));
    }
    click(button("Step forward"));
    EXPECT_EQ(shown(), "5:44");
    m_page->character(u'.');
    EXPECT_EQ(shown(), "5:54");
    m_page->character(u',');
    EXPECT_EQ(shown(), "5:44");
    EXPECT_EQ(bar()->findChild<QSlider*>()->value(), 1);
    EXPECT_EQ(timeInBar(), "2019-05-19 5:44 UTC, 16 minutes ago");
}

TEST_F(ItemWeatherLoopTest, TheSliderShowsAFrame) {
    showBar();
    auto& slider = *bar()->findChild<QSlider*>();
    EXPECT_EQ(slider.maximum(), 2);
    slider.setFocus();
    QTest::keyClick(&slider, Qt::Key_Home);
    EXPECT_EQ(shown(), "5:34");
    QTest::keyClick(&slider, Qt::Key_Right);
    EXPECT_EQ(shown(), "5:44");
    EXPECT_EQ(ticks(2), "5:44 5:44 ");
}

TEST_F(ItemWeatherLoopTest, TheSpeedIsKeptForAllLoops) {
    showBar();
    auto& speeds = *bar()->findChild<QComboBox*>();
    speeds.setFocus();
    QTest::keyClick(&speeds, Qt::Key_Down);
    EXPECT_EQ(LoopSetting::speed(), LoopSpeed::twice);
    std::string before = shown();
    tick(); // starts the clock
    EXPECT_EQ(shown(), before);
    EXPECT_TRUE(QTest::qWaitFor([&] { return shown() != before; }, 5000));
    EXPECT_TRUE(m_page->command(40943, clicked));
    EXPECT_EQ(LoopSetting::speed(), LoopSpeed::half);
    EXPECT_EQ(speeds.currentIndex(), 0);
}

TEST_F(ItemWeatherLoopTest, TimesMayBeUtc) {
    showBar();
    const TimeZone pacific("PST8PDT,M3.2.0,M11.1.0");
    tick();
    EXPECT_THAT(timeInBar(), testing::HasSubstr("2019-05-18 22:"));
    EXPECT_THAT(timeInBar(), testing::HasSubstr(" PDT, "));
    EXPECT_TRUE(m_page->command(40947, clicked));
    EXPECT_THAT(timeInBar(), testing::HasSubstr("2019-05-19 5:"));
    EXPECT_THAT(timeInBar(), testing::HasSubstr(" UTC, "));
}

TEST_F(ItemWeatherLoopTest, ItStaysDuringAnUpdateAndGoesWithTheLoop) {
    showBar();
    m_page->character(u' ');
    while (shown() != "5:44") {
        m_page->character(u'.');
    }
    publishFrames({"20190519_0534", "20190519_0544", "20190519_0554", "20190519_0604"});
    m_clock.set(fromCalendar({2019, 5, 19, 6, 5}));
    EXPECT_TRUE(m_item->command(kUpdate, 0));
    EXPECT_TRUE(QTest::qWaitFor(
        [&] {
            EXPECT_TRUE(m_window.findChild<QWidget*>(QStringLiteral("loopBar"))->isVisible());
            return !m_item->loading();
        },
        30'000
    ));
    EXPECT_EQ(shown(), "5:44") << "the user looks at it";
    test::DialogScript script;
    script.expect("Animation", [](QDialog& dialog) {
        test::check(dialog, "Enable Animation", false);
        test::press(dialog, "OK");
    });
    EXPECT_TRUE(m_item->command(kAnimation, 0));
    finish();
    EXPECT_EQ(m_item->state().frames.size(), 1U);
    EXPECT_EQ(bar(), nullptr);
}

TEST_F(ItemWeatherLoopTest, LayoutModeHidesIt) {
    showBar();
    EXPECT_TRUE(m_page->command(kToggleLayout, clicked));
    EXPECT_EQ(bar(), nullptr);
    EXPECT_TRUE(m_page->command(kToggleLayout, clicked));
    EXPECT_NE(bar(), nullptr);
}

TEST_F(ItemWeatherLoopTest, AnItemOverItHidesIt) {
    showBar();
    watch([](const QImage&) {});
    m_page->invalidate();
    EXPECT_EQ(bar(), nullptr);
}

TEST_F(ItemWeatherLoopTest, ThePageComesBackWithIt) {
    showBar();
    m_page->deactivate();
    test::settle();
    EXPECT_EQ(bar(), nullptr);
    m_page->activate(m_window, true);
    finish();
    EXPECT_NE(bar(), nullptr);
    m_page->select(m_item);
    EXPECT_TRUE(m_page->command(kDeleteItem, clicked));
    m_item = nullptr;
    EXPECT_EQ(bar(), nullptr);
}

TEST_F(ItemWeatherLoopTest, AFingerOnItIsNoneOnThePicture) {
    showBar();
    const QPoint place = bar()->mapTo(&m_window, QPoint(1, 1));
    const ImagePixel pixel = m_item->view().toImage({0, 0});
    static QPointingDevice* const screen = QTest::createTouchDevice();
    QTest::touchEvent(&m_window, screen).press(0, place, &m_window);
    QTest::touchEvent(&m_window, screen).move(0, place - QPoint(60, 90), &m_window);
    QTest::touchEvent(&m_window, screen).release(0, place - QPoint(60, 90), &m_window);
    EXPECT_EQ(m_item->view().toImage({0, 0}).column, pixel.column);
    EXPECT_EQ(m_item->view().toImage({0, 0}).row, pixel.row);

    const QPoint pause = button("Pause").mapTo(&m_window, button("Pause").rect().center());
    QTest::touchEvent(&m_window, screen).press(0, pause, &m_window);
    QTest::touchEvent(&m_window, screen).release(0, pause, &m_window);
    EXPECT_EQ(button("Play").accessibleName().toStdString(), "Play");
}

TEST_F(ItemWeatherLoopTest, TheMenuSaysHowTheLoopIs) {
    showBar();
    CommandSet commands(m_window);
    const auto menu = commands.load(CItemWeather::kMenu);
    m_page->menuPopUp(*menu);
    EXPECT_TRUE(findCommand(*menu, 40940)->isChecked());
    EXPECT_TRUE(findCommand(*menu, 40944)->isChecked());
    EXPECT_FALSE(findCommand(*menu, 40946)->isChecked());
    EXPECT_TRUE(findCommand(*menu, 40948)->isChecked());
    EXPECT_EQ(findCommand(*menu, 40941)->shortcut().toString().toStdString(), ",");
    m_page->command(40940, clicked);
    m_page->menuPopUp(*menu);
    EXPECT_FALSE(findCommand(*menu, 40940)->isChecked());
}

} // namespace
} // namespace raincast
