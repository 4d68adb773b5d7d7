// SPDX-License-Identifier: MIT
// Runs the program itself with live weather, whose providers are stand-ins.
#include "core/clock.h"
#include "live_sim/live_sim.h"
#include "provider/live_object.h"
#include "support/files.h"
#include "support/level3_maker.h"
#include "support/loopback.h"
#include "support/raw_client.h"

#include <QElapsedTimer>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace raincast {
namespace {

using ::testing::AllOf;
using ::testing::HasSubstr;
using ::testing::Not;
using ::testing::StartsWith;

constexpr int kDeadline = 120'000; // milliseconds; nothing takes that long

class LiveProgramTest : public ::testing::Test {
protected:
    ~LiveProgramTest() override {
        for (QProcess* const process : {&m_process, &m_other}) {
            if (process->state() != QProcess::NotRunning) {
                process->kill();
                process->waitForFinished(kDeadline);
            }
        }
    }

    void prepare(const QStringList& arguments) { prepare(m_process, arguments); }
    void prepare(QProcess& process, const QStringList& arguments) {
        keepLoopbackFromProxies();
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert("XDG_CACHE_HOME", m_folder.filePath("cache"));
        process.setProcessEnvironment(environment);
        process.setProgram(QStringLiteral(RAINCAST_SERVER_PROGRAM));
        process.setArguments(
            QStringList{
                "--live", "--live-frames", m_sim.bucket.url(), "--live-fallback", m_sim.ring.url(),
                "--live-warnings", m_sim.alerts.url(), "--contact", "test@radar.example"} +
            arguments
        );
    }
    void start(const QStringList& arguments = {}) { m_port = start(m_process, arguments); }
    /// Starts a server and waits until it is ready; its port.
    int start(QProcess& process, const QStringList& arguments) {
        prepare(process, QStringList{"--listen", "127.0.0.1:0"} + arguments);
        process.start();
        while (!process.canReadLine() && process.waitForReadyRead(kDeadline)) {
        }
        m_ready = process.readLine();
        return m_ready.mid(m_ready.lastIndexOf(':') + 1).chopped(2).toInt();
    }
    static void end(QProcess& process) {
        process.terminate();
        EXPECT_TRUE(process.waitForFinished(kDeadline));
    }
    /// How many volumes of TLX the servers have on the disk.
    [[nodiscard]] qsizetype stored() const {
        return QDir(m_folder.filePath("store/live/TLX/N0B")).entryList(QDir::Files).size();
    }
    [[nodiscard]] std::string get(const std::string& path, const std::string& header = {}) const {
        const RawClient client(m_port);
        client.send("GET " + path + " HTTP/1.1\r\n" + header + "Connection: close\r\n\r\n");
        return client.readAll();
    }
    [[nodiscard]] QJsonObject json(const std::string& path) const {
        const std::string answer = get(path);
        return QJsonDocument::fromJson(
                   QByteArray::fromStdString(answer.substr(answer.find("\r\n\r\n") + 4))
        )
            .object();
    }
    /// So many minutes ago.
    static FileTime ago(int minutes) {
        const FileTime time = SystemClock().now() - minutes * kFileTimePerMinute;
        return time - time % kFileTimePerSecond;
    }
    /// A volume, with so many gates of echo unless it is the usual one.
    void put(const std::string& site, FileTime time, std::size_t gates = 0) {
        Level3ToMake wanted = digitalReflectivity(site, time);
        if (gates > 0) {
            wanted.packed = true;
            wanted.rows = {{0, 3600, std::vector<std::uint8_t>(gates, 150)}};
        }
        const std::string product = makeLevel3(wanted);
        m_sim.bucket.put(keyOf({site, "N0B"}, time), QByteArray::fromStdString(product), time);
    }
    /// The newest frame of TLX as raincast-fetch has it in the end.
    [[nodiscard]] QByteArray fetch(const QStringList& options = {}) const {
        QProcess fetch;
        fetch.start(
            QStringLiteral(RAINCAST_FETCH_PROGRAM),
            QStringList{
                "TLX", "N0R", "--radar-server", loopbackHost(m_port), "--cache",
                m_folder.filePath("fetched")} +
                options
        );
        EXPECT_TRUE(fetch.waitForFinished(kDeadline));
        EXPECT_EQ(fetch.exitCode(), 0) << fetch.readAllStandardError().toStdString();
        const QStringList lines =
            QString::fromLocal8Bit(fetch.readAllStandardOutput()).trimmed().split(u'\n');
        return readFile(lines.last().section(u'\t', 0, 0));
    }
    /// The names of frames in a listing.
    static std::vector<std::string> framesIn(const std::string& page) {
        static const QRegularExpression name(QStringLiteral("\"([A-Z]{3}_\\d{8}_\\d{4}_N0R.gif)\"")
        );
        std::vector<std::string> names;
        for (const auto& match : name.globalMatch(QString::fromStdString(page))) {
            names.push_back(match.captured(1).toStdString());
        }
        return names;
    }

