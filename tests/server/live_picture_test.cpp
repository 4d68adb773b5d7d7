// SPDX-License-Identifier: MIT
// From an object of the bucket to the picture, through the programs themselves: the live server
// with raincast-fetch, and the viewer with the server that it starts. The programs live at the
// objects' time. What comes out is compared, pixel by pixel, with a reading of the gates of the
// test's own.
#include "core/clock.h"
#include "core/utc_date_time.h"
#include "gate_reading.h"
#include "image/image_file.h"
#include "live_sim/live_sim.h"
#include "nexrad/level3_decoder.h"
#include "provider/live_object.h"
#include "radar/bitmap.h"
#include "radar/catalogue/antenna_positions.h"
#include "support/files.h"
#include "support/level3_maker.h"
#include "support/loopback.h"
#include "support/temporary_home.h"

#include <QProcess>

#include <gtest/gtest.h>

namespace raincast {
namespace {

constexpr int kDeadline = 120'000; // milliseconds

class LivePictureTest : public ::testing::Test {
protected:
    LivePictureTest() {
        keepLoopbackFromProxies();
        environment.insert("XDG_CACHE_HOME", home.path("cache"));
        environment.insert("LD_PRELOAD", QStringLiteral(SHIFTED_CLOCK_LIBRARY));
        // The library comes before the sanitizer's, which it does not call.
        environment.insert("ASAN_OPTIONS", "verify_asan_link_order=0:detect_leaks=0");
    }

    /// Puts an object into the bucket; the programs live four minutes after its volume.
    void put(const std::string& key, const QByteArray& bytes) {
        const auto read = readKey(key);
        ASSERT_TRUE(read) << key;
        object = *read;
        object.body = bytes;
        sim.bucket.put(key, bytes, object.time + kFileTimePerMinute);
        const auto ahead = static_cast<std::int64_t>(object.time + 4 * kFileTimePerMinute) -
                           static_cast<std::int64_t>(SystemClock().now());
        environment.insert("CLOCK_SHIFT", QString::number(ahead / kFileTimePerSecond));
    }
    [[nodiscard]] QStringList addresses() const {
        return {"--live-frames", sim.bucket.url(),  "--live-fallback",
                sim.ring.url(),  "--live-warnings", sim.alerts.url()};
    }
    [[nodiscard]] QString site() const { return QString::fromStdString(object.name.site); }
    [[nodiscard]] static QString code(Product product) {
        return QString::fromLatin1(codeOf(product).data());
    }
    [[nodiscard]] QString fileName(Product product) const {
        const QString time = utcDateTime(object.time).toString(QStringLiteral("yyyyMMdd_HHmm"));
        return site() + u'_' + time + u'_' + code(product) + ".gif";
    }

