// SPDX-License-Identifier: MIT
#include "support/qt_app.h"
#include "window/device_pixels.h"
#include "window/window.h"
#include "window/zoom_input.h"

#include <QGuiApplication>
#include <QMouseEvent>
#include <QNativeGestureEvent>
#include <QStyleHints>
#include <QTest>
#include <QTouchEvent>
#include <QWheelEvent>
#include <QWidget>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>
#include <limits>
#include <string>
#include <utility>
#include <vector>

namespace raincast {
namespace {

using testing::ElementsAre;

class ZoomingWindow : public Window {
public:
    std::vector<std::string> log;
    ZoomInput zoom;

    bool windowProcedure(QEvent& event) override {
        if (const auto step = zoom.handle(*widget(), event)) {
            EXPECT_TRUE(event.isAccepted());
            lastPlace = step->place;
            if (step->pressLost) {
                log.push_back("lost");
            }
            if (step->steps != 0) {
                log.push_back("zoom " + std::to_string(step->steps));
            }
            return true;
        }
        if (event.type() == QEvent::MouseMove || event.type() == QEvent::MouseButtonRelease) {
            const QPoint place = static_cast<QMouseEvent&>(event).position().toPoint();
            const bool moved = event.type() == QEvent::MouseMove;
            log.push_back((moved ? "move " : "release ") + std::to_string(place.x()));
            event.accept();
            return true;
        }
        return Window::windowProcedure(event);
    }
    void onLeftButton(bool again, std::int16_t, std::int16_t, Qt::KeyboardModifiers) override {
        log.push_back(again ? "press again" : "press");
    }

    QPoint lastPlace;
};

class ZoomInputTest : public test::GuiTest {
protected:
    QWidget top;
    QPointer<QWidget> child = new QWidget(&top);
    ZoomingWindow window;

    ZoomInputTest() {
        top.resize(400, 300);
        child->setGeometry(100, 50, 300, 250);
        window.attach(*child);
        ZoomInput::enable(*child);
        test::show(top);
        window.log.clear();
    }

    void turn(int angle) {
        const QPointF place(20, 30);
        QWheelEvent event(
            place, child->mapToGlobal(place), {}, {0, angle}, Qt::NoButton, Qt::NoModifier,
            Qt::NoScrollPhase, false
        );
        QCoreApplication::sendEvent(child, &event);
    }

    /// One finger taps, and moves by so much meanwhile, at a time in milliseconds.
    void tapAt(quint64 time, int x, int moved = 0) {
        static QPointingDevice* const screen = QTest::createTouchDevice();
        const std::pair<QEvent::Type, int> steps[] = {
            {QEvent::TouchBegin, x}, {QEvent::TouchUpdate, x + moved}, {QEvent::TouchEnd, x}};
        for (const auto& [type, column] : steps) {
            const QPointF place(column, 20);
            QTouchEvent event(
                type, screen, Qt::NoModifier,
                {QEventPoint(0, QEventPoint::Updated, place, child->mapToGlobal(place))}
            );
            event.setTimestamp(time);
            QCoreApplication::sendEvent(child, &event);
        }
    }
    /// What the taps were.
    std::vector<std::string> presses() {
        std::vector<std::string> found;
        std::copy_if(
            window.log.begin(), window.log.end(), std::back_inserter(found),
            [](const std::string& line) { return line.starts_with("press"); }
        );
        window.log.clear();
        return found;
    }

    void takeTouch(const QPointingDevice& screen) {
        QTouchEvent event(QEvent::TouchCancel, &screen);
        QCoreApplication::sendEvent(child, &event);
    }

