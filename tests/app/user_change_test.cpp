// SPDX-License-Identifier: MIT
// What starts a save, and what does not: each thing that the user can change, changed as they do.
#include "app/viewer_harness.h"
#include "core/user_change.h"
#include "map/mark_manager.h"
#include "map/overlay_mark.h"
#include "position/data_gps_position.h"
#include "position/source/position_source_setting.h"
#include "support/dialog_script.h"
#include "support/pointer.h"
#include "weather/dialog_controls.h"

#include <QComboBox>
#include <QListWidget>

namespace raincast {
namespace {

using test::DialogScript;

class Counting : private Listener<UserChange> {
public:
    int count = 0;

private:
    void onPublished(UserChange& /*change*/) override { ++count; }
};

class UserChangeTest : public test::ViewerHarness {
protected:
    UserChangeTest() { options.siteId = "MUX"; }

    /// How many changes are announced while something is done.
    static int changes(const std::function<void()>& action) {
        const Counting counting;
        action();
        return counting.count;
    }
    /// A dialog opens from the menu, in which something is done.
    int changesInDialog(
        Viewer& viewer, const QStringList& way, const QString& caption, DialogScript::Step step
    ) {
        script.expect(caption, std::move(step));
        return changes([&] { choose(viewer, way); });
    }
    static void drag(Viewer& viewer, QPoint from, QPoint by) {
        QWidget& client = *viewer.window()->client();
        test::press(client, from);
        test::moveTo(client, from + by);
        test::release(client, from + by);
    }
    static QPoint middle(Viewer& viewer) { return viewer.window()->client()->rect().center(); }
    static void publishFix(double latitude, double longitude) {
        CDataGPSPosition fix;
        fix.latitude = latitude;
        fix.longitude = longitude;
        fix.fixType = kFixGps;
        Listener<CDataGPSPosition>::Notify(fix);
    }

