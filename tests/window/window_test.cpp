// SPDX-License-Identifier: MIT
#include "core/busy_guard.h"
#include "support/pointer.h"
#include "support/qt_app.h"
#include "window/device_pixels.h"
#include "window/modal.h"
#include "window/window.h"
#include "window/window_map.h"

#include <QMouseEvent>
#include <QPainter>
#include <QPixmap>
#include <QTest>
#include <QWidget>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

namespace raincast {
namespace {

using test::settle;
using testing::ElementsAre;
using testing::IsEmpty;

using Log = std::vector<std::string>;

// A widget that notes the framework's events that reach it.
class PlainWidget : public QWidget {
public:
    explicit PlainWidget(Log& log, QWidget* parent = nullptr) : QWidget(parent), m_log(log) {}

protected:
    bool event(QEvent* event) override {
        if (event->type() == event_type::command) {
            m_log.push_back("widget command");
        } else if (event->type() == event_type::destroy) {
            m_log.push_back("widget destroy");
        }
        return QWidget::event(event);
    }

private:
    Log& m_log;
};

// A Window that notes each of its operations, with its own name in front.
class NotingWindow : public Window {
public:
    NotingWindow(std::string name, Log& log) : m_name(std::move(name)), m_log(log) {}

    bool consumes = false;
    QColor paintsWith;

    void onPaint(QPaintDevice& target, const QRegion& exposed) override {
        if (paintsWith.isValid()) {
            QPainter(&target).fillRect(exposed.boundingRect(), paintsWith);
        }
    }
    void onDestroy() override { note("destroy"); }
    void onCommand(int id, QWidget*, int notification) override {
        note("command " + std::to_string(id) + " " + std::to_string(notification));
    }
    void onLeftButton(bool doubleClick, std::int16_t x, std::int16_t y, Qt::KeyboardModifiers keys)
        override {
        note(
            (doubleClick ? "double " : "press ") + std::to_string(x) + "," + std::to_string(y) +
            (keys.testFlag(Qt::ShiftModifier) ? " shift" : "")
        );
    }
    void onTimer(int id) override { note("timer " + std::to_string(id)); }
    void onSize(int width, int height) override {
        note("size " + std::to_string(width) + "x" + std::to_string(height));
    }
    bool windowProcedure(QEvent& event) override {
        if (event.type() == QEvent::KeyPress) {
            note("key " + std::to_string(static_cast<QKeyEvent&>(event).key()));
        } else if (event.type() == event_type::character) {
            note("character " + std::to_string(static_cast<CharacterEvent&>(event).unit()));
        }
        return Window::windowProcedure(event) || consumes;
    }

protected:
    void note(const std::string& text) { m_log.push_back(m_name + " " + text); }

private:
    std::string m_name;
    Log& m_log;
};

std::string place(const QPoint& point) {
    return std::to_string(point.x()) + "," + std::to_string(point.y());
}

class WindowTest : public test::GuiTest {
protected:
    Log log;
    // Deleted by destroyWindow in most tests.
    QPointer<PlainWidget> widget = new PlainWidget(log);

