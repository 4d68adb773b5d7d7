// SPDX-License-Identifier: MIT
#pragma once

#include "core/utc_date_time.h"
#include "support/files.h"
#include "support/http_server.h"
#include "support/jumping_clock.h"
#include "support/qt_app.h"
#include "support/radar_tree.h"
#include "support/temporary_home.h"

#include <QProcess>
#include <QTest>

#include <gtest/gtest.h>

namespace raincast::test {

/// For tests of the viewer itself, with a loop of MUX that updates itself by a clock that jumps.
class UpdatingViewer : public GuiTest {
protected:
    static constexpr int kDeadline = 60'000; ///< milliseconds
    static constexpr std::int64_t kMinute = 60;

    UpdatingViewer() {
        publishLayers(server, "MUX");
        publish();
        publish();
    }
    ~UpdatingViewer() override {
        EXPECT_EQ(process.state(), QProcess::Running);
        end();
    }

    /// One frame more, ten minutes after the one before. The second one is four minutes old.
    void publish() {
        stamps += first.addSecs(stamps.size() * 10 * kMinute).toString("yyyyMMdd_HHmm");
        publishFrames(server, stamps, "MUX");
    }
    /// Starts it as somebody does who has asked for automatic updates before, and waits until it
    /// has the frames.
    void start(const QStringList& arguments = {}, const QString& moreLibraries = {}) {
        run({"--welcome", "MUX"}, {});
        awaitUpdates(1);
        EXPECT_TRUE(awaitNewest());
        end();
        letUpdate();
        run(arguments, moreLibraries);
        awaitUpdates(2);
        QTest::qWait(kWhile); // that one ends
    }

    [[nodiscard]] int updates() const { return server.count(framesPath("MUX")); }
    void awaitUpdates(int count) const {
        EXPECT_TRUE(QTest::qWaitFor([&] { return updates() >= count; }, kDeadline)) << updates();
    }
    /// None for so long that one would have come.
    void expectNoUpdate() const {
        const int before = updates();
        EXPECT_FALSE(QTest::qWaitFor([&] { return updates() > before; }, kWhile));
    }
    [[nodiscard]] QString newest() const { return "MUX_" + stamps.back() + "_N0R.gif"; }
    /// Waits until the newest frame is in the cache.
    [[nodiscard]] bool awaitNewest() const {
        return QTest::qWaitFor([this] { return QFile::exists(folder + newest()); }, kDeadline);
    }

    static constexpr int kWhile = 1'500; ///< milliseconds

    TemporaryHome home;
    HttpServer server;
    QDateTime first = utcDateTime(SystemClock().now()).addSecs(-14 * kMinute);
    QStringList stamps;
    JumpingClock clock;
    QProcessEnvironment environment = home.environment();
    QString folder = home.path("data/Quorvane/Temp/Weather/MUX/"); ///< of the cache
    QProcess process;

private:
    void run(const QStringList& arguments, const QString& moreLibraries) {
        clock.addTo(environment, QStringLiteral(SHIFTED_CLOCK_LIBRARY) + moreLibraries);
        process.setProcessEnvironment(environment);
        process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        process.start(
            QStringLiteral(RAINCAST_PROGRAM),
            arguments +
                QStringList{"--radar-server", server.host(), "--basemap-server", server.host()}
        );
        ASSERT_TRUE(process.waitForStarted(kDeadline));
    }
    void end() {
        process.terminate();
        EXPECT_TRUE(process.waitForFinished(kDeadline));
        EXPECT_EQ(process.exitCode(), 0);
    }
    /// Ticks "Update automatically" in the page file.
    void letUpdate() const {
        constexpr char kView[] = "\2\0\0\0\14\0\0\0";
        constexpr char kSettings[] = "\34\0\0\0";
        QByteArray bytes = readFile(home.pageFile());
        const qsizetype view = bytes.indexOf(QByteArray(kView, sizeof kView - 1));
        const qsizetype at = bytes.indexOf(QByteArray(kSettings, sizeof kSettings - 1), view);
        ASSERT_TRUE(view > 0 && at > view);
        bytes[at + 7] = 1; // behind the length, topo, highways and rivers
        writeFile(home.pageFile(), bytes);
    }
};

} // namespace raincast::test
