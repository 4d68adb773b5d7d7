// SPDX-License-Identifier: MIT
// The first start of somebody who has configured nothing: live radar, or sample weather where that
// cannot be reached.
#include "live_sim/live_sim.h"
#include "radar/cache.h"
#include "support/files.h"
#include "support/level3_maker.h"
#include "support/loopback.h"
#include "viewer_harness.h"
#include "window/action_row.h"

#include <QDateTime>
#include <QImage>
#include <QProcess>
#include <QPushButton>

#include <gmock/gmock.h>

namespace raincast {
namespace {

using testing::IsEmpty;
using testing::SizeIs;

constexpr int kDeadline = 120'000; // milliseconds

/// The program itself.
class FirstStartTest : public test::GuiTest {
protected:
    FirstStartTest() {
        keepLoopbackFromProxies();
        environment.insert("XDG_CACHE_HOME", home.path("cache"));
    }

    /// Makes a picture as ./run does without a display; the providers are at these addresses.
    int picture(const QString& frames, const QString& fallback, const QString& warnings) {
        QProcess program;
        program.setProcessEnvironment(environment);
        program.setWorkingDirectory(home.root());
        program.start(
            QStringLiteral(RAINCAST_PROGRAM),
            {"--welcome", "TLX", "--screenshot", "picture.png", "--live-arguments",
             QStringLiteral("--live-frames %1 --live-fallback %2 --live-warnings %3")
                 .arg(frames, fallback, warnings)}
        );
        EXPECT_TRUE(program.waitForFinished(kDeadline));
        errors = program.readAllStandardError().toStdString();
        return program.exitCode();
    }
    [[nodiscard]] QStringList frames(const QString& branch = {}) const {
        return QDir(home.path("data/Quorvane/Temp/Weather") + branch + "/TLX")
            .entryList({"TLX_2*_N0R.gif"});
    }

    test::TemporaryHome home;
    QProcessEnvironment environment = home.environment();
    std::string errors;
};

TEST_F(FirstStartTest, ShowsLiveRadar) {
    LiveSim sim;
    for (const int minutes : {53, 43, 33, 23, 13, 3}) {
        const FileTime now = SystemClock().now();
        const FileTime time = now - now % kFileTimePerMinute - minutes * kFileTimePerMinute;
        Level3ToMake wanted;
        wanted.awipsId = "N0BTLX";
        wanted.code = 153;
        wanted.picture = Level3ToMake::Picture::digital;
        wanted.thresholds = digitalThresholds(-320, 5);
        const std::uint64_t seconds = toUnixSeconds(time);
        wanted.day = static_cast<int>(seconds / 86'400) + 1;
        wanted.second = static_cast<int>(seconds % 86'400);
        const QByteArray key = QDateTime::fromSecsSinceEpoch(static_cast<qint64>(seconds), Qt::UTC)
                                   .toString(QStringLiteral("'TLX_N0B_'yyyy_MM_dd_HH_mm_ss"))
                                   .toLatin1();
        sim.bucket.put(key.toStdString(), QByteArray::fromStdString(makeLevel3(wanted)), time);
    }
    EXPECT_EQ(picture(sim.bucket.url(), sim.ring.url(), sim.alerts.url()), 0) << errors;
    EXPECT_FALSE(QImage(home.path("picture.png")).isNull());
    EXPECT_THAT(frames(), SizeIs(6));
    EXPECT_THAT(frames("/.sample"), IsEmpty());
}

TEST_F(FirstStartTest, WithoutANetworkShowsSampleWeather) {
    const RefusingPort refusing;
    const QString nowhere = "http://" + refusing.host();
    EXPECT_EQ(picture(nowhere, nowhere, nowhere), 0) << errors;
    EXPECT_FALSE(QImage(home.path("picture.png")).isNull());
    EXPECT_THAT(frames("/.sample"), SizeIs(6));
    EXPECT_THAT(frames(), IsEmpty());
}

/// The viewer in this process, whose servers are the test's.
class StandInTest : public test::ViewerHarness {
protected:
    StandInTest() {
        test::publishLayers(live, "MUX");
        test::publishFrames(live, {}, "MUX");
        live.serve("/status", R"({"reachable": false})");
        writeFile(
            home.path("server"),
            QStringLiteral("#!/bin/sh\ncase $1 in\n"
                           "--live) echo Serving live radar at http://%1/ ;;\n"
                           "--sample) echo Serving sample weather at http://%2/ ;;\n"
                           "esac\nexec sleep 600\n")
                .arg(live.host(), server.host())
                .toUtf8()
        );
        QFile::setPermissions(home.path("server"), QFile::ReadOwner | QFile::ExeOwner);
        options.serverProgram = home.path("server");
        options.radarServer.clear();
        options.basemapServer.clear();
        options.welcomeSiteId = "MUX";
    }
    static void useLive() { ServersSetting::choose(WeatherSource::live, ServersSetting::hosts()); }

    HttpServer live;
};

ActionRow* shownRow(Viewer& viewer) {
    for (auto* const row : viewer.window()->client()->findChildren<ActionRow*>()) {
        if (row->isVisible()) {
            return row;
        }
    }
    return nullptr;
}

TEST_F(StandInTest, SampleWeatherGivesWayToLiveRadarAndNeverComesBack) {
    const auto showsFrom = [](Viewer& viewer, const QString& time) {
        return QTest::qWaitFor(
            [&] { return itemOf(viewer).state().current.timeText == time; }, kDeadline
        );
    };
    run([&](Viewer& viewer) {
        useLive();
        EXPECT_TRUE(QTest::qWaitFor([&] { return shownRow(viewer) != nullptr; }, kDeadline));
        finish(viewer);
        ActionRow* const row = shownRow(viewer);
        ASSERT_NE(row, nullptr);
        EXPECT_EQ(row->text(), "Live radar cannot be reached: sample weather.");
        EXPECT_EQ(itemOf(viewer).state().cacheBranch, QString::fromUtf16(kSampleBranch));
        EXPECT_TRUE(showsFrom(viewer, "5:54"));
        EXPECT_FALSE(ServersSetting::hadLive());

        live.serve("/status", R"({"reachable": true})");
        test::publishFrames(live, {"20190519_0558"}, "MUX");
        auto* const again = row->findChild<QPushButton*>();
        ASSERT_NE(again, nullptr);
        EXPECT_EQ(again->text(), "Try again");
        QTest::mouseClick(again, Qt::LeftButton);
        EXPECT_TRUE(showsFrom(viewer, "5:58"));
        finish(viewer);
        EXPECT_EQ(shownRow(viewer), nullptr);
        EXPECT_TRUE(ServersSetting::hadLive());
    });
    EXPECT_NE(live.count("/ridge/RadarImg/N0R/MUX/"), 0);

    // The next run has no network. It has the last frames.
    live.serve("/status", R"({"reachable": false})");
    test::publishFrames(live, {}, "MUX");
    Viewer viewer(options);
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, [&] {
        if (!viewer.application().loading()) {
            timer.stop();
            EXPECT_TRUE(ServersSetting::hadLive());
            EXPECT_EQ(ServersSetting::inUse(), WeatherSource::live);
            EXPECT_EQ(itemOf(viewer).state().current.timeText, "5:58");
            viewer.requestEnd();
        }
    });
    timer.start(0);
    EXPECT_EQ(viewer.run(), 0);
}

} // namespace
} // namespace raincast