    QTemporaryDir m_folder;
    LiveSim m_sim;
    QProcess m_process;
    QProcess m_other;
    QByteArray m_ready;
    int m_port = 0;
};

TEST_F(LiveProgramTest, ServesWhatTheProvidersHave) {
    put("TLX", ago(8));
    put("TLX", ago(3));
    start();
    EXPECT_THAT(m_ready.toStdString(), StartsWith("Serving live radar at http://127.0.0.1:"));
    EXPECT_THAT(get("/"), HasSubstr("NOAA/NWS NEXRAD via Unidata (AWS Open Data)"));
    EXPECT_EQ(json("/status")["source"], "live");
    EXPECT_EQ(m_sim.bucket.count() + m_sim.ring.count() + m_sim.alerts.count(), 0);

    const std::string folder = "/ridge/RadarImg/N0R/TLX/";
    const std::string listing = get(folder);
    EXPECT_THAT(listing, HasSubstr("Raincast-Source: ok\r\n"));
    const auto names = framesIn(listing);
    ASSERT_EQ(names.size(), 2U);
    EXPECT_THAT(
        get(folder + names[0]), AllOf(
                                    StartsWith("HTTP/1.1 200"),
                                    HasSubstr("max-age=31536000, immutable"), HasSubstr("GIF89a")
                                )
    );
    // The newest one may change: it is asked for again, and sent again only then.
    const std::string newest = get(folder + names[1]);
    EXPECT_THAT(newest, AllOf(HasSubstr("Cache-Control: max-age=30\r\n"), HasSubstr("GIF89a")));
    const auto tag = QRegularExpression("ETag: (\"[^\"]+\")").match(QString::fromStdString(newest));
    ASSERT_TRUE(tag.hasMatch());
    const std::string again =
        get(folder + names[1], "If-None-Match: " + tag.captured(1).toStdString() + "\r\n");
    EXPECT_THAT(again, AllOf(StartsWith("HTTP/1.1 304"), Not(HasSubstr("GIF89a"))));

    // The page is made once a second at most.
    const QJsonObject status = [this] {
        for (;;) {
            const QJsonObject page = json("/status");
            if (!page["wanted"].toObject().isEmpty()) {
                return page;
            }
        }
    }();
    EXPECT_EQ(status["reachable"], true);
    const QJsonObject wanted = status["wanted"]["TLX"]["N0R"].toObject();
    EXPECT_EQ(wanted["state"], "ok");
    EXPECT_NEAR(wanted["ageSeconds"].toDouble(), 180, 60);
    EXPECT_THAT(wanted["provider"].toString().toStdString(), HasSubstr("Unidata"));
    EXPECT_EQ(status["providers"][0]["failures"], 0);
    EXPECT_GT(status["providers"][0]["bytes"].toInt(), 0);
    for (const QByteArray& head : m_sim.bucket.heads()) {
        EXPECT_EQ(
            headerIn(head, "User-Agent"), "Raincast/" RAINCAST_VERSION " (test@radar.example)"
        );
    }
}

// A frame is asked for again while it may be replaced, and never once a later one is listed.
TEST_F(LiveProgramTest, AViewerFollowsTheNewestFrameUntilItIsFinal) {
    const QStringList store{"--cache", m_folder.filePath("store")};
    const auto restart = [&] { // it asks its providers anew
        if (m_process.state() != QProcess::NotRunning) {
            end(m_process);
        }
        start(store);
    };
    const auto answers = [this](int status) {
        const auto pattern =
            QStringLiteral("requests_total\\{kind=\"frame\",status=\"%1\"\\} (\\d+)");
        const auto match =
            QRegularExpression(pattern.arg(status)).match(QString::fromStdString(get("/metrics")));
        return match.hasMatch() ? match.captured(1).toInt() : 0;
    };
    const FileTime before = ago(8);
    const FileTime newest = ago(4);
    put("TLX", before);
    put("TLX", newest);
    restart();
    const QByteArray first = fetch();
    EXPECT_EQ(fetch(), first);
    EXPECT_EQ(answers(200), 1);
    EXPECT_EQ(answers(304), 1) << "it may have been replaced";

    put("TLX", newest, 300);
    restart();
    const QByteArray second = fetch();
    EXPECT_NE(second, first);
    EXPECT_EQ(fetch(), second);
    EXPECT_EQ(answers(200), 1);
    EXPECT_EQ(answers(304), 1);

    const FileTime later = ago(1);
    put("TLX", later);
    restart();
    const std::string folder = "/ridge/RadarImg/N0R/TLX/";
    const auto names = framesIn(get(folder));
    ASSERT_EQ(names.size(), 3U);
    EXPECT_THAT(get(folder + names[1]), HasSubstr("immutable"));
    EXPECT_THAT(get(folder + names[2]), HasSubstr("Cache-Control: max-age=30\r\n"));
    static_cast<void>(fetch({"--frames", "3", "--interval", "1"}));
    const int sent = answers(200);
    static_cast<void>(fetch({"--frames", "3", "--interval", "1"}));
    EXPECT_EQ(answers(200), sent);
    EXPECT_EQ(answers(304), 1) << "the newest one alone";
}

TEST_F(LiveProgramTest, SaysWhyAListingIsEmpty) {
    put("OKX", ago(3));
    put("TLX", ago(90));
    start();
    EXPECT_THAT(get("/ridge/RadarImg/NCR/OKX/"), HasSubstr("Raincast-Source: "));
    EXPECT_THAT(get("/ridge/RadarImg/N0R/OKX/"), HasSubstr("Raincast-Source: ok\r\n"));
    EXPECT_THAT(get("/ridge/RadarImg/NCR/OKX/"), HasSubstr("Raincast-Source: no-product\r\n"));
    EXPECT_THAT(get("/ridge/RadarImg/N0R/TLX/"), HasSubstr("Raincast-Source: radar-down\r\n"));
}

TEST_F(LiveProgramTest, HasWarningsAndTheirTexts) {
    const QString end = QDateTime::currentDateTimeUtc().addSecs(1800).toString(Qt::ISODate);
    m_sim.alerts.setAlerts(
        R"({"features":[{"geometry":{"type":"Polygon","coordinates":[[[-97.5,35],[-97,35],)"
        R"([-97,35.5],[-97.5,35]]]},"properties":{"id":"a","event":"Tornado Warning",)"
        R"("headline":"Take cover","ends":")" +
        end.toUtf8() + R"("}}]})"
    );
    start();
    const std::string folder = "/ridge/Warnings/Short/";
    EXPECT_THAT(get(folder + "TLX_Warnings_0.gif"), HasSubstr("GIF89a"));
    EXPECT_EQ(json(folder + "TLX_Warnings_0.json")["warnings"][0]["headline"], "Take cover");
    EXPECT_EQ(json(folder + "OKX_Warnings_0.json")["warnings"].toArray().size(), 0);
    EXPECT_EQ(m_sim.alerts.count(), 1);
}

