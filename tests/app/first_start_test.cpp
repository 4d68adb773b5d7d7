// SPDX-License-Identifier: MIT
// The first start of somebody who has configured nothing: live radar, or sample weather where that
// cannot be reached.
#include "core/utc_date_time.h"
#include "live_sim/live_sim.h"
#include "radar/cache.h"
#include "radar/catalogue/antenna_positions.h"
#include "radar/catalogue/image_geometry.h"
#include "support/files.h"
#include "support/gif_maker.h"
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

using testing::AllOf;
using testing::IsEmpty;
using testing::Ne;
using testing::Not;
using testing::SizeIs;

constexpr int kDeadline = 120'000; // milliseconds
// An animation's volumes: so many minutes ago.
constexpr int kMinutes[] = {53, 43, 33, 23, 13, 3};

/// The program itself.
class FirstStartTest : public test::GuiTest {
protected:
    FirstStartTest() {
        keepLoopbackFromProxies();
        environment.insert("XDG_CACHE_HOME", home.path("cache"));
    }

    /// Makes a picture as ./run does without a display; the providers are at these addresses.
    int picture(
        const QString& frames, const QString& fallback, const QString& warnings,
        const QString& site = "TLX"
    ) {
        QProcess program;
        program.setProcessEnvironment(environment);
        program.setWorkingDirectory(home.root());
        program.start(
            QStringLiteral(RAINCAST_PROGRAM),
            {"--welcome", site, "--screenshot", "picture.png", "--live-arguments",
             QStringLiteral("--live-frames %1 --live-fallback %2 --live-warnings %3")
                 .arg(frames, fallback, warnings)}
        );
        EXPECT_TRUE(program.waitForFinished(kDeadline));
        errors = program.readAllStandardError().toStdString();
        return program.exitCode();
    }
    /// Gives the bucket a volume of so many minutes ago.
    static void put(LiveSim& sim, const std::string& site, int minutes) {
        const FileTime now = SystemClock().now();
        const FileTime time = now - now % kFileTimePerMinute - minutes * kFileTimePerMinute;
        const QString stamp = utcDateTime(time).toString(QStringLiteral("_yyyy_MM_dd_HH_mm_ss"));
        const std::string product = makeLevel3(digitalReflectivity(site, time));
        sim.bucket.put(
            site + "_N0B" + stamp.toStdString(), QByteArray::fromStdString(product), time
        );
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
    for (const int minutes : kMinutes) {
        put(sim, "TLX", minutes);
    }
    EXPECT_EQ(picture(sim.bucket.url(), sim.ring.url(), sim.alerts.url()), 0) << errors;
    EXPECT_FALSE(QImage(home.path("picture.png")).isNull());
    EXPECT_THAT(frames(), SizeIs(6));
    EXPECT_THAT(frames("/.sample"), IsEmpty());
}

// New Orleans' radar was closed; another one has followed it, whose pictures lie elsewhere.
TEST_F(FirstStartTest, LayersOfAClosedSiteAreFetchedAgain) {
    LiveSim sim;
    const AntennaPosition& old = *findAntenna("LIX");
    const QString folder = home.path("data/Quorvane/Temp/Weather/LIX/LIX_");
    const QByteArray junk = makeGif({.screen = {600, 550}});
    const ImageGeometry image(old.latitude, old.longitude, Range::shortRange);
    writeFile(folder + "City_Short.gfw", QByteArray::fromStdString(image.worldFile()));
    for (const char* name : {"Rivers_Short.gif", "Highways_Short.gif", "County_Short.gif"}) {
        writeFile(folder + name, junk);
    }
    for (const int minutes : kMinutes) {
        put(sim, "HDC", minutes);
    }
    EXPECT_EQ(picture(sim.bucket.url(), sim.ring.url(), sim.alerts.url(), "LIX"), 0) << errors;
    const QStringList world = QString::fromLatin1(readFile(folder + "City_Short.gfw")).split('\n');
    ASSERT_GE(world.size(), 6);
    EXPECT_NEAR(world[5].toDouble() - 274.5 * world[0].toDouble(), 30.519, .001);
    for (const char* name : {"Rivers_Short.gif", "Highways_Short.gif", "County_Short.gif"}) {
        EXPECT_THAT(
            readFile(folder + name).toStdString(), AllOf(Not(IsEmpty()), Ne(junk.toStdString()))
        ) << name;
    }
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
    static bool showsFrom(Viewer& viewer, const QString& time) {
        return QTest::qWaitFor(
            [&] { return itemOf(viewer).state().current.timeText == time; }, kDeadline
        );
    }
    static int pageBottom(Viewer& viewer) {
        return itemOf(viewer).page()->widget()->geometry().bottom() + 1;
    }
    [[nodiscard]] QStringList cachedFrames(const QString& branch) const {
        return QDir(home.path("data/Quorvane/Temp/Weather" + branch + "/MUX"))
            .entryList({"MUX_2*_N0R.gif"});
    }
    static void useLive() { ServersSetting::choose(WeatherSource::live, ServersSetting::hosts()); }

    HttpServer live;
};

ActionRow* shownRow(Viewer& viewer) {
    for (auto* const child : viewer.window()->client()->findChildren<QWidget*>()) {
        // Not by its meta-object: it has none of its own.
        auto* const row = dynamic_cast<ActionRow*>(child);
        if (row != nullptr && row->isVisible()) {
            return row;
        }
    }
    return nullptr;
}

TEST_F(StandInTest, SampleWeatherGivesWayToLiveRadarAndNeverComesBack) {
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
        for (const QSize& size : {QSize(240, 320), QSize(1920, 1080), QSize(400, 500)}) {
            viewer.window()->frame()->resize(size);
            QTest::qWait(0);
            EXPECT_EQ(pageBottom(viewer), row->mapTo(viewer.window()->client(), QPoint()).y())
                << "the time stands at the page's lower edge";
        }

        live.serve("/status", R"({"reachable": true})");
        test::publishFrames(live, {"20190519_0558"}, "MUX");
        auto* const again = row->findChild<QPushButton*>();
        ASSERT_NE(again, nullptr);
        EXPECT_EQ(again->text(), "Try again");
        QTest::mouseClick(again, Qt::LeftButton);
        EXPECT_TRUE(showsFrom(viewer, "5:58"));
        finish(viewer);
        EXPECT_EQ(shownRow(viewer), nullptr);
        EXPECT_EQ(pageBottom(viewer), viewer.window()->client()->height());
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

TEST_F(StandInTest, NoSourceReadsOrCleansAnothersFrames) {
    live.serve("/status", R"({"reachable": true})");
    test::publishFrames(live, {"20190519_0558"}, "MUX");
    run([&](Viewer& viewer) {
        for (int round = 0; round < 2; ++round) {
            ServersSetting::choose(WeatherSource::sample, ServersSetting::hosts());
            EXPECT_TRUE(showsFrom(viewer, "5:54"));
            finish(viewer);
            EXPECT_THAT(cachedFrames("/.sample"), SizeIs(3));
            useLive();
            EXPECT_TRUE(showsFrom(viewer, "5:58"));
            finish(viewer);
            EXPECT_THAT(cachedFrames({}), SizeIs(1));
        }
    });
    EXPECT_THAT(cachedFrames("/.sample"), SizeIs(3));
    EXPECT_EQ(server.count(test::framesPath("MUX") + "MUX_20190519_0554_N0R.gif"), 1);
    EXPECT_EQ(live.count(test::framesPath("MUX") + "MUX_20190519_0558_N0R.gif"), 1);
}

} // namespace
} // namespace raincast
