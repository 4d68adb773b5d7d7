// SPDX-License-Identifier: MIT
// Runs the program itself, and lets the viewer's engine work against it.
#include "basemap/basemaps.h"
#include "basemap/radar_view.h"
#include "geo/geo_reference.h"
#include "image/image_file.h"
#include "radar/catalogue/products.h"
#include "radar/catalogue/sites.h"
#include "support/files.h"
#include "support/full_disk.h"
#include "support/level3_maker.h"
#include "support/loopback.h"
#include "support/raw_client.h"
#include "support/transfers.h"

#include <QDeadlineTimer>
#include <QImage>
#include <QProcess>
#include <QTemporaryDir>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <csignal>

namespace raincast {
namespace {

using ::testing::HasSubstr;
using ::testing::StartsWith;

constexpr int kDeadline = 120'000; // milliseconds; nothing takes that long

/// A view that looks at nothing.
class BlindView : public RadarView {
public:
    void statusChanged(const QString&) override {}
    void repaint() override {}
    void progress(int, int) override {}
    [[nodiscard]] ImagePixel centrePixel() const override { return {}; }
    [[nodiscard]] GeoPosition centrePosition() const override { return {}; }
    [[nodiscard]] GeoReference& geoReference() override { return reference; }
    void geoReferenceChanged(GeoPosition) override {}
    void showWaiting(bool) override {}
    void contentChanged() override {}

    GeoReference reference;
};

class ServerProgramTest : public ::testing::Test {
protected:
    ~ServerProgramTest() override {
        if (m_process.state() != QProcess::NotRunning) {
            m_process.kill();
            m_process.waitForFinished(kDeadline);
        }
    }

    void prepare(const QStringList& arguments) {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert("XDG_CACHE_HOME", m_folder.filePath("cache"));
        m_process.setProcessEnvironment(environment);
        m_process.setProgram(QStringLiteral(RAINCAST_SERVER_PROGRAM));
        m_process.setArguments(arguments);
    }

    /// Starts a server at a free port and waits until it says that it is ready.
    void start(const QStringList& arguments = {}) {
        keepLoopbackFromProxies();
        prepare(QStringList{"--listen", "127.0.0.1:0", "--quiet"} + arguments);
        m_process.start();
        m_ready = readLine();
        const qsizetype colon = m_ready.lastIndexOf(':');
        m_port = m_ready.mid(colon + 1).chopped(2).toInt();
        m_host = loopbackHost(m_port);
    }

    QByteArray readLine() {
        while (!m_process.canReadLine() && m_process.waitForReadyRead(kDeadline)) {
        }
        return m_process.readLine();
    }

    /// Runs it to its end; its exit status.
    int run(const QStringList& arguments) {
        prepare(arguments);
        m_process.start();
        EXPECT_TRUE(m_process.waitForFinished(kDeadline));
        EXPECT_EQ(m_process.exitStatus(), QProcess::NormalExit);
        return m_process.exitCode();
    }

    [[nodiscard]] QByteArray get(const QString& path) const {
        Transfers transfers;
        WaitingTransfer transfer(transfers, m_host, true, false);
        const QString file = m_folder.filePath("body");
        QFile::remove(file);
        EXPECT_TRUE(transfer.DownloadToFile(path, file)) << qPrintable(path);
        return readFile(file);
    }

