// SPDX-License-Identifier: MIT
// The server is killed at any moment of publishing and of fetching live weather.
#include "app/killing.h"
#include "core/clock.h"
#include "core/utc_date_time.h"
#include "live_sim/live_sim.h"
#include "support/files.h"
#include "support/level3_maker.h"
#include "support/loopback.h"
#include "support/raw_client.h"

#include <QDirIterator>
#include <QElapsedTimer>
#include <QMap>
#include <QRegularExpression>
#include <QSet>
#include <QTemporaryDir>

#include <httplib.h>

#include <algorithm>
#include <random>
#include <thread>

namespace raincast {
namespace {

QSet<QString> filesBelow(const QString& folder, const QString& pattern) {
    QSet<QString> names;
    QDirIterator files(folder, {pattern}, QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
    while (files.hasNext()) {
        names += QDir(folder).relativeFilePath(files.next());
    }
    return names;
}

/// Echoes that take room however they are packed.
void fillWithNoise(Level3ToMake& product) {
    constexpr int kRadials = 360;
    constexpr std::size_t kGates = 1200;
    std::minstd_rand random(1);
    product.rows.clear();
    for (int i = 0; i < kRadials; ++i) {
        std::vector<std::uint8_t> cells(kGates);
        std::generate(cells.begin(), cells.end(), [&] { return random() / 256 % 160; });
        product.rows.push_back({i * 10, 10, std::move(cells)});
    }
}

void startServer(QProcess& process, const QStringList& arguments) {
    auto environment = QProcessEnvironment::systemEnvironment();
    environment.insert("ASAN_OPTIONS", "detect_leaks=0");
    process.setProcessEnvironment(environment);
    test::startForKill(process, QStringLiteral(RAINCAST_SERVER_PROGRAM), arguments);
}

class KillTestPublishing : public testing::Test {
protected:
    KillTestPublishing() {
        Level3ToMake product = digitalReflectivity("TLX", fromCalendar({2013, 5, 20, 20, 0}));
        fillWithNoise(product);
        for (int i = 0; i < kProducts; ++i) {
            product.second += 300;
            writeFile(
                path("feed/") + QString::number(i), QByteArray::fromStdString(makeLevel3(product))
            );
        }
    }

    QString path(const QString& name) const { return m_folder.filePath(name); }
    QStringList arguments() const {
        return {"--level3",  path("feed"), "--hours", "0",   "--cache", path("cache"),
                "--publish", path("www"),  "--sites", "TLX", "--quiet"};
    }
    /// Publishes all; how long it took, in milliseconds.
    int publishAll() {
        QElapsedTimer timer;
        timer.start();
        QProcess process;
        startServer(process, arguments() + QStringList{"--once"});
        EXPECT_TRUE(process.waitForFinished(test::Killing::kDeadline));
        EXPECT_EQ(process.exitCode(), 0);
        return static_cast<int>(timer.elapsed());
    }
    /// Removes what was published, and the frames that were painted for it.
    void forgetAll() const {
        QDir(path("www")).removeRecursively();
        QDir(path("cache/level3")).removeRecursively();
    }
    /// The published pictures, each of which is whole.
    QSet<QString> pictures() const {
        QSet<QString> names = filesBelow(path("www"), "*.gif") + filesBelow(path("www"), "*.jpg");
        names.removeIf([](const QString& name) { return name.section(u'/', -1).startsWith(u'.'); });
        for (const QString& name : std::as_const(names)) {
            const QByteArray bytes = readFile(path("www/") + name);
            EXPECT_EQ(bytes, m_whole.value(name, bytes)) << name.toStdString();
            EXPECT_GT(bytes.size(), 0) << name.toStdString();
        }
        return names;
    }
    /// Each frame that a listing names is there.
    void checkListings(const QSet<QString>& there) const {
        static const QRegularExpression frame(QStringLiteral("\"(TLX_\\d{8}_\\d{4}_\\w+.gif)\""));
        for (const QString& page : filesBelow(path("www"), "index.html")) {
            const QByteArray text = readFile(path("www/") + page);
            EXPECT_TRUE(text.trimmed().endsWith("</html>")) << page.toStdString();
            if (page.contains(QLatin1String("RadarImg"))) {
                for (const auto& match : frame.globalMatch(QString::fromUtf8(text))) {
                    const QString name = page.section(u'/', 0, -2) + u'/' + match.captured(1);
                    EXPECT_TRUE(there.contains(name)) << name.toStdString();
                }
            }
        }
    }
    /// What a whole run has published.
    void remember() {
        const QSet<QString> names = pictures();
        for (const QString& name : names) {
            m_whole[name] = readFile(path("www/") + name);
        }
    }

    static constexpr int kProducts = 10;
    QTemporaryDir m_folder;
    QMap<QString, QByteArray> m_whole;
};

TEST_F(KillTestPublishing, ATreeIsGoodAtAnyMoment) {
    test::Killing killing(4, 200);
    publishAll(); // paints the layers
    forgetAll();
    const int time = publishAll();
    remember();
    ASSERT_GT(m_whole.size(), kProducts);
    int partly = 0;
    while (killing.goesOn()) {
        SCOPED_TRACE(killing.done());
        if (killing.oneIn(2)) {
            forgetAll();
        }
        const QSet<QString> before = pictures();
        const test::FolderWatch files({path("www/ridge/RadarImg/N0R/TLX")});
        QProcess process;
        startServer(process, arguments());
        if (killing.oneIn(2)) {
            killing.pause(time);
        } else {
            files.await(1 + killing.below(4 * kProducts), time);
            killing.pause(0.3);
        }
        killing.kill(process);
        const QSet<QString> after = pictures();
        EXPECT_TRUE(after.contains(before)) << "a picture that was there is lost";
        partly += after.size() < m_whole.size() ? 1 : 0;
        checkListings(after);
    }
    killing.expectSome(partly, "a part of the tree was there");
    publishAll();
    EXPECT_EQ(pictures().size(), m_whole.size());
}

class KillTestLive : public testing::Test {
protected:
    KillTestLive() {
        keepLoopbackFromProxies();
        const FileTime now = SystemClock().now();
        for (int i = 0; i < kVolumes; ++i) {
            FileTime time = now - (3 + 5 * i) * kFileTimePerMinute;
            time -= time % kFileTimePerSecond;
            Level3ToMake product = digitalReflectivity("TLX", time);
            fillWithNoise(product);
            const QByteArray bytes = QByteArray::fromStdString(makeLevel3(product));
            const QString key =
                utcDateTime(time).toString(QStringLiteral("'TLX_N0B_'yyyy_MM_dd_HH_mm_ss"));
            m_newest = i == 0 ? key : m_newest;
            m_sim.bucket.put(key.toStdString(), bytes, time);
            m_bytes[key] = bytes;
        }
    }

    QString store() const { return m_folder.filePath("store"); }
    /// The keys of the stored volumes, each of which is what the provider has.
    QSet<QString> stored() const {
        QSet<QString> keys;
        for (const QString& name : filesBelow(store() + "/live", "*")) {
            if (!name.endsWith(QLatin1String(".part"))) {
                const QString key = name.section(u'/', -1).section(u',', 0, 0);
                const QByteArray bytes = readFile(store() + "/live/" + name);
                EXPECT_EQ(bytes, m_bytes.value(key, bytes)) << name.toStdString();
                keys += m_bytes.contains(key) ? QSet<QString>{key} : QSet<QString>{};
            }
        }
        return keys;
    }
    int start(QProcess& process) const {
        startServer(
            process, {"--live", "--live-frames", m_sim.bucket.url(), "--live-fallback", "none",
                      "--live-warnings", m_sim.alerts.url(), "--cache", store(), "--listen",
                      "127.0.0.1:0", "--quiet"}
        );
        while (!process.canReadLine() && process.waitForReadyRead(test::Killing::kDeadline)) {
        }
        const QByteArray line = process.readLine();
        return line.mid(line.lastIndexOf(':') + 1).chopped(2).toInt();
    }
    /// Asks for all frames, as far as the server gets; how many came.
    static int askForAll(int port) {
        httplib::Client client("127.0.0.1", port);
        client.set_read_timeout(std::chrono::milliseconds(test::Killing::kDeadline));
        const std::string folder = "/ridge/RadarImg/N0R/TLX/";
        const auto listing = client.Get(folder);
        static const QRegularExpression frame(QStringLiteral("\"(TLX_\\d{8}_\\d{4}_N0R.gif)\""));
        int came = 0;
        const QString text = listing ? QString::fromStdString(listing->body) : QString();
        for (const auto& match : frame.globalMatch(text)) {
            const auto answer = client.Get(folder + match.captured(1).toStdString());
            if (!answer) {
                break;
            }
            came += answer->status == 200 ? 1 : 0;
        }
        return came;
    }

    static constexpr int kVolumes = 12;
    QTemporaryDir m_folder;
    LiveSim m_sim;
    QMap<QString, QByteArray> m_bytes; ///< of all volumes, by key
    QString m_newest;
};

TEST_F(KillTestLive, WhatWasFetchedStaysAndIsNotFetchedAgain) {
    test::Killing killing(6, 200);
    QElapsedTimer timer;
    timer.start();
    {
        QProcess process;
        EXPECT_EQ(askForAll(start(process)), kVolumes);
        process.terminate();
        EXPECT_TRUE(process.waitForFinished(test::Killing::kDeadline));
    }
    const int time = static_cast<int>(timer.elapsed());
    ASSERT_EQ(stored().size(), kVolumes);
    int partly = 0;
    while (killing.goesOn()) {
        SCOPED_TRACE(killing.done());
        if (killing.oneIn(4)) {
            QDir(store() + "/live").removeRecursively();
        }
        const QSet<QString> before = stored();
        const std::size_t asked = m_sim.bucket.targets().size();
        QProcess process;
        const int port = start(process);
        const test::FolderWatch files({store() + "/live/TLX/N0B"});
        std::jthread asker([port] { askForAll(port); });
        if (killing.oneIn(2)) {
            killing.pause(time);
        } else {
            files.await(1 + killing.below(2 * kVolumes), time);
            killing.pause(0.3);
        }
        killing.kill(process);
        asker.join();
        const QSet<QString> after = stored();
        EXPECT_TRUE(after.contains(before)) << "a volume that was there is lost";
        partly += 0 < after.size() && after.size() < kVolumes ? 1 : 0;
        const auto targets = m_sim.bucket.targets();
        for (std::size_t i = asked; i < targets.size(); ++i) {
            const QString key = QString::fromLatin1(targets[i].sliced(1));
            EXPECT_TRUE(key == m_newest || !before.contains(key)) << key.toStdString();
        }
    }
    killing.expectSome(partly, "a part of the volumes was there");
}

} // namespace
} // namespace raincast