    void pinchPad(Qt::NativeGestureType type, double value) {
        const QPointF place(20, 30);
        QNativeGestureEvent event(
            type, QPointingDevice::primaryPointingDevice(), 2, place, place,
            child->mapToGlobal(place), value, {}
        );
        QCoreApplication::sendEvent(child, &event);
    }
};

TEST_F(ZoomInputTest, ANotchOfTheWheelIsAStep) {
    turn(120);
    turn(-240);
    EXPECT_THAT(window.log, ElementsAre("zoom 1", "zoom -2"));
}

TEST_F(ZoomInputTest, AFineWheelAddsUpUntilItTurnsBack) {
    turn(60);
    turn(30);
    turn(40);
    EXPECT_THAT(window.log, ElementsAre("zoom 1"));
    turn(100);
    turn(-100);
    turn(-20);
    EXPECT_THAT(window.log, ElementsAre("zoom 1", "zoom -1"));
}

TEST_F(ZoomInputTest, APinchOnATouchPadIsAStepHalfWayToTheNextLevel) {
    pinchPad(Qt::BeginNativeGesture, 0);
    pinchPad(Qt::ZoomNativeGesture, 0.3);
    EXPECT_TRUE(window.log.empty());
    pinchPad(Qt::ZoomNativeGesture, 0.1);
    EXPECT_THAT(window.log, ElementsAre("zoom 1"));
    pinchPad(Qt::BeginNativeGesture, 0);
    pinchPad(Qt::ZoomNativeGesture, -0.5);
    EXPECT_THAT(window.log, ElementsAre("zoom 1", "zoom -1"));
}

TEST_F(ZoomInputTest, ScalesThatAreNoneCountNothing) {
    pinchPad(Qt::ZoomNativeGesture, -1);
    pinchPad(Qt::ZoomNativeGesture, std::numeric_limits<double>::infinity());
    pinchPad(Qt::ZoomNativeGesture, std::numeric_limits<double>::quiet_NaN());
    EXPECT_TRUE(window.log.empty());
}

TEST_F(ZoomInputTest, OneFingerIsTheLeftButton) {
    static QPointingDevice* const screen = QTest::createTouchDevice();
    QTest::touchEvent(child, screen).press(0, {10, 20});
    QTest::touchEvent(child, screen).move(0, {15, 20});
    QTest::touchEvent(child, screen).release(0, {16, 20});
    EXPECT_THAT(window.log, ElementsAre("press", "move 15", "release 16"));
}

TEST_F(ZoomInputTest, TwoQuickTapsAreADoubleClick) {
    tapAt(10'000, 50);
    tapAt(10'200, 52);
    EXPECT_THAT(presses(), ElementsAre("press", "press again"));
    tapAt(10'300, 52);
    EXPECT_THAT(presses(), ElementsAre("press")) << "a third one begins again";
}

TEST_F(ZoomInputTest, TapsFarApartAreTwo) {
    tapAt(10'000, 50);
    tapAt(10'000 + QGuiApplication::styleHints()->mouseDoubleClickInterval(), 50);
    EXPECT_THAT(presses(), ElementsAre("press", "press")) << "in time";
    tapAt(20'000, 50);
    tapAt(20'100, 150);
    EXPECT_THAT(presses(), ElementsAre("press", "press")) << "in place";
    tapAt(30'000, 50, 100);
    tapAt(30'100, 50);
    EXPECT_THAT(presses(), ElementsAre("press", "press")) << "a drag is no tap";
}

TEST_F(ZoomInputTest, TwoFingersPinchAndNoLongerPress) {
    static QPointingDevice* const screen = QTest::createTouchDevice();
    auto touch = QTest::touchEvent(child, screen, false);
    touch.press(0, {100, 100}).commit();
    touch.stationary(0).press(1, {120, 100}).commit();
    touch.move(0, {90, 100}).move(1, {130, 100}).commit();
    EXPECT_THAT(window.log, ElementsAre("press", "lost", "zoom 1"));
    const QPoint between = child->mapTo(&top, QPoint(110, 100));
    EXPECT_EQ(window.lastPlace, toDevicePixels(*child, between));
    touch.move(0, {100, 100}).move(1, {120, 100}).commit();
    touch.release(0, {100, 100}).stationary(1).commit();
    touch.move(1, {200, 100}).commit();
    touch.release(1, {200, 100}).commit();
    EXPECT_THAT(window.log, ElementsAre("press", "lost", "zoom 1", "zoom -1"));
}

TEST_F(ZoomInputTest, ATouchThatTheSystemTakesIsNoTap) {
    static QPointingDevice* const screen = QTest::createTouchDevice();
    for (int i = 0; i < 2; ++i) {
        QTest::touchEvent(child, screen).press(0, {10, 20});
        QTest::touchEvent(child, screen).move(0, {15, 20});
        takeTouch(*screen);
        EXPECT_THAT(window.log, ElementsAre("press", "move 15", "lost"));
        takeTouch(*screen); // of no finger
        EXPECT_THAT(window.log, ElementsAre("press", "move 15", "lost"));
        QTest::touchEvent(child, screen).release(0, {15, 20}); // it comes nevertheless
        EXPECT_THAT(window.log, ElementsAre("press", "move 15", "lost"));
        window.log.clear();
    }
}

TEST_F(ZoomInputTest, ATakenPinchLeavesNothingBehind) {
    static QPointingDevice* const screen = QTest::createTouchDevice();
    auto touch = QTest::touchEvent(child, screen, false);
    touch.press(0, {100, 100}).press(1, {120, 100}).commit();
    takeTouch(*screen);
    touch.release(0, {100, 100}).release(1, {120, 100}).commit();
    touch.press(0, {100, 100}).press(1, {200, 100}).commit();
    touch.release(0, {100, 100}).release(1, {200, 100}).commit();
    EXPECT_TRUE(window.log.empty());
}

TEST_F(ZoomInputTest, TouchesWithoutFingersDoNothing) {
    static QPointingDevice* const screen = QTest::createTouchDevice();
    const auto types = {
        QEvent::TouchBegin, QEvent::TouchUpdate, QEvent::TouchEnd, QEvent::TouchCancel};
    for (const QEvent::Type first : types) {
        for (const QEvent::Type second : types) {
            for (const QEvent::Type type : {first, second}) {
                QTouchEvent event(type, screen);
                QCoreApplication::sendEvent(child, &event);
                EXPECT_TRUE(event.isAccepted());
            }
        }
    }
    EXPECT_TRUE(window.log.empty());
}

TEST_F(ZoomInputTest, OneEventIsAFewStepsAtMost) {
    constexpr int kMost = ZoomInput::kMostSteps;
    using Limits = std::numeric_limits<int>;
    turn(60);
    turn(Limits::max());
    turn(Limits::min());
    EXPECT_THAT(
        window.log, ElementsAre("zoom " + std::to_string(kMost), "zoom " + std::to_string(-kMost))
    );
    window.log.clear();
    pinchPad(Qt::ZoomNativeGesture, 0.2);
    pinchPad(Qt::ZoomNativeGesture, std::numeric_limits<double>::max());
    pinchPad(Qt::ZoomNativeGesture, std::numeric_limits<double>::denorm_min() - 1);
    pinchPad(Qt::ZoomNativeGesture, -1 + 1e-15);
    EXPECT_THAT(
        window.log, ElementsAre("zoom " + std::to_string(kMost), "zoom " + std::to_string(-kMost))
    );
}

TEST_F(ZoomInputTest, FingersThatComeDownAgainStartAfresh) {
    static QPointingDevice* const screen = QTest::createTouchDevice();
    auto touch = QTest::touchEvent(child, screen, false);
    for (const int distance : {20, 80}) {
        touch.press(0, {100, 100}).press(1, {100 + distance, 100}).commit();
        touch.release(0, {100, 100}).release(1, {100 + distance, 100}).commit();
    }
    EXPECT_TRUE(window.log.empty());
}

} // namespace
} // namespace raincast