TEST_F(LiveProgramTest, AClosedSiteHasTheAntennaOfItsFollower) {
    put("HDC", ago(3));
    start();
    EXPECT_EQ(framesIn(get("/ridge/RadarImg/N0R/LIX/")).size(), 1U);
    const std::string world = get("/ridge/Overlays/Cities/Short/LIX_City_Short.gfw");
    const auto lines = QString::fromStdString(world.substr(world.find("\r\n\r\n") + 4)).split('\n');
    ASSERT_GE(lines.size(), 6);
    const double step = lines[0].toDouble();
    EXPECT_NEAR(lines[4].toDouble() + 299.5 * step, -90.407, .001);
    EXPECT_NEAR(lines[5].toDouble() - 274.5 * step, 30.519, .001);
}

TEST_F(LiveProgramTest, ReplaysAPastStorm) {
    const FileTime begin = fromCalendar({2021, 12, 11, 2, 0});
    put("TLX", begin - 3 * kFileTimePerMinute);
    put("TLX", begin + 300 * kFileTimePerMinute); // after all that this test lives to see
    m_sim.alerts.setStormWarnings(
        R"({"features":[{"geometry":{"type":"MultiPolygon","coordinates":[[[[-97.5,35],[-97,35],)"
        R"([-97,35.5],[-97.5,35]]]]},"properties":{"status":"NEW","phenomena":"TO",)"
        R"("significance":"W","ps":"Tornado Warning","wfo":"OUN","eventid":2,)"
        R"("polygon_begin":"2021-12-11T01:50:00Z","expire":"2021-12-12T02:30:00Z"}}]})"
    );
    start({"--replay", "2021-12-11T02:00Zx60"});
    EXPECT_THAT(
        m_ready.toStdString(), StartsWith("Serving a replay of 2021-12-11T02:00Zx60 at http://127.")
    );
    EXPECT_THAT(get("/"), HasSubstr("const speed = 60;"));
    EXPECT_THAT(get("/"), HasSubstr("id=\"replay\""));

    const std::string folder = "/ridge/RadarImg/N0R/TLX/";
    const auto names = framesIn(get(folder));
    ASSERT_EQ(names, std::vector<std::string>{"TLX_20211211_0157_N0R.gif"});
    EXPECT_THAT(get(folder + names[0]), HasSubstr("GIF89a"));
    EXPECT_THAT(get(folder + "TLX_20211211_0700_N0R.gif"), StartsWith("HTTP/1.1 404"));
    EXPECT_EQ(
        json("/ridge/Warnings/Short/TLX_Warnings_0.json")["warnings"][0]["event"], "Tornado Warning"
    );
    EXPECT_EQ(m_sim.ring.count(), 0);
    EXPECT_EQ(m_sim.alerts.count("/alerts/active"), 0);

    const QJsonObject status = json("/status");
    const QJsonObject replay = status["replay"].toObject();
    EXPECT_EQ(replay["begin"], "2021-12-11T02:00:00Z");
    EXPECT_EQ(replay["speed"], 60);
    const auto started = QDateTime::fromString(replay["started"].toString(), Qt::ISODateWithMs);
    const auto passed = started.msecsTo(QDateTime::currentDateTimeUtc());
    EXPECT_GE(passed, 0);
    const auto weather = QDateTime::fromString(status["now"].toString(), Qt::ISODate);
    const auto weatherBegin = QDateTime::fromString("2021-12-11T02:00:00Z", Qt::ISODate);
    EXPECT_LE(weatherBegin.msecsTo(weather), 60 * passed);
    EXPECT_GE(weatherBegin.msecsTo(weather), 0);
}

