// SPDX-License-Identifier: MIT
#include "player/player_bar.h"
#include "support/pointer.h"
#include "support/qt_app.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QSlider>
#include <QTest>
#include <QToolButton>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace raincast {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class PlayerBarTest : public test::GuiTest {
protected:
    PlayerBarTest() {
        window.resize(800, 300);
        test::show(window);
        bar.follow({.frames = 6, .shown = 2, .time = "2019-05-19 5:44 UTC", .age = "now"});
        place();
        bar.show();
        test::settle();
    }
    void place() { bar.setGeometry(0, 0, window.width(), bar.heightForWidth(window.width())); }

    template<typename Control>
    Control& only() {
        const auto all = bar.findChildren<Control*>();
        EXPECT_EQ(all.size(), 1);
        return *all.first();
    }
    QToolButton& button(const QString& name) {
        for (QToolButton* each : bar.findChildren<QToolButton*>()) {
            if (each->accessibleName() == name) {
                return *each;
            }
        }
        ADD_FAILURE() << qPrintable(name);
        return *bar.findChild<QToolButton*>();
    }
    static void click(QWidget& control) { test::click(control, control.rect().center()); }

    QWidget window;
    std::vector<std::string> log;
    PlayerBar bar{
        window,
        {[this] { log.emplace_back("play"); },
         [this](int steps) { log.push_back("step " + std::to_string(steps)); },
         [this](int frame) { log.push_back("show " + std::to_string(frame)); },
         [this](LoopSpeed speed) {
             log.push_back("speed " + std::to_string(static_cast<int>(speed)));
         },
         [this](bool utc) { log.emplace_back(utc ? "utc" : "local"); }}};
};

TEST_F(PlayerBarTest, WhatIsFollowedIsSeenAndAsksForNothing) {
    EXPECT_EQ(only<QSlider>().value(), 2);
    EXPECT_EQ(only<QSlider>().maximum(), 5);
    EXPECT_EQ(only<QSlider>().tickInterval(), 1);
    EXPECT_EQ(only<QLabel>().text().toStdString(), "2019-05-19 5:44 UTC, now");
    EXPECT_EQ(only<QComboBox>().currentText().toStdString(), "1\u00D7");
    bar.follow({.frames = 4, .shown = 0, .playing = false, .speed = LoopSpeed::half, .utc = true});
    EXPECT_EQ(only<QSlider>().maximum(), 3);
    EXPECT_TRUE(only<QCheckBox>().isChecked());
    EXPECT_EQ(only<QComboBox>().currentIndex(), 0);
    EXPECT_THAT(log, IsEmpty());
}

TEST_F(PlayerBarTest, EachControlAsksForItsThingByMouse) {
    click(button("Pause"));
    click(button("Step back"));
    click(button("Step forward"));
    test::click(only<QCheckBox>(), {8, only<QCheckBox>().height() / 2});
    EXPECT_THAT(log, ElementsAre("play", "step -1", "step 1", "utc"));
    EXPECT_EQ(window.focusWidget(), nullptr) << "the keyboard stays where it is";
}

TEST_F(PlayerBarTest, EachControlIsReachedAndWorkedByKeys) {
    std::vector<std::string> names;
    for (int i = 0; i < 6; ++i) {
        QTest::keyClick(window.windowHandle(), Qt::Key_Tab);
        QWidget* const focus = window.focusWidget();
        ASSERT_NE(focus, nullptr);
        names.push_back(
            focus == &only<QCheckBox>() ? "UTC" : focus->accessibleName().toStdString()
        );
        const bool slider = focus == &only<QSlider>();
        const bool combo = focus == &only<QComboBox>();
        QTest::keyClick(
            window.windowHandle(), slider  ? Qt::Key_Right
                                   : combo ? Qt::Key_Down
                                           : Qt::Key_Space
        );
    }
    EXPECT_THAT(names, ElementsAre("Step back", "Pause", "Step forward", "Frame", "Speed", "UTC"));
    EXPECT_THAT(log, ElementsAre("step -1", "play", "step 1", "show 3", "speed 2", "utc"));
}

TEST_F(PlayerBarTest, TheButtonSaysWhatItWouldDo) {
    EXPECT_EQ(button("Pause").toolTip().toStdString(), "Pause (Space)");
    bar.follow({.frames = 6, .playing = false});
    EXPECT_EQ(button("Play").toolTip().toStdString(), "Play (Space)");
}

TEST_F(PlayerBarTest, WithoutALoopThereIsNothingToPlay) {
    bar.follow({.frames = 1});
    EXPECT_FALSE(button("Pause").isEnabled());
    EXPECT_FALSE(only<QSlider>().isEnabled());
    EXPECT_TRUE(only<QCheckBox>().isEnabled());
}

TEST_F(PlayerBarTest, NothingOverlapsAtAnyWidth) {
    for (int width = bar.leastWidth(); width < 2000; width += 7) {
        window.resize(width, 300);
        place();
        const auto controls = bar.findChildren<QWidget*>(Qt::FindDirectChildrenOnly);
        ASSERT_EQ(controls.size(), 7);
        for (const QWidget* control : controls) {
            EXPECT_TRUE(bar.rect().contains(control->geometry())) << width;
            EXPECT_GE(control->width(), 16) << width;
            for (const QWidget* other : controls) {
                EXPECT_TRUE(control == other || !control->geometry().intersects(other->geometry()))
                    << width;
            }
        }
    }
}

} // namespace
} // namespace raincast