    DialogScript script;
};

TEST_F(UserChangeTest, TheView) {
    run([](Viewer& viewer) {
        publishFix(37.155, -121.898);
        EXPECT_GT(changes([&] { keyInWindow(viewer, Qt::Key_Left); }), 0);
        EXPECT_GT(changes([&] { drag(viewer, middle(viewer), {20, 0}); }), 0);
        EXPECT_GT(changes([&] { keyInWindow(viewer, Qt::Key_Plus); }), 0);
        EXPECT_GT(changes([&] { choose(viewer, {"Menu", "Map", "Follow Position"}); }), 0);
        ASSERT_TRUE(itemOf(viewer).following());
        EXPECT_GT(changes([&] { choose(viewer, {"Menu", "Map", "Follow Position"}); }), 0);
        EXPECT_GT(changes([&] { choose(viewer, {"Menu", "Map", "Show Position"}); }), 0);
        EXPECT_GT(changes([&] { choose(viewer, {"Menu", "Map", "Show Navigation"}); }), 0);
    });
}

TEST_F(UserChangeTest, TheWindowsPlace) {
    run([](Viewer& viewer) {
        test::settle();
        EXPECT_EQ(changes([] { test::settle(); }), 0);
        EXPECT_GT(
            changes([&] {
                viewer.window()->frame()->resize(500, 400);
                test::settle();
            }),
            0
        );
        EXPECT_GT(changes([&] { keyInWindow(viewer, Qt::Key_F11); }), 0);
    });
}

TEST_F(UserChangeTest, GoingToAPosition) {
    run([this](Viewer& viewer) {
        EXPECT_GT(
            changesInDialog(
                viewer, {"Menu", "Map", "Go to Position..."}, "Go to Position",
                [](QDialog& dialog) {
                    test::type(dialog, 0, "37.2 -121.9");
                    QTest::keyClick(&dialog, Qt::Key_Return);
                }
            ),
            0
        );
    });
}

TEST_F(UserChangeTest, NothingThatTheProgramDoesByItself) {
    const int ofTheHarness = changes([] { forgetRun(); });
    const Counting fromTheStart;
    run([&](Viewer& viewer) {
        test::settle();
        EXPECT_EQ(fromTheStart.count, ofTheHarness) << "the start";
        itemOf(viewer).follow();
        ASSERT_TRUE(itemOf(viewer).following());
        EXPECT_EQ(changes([] { publishFix(37.155, -121.898); }), 0) << "following";
        EXPECT_TRUE(itemOf(viewer).following());
        EXPECT_EQ(
            changes([&] {
                for (int tick = 0; tick < 20; ++tick) {
                    itemOf(viewer).Tick(); // the loop
                }
            }),
            0
        );
        test::publishFrames(server, {"20190519_0604"}, "MUX");
        const auto frames = itemOf(viewer).state().frames.size();
        EXPECT_EQ(changes([&] { keyInWindow(viewer, Qt::Key_F5); }), 0) << frames;
        EXPECT_EQ(changes([&] { choose(viewer, {"Menu", "Layout", "Layout mode"}); }), 0);
        EXPECT_EQ(changes([&] { keyInWindow(viewer, Qt::Key_PageDown); }), 0);
    });
}

TEST_F(UserChangeTest, Marks) {
    run([this](Viewer& viewer) {
        const QStringList add{"Menu", "Map", "Marks", "Add Mark..."};
        const auto accept = [](QDialog& dialog) { QTest::keyClick(&dialog, Qt::Key_Return); };
        EXPECT_GT(changesInDialog(viewer, add, "Add Mark", accept), 0);
        const QStringList marks{"Menu", "Map", "Marks", "Marks..."};
        for (const char* button : {"Set as Target", "Clear Target"}) {
            EXPECT_GT(
                changesInDialog(
                    viewer, marks, "Marks", [&](QDialog& dialog) { test::press(dialog, button); }
                ),
                0
            ) << button;
            viewer.application().marks().setTarget(viewer.application().marks().marks().front());
        }
        EXPECT_GT(
            changesInDialog(
                viewer, marks, "Marks",
                [&](QDialog& dialog) {
                    script.expect("Rename", accept);
                    test::press(dialog, "Rename");
                }
            ),
            0
        );
        EXPECT_GT(
            changesInDialog(
                viewer, marks, "Marks", [&](QDialog& dialog) { test::press(dialog, "Delete"); }
            ),
            0
        );
    });
}

TEST_F(UserChangeTest, TheRadarsDialogs) {
    run([this](Viewer& viewer) {
        const auto ok = [](QDialog& dialog) { test::press(dialog, "OK"); };
        EXPECT_GT(changesInDialog(viewer, {"Menu", "Weather", "Animation"}, "Animation", ok), 0);
        EXPECT_GT(changesInDialog(viewer, {"Menu", "Weather", "Layers"}, "Radar Layers", ok), 0);
        EXPECT_GT(
            changesInDialog(
                viewer, {"Menu", "Weather", "All Stations"}, "Weather Station",
                [](QDialog& dialog) { QTest::keyClick(&dialog, Qt::Key_Return); }
            ),
            0
        );
        QDir().mkpath(home.path("cards/card"));
        EXPECT_GT(
            changesInDialog(
                viewer, {"Menu", "Weather", "Storage"}, "Radar Image Storage",
                [](QDialog& dialog) {
                    auto& places = *dialog.findChild<QComboBox*>();
                    ASSERT_EQ(places.count(), 2);
                    places.setCurrentIndex(1);
                    test::press(dialog, "OK");
                }
            ),
            0
        );
        EXPECT_EQ(
            changesInDialog(viewer, {"Menu", "Weather", "Storage"}, "Radar Image Storage", {}), 0
        );
    });
}

TEST_F(UserChangeTest, Settings) {
    run([this](Viewer& viewer) {
        const auto ok = [](QDialog& dialog) { test::press(dialog, "OK"); };
        for (const char* caption : {"Units", "GPS Vector", "Servers"}) {
            EXPECT_GT(
                changesInDialog(
                    viewer, {"Menu", "Settings", QString(caption) + "..."}, caption, ok
                ),
                0
            ) << caption;
        }
        const auto useFile = [&](QDialog& dialog) {
            QTest::keyClick(dialog.findChild<QComboBox*>(), Qt::Key_End);
            test::type(dialog, 0, home.path("trip.nmea"));
            test::press(dialog, "OK");
        };
        const QStringList source{"Menu", "Settings", "GPS Source..."};
        EXPECT_GT(changesInDialog(viewer, source, "GPS Source", useFile), 0);
        PositionSourceSetting::choose({});
    });
}

TEST_F(UserChangeTest, Pages) {
    run([this](Viewer& viewer) {
        const auto press = [](const char* button) {
            return [button](QDialog& dialog) { test::press(dialog, button); };
        };
        const QStringList pages{"Menu", "Pages..."};
        EXPECT_GT(
            changesInDialog(
                viewer, pages, "Pages",
                [&](QDialog& dialog) {
                    script.expect("Select Page Type", [](QDialog& types) {
                        QTest::keyClicks(types.findChild<QListWidget*>(), "Blank");
                        QTest::keyClick(&types, Qt::Key_Return);
                    });
                    test::press(dialog, "Add...");
                }
            ),
            0
        );
        EXPECT_GT(changesInDialog(viewer, pages, "Pages", press("Up")), 0);
        EXPECT_GT(changesInDialog(viewer, pages, "Pages", press("Down")), 0);
        EXPECT_GT(changesInDialog(viewer, pages, "Pages", press("Enable")), 0);
        EXPECT_GT(
            changesInDialog(
                viewer, pages, "Pages",
                [&](QDialog& dialog) {
                    script.expect("Rename", [](QDialog& rename) {
                        QTest::keyClick(&rename, Qt::Key_Return);
                    });
                    test::press(dialog, "Rename");
                }
            ),
            0
        );
        EXPECT_EQ(changesInDialog(viewer, pages, "Pages", press("Show")), 0);
        EXPECT_GT(changesInDialog(viewer, pages, "Pages", press("Delete")), 0);
        const Counting counting;
        script.expect("Pages", press("Restore default"));
        script.expect("Weather Station");
        choose(viewer, pages);
        EXPECT_GT(counting.count, 0);
    });
}

TEST_F(UserChangeTest, TheLayoutOfAPage) {
    run([this](Viewer& viewer) {
        EXPECT_GT(
            changesInDialog(
                viewer, {"Menu", "Layout", "Add item..."}, "Select Display Item",
                [](QDialog& dialog) {
                    QTest::keyClicks(dialog.findChild<QListWidget*>(), "Decoration");
                    QTest::keyClick(&dialog, Qt::Key_Return);
                }
            ),
            0
        );
        auto& page = dynamic_cast<CPageDisplay&>(*viewer.application().current());
        ASSERT_EQ(page.items().size(), 2U);
        page.items()[1]->setRectangle({50, 50, 150, 150});
        EXPECT_GT(changes([&] { drag(viewer, {80, 80}, {20, 0}); }), 0) << "moving";
        EXPECT_GT(changes([&] { drag(viewer, {168, 148}, {20, 0}); }), 0) << "resizing";
        EXPECT_GT(changes([&] { choose(viewer, {"Menu", "Layout", "Bring to front"}); }), 0);
        EXPECT_GT(changes([&] { choose(viewer, {"Menu", "Layout", "Delete item"}); }), 0);
    });
}

} // namespace
} // namespace raincast
