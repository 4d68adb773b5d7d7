// SPDX-License-Identifier: MIT
// The user stops an update that does not end: with the button in the place of "Update", or Esc.
#include "app/viewer_harness.h"
#include "net/http_settings.h"
#include "support/dialog_script.h"
#include "support/fault_server.h"
#include "support/pointer.h"

#include <QToolBar>

#include <chrono>

namespace raincast {
namespace {

class StopTest : public test::ViewerHarness {
protected:
    StopTest() {
        options.siteId = "MUX";
        httpLimits().stallTime = std::chrono::minutes(1);
    }
    static const QToolBar& toolsOf(Viewer& viewer) {
        return dynamic_cast<const QToolBar&>(*viewer.window()->frame()->menuBar()->cornerWidget());
    }
    /// The tool bar's button with this text; null while it shows another in that place.
    static QWidget* toolOf(Viewer& viewer, const QString& text) {
        for (QAction* action : toolsOf(viewer).actions()) {
            auto* const button = toolsOf(viewer).widgetForAction(action);
            if (action->text().remove(u'&') == text && button != nullptr && button->isVisible()) {
                return button;
            }
        }
        return nullptr;
    }
    /// Begins an update that never ends and waits until it can be stopped.
    void beginEndlessUpdate(Viewer& viewer) {
        ServersSetting::set({m_silent.host(), m_silent.host()});
        // The first load may have taken long enough to be stopped.
        ASSERT_TRUE(QTest::qWaitFor([&] { return toolOf(viewer, "Update") != nullptr; }));
        QWidget* const update = toolOf(viewer, "Update");
        ASSERT_NE(update, nullptr);
        test::click(*update, update->rect().center());
        EXPECT_TRUE(viewer.application().loading());
        ASSERT_TRUE(QTest::qWaitFor([&] { return toolOf(viewer, "Stop") != nullptr; }));
        EXPECT_EQ(toolOf(viewer, "Update"), nullptr) << "one stands in the other's place";
    }
    void expectStopped(Viewer& viewer) {
        EXPECT_FALSE(viewer.application().loading());
        EXPECT_TRUE(QTest::qWaitFor([this] { return m_silent.openConnections() == 0; }));
        EXPECT_EQ(itemOf(viewer).state().current.timeText, "5:54") << "the picture stays";
        ASSERT_TRUE(QTest::qWaitFor([&] { return toolOf(viewer, "Update") != nullptr; }));
        EXPECT_EQ(toolOf(viewer, "Stop"), nullptr);
    }

    FaultServer m_silent{answers::silence()};
};

TEST_F(StopTest, TheButtonStopsAnUpdateAndBecomesUpdateAgain) {
    run([this](Viewer& viewer) {
        beginEndlessUpdate(viewer);
        QWidget* const stop = toolOf(viewer, "Stop");
        ASSERT_NE(stop, nullptr);
        test::click(*stop, stop->rect().center());
        expectStopped(viewer);
        ServersSetting::set({server.host(), server.host()});
        keyInWindow(viewer, Qt::Key_F5);
        finish(viewer);
        EXPECT_EQ(viewer.application().problem(), QString());
    });
}

TEST_F(StopTest, EscStopsAnUpdate) {
    run([this](Viewer& viewer) {
        beginEndlessUpdate(viewer);
        keyInWindow(viewer, Qt::Key_Escape);
        expectStopped(viewer);
        keyInWindow(viewer, Qt::Key_Escape); // nothing runs
        EXPECT_FALSE(viewer.application().loading());
    });
}

TEST_F(StopTest, MeanwhileTheUserPansZoomsAndUsesMenusAndDialogs) {
    run([this](Viewer& viewer) {
        beginEndlessUpdate(viewer);
        CItemWeather& item = itemOf(viewer);
        const ViewTransform before = item.view();
        keyInWindow(viewer, Qt::Key_Left);
        EXPECT_NE(item.view(), before);
        keyInWindow(viewer, Qt::Key_Plus);
        EXPECT_NE(item.view().zoom(), before.zoom());
        test::DialogScript script;
        script.expect("Units");
        choose(viewer, {"Menu", "Settings", "Units..."});
        EXPECT_TRUE(viewer.application().loading());
        EXPECT_EQ(m_silent.requests().size(), 1U);
    });
}

} // namespace
} // namespace raincast
