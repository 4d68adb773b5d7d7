// SPDX-License-Identifier: MIT
// Ways through the program, from its start to its end, with the events that a person causes.
#include "app/viewer_harness.h"
#include "support/dialog_script.h"
#include "weather/dialog_controls.h"

#include <QComboBox>

namespace raincast {
namespace {

using test::DialogScript;
using test::Hand;
using ::testing::HasSubstr;

class WalkTest : public test::ViewerHarness {
protected:
    WalkTest() { test::publishFrames(server, {"20190519_0545", "20190519_0555"}, "MUX", "N0V"); }

    /// Chooses a site by typing a part of its name.
    static void chooseSite(const QString& name) {
        typeText(name);
        typeKey(Qt::Key_Return);
    }
    static void animate(QDialog& dialog, int frames, bool autoUpdate) {
        test::check(dialog, "Enable Animation", true);
        test::type(dialog, 0, QString::number(frames));
        test::check(dialog, "Auto-Update ", autoUpdate);
        test::press(dialog, "OK");
    }
    static std::string newest(const CItemWeather& item) {
        const auto& frames = item.state().frames;
        return frames.empty() ? std::string()
                              : QFileInfo(frames.back().path).fileName().toStdString();
    }
};

TEST_F(WalkTest, ANewcomerFindsTheRadarAndFindsItAgain) {
    QImage left;
    DialogScript script;
    script.expect("Weather Station", [](QDialog& /*dialog*/) { chooseSite("San Fr"); });
    EXPECT_EQ(
        run([&](Viewer& viewer) {
            CItemWeather& item = itemOf(viewer);
            EXPECT_EQ(newest(item), "MUX_20190519_0554_N0R.gif");
            EXPECT_EQ(colourAt(viewer, {202, 275}), 0xFFFF0000);  // an echo
            EXPECT_EQ(qGreen(colourAt(viewer, {210, 275})), 120); // the ground

            script.expect("Radar Layers", [](QDialog& dialog) {
                auto* products = dialog.findChild<QComboBox*>();
                products->setFocus();
                typeText("Velo");
                test::press(dialog, "OK");
            });
            choose(viewer, {"Menu", "Weather", "Layers"});
            finish(viewer);
            EXPECT_EQ(newest(item), "MUX_20190519_0555_N0V.gif");
            EXPECT_EQ(colourAt(viewer, {201, 275}), 0xFFFF0000);

            script.expect("Animation", [](QDialog& dialog) { animate(dialog, 2, false); });
            choose(viewer, {"Menu", "Weather", "Animation"});
            finish(viewer);
            ASSERT_EQ(item.state().frames.size(), 2U);
            // It moves by itself.
            const QString oldest = item.state().frames[0].path;
            EXPECT_TRUE(QTest::qWaitFor([&] { return item.state().current.path == oldest; }));
            EXPECT_EQ(colourAt(viewer, {200, 275}), 0xFFFF0000);
            for (int i = 0; i < 3; ++i) { // the loop's bar follows a painting
                test::settle();
            }
            left = pageOf(viewer);
            choose(viewer, {"Menu", "Exit"});
        }),
        0
    );

    const int requests = server.count();
    EXPECT_EQ(
        run([&](Viewer& viewer) {
            EXPECT_EQ(viewer.application().pages().size(), 1U);
            EXPECT_EQ(viewer.application().current()->name(), "Weather");
            EXPECT_TRUE(QTest::qWaitFor([&] { return pageOf(viewer) == left; }));
            EXPECT_EQ(server.count(), requests);
            choose(viewer, {"Menu", "Exit"});
        }),
        0
    );
    EXPECT_EQ(server.count(), requests);
}

TEST_F(WalkTest, AHiddenPageUpdatesItselfAndKeepsItsSiteAndItsFrames) {
    test::publishLayers(server, "LWX");
    test::publishFrames(server, {"20190519_0543", "20190519_0553"}, "LWX");
    DialogScript script;
    script.expect("Weather Station", [](QDialog& /*dialog*/) { chooseSite("San Fr"); });
    EXPECT_EQ(
        run([&](Viewer& viewer) {
            script.expect("Animation", [](QDialog& dialog) { animate(dialog, 2, true); });
            choose(viewer, {"Menu", "Weather", "Animation"});
            finish(viewer);

            script.expect("Pages", [](QDialog& dialog) { test::press(dialog, "Add..."); });
            script.expect("Select Page Type", [](QDialog& /*dialog*/) { chooseSite("Weather"); });
            script.expect("Weather Station", [](QDialog& /*dialog*/) { chooseSite("Sterling"); });
            choose(viewer, {"Menu", "Pages..."});
            finish(viewer);
            ASSERT_EQ(viewer.application().pages().size(), 2U);
            script.expect("Animation", [](QDialog& dialog) { animate(dialog, 2, true); });
            choose(viewer, {"Menu", "Weather", "Animation"});
            finish(viewer);

            CItemWeather& hidden = itemOf(viewer, 0);
            CItemWeather& shown = itemOf(viewer, 1);
            EXPECT_EQ(newest(shown), "LWX_20190519_0553_N0R.gif");
            test::publishFrames(server, {"20190519_0554", "20190519_0604"}, "MUX");
            test::publishFrames(server, {"20190519_0553", "20190519_0603"}, "LWX");
            clock.set(fromCalendar({2019, 5, 19, 6, 5}));
            EXPECT_TRUE(QTest::qWaitFor([&] {
                return newest(hidden) == "MUX_20190519_0604_N0R.gif" &&
                       newest(shown) == "LWX_20190519_0603_N0R.gif";
            })) << newest(hidden)
                << newest(shown);
            EXPECT_EQ(hidden.state().siteId, "MUX");
            EXPECT_EQ(shown.state().siteId, "LWX");

            const int requests = server.count();
            keyInWindow(viewer, Qt::Key_PageUp);
            EXPECT_EQ(viewer.application().current(), viewer.application().pages()[0].get());
            ASSERT_EQ(hidden.state().frames.size(), 2U);
            EXPECT_TRUE(hidden.state().frames[0].bitmap);
            EXPECT_TRUE(QTest::qWaitFor([&] {
                return viewer.window()->frame()->windowTitle().startsWith("MUX");
            }));
            EXPECT_EQ(hidden.statusText(), QString());
            EXPECT_EQ(server.count(), requests);
            choose(viewer, {"Menu", "Exit"});
        }),
        0
    );
}

// The new item's entries join the menu whose entry was chosen, and its dialog opens meanwhile.
TEST_F(WalkTest, ARadarIsPutOnAPageThatHadNone) {
    for (const Hand hand : {Hand::keys, Hand::mouse}) {
        QDir(home.programFolder()).removeRecursively();
        DialogScript script;
        script.expect("Weather Station");
        EXPECT_EQ(
            run([&](Viewer& viewer) {
                QMenuBar& bar = *viewer.window()->frame()->menuBar();
                script.expect("Pages", [](QDialog& dialog) { test::press(dialog, "Add..."); });
                script.expect("Select Page Type", [](QDialog& /*dialog*/) { chooseSite("Blank"); });
                test::chooseInMenu(bar, {"Menu", "Pages..."}, hand);
                ASSERT_EQ(viewer.application().pages().size(), 2U);

                script.expect("Select Display Item", [](QDialog& /*dialog*/) {
                    chooseSite("Radar");
                });
                script.expect("Weather Station", [](QDialog& /*dialog*/) {
                    test::settle(); // long enough for all that waits for a turn of the event loop
                    chooseSite("San Fr");
                });
                test::chooseInMenu(bar, {"Menu", "Layout", "Add item..."}, hand);
                finish(viewer);
                EXPECT_EQ(newest(itemOf(viewer, 1)), "MUX_20190519_0554_N0R.gif");
                script.expect("Radar Layers");
                test::chooseInMenu(bar, {"Menu", "Weather", "Layers"}, hand);
                choose(viewer, {"Menu", "Exit"});
            }),
            0
        );
    }
}

TEST_F(WalkTest, WhoCancelsTheListOfSitesIsToldHowToGoOn) {
    DialogScript script;
    script.expect("Weather Station", [](QDialog& /*dialog*/) { typeKey(Qt::Key_Escape); });
    EXPECT_EQ(
        run([&](Viewer& viewer) {
            EXPECT_EQ(server.count(), 0);
            script.expect("Weather Station", [](QDialog& /*dialog*/) { chooseSite("San Fr"); });
            choose(viewer, {"Menu", "Weather", "All Stations"});
            finish(viewer);
            EXPECT_EQ(newest(itemOf(viewer)), "MUX_20190519_0554_N0R.gif");
            script.expect("Weather Station");
            choose(viewer, {"Menu", "Weather", "Nearby Stations"});
            choose(viewer, {"Menu", "Exit"});
        }),
        0
    );
}

} // namespace
} // namespace raincast