    /// The picture that raincast-fetch brings from a live server.
    QImage fetched(Product product) {
        QProcess server;
        server.setProcessEnvironment(environment);
        server.start(
            QStringLiteral(RAINCAST_SERVER_PROGRAM),
            QStringList{"--live", "--listen", "127.0.0.1:0"} + addresses()
        );
        while (!server.canReadLine() && server.waitForReadyRead(kDeadline)) {
        }
        const QByteArray ready = server.readLine();
        const QString host = ready.mid(ready.indexOf("http://") + 7).chopped(2);
        QProcess fetch;
        fetch.setProcessEnvironment(environment);
        fetch.start(
            QStringLiteral(RAINCAST_FETCH_PROGRAM),
            {site(), code(product), "--radar-server", host, "--cache", home.path("fetched")}
        );
        EXPECT_TRUE(fetch.waitForFinished(kDeadline));
        EXPECT_EQ(fetch.exitCode(), 0) << fetch.readAllStandardError().toStdString();
        const QString path =
            QString::fromLocal8Bit(fetch.readAllStandardOutput()).section('\t', 0, 0);
        EXPECT_EQ(path, home.path("fetched/") + site() + u'/' + fileName(product));
        server.terminate();
        EXPECT_TRUE(server.waitForFinished(kDeadline));
        return decodeImage(readFile(path), kMostImagePixels);
    }
    /// The picture that a viewer has after its update of a loop, and its window.
    QImage seen() {
        fillLoop();
        QProcess viewer;
        viewer.setProcessEnvironment(environment);
        viewer.setWorkingDirectory(home.root());
        viewer.start(
            QStringLiteral(RAINCAST_PROGRAM),
            {"--welcome", site(), "--geometry", "640x660", "--screenshot", "picture.png",
             "--live-arguments", addresses().join(u' ')}
        );
        EXPECT_TRUE(viewer.waitForFinished(kDeadline));
        EXPECT_EQ(viewer.exitCode(), 0) << viewer.readAllStandardError().toStdString();
        window = QImage(home.path("picture.png")).convertToFormat(QImage::Format_RGB32);
        const QString path = home.path("data/Quorvane/Temp/Weather/") + site() + u'/' +
                             fileName(Product::baseReflectivity);
        return decodeImage(readFile(path), kMostImagePixels);
    }
    /// Puts volumes before the object, as many as the viewer's loop has.
    void fillLoop() {
        for (int i = 1; i <= 5; ++i) {
            const FileTime time = object.time - i * 10 * kFileTimePerMinute;
            sim.bucket.put(keyOf(object.name, time), sectors(object.name.site, time), time);
        }
    }
    /// A product whose echoes lie in sectors of five degrees and rings of 15 km.
    static QByteArray sectors(const std::string& site, FileTime time) {
        Level3ToMake wanted = digitalReflectivity(site, time);
        wanted.packed = true;
        wanted.rows.clear();
        for (int radial = 0; radial < 720; ++radial) {
            std::vector<std::uint8_t> gates(1840);
            for (std::size_t gate = 0; gate < gates.size(); ++gate) {
                gates[gate] = static_cast<std::uint8_t>(
                    (radial / 10 * 37 + static_cast<int>(gate) / 60 * 23) % 200
                );
            }
            wanted.rows.push_back({radial * 5, 5, gates});
        }
        return QByteArray::fromStdString(makeLevel3(wanted));
    }
    /// Compares a picture with the gates of the object.
    void expectGates(const QImage& picture, Product product, int leastEchoes) const {
        ASSERT_EQ(picture.size(), QSize(600, 550));
        const AntennaPosition* const antenna = findAntenna(object.name.site);
        ASSERT_NE(antenna, nullptr);
        const auto result = test::compareWithGates(
            object.body, product, antenna->latitude, antenna->longitude, picture
        );
        EXPECT_GT(result.compared, 100'000);
        EXPECT_GT(result.echoes, leastEchoes);
        EXPECT_EQ(result.differing, 0) << result.first.toStdString();
    }

    test::TemporaryHome home;
    QProcessEnvironment environment = home.environment();
    LiveSim sim;
    LiveObject object;
    QImage window;
};

TEST_F(LivePictureTest, AnObjectOfTheBucketComesOutRightToThePixel) {
    const FileTime time = fromCalendar({2026, 7, 6, 15, 45, 17});
    put(keyOf({"TLX", "N0B"}, time), sectors("TLX", time));
    for (const Product product : {Product::baseReflectivity, Product::longRangeReflectivity}) {
        expectGates(fetched(product), product, 50'000);
    }
    expectGates(seen(), Product::baseReflectivity, 50'000);
    EXPECT_EQ(window.size(), QSize(640, 660));
}

class RealDataLivePictureTest : public LivePictureTest {};

TEST_F(RealDataLivePictureTest, ObjectsOfTheBucketComeOutRightToThePixel) {
    const QDir data(qEnvironmentVariable("RAINCAST_TEST_DATA") + QStringLiteral("/level3"));
    int shown = 0;
    for (const QString& name : data.entryList({"???_???_20*"}, QDir::Files)) {
        SCOPED_TRACE(name.toStdString());
        put(name.toStdString(), readFile(data.filePath(name)));
        const auto scan = decodeLevel3(object.body);
        ASSERT_TRUE(scan);
        for (const Product product : publishedAs(*scan)) {
            const QImage picture = fetched(product);
            if (scan->note.empty()) {
                expectGates(picture, product, 500);
            } else {
                EXPECT_EQ(picture.size(), QSize(600, 550)); // dry: there is nothing to compare
            }
            if (product == Product::baseReflectivity) {
                expectGates(seen(), product, 500);
            }
            ++shown;
        }
    }
    if (shown == 0) {
        GTEST_SKIP() << "RAINCAST_TEST_DATA names no folder with level3";
    }
    EXPECT_GE(shown, 8);
}

} // namespace
} // namespace raincast
