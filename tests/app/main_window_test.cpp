// SPDX-License-Identifier: MIT
#include "app/main_window.h"
#include "core/heartbeat.h"
#include "support/dialog_script.h"
#include "support/pointer.h"
#include "support/qt_app.h"
#include "window/commands.h"

#include <QAction>
#include <QApplication>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>
#include <QTest>
#include <QTimer>
#include <QToolBar>
#include <QToolButton>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace raincast {
namespace {

using testing::ElementsAre;

/// Stands in for the application: sees the commands before the main window does.
class Noting : public Window {
public:
    std::vector<int> commands;
    void onCommand(int id, QWidget* /*control*/, int /*notification*/) override {
        commands.push_back(id);
    }
};

class Counter : public CHeartbeat::Counter {
public:
    Counter() : CHeartbeat::Counter(1) {}
    int ticks = 0;
    void Tick() override { ++ticks; }
};

class MainWindowTest : public test::GuiTest {
protected:
    int endRequests = 0;
    std::vector<std::string> log;
    MainWindow window{MainWindow::Callbacks{
        [this] { ++endRequests; },
        [this] {
            log.push_back(window.pageMenu() != nullptr ? "destroyed, menu lives" : "no menu");
        },
    }};
    Noting application;

    MainWindowTest() {
        window.frame()->resize(400, 300);
        application.attach(*window.frame(), window.client());
        test::show(*window.frame());
        window.frame()->activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(window.frame()));
    }

    std::vector<QToolButton*> tools() const {
        std::vector<QToolButton*> found;
        const auto* bar = window.frame()->findChild<QToolBar*>();
        for (QAction* action : bar->actions()) {
            if (auto* button = qobject_cast<QToolButton*>(bar->widgetForAction(action))) {
                found.push_back(button);
            }
        }
        return found;
    }
};

TEST_F(MainWindowTest, ThreeToolButtonsWithSeparatorsSendTheirCommands) {
    const auto* bar = window.frame()->findChild<QToolBar*>();
    ASSERT_NE(bar, nullptr);
    std::vector<int> entries;
    for (const QAction* action : bar->actions()) {
        entries.push_back(action->isSeparator() ? 0 : commandOf(*action));
        EXPECT_TRUE(action->isEnabled());
        EXPECT_EQ(action->icon().isNull(), action->isSeparator());
    }
    EXPECT_THAT(entries, ElementsAre(40030, 0, 40031, 0, 40032));
    for (QToolButton* button : tools()) {
        EXPECT_TRUE(button->isVisible());
        test::click(*button, button->rect().center());
    }
    EXPECT_THAT(application.commands, ElementsAre(40030, 40031, 40032));
}

TEST_F(MainWindowTest, TheFirstMenuHoldsThePageCommandsAndTheProgramsOwn) {
    std::vector<int> entries;
    for (const QAction* action : window.pageMenu()->actions()) {
        entries.push_back(action->isSeparator() || action->menu() ? 0 : commandOf(*action));
    }
    EXPECT_THAT(
        entries, ElementsAre(
                     kPageEntriesPlace, 0, 40004, 40005, 40009, 0, kPageListPlace, 0, 0,
                     kFullScreen, 40912, 40029, 40010
                 )
    );
    EXPECT_NE(findCommand(*window.pageMenu(), kSettingsPlace), nullptr);
}

TEST_F(MainWindowTest, KeysAreCommands) {
    QTest::keyClick(window.frame(), Qt::Key_F5);
    QTest::keyClick(window.frame(), Qt::Key_F11);
    QTest::keyClick(window.frame(), Qt::Key_Q, Qt::ControlModifier);
    EXPECT_THAT(application.commands, ElementsAre(kUpdate, kFullScreen, kExit));
    EXPECT_EQ(endRequests, 1);
}

TEST_F(MainWindowTest, EveryMenuEntryIsReachedByKeys) {
    QTest::keyClick(window.frame(), Qt::Key_M, Qt::AltModifier);
    auto* const menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
    ASSERT_NE(menu, nullptr);
    QTest::keyClick(menu, Qt::Key_X);
    EXPECT_THAT(application.commands, ElementsAre(kExit));
}

TEST_F(MainWindowTest, F11FillsTheScreenAndGoesBack) {
    const QAction& entry = window.commands().action(kFullScreen);
    QTest::keyClick(window.frame(), Qt::Key_F11);
    test::settle();
    EXPECT_TRUE(window.frame()->isFullScreen());
    EXPECT_TRUE(entry.isChecked());
    QTest::keyClick(window.frame(), Qt::Key_F11);
    test::settle();
    EXPECT_FALSE(window.frame()->isFullScreen());
    EXPECT_FALSE(entry.isChecked());
    EXPECT_EQ(window.frame()->size(), QSize(400, 300));
}

