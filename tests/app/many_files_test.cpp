// SPDX-License-Identifier: MIT
// A cache that years have filled: 10,000 files, or 100,000 with RAINCAST_LONG in the environment.
#include "support/files.h"
#include "support/http_server.h"
#include "support/qt_app.h"
#include "support/radar_tree.h"
#include "support/temporary_home.h"
#include "weather/storage.h"

#include <QElapsedTimer>
#include <QProcess>

#include <gtest/gtest.h>
#include <sys/resource.h>

#include <iostream>

namespace raincast {
namespace {

constexpr int kDeadline = 120'000; // milliseconds

class ManyFilesTest : public test::GuiTest {
protected:
    struct Cost {
        qint64 milliseconds;
        double megabytes; ///< the most of any run so far
    };

    ManyFilesTest() {
        test::publishLayers(server, "MUX");
        test::publishFrames(server, {"20190519_0544", "20190519_0554"}, "MUX");
    }

    [[nodiscard]] QString cache() const { return home.path("data/Quorvane/Temp/Weather"); }
    [[nodiscard]] static int count() {
        return qEnvironmentVariableIsSet("RAINCAST_LONG") ? 100'000 : 10'000;
    }
    /// Half of them frames of the site that is looked at, a quarter of its other products, the rest
    /// of other sites.
    void fill() const {
        for (int i = 0; i < count(); ++i) {
            const char* const site = i % 4 == 3 ? "LWX" : "MUX";
            const char* const product = i % 4 == 2 ? "NCR" : "N0R";
            const QDateTime time = QDate(2017, 1, 1).startOfDay(Qt::UTC).addSecs(i * qint64{300});
            QFile file(QStringLiteral("%1/%2/%2_%3_%4.gif")
                           .arg(
                               cache(), QLatin1String(site),
                               time.toString(QStringLiteral("yyyyMMdd_HHmm")),
                               QLatin1String(product)
                           ));
            ASSERT_TRUE(file.open(QIODevice::WriteOnly));
            file.write("GIF89a");
        }
    }
    /// A start until the picture is there, an update included.
    [[nodiscard]] Cost start() const {
        auto environment = home.environment();
        environment.insert("ASAN_OPTIONS", "detect_leaks=0");
        QElapsedTimer timer;
        timer.start();
        QProcess process;
        process.setProcessEnvironment(environment);
        process.start(
            QStringLiteral(RAINCAST_PROGRAM),
            {"--site", "MUX", "--screenshot", home.path("look.png"), "--radar-server",
             server.host(), "--basemap-server", server.host()}
        );
        EXPECT_TRUE(process.waitForFinished(kDeadline));
        EXPECT_EQ(process.exitCode(), 0) << process.readAllStandardError().toStdString();
        rusage usage{};
        getrusage(RUSAGE_CHILDREN, &usage);
        return {timer.elapsed(), static_cast<double>(usage.ru_maxrss) / 1024};
    }
    template<typename Work>
    static qint64 timeOf(Work work) {
        QElapsedTimer timer;
        timer.start();
        work();
        return timer.elapsed();
    }

    test::TemporaryHome home;
    HttpServer server;
};

TEST_F(ManyFilesTest, NeitherAStartNorACleanUpTakesLong) {
    static_cast<void>(start());
    const Cost few = start();
    QDir().mkpath(cache() + "/LWX");
    fill();
    const Cost many = start();
    const Cost again = start();
    const StorageCleanup all{.cachedFiles = true, .keepNearbyRadar = false};
    StorageCount found;
    const qint64 counting = timeOf([&] { found = countCleanUp(cache(), all, {}); });
    const qint64 cleaning = timeOf([&] { cleanUpCache(cache(), all, {}); });
    std::cout << count() << " files: a start and update takes " << few.milliseconds
              << " ms without, " << many.milliseconds << " ms while it deletes old ones, "
              << again.milliseconds << " ms then; " << few.megabytes << " MiB at most, then "
              << again.megabytes << " MiB; counting " << counting << " ms, cleaning up " << cleaning
              << " ms of " << found.files << " files\n";
    // A second for 10,000 files on a machine that is busy.
    const qint64 patience = count() / 10;
    EXPECT_LT(many.milliseconds, few.milliseconds + patience);
    EXPECT_LT(again.milliseconds, few.milliseconds + patience);
#ifndef __SANITIZE_ADDRESS__ // which keeps what was freed
    EXPECT_LT(again.megabytes, few.megabytes + 16 + count() / 1000.0);
#endif
    EXPECT_GE(found.files, count() / 4);
    EXPECT_LT(counting, patience);
    EXPECT_LT(cleaning, patience);
    EXPECT_EQ(countCleanUp(cache(), all, {}).files, 0);
}

} // namespace
} // namespace raincast