    QTemporaryDir m_folder;
    QProcess m_process;
    QByteArray m_ready;
    int m_port = 0;
    QString m_host;
};

TEST_F(ServerProgramTest, TellsOfItsHealthAndItsNumbers) {
    start();
    const auto get = [this](const std::string& path) {
        const RawClient client(m_port);
        client.send("GET " + path + " HTTP/1.1\r\nConnection: close\r\n\r\n");
        return client.readAll();
    };
    EXPECT_THAT(get("/health/live"), StartsWith("HTTP/1.1 200"));
    EXPECT_THAT(get("/health/ready"), StartsWith("HTTP/1.1 200"));
    EXPECT_THAT(get("/health/"), StartsWith("HTTP/1.1 404"));
    EXPECT_THAT(get("/ridge/RadarImg/N0R/TLX/"), StartsWith("HTTP/1.1 200"));
    const std::string page = get("/metrics");
    EXPECT_THAT(page, HasSubstr("Content-Type: text/plain; version=0.0.4; charset=utf-8\r\n"));
    EXPECT_THAT(page, HasSubstr("Cache-Control: no-store\r\n"));
    EXPECT_THAT(page, HasSubstr("\nraincast_ready 1\n"));
    EXPECT_THAT(
        page, HasSubstr("\nraincast_http_requests_total{kind=\"listing\",status=\"200\"} 1\n")
    );
    EXPECT_THAT(
        page, HasSubstr("\nraincast_http_requests_total{kind=\"page\",status=\"200\"} 2\n")
    );
}

// The journal says by the device and the inode which stream it reads.
TEST_F(ServerProgramTest, InTheJournalLinesHaveTheirPriority) {
    const QString file = m_folder.filePath("journal");
    const auto errors = [&](const QStringList& arguments, bool isJournal) {
        writeFile(file, "");
        struct stat status {};
        EXPECT_EQ(stat(qPrintable(file), &status), 0);
        prepare(arguments);
        QProcessEnvironment environment = m_process.processEnvironment();
        environment.insert(
            "JOURNAL_STREAM",
            QStringLiteral("%1:%2").arg(status.st_dev).arg(status.st_ino + (isJournal ? 0 : 1))
        );
        m_process.setProcessEnvironment(environment);
        m_process.setStandardErrorFile(file, QIODevice::Append);
        m_process.start();
        EXPECT_TRUE(m_process.waitForFinished(kDeadline));
        return readFile(file).trimmed().split('\n');
    };
    const QStringList absent{"--level3", m_folder.filePath("absent")};
    EXPECT_THAT(errors(absent, true)[0].toStdString(), StartsWith("<3>raincast-server: "));
    EXPECT_THAT(errors(absent, false)[0].toStdString(), StartsWith("raincast-server: "));
    const auto usage = errors({"--hours", "x"}, true);
    EXPECT_GT(usage.size(), 1);
    for (const QByteArray& line : usage) {
        EXPECT_THAT(line.toStdString(), StartsWith("<3>"));
    }
    writeFile(m_folder.filePath("roads"), "no roads");
    QDir().mkpath(m_folder.filePath("products"));
    const QStringList roads{
        "--once",
        "--sites",
        "TLX",
        "--level3",
        m_folder.filePath("products"),
        "--publish",
        m_folder.filePath("www"),
        "--hours",
        "0",
        "--roads",
        m_folder.filePath("roads")};
    EXPECT_THAT(
        errors(roads, true),
        ::testing::Contains(QByteArray(
            "<4>raincast-server: The highways layer is empty: " +
            m_folder.filePath("roads").toUtf8() + " has no lines that can be read."
        ))
    );
}

TEST_F(ServerProgramTest, SaysWhenItIsReadyAndEndsOnSigterm) {
    start();
    EXPECT_THAT(m_ready.toStdString(), StartsWith("Serving sample weather at http://127.0.0.1:"));
    EXPECT_THAT(get("/").toStdString(), HasSubstr("<!DOCTYPE html>"));
    EXPECT_THAT(get("/status").toStdString(), HasSubstr("\"source\": \"sample\""));
    m_process.terminate();
    ASSERT_TRUE(m_process.waitForFinished(kDeadline));
    EXPECT_EQ(m_process.exitStatus(), QProcess::NormalExit);
    EXPECT_EQ(m_process.exitCode(), 0);
}

// What a proxy does: one connection, over which the requests of many people come.
TEST_F(ServerProgramTest, ABadRequestEndsItsConnection) {
    start();
    const RawClient client(m_port);
    client.send("GET / HTTP/1.1\r\nbad\r\nGET / HTTP/1.1\r\n\r\nGET / HTTP/1.1\r\n\r\n");
    const std::string answer = client.readAll();
    EXPECT_THAT(answer, StartsWith("HTTP/1.1 400"));
    EXPECT_EQ(answer.find("HTTP/1.1", 1), std::string::npos);
}

TEST_F(ServerProgramTest, UnderstandsEveryFormOfATarget) {
    start();
    for (const char* target : {"/?q?r", "http://radar.home/", "HTTP://127.0.0.1:80/status?a"}) {
        const RawClient client(m_port);
        client.send(std::string("GET ") + target + " HTTP/1.1\r\nConnection: close\r\n\r\n");
        EXPECT_THAT(client.readAll(), StartsWith("HTTP/1.1 200")) << target;
    }
}

TEST_F(ServerProgramTest, AllPicturesOfASiteAreSharpToo) {
    start();
    const auto ask = [this](const QByteArray& path) {
        const RawClient client(m_port);
        client.send("GET " + path.toStdString() + " HTTP/1.1\r\nConnection: close\r\n\r\n");
        return QByteArray::fromStdString(client.readAll());
    };
    const QByteArray listing = ask("/ridge/RadarImg/N0V/TLX/");
    const QByteArray frame = listing.sliced(listing.lastIndexOf("\"TLX_") + 1, 25);
    const std::pair<QByteArray, QByteArray> pictures[] = {
        {"/ridge/", "RadarImg/N0V/TLX/" + frame},
        {"/ridge/", "Warnings/Short/TLX_Warnings_0.gif"},
        {"/ridge/", "Overlays/Topo/Short/TLX_Topo_Short.jpg"},
        {"/ridge/", "Overlays/Rivers/Short/TLX_Rivers_Short.gif"},
        {"/ridge/", "Overlays/Highways/Long/TLX_Highways_Long.gif"},
        {"/ridge/", "Overlays/Cities/Short/TLX_City_Short.gif"},
        {"/weather_radar/", "basemaps/TLX_City_Short.gif"},
        {"/weather_radar/", "basemaps/TLX_County_Long.gif"},
    };
    for (const auto& [root, rest] : pictures) {
        for (const int detail : {2, 4}) {
            const QByteArray path = root + 'x' + QByteArray::number(detail) + '/' + rest;
            const QByteArray answer = ask(path);
            EXPECT_THAT(answer.toStdString(), StartsWith("HTTP/1.1 200")) << path.constData();
            const QByteArray body = answer.sliced(answer.indexOf("\r\n\r\n") + 4);
            EXPECT_EQ(QImage::fromData(body).size(), QSize(600, 550) * detail) << path.constData();
        }
        for (const char* folder : {"x0/", "x1/", "x3/", "x8/", "x22/", "X2/", "x2/x2/", "x2//"}) {
            const QByteArray path = root + folder + rest;
            EXPECT_THAT(ask(path).toStdString(), StartsWith("HTTP/1.1 404")) << path.constData();
        }
    }
    for (const char* path :
         {"/ridge/x2", "/ridge/x2/", "/ridge/x2/RadarImg/N0V/TLX/", "/ridge/x4/Overlays/",
          "/weather_radar/x2/", "/weather_radar/x4/basemaps/",
          "/ridge/x2/Overlays/Topo/Short/TLX_Topo_Short.gfw",
          "/ridge/x2/Warnings/Short/TLX_Warnings_0.json", "/ridge/x2/../etc/passwd"}) {
        EXPECT_THAT(ask(path).toStdString(), StartsWith("HTTP/1.1 404")) << path;
    }
    for (const char* path : {"/ridge/", "/weather_radar/"}) {
        EXPECT_FALSE(ask(path).contains("\"x2/")) << path;
    }
}

// Two addresses hold as many connections as there may be: some idle after a request, some that
// never sent any, some with half a request.
TEST_F(ServerProgramTest, TwoClientsDoNotKeepOthersOut) {
    start();
    std::vector<RawClient> holders;
    for (int i = 0; i < 64; ++i) {
        const RawClient& holder = holders.emplace_back(m_port, 2 + i % 2);
        if (i % 3 == 0) {
            holder.send("GET /none HTTP/1.1\r\n\r\n");
            EXPECT_THAT(holder.readUntil("name here."), StartsWith("HTTP/1.1 404"));
        } else if (i % 3 == 1) {
            holder.send("GET / HTTP/1.1\r\nX-Slow: ");
        }
    }
    std::vector<RawClient> others;
    for (int i = 0; i < 20; ++i) {
        const RawClient& other = others.emplace_back(m_port, 4 + i);
        other.send("GET /status HTTP/1.1\r\n\r\n");
        EXPECT_THAT(other.readUntil("\r\n"), StartsWith("HTTP/1.1 200"));
    }
}

TEST_F(ServerProgramTest, TheViewersEngineWorksAgainstIt) {
    start();
    BlindView view;
    // Every twentieth site with another product each; the site table is in order of states.
    for (std::size_t i = 0; i < kRadarSiteCount; i += 20) {
        RadarState state;
        state.cacheFolder = m_folder.filePath("viewer");
        state.product = static_cast<int>(i / 20 % kRadarProductCount);
        state.animate = true;
        state.frameCount = 3;
        Basemaps maps;
        const QString site = radarSites()[i].idText().toString();
        const BasemapLayers shown;
        Transfers transfers;
        std::unique_ptr<RadarAction> load;
        EXPECT_TRUE(transfers.loop().resultOf<bool>([&](const RadarAction::Done& done) {
            load = LoadBasemaps(
                {state, shown, maps, view, {m_host, m_host}, transfers.downloads()}, site, true,
                done
            );
        })) << qPrintable(site);
        EXPECT_EQ(state.status, QString()) << qPrintable(site);
        EXPECT_EQ(state.frames.size(), 3U);
        for (const RadarFrame& frame : state.frames) {
            ASSERT_NE(frame.bitmap, nullptr);
            EXPECT_EQ(frame.bitmap->size(), QSize(600, 550));
        }
        ASSERT_NE(maps.topo, nullptr);
        EXPECT_TRUE(view.reference.valid());
        const double distance =
            std::abs(view.reference.referenceLongitude() - double(radarSites()[i].longitude));
        EXPECT_LT(distance, 5) << qPrintable(site);
    }
}

TEST_F(ServerProgramTest, NoFrameIsSentTwice) {
    start();
    RadarState state;
    state.siteId = "TLX";
    state.cacheFolder = m_folder.filePath("viewer");
    BlindView view;
    Transfers transfers;
    const auto update = [&] {
        CHttpTransfer transfer(transfers.downloads(), m_host, true, false);
        RadarUpdate run(state, view, transfer, shownPictures());
        return transfers.loop().resultOf<bool>([&run](const RadarUpdate::Done& done) {
            run.UpdateRadar(done);
        });
    };
    EXPECT_TRUE(update());
    EXPECT_TRUE(update());
    QStringList frames;
    for (const auto& [url, outcome] : transfers.finished) {
        const bool isFrame = url.endsWith("_N0R.gif");
        const bool isKnown = isFrame && frames.contains(url);
        EXPECT_EQ(outcome, isKnown ? "304" : "200") << qPrintable(url);
        if (isFrame) {
            frames += url;
        }
    }
    EXPECT_EQ(frames.size(), 2) << "the newest one, and it again or a later one";
}

TEST_F(ServerProgramTest, ServesTheProductsOfAFolder) {
    const QString feed = m_folder.filePath("feed");
    writeFile(feed + "/first", QByteArray::fromStdString(makeLevel3({})));
    start({"--level3", feed, "--hours", "0"});
    const QString listing = "/ridge/RadarImg/N0R/TLX/";
    const QByteArray name = "TLX_20130520_2016_N0R.gif";
    // It is rendered at once, but not before the server is ready.
    while (!get(listing).contains('"' + name + '"')) {
    }
    EXPECT_THAT(get(listing + name).toStdString(), StartsWith("GIF89a"));
    // 2400 pixels across and 2200 down
    EXPECT_THAT(
        get("/ridge/x4/RadarImg/N0R/TLX/" + name).toStdString(),
        StartsWith("GIF89a\x60\x09\x98\x08")
    );
    // What is put there later comes by itself.
    Level3ToMake later;
    later.second += 600;
    writeFile(feed + "/later", QByteArray::fromStdString(makeLevel3(later)));
    while (!get(listing).contains("\"TLX_20130520_2026_N0R.gif\"")) {
    }
}

TEST_F(ServerProgramTest, PublishesOnce) {
    const QString root = m_folder.filePath("www");
    const QString feed = m_folder.filePath("feed");
    writeFile(feed + "/product", QByteArray::fromStdString(makeLevel3({})));
    EXPECT_EQ(
        run({"--level3", feed, "--hours", "0", "--publish", root, "--sites", "TLX", "--once"}), 0
    );
    EXPECT_EQ(
        namesIn(root + "/ridge/RadarImg/N0R/TLX"),
        ".TLX_20130520_2016_N0R.gif TLX_20130520_2016_N0R.gif index.html"
    );
    EXPECT_EQ(namesIn(root), ".layers index.html ridge status weather_radar");
}

TEST_F(ServerProgramTest, PublishesSharpPicturesIfAskedTo) {
    const QString root = m_folder.filePath("www");
    const QString feed = m_folder.filePath("feed");
    writeFile(feed + "/first", QByteArray::fromStdString(makeLevel3({})));
    const QStringList once{"--level3", feed,      "--hours", "0",     "--publish",
                           root,       "--sites", "TLX",     "--once"};
    const QString topo = "/Overlays/Topo/Short/TLX_Topo_Short.jpg";
    ASSERT_EQ(run(once + QStringList{"--detail", "4"}), 0);
    const QDir frames(root + "/ridge/RadarImg/N0R/TLX");
    const QStringList names = frames.entryList({"*.gif"});
    ASSERT_FALSE(names.isEmpty());
    for (const int detail : {2, 4}) {
        const QString folder = QStringLiteral("/x%1").arg(detail);
        const QSize size = QSize(600, 550) * detail;
        const QDir sharp(root + "/ridge" + folder + "/RadarImg/N0R/TLX");
        EXPECT_EQ(sharp.entryList(QDir::Files), names) << detail;
        EXPECT_EQ(QImage(sharp.filePath(names.last())).size(), size);
        EXPECT_EQ(QImage(root + "/ridge" + folder + topo).size(), size);
        EXPECT_EQ(
            QImage(root + "/weather_radar" + folder + "/basemaps/TLX_County_Long.gif").size(), size
        );
    }
    EXPECT_TRUE(readFile(root + "/index.html").contains("let detail = 2;"));
    // What is not asked for any more goes.
    ASSERT_EQ(run(once + QStringList{"--detail", "2"}), 0);
    EXPECT_TRUE(QFile::exists(root + "/ridge/x2" + topo));
    EXPECT_FALSE(QFile::exists(root + "/ridge/x4" + topo));
    ASSERT_EQ(run(once), 0);
    EXPECT_FALSE(QFile::exists(root + "/ridge/x2" + topo));
    EXPECT_TRUE(QFile::exists(root + "/ridge" + topo));
    EXPECT_TRUE(readFile(root + "/index.html").contains("let detail = 1;"));
}

TEST_F(ServerProgramTest, AFullDiskLeavesNoCutFileAndTheNextRunMendsAll) {
    const QString root = m_folder.filePath("www");
    const QString feed = m_folder.filePath("feed");
    const QString frame = root + "/ridge/RadarImg/N0R/TLX/TLX_20130520_2016_N0R.gif";
    writeFile(feed + "/product", QByteArray::fromStdString(makeLevel3({})));
    const QStringList arguments{"--level3", feed,      "--hours", "0",     "--publish",
                                root,       "--sites", "TLX",     "--once"};
    {
        const FullDisk disk(1000); // the program takes it over
        EXPECT_EQ(run(arguments), 1);
    }
    EXPECT_THAT(m_process.readAllStandardError().toStdString(), HasSubstr(": File too large."));
    EXPECT_FALSE(QFile::exists(frame));
    EXPECT_EQ(run(arguments), 0);
    const QByteArray whole = readFile(frame);
    EXPECT_FALSE(QImage::fromData(whole, "GIF").isNull());
    // And what some other program has cut.
    writeFile(frame, whole.first(1000));
    EXPECT_EQ(run(arguments), 0);
    EXPECT_EQ(readFile(frame), whole);
}

TEST_F(ServerProgramTest, KeepsFramesInACacheNamedFromTheWorkingFolder) {
    const QString product = m_folder.filePath("feed/product");
    writeFile(product, QByteArray::fromStdString(makeLevel3({})));
    m_process.setWorkingDirectory(m_folder.path());
    for (const char* root : {"first", "second"}) {
        EXPECT_EQ(
            run(
                {"--level3", "feed", "--cache", "kept", "--hours", "0", "--publish", root,
                 "--sites", "TLX", "--once"}
            ),
            0
        );
        EXPECT_EQ(
            namesIn(m_folder.filePath(root) + "/ridge/RadarImg/N0R/TLX"),
            ".TLX_20130520_2016_N0R.gif TLX_20130520_2016_N0R.gif index.html"
        );
        QFile::remove(product);
    }
}

TEST_F(ServerProgramTest, RendersAProduct) {
    const QString product = m_folder.filePath("product");
    const QString gif = m_folder.filePath("out.gif");
    writeFile(product, QByteArray::fromStdString(makeLevel3({})));
    EXPECT_EQ(run({"render", product, gif}), 0);
    EXPECT_THAT(readFile(gif).toStdString(), StartsWith("GIF89a"));
    EXPECT_TRUE(QFile::exists(m_folder.filePath("out.gfw")));
    writeFile(product, "no product");
    EXPECT_EQ(run({"render", product, gif}), 1);
    EXPECT_EQ(m_process.readAllStandardError().count('\n'), 1);
}

TEST_F(ServerProgramTest, LogsOnStandardErrorUnlessQuiet) {
    const QString roads = m_folder.filePath("roads.geojson");
    writeFile(roads, "no roads");
    const QString line =
        QStringLiteral(
            "raincast-server: The highways layer is empty: %1 has no lines that can be read."
        )
            .arg(roads);
    for (const bool quiet : {false, true}) {
        prepare(
            QStringList{"--listen", "127.0.0.1:0", "--roads", roads} +
            (quiet ? QStringList("--quiet") : QStringList())
        );
        m_process.start();
        EXPECT_THAT(readLine().toStdString(), StartsWith("Serving"));
        m_process.terminate();
        EXPECT_TRUE(m_process.waitForFinished(kDeadline));
        const QStringList log =
            QString::fromUtf8(m_process.readAllStandardError()).split(u'\n', Qt::SkipEmptyParts);
        EXPECT_EQ(log.contains(line), !quiet) << qPrintable(log.join(u'\n'));
        EXPECT_EQ(log.isEmpty(), quiet);
    }
}

TEST_F(ServerProgramTest, EachSignalEndsItInGoodOrder) {
    for (const int number : {SIGTERM, SIGINT, SIGHUP}) {
        start();
        ASSERT_THAT(m_ready.toStdString(), StartsWith("Serving")) << number;
        ::kill(static_cast<pid_t>(m_process.processId()), number);
        EXPECT_TRUE(m_process.waitForFinished(kDeadline)) << number;
        EXPECT_EQ(m_process.exitStatus(), QProcess::NormalExit) << number;
        EXPECT_EQ(m_process.exitCode(), 0) << number;
    }
}

TEST_F(ServerProgramTest, ErrorsAreSaidInOneSentence) {
    const struct {
        QStringList arguments;
        int status;
        const char* text;
    } rows[] = {
        {{"--nothing"}, 2, "nothing"},
        {{"--level3", m_folder.filePath("none")}, 1, "is not a directory."},
        {{"--roads", m_folder.filePath("none")}, 1, "is not a file."},
        {{"--quiet", "--listen", "192.0.2.1:80"}, 1, "Cannot listen at 192.0.2.1, port 80: "},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(run(row.arguments), row.status);
        const std::string error = m_process.readAllStandardError().toStdString();
        EXPECT_THAT(error, StartsWith("raincast-server: "));
        EXPECT_THAT(error, HasSubstr(row.text));
        EXPECT_EQ(m_process.readAllStandardOutput(), "");
    }
}

// A parent that is killed cannot end its server: the system does.
TEST_F(ServerProgramTest, EndsWithItsParent) {
    prepare({});
    m_process.setProgram("/bin/sh");
    m_process.setArguments(
        {"-c", QStringLiteral(RAINCAST_SERVER_PROGRAM) +
                   " --listen 127.0.0.1:0 --quiet --end-with-parent & echo $!; wait"}
    );
    m_process.start();
    const pid_t server = readLine().trimmed().toInt();
    ASSERT_GT(server, 0);
    EXPECT_THAT(readLine().toStdString(), StartsWith("Serving"));
    m_process.kill();
    m_process.waitForFinished(kDeadline);
    bool isGone = false;
    for (QDeadlineTimer deadline(kDeadline); !isGone && !deadline.hasExpired();) {
        const QByteArray state = readFile(QStringLiteral("/proc/%1/stat").arg(server));
        isGone = state == "(none)" || state.contains(") Z");
    }
    EXPECT_TRUE(isGone);
}

} // namespace
} // namespace raincast
