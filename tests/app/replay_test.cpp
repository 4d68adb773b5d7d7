// SPDX-License-Identifier: MIT
// A storm of the past in the whole viewer, from its own server, whose providers are stand-ins.
#include "core/replay_clock.h"
#include "core/utc_date_time.h"
#include "live_sim/live_sim.h"
#include "support/dialog_script.h"
#include "support/level3_maker.h"
#include "support/loopback.h"
#include "viewer_harness.h"
#include "window/commands.h"

#include <QComboBox>
#include <QDir>
#include <QLineEdit>
#include <QThreadPool>

#include <gmock/gmock.h>

namespace raincast {
namespace {

constexpr int kDeadline = 60'000; // milliseconds

const FileTime kBegin = fromCalendar({2021, 12, 11, 3, 0});

class ReplayTest : public test::ViewerHarness {
protected:
    ReplayTest() {
        keepLoopbackFromProxies();
        Clock::use(nullptr); // the server has the system's
        for (int minute = -15; minute <= 60; minute += 5) {
            put(kBegin + minute * kFileTimePerMinute);
        }
        options.welcomeSiteId = "MUX";
        options.serverProgram = QStringLiteral(RAINCAST_SERVER_PROGRAM);
        options.liveArguments = QStringList{"--live-frames", sim.bucket.url(),   "--live-fallback",
                                            "none",          "--live-warnings",  sim.alerts.url(),
                                            "--cache",       home.path("server")};
    }

    void put(FileTime time) {
        const QByteArray key =
            utcDateTime(time).toString(QStringLiteral("'PAH_N0B_'yyyy_MM_dd_HH_mm_ss")).toLatin1();
        sim.bucket.put(
            key.toStdString(),
            QByteArray::fromStdString(makeLevel3(digitalReflectivity("PAH", time))), time
        );
    }
    static bool comes(const std::function<bool()>& condition) {
        return QTest::qWaitFor(condition, kDeadline);
    }
    [[nodiscard]] static QString branchOf(Viewer& viewer) {
        return itemOf(viewer).state().cacheFolder + "/.replay-2021-12-11T0300Z";
    }

    LiveSim sim;
};

TEST_F(ReplayTest, RunsFromTheDialogUntilItIsLeft) {
    run([&](Viewer& viewer) {
        test::DialogScript script;
        script.expect("Servers", [](QDialog& dialog) {
            auto* const sources = dialog.findChild<QComboBox*>();
            sources->setFocus();
            QTest::keyClick(sources, Qt::Key_Home);
            QTest::keyClick(sources, Qt::Key_Down);
            QTest::keyClick(sources, Qt::Key_Down);
            EXPECT_EQ(sources->currentText(), "A past storm...");
            QTest::keyClick(&dialog, Qt::Key_Return);
        });
        script.expect("Past Storm", [](QDialog& dialog) {
            auto* const storms = dialog.findChild<QComboBox*>();
            storms->setFocus();
            QTest::keyClick(storms, Qt::Key_Home);
            QTest::keyClick(storms, Qt::Key_Down);
            QTest::keyClick(storms, Qt::Key_Down); // PAH
            const auto fields = dialog.findChildren<QLineEdit*>();
            fields[2]->selectAll();
            QTest::keyClicks(fields[2], "60");
            QTest::keyClick(&dialog, Qt::Key_Return);
        });
        choose(viewer, {"Menu", "Settings", "Servers..."});
        EXPECT_EQ(ServersSetting::source(), WeatherSource::past);

        // The picture is of the replayed now, and there are newer ones soon.
        ASSERT_TRUE(comes([&] { return !itemOf(viewer).state().current.timeText.isEmpty(); }))
            << (itemOf(viewer).state().status + itemOf(viewer).state().cause).toStdString();
        const RadarState& state = itemOf(viewer).state();
        EXPECT_EQ(state.siteId, "PAH");
        const QString first = state.frames.back().path;
        EXPECT_TRUE(first.startsWith(branchOf(viewer) + "/PAH/PAH_20211211_0"))
            << first.toStdString();
        EXPECT_LT(Clock::current().now(), kBegin + 24 * 60 * kFileTimePerMinute);
        EXPECT_GE(Clock::current().now(), kBegin);
        EXPECT_TRUE(comes([&] {
            if (!viewer.application().loading() && state.frames.back().path <= first) {
                itemOf(viewer).command(kUpdate, 0);
            }
            return !state.frames.empty() && state.frames.back().path > first;
        }));
        EXPECT_TRUE(comes([&] {
            return viewer.window()->frame()->windowTitle().contains("Replay of 2021-12-11 0");
        })) << viewer.window()->frame()->windowTitle().toStdString();
        EXPECT_TRUE(viewer.window()->frame()->windowTitle().contains(" UTC, 60 times as fast"));

        const QString branch = branchOf(viewer);
        ServersSetting::choose(WeatherSource::another, {server.host(), server.host()});
        finish(viewer);
        QThreadPool::globalInstance()->waitForDone();
        EXPECT_FALSE(QDir(branch).exists());
        EXPECT_TRUE(comes([&] {
            return !viewer.window()->frame()->windowTitle().contains("Replay");
        }));
        EXPECT_EQ(&Clock::current(), &Clock::real());
    });
}

} // namespace
} // namespace raincast
