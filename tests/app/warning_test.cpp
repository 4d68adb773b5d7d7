// SPDX-License-Identifier: MIT
// Warnings with words in the whole viewer, worked as a person does.
#include "position/data_gps_position.h"
#include "support/dialog_script.h"
#include "support/gif_maker.h"
#include "support/pointer.h"
#include "viewer_harness.h"

#include <QAbstractButton>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QToolButton>

namespace raincast {
namespace {

using test::DialogScript;

/// A warning of the county round the radar of MUX.
QByteArray tornado(bool isSample, const char* id = "MTR.TO.W.0001") {
    return QByteArray(R"({"sample": )") + (isSample ? "true" : "false") +
           R"(, "warnings": [{"event": "Tornado Warning", "headline": "Take cover",
              "text": "A tornado was seen.", "end": "2019-05-19T06:33:00Z",
              "polygons": [[[[36.5, -122.5], [36.5, -121.5], [37.5, -121.5], [37.5, -122.5]]]],
              "id": ")" +
           id + R"("}]})";
}

class WarningTest : public test::ViewerHarness {
protected:
    WarningTest() {
        options.siteId = "MUX";
        server.serve("/ridge/Warnings/Short/MUX_Warnings_0.gif", test::columnGif(60));
        serve(tornado(false));
    }

    void serve(const QByteArray& texts) {
        server.serve("/ridge/Warnings/Short/MUX_Warnings_0.json", texts);
    }
    static void beAt(double latitude, double longitude) {
        CDataGPSPosition fix;
        fix.latitude = latitude;
        fix.longitude = longitude;
        fix.fixType = kFixGps;
        Listener<CDataGPSPosition>::Notify(fix);
    }
    static QWidget* bar(Viewer& viewer) {
        auto* const bar = viewer.window()->frame()->findChild<QWidget*>("warningBar");
        return bar != nullptr && bar->isVisible() ? bar : nullptr;
    }
    /// What the bar says once it is there; empty if it does not come.
    static QString said(Viewer& viewer) {
        static_cast<void>(QTest::qWaitFor([&] { return bar(viewer) != nullptr; }, 10'000));
        return bar(viewer) != nullptr
                   ? bar(viewer)->findChild<QAbstractButton*>("warningWords")->accessibleName()
                   : QString();
    }
    /// So many heartbeats that every item has had its turn.
    static void passBeats(Viewer& viewer) {
        for (int beat = 0; beat < 6; ++beat) {
            viewer.window()->onTimer(MainWindow::kHeartbeatTimer);
        }
        test::settle();
    }
};

TEST_F(WarningTest, TheBarIsReadAndDismissed) {
    run([](Viewer& viewer) {
        beAt(37, -122);
        EXPECT_EQ(said(viewer), "Tornado Warning for your position until 6:33");
        ASSERT_NE(bar(viewer), nullptr);
        EXPECT_EQ(bar(viewer)->width(), viewer.window()->client()->width());
        DialogScript script;
        script.expect("Warning", [](QDialog& dialog) {
            EXPECT_TRUE(
                dialog.findChild<QPlainTextEdit*>()->toPlainText().contains("A tornado was seen.")
            );
        });
        auto* const words = bar(viewer)->findChild<QAbstractButton*>("warningWords");
        test::click(*words, words->rect().center());
        choose(viewer, {"Menu", "Layout", "Layout mode"});
        EXPECT_EQ(bar(viewer), nullptr);
        choose(viewer, {"Menu", "Layout", "Layout mode"});
        EXPECT_NE(bar(viewer), nullptr);
        keyInWindow(viewer, Qt::Key_D);
        EXPECT_EQ(bar(viewer), nullptr);
        keyInWindow(viewer, Qt::Key_F5);
        finish(viewer);
        passBeats(viewer);
        EXPECT_EQ(bar(viewer), nullptr) << "it stays dismissed";
    });
}

TEST_F(WarningTest, TheMenuListsAndDismisses) {
    run([](Viewer& viewer) {
        beAt(37, -122);
        EXPECT_NE(said(viewer), "");
        DialogScript script;
        script.expect("Warnings", [](QDialog& dialog) {
            EXPECT_EQ(dialog.findChild<QListWidget*>()->item(0)->text(), "Tornado Warning");
        });
        choose(viewer, {"Menu", "Weather", "Warnings..."});
        choose(viewer, {"Menu", "Weather", "Dismiss Warning"});
        EXPECT_EQ(bar(viewer), nullptr);
    });
}

TEST_F(WarningTest, ItWarnsOnAPageWithoutRadarToo) {
    run([](Viewer& viewer) {
        beAt(37, -122);
        EXPECT_NE(said(viewer), "");
        viewer.application().append(std::make_unique<CPageDisplay>());
        viewer.application().select(1);
        EXPECT_NE(said(viewer), "");
        auto* const button = bar(viewer)->findChild<QToolButton*>("dismissWarning");
        test::click(*button, button->rect().center());
        EXPECT_EQ(bar(viewer), nullptr);
        viewer.application().select(0);
        passBeats(viewer);
        EXPECT_EQ(bar(viewer), nullptr);
    });
}

TEST_F(WarningTest, MadeUpWeatherWarnsNobody) {
    serve(tornado(true));
    run([](Viewer& viewer) {
        beAt(37, -122);
        passBeats(viewer);
        EXPECT_EQ(bar(viewer), nullptr);
        DialogScript script;
        script.expect("Warnings", [](QDialog& dialog) {
            EXPECT_NE(dialog.findChild<QListWidget*>(), nullptr) << "they are listed";
        });
        keyInWindow(viewer, Qt::Key_W);
    });
}

} // namespace
} // namespace raincast