TEST_F(LiveProgramTest, PublishesSomeSites) {
    put("TLX", ago(3));
    prepare({"--publish", m_folder.filePath("www"), "--sites", "TLX", "--once"});
    m_process.start();
    ASSERT_TRUE(m_process.waitForFinished(kDeadline));
    EXPECT_EQ(m_process.exitCode(), 0) << m_process.readAllStandardError().constData();
    const QByteArray index = readFile(m_folder.filePath("www/ridge/RadarImg/N0R/TLX/index.html"));
    const auto names = framesIn(index.toStdString());
    ASSERT_EQ(names.size(), 1U);
    EXPECT_THAT(
        readFile(m_folder.filePath("www/ridge/RadarImg/N0R/TLX/") + names[0].c_str()).toStdString(),
        StartsWith("GIF89a")
    );
}

// Two viewers of a user, each with a server of its own.
TEST_F(LiveProgramTest, AServerLeavesWhatAnotherOneOfTheSameStoreWants) {
    put("TLX", ago(300));
    put("TLX", ago(3));
    const QStringList store{"--cache", m_folder.filePath("store"), "--hours"};
    const std::string folder = "/ridge/RadarImg/N0R/TLX/";
    const auto fetchAll = [&] {
        for (const std::string& name : framesIn(get(folder))) {
            EXPECT_THAT(get(folder + name), HasSubstr("GIF89a"));
        }
    };
    m_port = start(m_process, store + QStringList{"26"});
    fetchAll();
    ASSERT_EQ(stored(), 2);
    const int downloads = m_sim.bucket.count("/TLX_N0B");

    const int port = std::exchange(m_port, start(m_other, store + QStringList{"4"}));
    EXPECT_EQ(framesIn(get(folder)).size(), 1U);
    EXPECT_EQ(stored(), 2) << "the other one lists 26 hours";
    end(m_other);
    m_port = port;
    fetchAll();
    EXPECT_EQ(m_sim.bucket.count("/TLX_N0B"), downloads) << "but for listings";

    end(m_process);
    m_port = start(m_other, store + QStringList{"4"});
    while (stored() > 1) {
        EXPECT_EQ(framesIn(get(folder)).size(), 1U); // it cleans meanwhile
    }
}

TEST_F(LiveProgramTest, EndsAtOnceThoughAProviderIsSilent) {
    m_sim.bucket.breakBy(answers::silence());
    start();
    const RawClient client(m_port);
    client.send("GET /ridge/RadarImg/N0R/TLX/ HTTP/1.1\r\n\r\n");
    while (m_sim.bucket.count() == 0) {
    }
    QElapsedTimer timer;
    timer.start();
    m_process.terminate();
    ASSERT_TRUE(m_process.waitForFinished(kDeadline));
    EXPECT_EQ(m_process.exitCode(), 0);
    EXPECT_LT(timer.elapsed(), 5000);
}

} // namespace
} // namespace raincast