TEST_F(MainWindowTest, ChoosingFullScreenInTheMenuIsTheSame) {
    window.commands().action(kFullScreen).trigger();
    test::settle();
    EXPECT_TRUE(window.frame()->isFullScreen());
    EXPECT_TRUE(window.commands().action(kFullScreen).isChecked());
}

TEST_F(MainWindowTest, AboutOpensTheBox) {
    test::DialogScript script;
    script.expect(QStringLiteral("Error")); // no resource module beside the tests
    bool shown = false;
    script.expect(QStringLiteral("About Raincast"), [&](QDialog& dialog) {
        shown = dialog.isVisible() && dialog.parentWidget() == window.frame();
    });
    window.commands().action(kAbout).trigger();
    EXPECT_TRUE(shown);
}

TEST_F(MainWindowTest, ClosingAsksForTheEndAndLeavesTheWindow) {
    window.frame()->close();
    EXPECT_EQ(endRequests, 1);
    EXPECT_TRUE(window.frame()->isVisible());
}

TEST_F(MainWindowTest, DestructionIsToldWhileTheMenuLivesAndOnlyOnce) {
    window.destroy();
    window.destroy();
    EXPECT_THAT(log, ElementsAre("destroyed, menu lives"));
    test::settle();
    EXPECT_EQ(window.frame(), nullptr);
    EXPECT_EQ(window.client(), nullptr);
    EXPECT_EQ(window.pageMenu(), nullptr);
}

TEST_F(MainWindowTest, TheTimerBeatsTheHeartbeat) {
    Counter counter;
    CHeartbeat::program().Beat(); // a test before this one may have left another time
    counter.ticks = 0;
    TimerEvent other(MainWindow::kHeartbeatTimer + 1);
    QCoreApplication::sendEvent(window.frame(), &other);
    EXPECT_EQ(counter.ticks, 0);
    TimerEvent due(MainWindow::kHeartbeatTimer);
    QCoreApplication::sendEvent(window.frame(), &due);
    EXPECT_EQ(counter.ticks, 1);
    EXPECT_TRUE(QTest::qWaitFor([&counter] { return counter.ticks >= 3; }));
}

TEST_F(MainWindowTest, TheTimersPeriodIsATenthOfASecond) {
    const auto* timer = window.frame()->findChild<QTimer*>("raincastTimer943");
    ASSERT_NE(timer, nullptr);
    EXPECT_EQ(timer->interval(), 100);
    EXPECT_TRUE(timer->isActive());
}

TEST_F(MainWindowTest, AMinimisedWindowComesToTheFront) {
    window.frame()->setWindowState(Qt::WindowMinimized);
    test::settle();
    window.bringToFront("token");
    EXPECT_FALSE(window.frame()->isMinimized());
    EXPECT_TRUE(QTest::qWaitForWindowActive(window.frame()));
    EXPECT_EQ(qgetenv("XDG_ACTIVATION_TOKEN"), "token");
    qunsetenv("XDG_ACTIVATION_TOKEN");
}

TEST_F(MainWindowTest, AnOpenDialogComesToTheFrontWithTheWindow) {
    QWidget other;
    test::DialogScript script;
    script.expect(QStringLiteral("Error"));
    script.expect(QStringLiteral("About Raincast"), [&](QDialog& dialog) {
        test::show(other);
        other.activateWindow();
        window.bringToFront({});
        EXPECT_TRUE(QTest::qWaitForWindowActive(&dialog));
    });
    window.commands().action(kAbout).trigger();
}

// On the smallest screen the menu and all buttons are there, and nothing is cut.
TEST_F(MainWindowTest, ItFitsTheSmallestScreen) {
    window.frame()->resize(240, 320);
    test::settle();
    EXPECT_EQ(window.frame()->size(), QSize(240, 320));
    const QRect whole = window.frame()->rect();
    for (QToolButton* button : tools()) {
        const QRect place(button->mapTo(window.frame(), QPoint()), button->size());
        EXPECT_TRUE(whole.contains(place));
        EXPECT_TRUE(button->isVisible());
    }
    const QMenuBar& bar = *window.frame()->menuBar();
    const QRect title = bar.actionGeometry(bar.actions().constFirst());
    EXPECT_GE(title.width(), bar.fontMetrics().horizontalAdvance("Menu"));
    EXPECT_TRUE(whole.contains(title));
    EXPECT_GT(window.client()->height(), 260);
    EXPECT_EQ(window.client()->width(), 240);
    window.pageMenu()->popup(window.frame()->mapToGlobal(QPoint()));
    EXPECT_LE(window.pageMenu()->width(), 240);
    window.pageMenu()->close();
}

} // namespace
} // namespace raincast