    ~WindowTest() override { delete widget; }
};

TEST_F(WindowTest, EachEventBecomesTheCallThatItIsFor) {
    NotingWindow window("w", log);
    window.attach(*widget);
    sendCommand(*widget, 40009, nullptr, 7);
    TimerEvent timer(943);
    QCoreApplication::sendEvent(widget, &timer);
    SizeEvent size(30, 40);
    QCoreApplication::sendEvent(widget, &size);
    EXPECT_THAT(
        log, ElementsAre("w command 40009 7", "widget command", "w timer 943", "w size 30x40")
    );
}

TEST_F(WindowTest, TheLastAttachedIsAskedFirstAndTheWidgetLast) {
    NotingWindow mainWindow("main", log);
    NotingWindow application("application", log);
    mainWindow.attach(*widget);
    application.attach(*widget);
    sendCommand(*widget, 1);
    EXPECT_THAT(log, ElementsAre("application command 1 0", "main command 1 0", "widget command"));
}

TEST_F(WindowTest, AConsumedEventGoesNoFurther) {
    NotingWindow mainWindow("main", log);
    NotingWindow application("application", log);
    mainWindow.attach(*widget);
    application.attach(*widget);
    application.consumes = true;
    sendCommand(*widget, 1);
    EXPECT_THAT(log, ElementsAre("application command 1 0"));
}

TEST_F(WindowTest, AnObjectIsBoundToOneWidgetAtATime) {
    PlainWidget other(log);
    NotingWindow window("w", log);
    window.attach(*widget);
    window.attach(other);
    EXPECT_EQ(window.widget(), &other);
    sendCommand(*widget, 1);
    EXPECT_THAT(log, ElementsAre("widget command"));
}

TEST_F(WindowTest, DestructionIsHeardOutermostFirstWhileAllChildrenLive) {
    auto* child = new PlainWidget(log, widget);
    class Counting : public NotingWindow {
    public:
        using NotingWindow::NotingWindow;
        void onDestroy() override {
            const auto children = widget()->findChildren<QWidget*>().size();
            note("destroy with " + std::to_string(children));
        }
    };
    Counting outer("outer", log);
    Counting inner("inner", log);
    inner.attach(*child);
    outer.attach(*widget);
    Window::destroyWindow(*widget);
    EXPECT_THAT(
        log, ElementsAre(
                 "outer destroy with 1", "widget destroy", "inner destroy with 0", "widget destroy"
             )
    );
    settle();
    EXPECT_EQ(widget, nullptr);
}

TEST_F(WindowTest, AfterDestructionTheHandleIsNullAndNothingIsDestroyedAgain) {
    {
        NotingWindow window("w", log);
        window.attach(*widget);
        Window::destroyWindow(*widget);
        EXPECT_EQ(window.widget(), nullptr);
        Window::destroyWindow(*widget);
    }
    EXPECT_THAT(log, ElementsAre("w destroy", "widget destroy"));
}

TEST_F(WindowTest, TheDestructorDestroysAWindowThatStillExists) {
    { NotingWindow("w", log).attach(*widget); }
    // The object is past its own operations by then.
    EXPECT_THAT(log, ElementsAre("widget destroy"));
    settle();
    EXPECT_EQ(widget, nullptr);
}

TEST_F(WindowTest, AWidgetThatQtDeletesOnlyUnbindsItsObjects) {
    NotingWindow window("w", log);
    window.attach(*widget);
    delete widget;
    EXPECT_EQ(window.widget(), nullptr);
    EXPECT_THAT(log, IsEmpty());
}

TEST_F(WindowTest, DestroyingFromWithinACommandIsSafe) {
    class Exiting : public Window {
    public:
        void onCommand(int, QWidget*, int) override { destroyWindow(*widget()); }
    };
    Exiting exiting;
    NotingWindow below("below", log);
    below.attach(*widget);
    exiting.attach(*widget);
    sendCommand(*widget, 40010);
    // The object below was unbound before its turn came.
    EXPECT_THAT(log, ElementsAre("below destroy", "widget destroy", "widget command"));
}

TEST_F(WindowTest, ObjectsMayDieWhileAnEventIsUnderWay) {
    auto below = std::make_unique<NotingWindow>("below", log);
    class Deleting : public Window {
    public:
        explicit Deleting(std::unique_ptr<NotingWindow>& victim) : m_victim(victim) {}
        void onCommand(int, QWidget*, int) override { m_victim.reset(); }

    private:
        std::unique_ptr<NotingWindow>& m_victim;
    };
    Deleting deleting(below);
    below->attach(*widget);
    deleting.attach(*widget);
    sendCommand(*widget, 1);
    EXPECT_THAT(log, ElementsAre("widget destroy", "widget command"));
}

TEST_F(WindowTest, AnEventForAWindowWithoutAnyObjectIsFatal) {
    testing::FLAGS_gtest_death_test_style = "threadsafe";
    EXPECT_EXIT(
        {
            Modal::neverAsk(true);
            QEvent event(QEvent::Show);
            WindowMap::instance().dispatch(*widget, event);
        },
        testing::ExitedWithCode(1), "Window not found in Window::wndProc\n"
    );
}

TEST_F(WindowTest, PaintIsCalledWithSomethingToPaintOn) {
    NotingWindow window("w", log);
    window.paintsWith = QColor(200, 0, 0);
    window.attach(*widget);
    widget->resize(20, 10);
    EXPECT_EQ(widget->grab().toImage().pixelColor(10, 5), QColor(200, 0, 0));
}

TEST_F(WindowTest, ThePointersPlaceIsGivenInTheWidgetsOwnPixels) {
    auto* child = new QWidget(widget);
    widget->resize(300, 200);
    child->setGeometry(100, 50, 150, 100);
    NotingWindow window("w", log);
    window.attach(*child);
    test::show(*widget);
    log.clear();
    test::press(*child, {7, 9}, Qt::ShiftModifier);
    test::release(*child, {7, 9});
    // Above the widget's own device edge: neither Qt's rounded place nor the window's.
    const QPoint expected = toDevicePixels(*child, QPointF(107, 59));
    EXPECT_THAT(log, ElementsAre("w press " + place(expected) + " shift"));
}

TEST_F(WindowTest, OnlyTheLeftButtonCounts) {
    NotingWindow window("w", log);
    window.attach(*widget);
    test::show(*widget);
    log.clear();
    QTest::mouseClick(widget->windowHandle(), Qt::RightButton, {}, {5, 5});
    EXPECT_THAT(log, IsEmpty());
}

TEST_F(WindowTest, PlacesBeyond16BitsAreClamped) {
    NotingWindow window("w", log);
    window.attach(*widget);
    const QPointF far(40000, -40000);
    QMouseEvent event(
        QEvent::MouseButtonPress, far, far, far, Qt::LeftButton, Qt::LeftButton, Qt::NoModifier
    );
    QCoreApplication::sendEvent(widget, &event);
    EXPECT_THAT(log, ElementsAre("w press 32767,-32768"));
}

TEST_F(WindowTest, ASecondFastPressIsADoubleClick) {
    NotingWindow window("w", log);
    window.attach(*widget);
    test::show(*widget);
    log.clear();
    test::doubleClick(*widget, {5, 6});
    const std::string at = place(toDevicePixels(*widget, QPointF(5, 6)));
    EXPECT_THAT(log, ElementsAre("w press " + at, "w double " + at));
}

TEST_F(WindowTest, AKeyPressIsAKeyDownAndThenACharacterForEachUnit) {
    NotingWindow window("w", log);
    window.attach(*widget);
    QTest::keyClick(widget, Qt::Key_A);
    const QString outsideThePlane = QString::fromUcs4(U"\U0001F327");
    QKeyEvent rain(QEvent::KeyPress, Qt::Key_unknown, Qt::NoModifier, outsideThePlane);
    QCoreApplication::sendEvent(widget, &rain);
    EXPECT_THAT(
        log, ElementsAre(
                 "w key 65", "w character 97", "w key " + std::to_string(Qt::Key_unknown),
                 "w character 55356", "w character 57127"
             )
    );
}

TEST_F(WindowTest, AKeyWithoutTextIsAKeyDownOnly) {
    NotingWindow window("w", log);
    window.attach(*widget);
    QTest::keyClick(widget, Qt::Key_PageDown);
    EXPECT_THAT(log, ElementsAre("w key " + std::to_string(Qt::Key_PageDown)));
}

TEST_F(WindowTest, AResizedWidgetTellsItsSize) {
    NotingWindow window("w", log);
    window.attach(*widget);
    widget->resize(100, 80);
    test::show(*widget);
    EXPECT_THAT(log, testing::Contains("w size 100x80"));
    log.clear();
    widget->resize(120, 90);
    EXPECT_THAT(log, ElementsAre("w size 120x90"));
}

TEST_F(WindowTest, AWindowWithAClientAreaTellsOnlyThatOnesSize) {
    auto* client = new QWidget(widget);
    NotingWindow window("w", log);
    window.attach(*widget, client);
    test::show(*widget);
    log.clear();
    widget->resize(300, 200);
    client->resize(280, 150);
    EXPECT_THAT(log, ElementsAre("w size 280x150"));
}

TEST_F(WindowTest, AnObjectThatNamesNoClientAreaLeavesTheOneThatIsNamed) {
    auto* client = new QWidget(widget);
    NotingWindow mainWindow("main", log);
    NotingWindow application("application", log);
    mainWindow.attach(*widget, client);
    application.attach(*widget);
    test::show(*widget);
    log.clear();
    client->resize(280, 150);
    EXPECT_THAT(log, ElementsAre("application size 280x150", "main size 280x150"));
}

TEST_F(WindowTest, ATimerFiresUntilItIsStoppedOrTheWindowDestroyed) {
    NotingWindow window("w", log);
    window.attach(*widget);
    window.startTimer(943, 0);
    settle();
    EXPECT_THAT(log, testing::Contains("w timer 943"));
    window.stopTimer(943);
    log.clear();
    settle();
    EXPECT_THAT(log, IsEmpty());

    window.startTimer(943, 0);
    Window::destroyWindow(*widget);
    log.clear();
    QCoreApplication::processEvents();
    EXPECT_THAT(log, IsEmpty());
}

TEST_F(WindowTest, TimersWaitWhileATransferDoes) {
    NotingWindow window("w", log);
    window.attach(*widget);
    window.startTimer(943, 0);
    {
        const BusyGuard busy;
        settle();
        EXPECT_THAT(log, IsEmpty());
    }
    settle();
    EXPECT_THAT(log, testing::Contains("w timer 943"));
}

} // namespace
} // namespace raincast
