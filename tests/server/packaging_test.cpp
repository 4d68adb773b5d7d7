// SPDX-License-Identifier: MIT
// The settings that are installed with the server, in the programs that they are for.
#include "core/clock.h"
#include "support/files.h"
#include "support/gif_maker.h"
#include "support/loopback.h"
#include "support/peer_servers.h"
#include "tree/fake_frames.h"
#include "tree/layer_store.h"
#include "tree/publisher.h"

#include <QDirIterator>
#include <QProcess>
#include <QRegularExpression>
#include <QStandardPaths>
#include <QTemporaryDir>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <httplib.h>

namespace raincast {
namespace {

using ::testing::HasSubstr;

constexpr int kDeadline = 120'000; // milliseconds

QString packaged(const char* name) {
    return QString::fromUtf8(
        readFile(QStringLiteral(RAINCAST_SOURCE_DIR "/packaging/") + QLatin1String(name))
    );
}

/// Asks a server and waits as long as a slow machine needs. A status of 0 where no answer came.
httplib::Response ask(const QString& host, const char* path, const httplib::Headers& headers = {}) {
    httplib::Client client("http://" + host.toStdString());
    client.set_decompress(!headers.contains("Accept-Encoding"));
    client.set_connection_timeout(std::chrono::milliseconds(kDeadline));
    client.set_read_timeout(std::chrono::milliseconds(kDeadline));
    const auto answer = client.Get(path, headers);
    EXPECT_TRUE(answer) << path << ": " << httplib::to_string(answer.error());
    httplib::Response none;
    none.status = 0;
    return answer ? *answer : none;
}

/// A frame that a viewer can show, of one colour.
QByteArray framePicture(int colour) {
    return makeGif({.screen = {600, 550}, .pixel = [colour](int, int) { return colour; }});
}

/// A published tree of some sites.
class PublishedTree {
public:
    explicit PublishedTree(QStringList sites) : m_sites(std::move(sites)) {
        m_tree.addPage("/", "text/html", [] { return QByteArray("home"); });
        m_tree.addPage("/status", "application/json", [] { return QByteArray("{}"); });
    }

    /// Brings the folder up to date, as a server that has just been started does.
    void publish(int detail = 1) {
        Publisher publisher(m_tree, folder(), {m_sites, "data", detail}, [](const QString&) {});
        EXPECT_TRUE(publisher.publish());
    }
    [[nodiscard]] QString folder() const { return m_folder.filePath("www"); }
    [[nodiscard]] QString file(const char* path) const { return folder() + u'/' + path; }

    FakeFrames frames;

private:
    QStringList m_sites;
    QTemporaryDir m_folder;
    MapData m_maps{MapDataFiles()};
    LayerStore m_layers{m_maps, QString()};
    ImageTree m_tree{frames, m_layers};
};

/// Published trees at a time of the test's own.
class PublishedTest : public ::testing::Test {
protected:
    PublishedTest() : m_clock(fromCalendar({2018, 7, 25, 20, 0})) { Clock::use(&m_clock); }
    ~PublishedTest() override { Clock::use(nullptr); }

    [[nodiscard]] std::set<FileTime> lastTwo() const {
        return {m_clock.now() - 5 * kFileTimePerMinute, m_clock.now()};
    }
    /// The installed settings for a tree.
    static std::unique_ptr<NginxServer> serve(const PublishedTree& tree) {
        QString settings = packaged("nginx-raincast.conf");
        settings.replace("listen 80;", "listen LISTEN;").remove("listen [::]:80;");
        settings.replace("/var/lib/raincast/www", "\"ROOT\"");
        return std::make_unique<NginxServer>(tree.folder(), settings);
    }

    ManualClock m_clock;
};

/// A published tree of one site with two frames, behind nginx with the installed settings.
class NginxSettingsTest : public PublishedTest {
protected:
    NginxSettingsTest() {
        m_tree.frames.times = lastTwo();
        m_tree.publish();
        m_tree.publish(2);
        for (const char* file :
             {"ridge/RadarImg/N0R/LWX/LWX_20180725_2005_N0R.gif.part",
              "ridge/x2/RadarImg/N0R/LWX/LWX_20180725_2005_N0R.gif.part",
              "ridge/Overlays/Cities/Short/LWX_City_Short.gif.part",
              "ridge/Overlays/Cities/Short/.LWX_City_Short.gif"}) {
            writeFile(m_tree.file(file), "GI");
        }
    }

    void start() { m_nginx = serve(m_tree); }
    [[nodiscard]] httplib::Response
    get(const char* path, const httplib::Headers& headers = {}) const {
        return ask(m_nginx->host(), path, headers);
    }
    [[nodiscard]] int statusOf(const char* path) const { return get(path).status; }

    PublishedTree m_tree{{"LWX"}};
    std::unique_ptr<NginxServer> m_nginx;
};

constexpr auto kFinal = "public, max-age=31536000, immutable";

TEST_F(NginxSettingsTest, ServeAPublishedTree) {
    if (NginxServer::program().isEmpty()) {
        GTEST_SKIP() << "nginx is not installed";
    }
    start();
    const struct {
        const char* path;
        const char* type;
        const char* caching;
        const char* text;
    } rows[] = {
        {"/", "text/html; charset=utf-8", "no-cache", "home"},
        {"/status", "application/json", "no-cache", "{}"},
        {"/ridge/RadarImg/N0R/LWX/", "text/html; charset=utf-8", "max-age=30",
         "\"LWX_20180725_2000_N0R.gif\""},
        {"/ridge/RadarImg/N0R/LWX/LWX_20180725_1955_N0R.gif", "image/gif", kFinal, "LWXN0R"},
        {"/ridge/RadarImg/N0R/LWX/LWX_20180725_2000_N0R.gif", "image/gif", "max-age=30", "LWXN0R"},
        {"/ridge/Warnings/Short/LWX_Warnings_0.gif", "image/gif", "max-age=30", "GIF89a"},
        {"/ridge/Warnings/Short/LWX_Warnings_0.json", "application/json", "max-age=30", "polygons"},
        {"/ridge/Overlays/Topo/Long/LWX_Topo_Long.jpg", "image/jpeg", "max-age=86400", "JFIF"},
        {"/ridge/Overlays/Cities/Short/LWX_City_Short.gfw", "text/plain; charset=utf-8",
         "max-age=86400", "0.0"},
        {"/weather_radar/basemaps/LWX_City_Short.gif", "image/gif", "max-age=86400", "GIF89a"},
        {"/ridge/Overlays/Rivers/Short/", "text/html", "max-age=30", "LWX_Rivers_Short.gif"},
        {"/ridge/x2/RadarImg/N0R/LWX/LWX_20180725_1955_N0R.gif", "image/gif", kFinal, "LWXN0R2"},
        {"/ridge/x2/RadarImg/N0R/LWX/LWX_20180725_2000_N0R.gif", "image/gif", "max-age=30",
         "LWXN0R2"},
        {"/ridge/x2/Warnings/Short/LWX_Warnings_0.gif", "image/gif", "max-age=30", "GIF89a"},
        {"/ridge/x2/Overlays/Topo/Long/LWX_Topo_Long.jpg", "image/jpeg", "max-age=86400", "JFIF"},
        {"/weather_radar/x2/basemaps/LWX_City_Short.gif", "image/gif", "max-age=86400", "GIF89a"},
    };
    for (const auto& row : rows) {
        const auto answer = get(row.path);
        EXPECT_EQ(answer.status, 200) << row.path;
        EXPECT_THAT(answer.get_header_value("Content-Type"), HasSubstr(row.type)) << row.path;
        EXPECT_EQ(answer.get_header_value("Cache-Control"), row.caching) << row.path;
        EXPECT_EQ(answer.get_header_value("X-Content-Type-Options"), "nosniff") << row.path;
        EXPECT_THAT(answer.body, HasSubstr(row.text)) << row.path;
        const std::string tag = answer.get_header_value("ETag");
        if (!QByteArray(row.path).endsWith("Short/")) { // nginx's own listings have none
            EXPECT_EQ(get(row.path, {{"If-None-Match", tag}}).status, 304) << row.path;
        }
    }
    EXPECT_EQ(statusOf("/.layers"), 403);
    EXPECT_EQ(statusOf("/ridge/RadarImg/N0R/LWX/.LWX_20180725_2000_N0R.gif"), 403);
    EXPECT_EQ(statusOf("/ridge/RadarImg/N0R/LWX/LWX_20180725_2005_N0R.gif.part"), 403);
    EXPECT_EQ(statusOf("/ridge/Overlays/Cities/Short/LWX_City_Short.gif.part"), 403);
    EXPECT_EQ(statusOf("/ridge/Overlays/Cities/Short/.LWX_City_Short.gif"), 403);
    EXPECT_EQ(statusOf("/ridge/RadarImg/N0R/LWX/LWX_20180725_2010_N0R.gif"), 404);
    EXPECT_EQ(statusOf("/.layers-x2"), 403);
    EXPECT_EQ(statusOf("/ridge/x2/RadarImg/N0R/LWX/.LWX_20180725_2000_N0R.gif"), 403);
    EXPECT_EQ(statusOf("/ridge/x2/RadarImg/N0R/LWX/LWX_20180725_2005_N0R.gif.part"), 403);
    for (const char* folder :
         {"/ridge/x2/", "/ridge/x2/RadarImg/N0R/LWX/", "/ridge/x2/Overlays/Topo/Long/",
          "/weather_radar/x2/", "/weather_radar/x2/basemaps/", "/ridge/x4/",
          "/ridge/x4/RadarImg/N0R/LWX/LWX_20180725_2000_N0R.gif"}) {
        EXPECT_EQ(statusOf(folder), 404) << folder;
    }
}

TEST_F(NginxSettingsTest, TextsComePackedAndPicturesDoNot) {
    if (NginxServer::program().isEmpty()) {
        GTEST_SKIP() << "nginx is not installed";
    }
    start();
    const httplib::Headers gzip{{"Accept-Encoding", "gzip"}};
    const auto plain = get("/ridge/RadarImg/N0R/LWX/");
    EXPECT_EQ(plain.get_header_value("Content-Encoding"), "");
    const auto packed = get("/ridge/Warnings/Short/LWX_Warnings_0.json", gzip);
    EXPECT_EQ(packed.get_header_value("Content-Encoding"), "");
    m_tree.frames.text = QByteArray(2000, 'w');
    m_clock.advance(kFileTimePerMinute);
    m_tree.publish();
    const auto long_ = get("/ridge/Warnings/Short/LWX_Warnings_0.json", gzip);
    EXPECT_EQ(long_.get_header_value("Content-Encoding"), "gzip");
    EXPECT_EQ(long_.get_header_value("Vary"), "Accept-Encoding");
    EXPECT_LT(long_.body.size(), 1000U);
    const std::string tag = long_.get_header_value("ETag");
    EXPECT_EQ(
        get("/ridge/Warnings/Short/LWX_Warnings_0.json",
            {{"Accept-Encoding", "gzip"}, {"If-None-Match", tag}}
        ).status,
        304
    );
    const auto picture = get("/ridge/Overlays/Topo/Long/LWX_Topo_Long.jpg", gzip);
    EXPECT_EQ(picture.get_header_value("Content-Encoding"), "");
    const auto part = get("/ridge/Overlays/Topo/Long/LWX_Topo_Long.jpg", {{"Range", "bytes=0-9"}});
    EXPECT_EQ(part.status, 206);
    EXPECT_EQ(part.body, picture.body.substr(0, 10));
}

TEST_F(NginxSettingsTest, AFrameIsFinalWhenALaterOneIsPublished) {
    if (NginxServer::program().isEmpty()) {
        GTEST_SKIP() << "nginx is not installed";
    }
    start();
    const auto keeping = [this](const char* minute) {
        const std::string path = std::string("/ridge/RadarImg/N0R/LWX/LWX_20180725_") + minute;
        return get((path + "_N0R.gif").c_str()).get_header_value("Cache-Control");
    };
    EXPECT_EQ(keeping("2000"), "max-age=30");
    m_clock.advance(5 * kFileTimePerMinute);
    m_tree.frames.times.insert(m_clock.now());
    m_tree.publish();
    EXPECT_EQ(keeping("2000"), kFinal);
    EXPECT_EQ(keeping("2005"), "max-age=30");
}

// What raincast-fetch brings from a server, as a viewer would.
QByteArray fetchedFrom(const QString& host, const QString& site, const QString& cache) {
    QProcess fetch;
    fetch.start(
        QStringLiteral(RAINCAST_FETCH_PROGRAM),
        {site, "N0R", "--frames", "2", "--interval", "1", "--radar-server", host, "--cache", cache}
    );
    EXPECT_TRUE(fetch.waitForFinished(kDeadline));
    EXPECT_EQ(fetch.exitCode(), 0) << fetch.readAllStandardError().toStdString();
    return fetch.readAllStandardOutput();
}

// Two machines that know nothing of each other, and the one that viewers ask.
TEST_F(PublishedTest, SeveralMachinesShareTheSites) {
    if (NginxServer::program().isEmpty()) {
        GTEST_SKIP() << "nginx is not installed";
    }
    PublishedTree plains({"TLX", "INX"});
    PublishedTree rest({"LWX"});
    for (PublishedTree* const tree : {&plains, &rest}) {
        tree->frames.times = lastTwo();
        tree->frames.text = tree == &plains ? "plains" : "rest";
        tree->frames.picture = framePicture(tree == &plains ? 1 : 2);
        tree->publish();
        tree->publish(2);
    }
    EXPECT_FALSE(QFile::exists(plains.file("ridge/RadarImg/N0R/LWX")));
    EXPECT_FALSE(QFile::exists(rest.file("ridge/RadarImg/N0R/TLX")));
    auto plainsServer = serve(plains);
    const auto restServer = serve(rest);
    const QTemporaryDir cache;
    QString settings = packaged("nginx-raincast-sites.conf");
    settings.replace("listen 80;", "listen LISTEN;").remove("listen [::]:80;");
    settings.replace("10.0.0.11:80", plainsServer->host());
    settings.replace("10.0.0.12:80", restServer->host());
    settings.replace("/var/cache/nginx/raincast", cache.filePath("copies"));
    const NginxServer front(cache.path(), settings);
    const auto get = [&](const char* path, const httplib::Headers& headers = {}) {
        return ask(front.host(), path, headers);
    };
    const std::pair<const char*, const PublishedTree&> rows[] = {
        {"/ridge/RadarImg/N0R/TLX/TLX_20180725_1955_N0R.gif", plains},
        {"/ridge/RadarImg/N0R/INX/INX_20180725_1955_N0R.gif", plains},
        {"/ridge/RadarImg/N0R/LWX/LWX_20180725_1955_N0R.gif", rest},
        {"/ridge/Warnings/Short/TLX_Warnings_0.json", plains},
        {"/ridge/Warnings/Short/LWX_Warnings_0.json", rest},
        {"/weather_radar/basemaps/TLX_City_Short.gif", plains},
        {"/ridge/x2/RadarImg/N0R/TLX/TLX_20180725_1955_N0R.gif", plains},
        {"/ridge/x2/Overlays/Rivers/Long/LWX_Rivers_Long.gif", rest},
        {"/weather_radar/x2/basemaps/TLX_County_Short.gif", plains},
        {"/ridge/RadarImg/N0R/TLX/", plains},
        {"/ridge/RadarImg/N0R/LWX/", rest},
        {"/", rest},
    };
    for (const auto& [path, tree] : rows) {
        const auto answer = get(path);
        EXPECT_EQ(answer.status, 200) << path;
        const QString file = QString::fromLatin1(path).mid(1);
        const bool isFolder = file.isEmpty() || file.endsWith(u'/');
        EXPECT_EQ(
            answer.body,
            readFile(tree.folder() + u'/' + file + (isFolder ? "index.html" : "")).toStdString()
        ) << path;
        EXPECT_NE(answer.get_header_value("Cache-Control"), "") << path;
        EXPECT_NE(answer.get_header_value("ETag"), "") << path;
    }
    for (const char* site : {"TLX", "LWX"}) {
        EXPECT_EQ(fetchedFrom(front.host(), site, cache.filePath("viewer")).count('\n'), 2);
    }
    // One copy of a text is enough, however a viewer may have it packed.
    const char* const text = "/ridge/Overlays/Cities/Short/TLX_City_Short.gfw";
    const QString file = plains.folder() + QLatin1String(text);
    const QByteArray first(2000, 'a');
    writeFile(file, first);
    EXPECT_EQ(get(text, {{"Accept-Encoding", "identity"}}).body, first.toStdString());
    writeFile(file, QByteArray(2000, 'b'));
    const auto copy = get(text, {{"Accept-Encoding", "br, identity"}});
    EXPECT_EQ(copy.body, first.toStdString());
    EXPECT_EQ(copy.get_header_value_count("Vary"), 1U);
    // One that is down takes the others nothing, and what is known of its sites stays for a while.
    plainsServer.reset();
    EXPECT_EQ(get(rows[0].first).status, 200);
    EXPECT_EQ(get(rows[2].first).status, 200);
    EXPECT_EQ(get("/ridge/RadarImg/N0V/TLX/").status, 502);
    EXPECT_EQ(get("/ridge/RadarImg/N0V/LWX/").status, 200);
}

TEST_F(PublishedTest, AViewerWorksWithNginx) {
    if (NginxServer::program().isEmpty()) {
        GTEST_SKIP() << "nginx is not installed";
    }
    PublishedTree tree({"TLX"});
    tree.frames.times = lastTwo();
    tree.frames.picture = framePicture(3);
    tree.publish();
    const auto nginx = serve(tree);
    const QTemporaryDir cache;
    EXPECT_EQ(fetchedFrom(nginx->host(), "TLX", cache.path()).count('\n'), 2);
    EXPECT_EQ(readFile(cache.filePath("TLX/TLX_20180725_2000_N0R.gif")), tree.frames.picture);
}

/// rclone serving a folder by WebDAV, and the installed script that brings a tree there.
class RemoteTest : public PublishedTest {
protected:
    RemoteTest() {
        m_tree.frames.times = lastTwo();
        m_tree.publish();
    }
    ~RemoteTest() override {
        m_server.kill();
        m_server.waitForFinished();
    }

    [[nodiscard]] static QString rclone() {
        return QStandardPaths::findExecutable(QStringLiteral("rclone"));
    }
    /// Begins to serve, and puts a program between the script and rclone that writes down how it is
    /// called and ends like a killed one at a call.
    void start() {
        keepLoopbackFromProxies();
        QDir(m_folder.path()).mkpath("served");
        QDir(m_folder.path()).mkpath("bin");
        m_server.setProcessChannelMode(QProcess::MergedChannels);
        m_server.start(
            rclone(), {"serve", "webdav", m_folder.filePath("served"), "--addr", "127.0.0.1:0",
                       "--config", "/dev/null"}
        );
        static const QRegularExpression address("http://127\\.0\\.0\\.1:\\d+");
        QString said;
        while (!address.match(said).hasMatch() && m_server.waitForReadyRead(kDeadline)) {
            said += QString::fromUtf8(m_server.readAll());
        }
        m_url = address.match(said).captured();
        ASSERT_FALSE(m_url.isEmpty()) << said.toStdString();
        // The script's lock has to go with it.
        putBetween(
            "rclone", "echo \"$*\" >>\"$CALLS\"\n"
                      "if [ \"$(wc -l <\"$CALLS\")\" = \"$LAST\" ]; then\n"
                      "    [ -z \"$AFTER\" ] || " +
                          rclone().toUtf8() +
                          " \"$@\"\n"
                          "    exec 9>&-\n    kill -9 $PPID\n    exit\nfi\n"
        );
    }
    /// Puts some lines before a program that the script calls.
    void putBetween(const QString& name, const QByteArray& lines) const {
        const QString between = m_folder.filePath("bin/" + name);
        const QString real = QStandardPaths::findExecutable(name);
        writeFile(between, "#!/bin/sh\n" + lines + "exec " + real.toUtf8() + " \"$@\"\n");
        QFile::setPermissions(between, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    }
    static constexpr int kFails = -1;
    /// Runs the script up to a call of rclone, or to its end, or to an end by itself that is not
    /// good; what it called.
    QStringList bring(int last = 0) {
        const QString calls = m_folder.filePath("calls");
        QFile::remove(calls);
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert("PATH", m_folder.filePath("bin") + u':' + environment.value("PATH"));
        environment.insert("CALLS", calls);
        environment.insert("LAST", QString::number(last));
        environment.insert("AFTER", m_killsAfter ? "yes" : "");
        environment.insert("RCLONE_CONFIG", "/dev/null");
        environment.insert("RCLONE_CONFIG_STORE_TYPE", "webdav");
        environment.insert("RCLONE_CONFIG_STORE_URL", m_url);
        QProcess script;
        script.setProcessEnvironment(environment);
        script.setProcessChannelMode(QProcess::MergedChannels);
        script.start(
            QStringLiteral(RAINCAST_SOURCE_DIR "/packaging/raincast-to-remote"),
            {m_tree.folder(), "store:radar"}
        );
        EXPECT_TRUE(script.waitForFinished(kDeadline));
        EXPECT_EQ(script.exitStatus() == QProcess::NormalExit && script.exitCode() == 0, last == 0)
            << script.readAll().toStdString();
        return QFile::exists(calls) ? QString::fromUtf8(readFile(calls)).trimmed().split(u'\n')
                                    : QStringList();
    }
    [[nodiscard]] QString served(const QString& path) const {
        return m_folder.filePath("served/radar/") + path;
    }
    static QStringList filesBelow(const QString& folder) {
        QStringList files;
        QDirIterator entries(folder, QDir::Files, QDirIterator::Subdirectories);
        while (entries.hasNext()) {
            files += QDir(folder).relativeFilePath(entries.next());
        }
        files.sort();
        return files;
    }
    /// Every frame that a listing of the remote names is there.
    void expectGoodListings() const {
        static const QRegularExpression name("\"(\\w+\\.gif)\"");
        for (const QString& file : filesBelow(served("ridge/RadarImg"))) {
            const QString folder = served("ridge/RadarImg/") + QFileInfo(file).path() + u'/';
            const bool isListing = file.endsWith(u"index.html");
            const QString page =
                isListing ? QString::fromUtf8(readFile(folder + "index.html")) : QString();
            for (const auto& match : name.globalMatch(page)) {
                EXPECT_GT(QFileInfo(folder + match.captured(1)).size(), 0)
                    << match.captured(1).toStdString();
            }
        }
    }
    void expectSameFiles() const {
        const QStringList files = filesBelow(m_tree.folder());
        EXPECT_EQ(filesBelow(served("")), files);
        for (const QString& file : files) {
            EXPECT_EQ(readFile(served(file)), readFile(m_tree.folder() + u'/' + file))
                << file.toStdString();
        }
    }

    PublishedTree m_tree{{"LWX"}};
    QTemporaryDir m_folder;
    QProcess m_server;
    QString m_url;
    bool m_killsAfter = false; ///< the call that is the last one is made
};

TEST_F(RemoteTest, FramesComeFirstThenListingsThenDeletions) {
    if (rclone().isEmpty()) {
        GTEST_SKIP() << "rclone is not installed";
    }
    start();
    const QStringList first = bring();
    expectSameFiles();
    ASSERT_EQ(first.size(), 5);
    EXPECT_TRUE(first[0].contains("Cache-Control: public, max-age=31536000, immutable"));
    EXPECT_TRUE(first[1].contains("Cache-Control: max-age=30"));
    EXPECT_TRUE(first[2].contains("Cache-Control: max-age=86400"));
    EXPECT_TRUE(bring().isEmpty()) << "nothing is new";

    m_clock.advance(5 * kFileTimePerMinute);
    m_tree.frames.times = lastTwo();
    m_tree.publish();
    // Frames that became final, new ones, listings and warnings, the page, deletions.
    constexpr int kSteps = 5;
    for (int step = 0; step < kSteps; ++step) {
        const int last = step == 0 ? 1 : 2; // the step before, then it is killed
        EXPECT_EQ(bring(last).size(), last);
        expectGoodListings();
    }
    const QStringList rest = bring();
    ASSERT_EQ(rest.size(), 1);
    EXPECT_TRUE(rest[0].startsWith("delete "));
    expectSameFiles();
}

TEST_F(RemoteTest, SharpPicturesAreKeptAsLongAsTheOthers) {
    if (rclone().isEmpty()) {
        GTEST_SKIP() << "rclone is not installed";
    }
    m_tree.publish(4);
    start();
    bring();
    expectSameFiles();
    const QByteArray sent = readFile(m_tree.folder() + ".remote/sent");
    for (const char* line :
         {"final ridge/x4/RadarImg/N0R/LWX/LWX_20180725_1955_N0R.gif ",
          "moment ridge/x4/RadarImg/N0R/LWX/LWX_20180725_2000_N0R.gif ",
          "listing ridge/x4/Warnings/Short/LWX_Warnings_0.gif ",
          "layer ridge/x4/Overlays/Topo/Long/LWX_Topo_Long.jpg ",
          "layer weather_radar/x4/basemaps/LWX_County_Short.gif "}) {
        EXPECT_TRUE(sent.contains(line)) << line;
    }
}

TEST_F(RemoteTest, ATreeInMotionIsCopiedAgain) {
    if (rclone().isEmpty()) {
        GTEST_SKIP() << "rclone is not installed";
    }
    start();
    const QString folder = m_tree.file("ridge/RadarImg/N0R/LWX/");
    const QByteArray gone = (folder + "LWX_20180725_1955_N0R.gif").toUtf8();
    const QByteArray mark = (folder + ".LWX_20180725_2000_N0R.gif").toUtf8();
    putBetween("cp", "rm -f '" + gone + "' '" + mark + "'\n");
    bring();
    EXPECT_FALSE(QFile::exists(QString::fromUtf8(gone)));
    EXPECT_FALSE(QFile::exists(served("ridge/RadarImg/N0R/LWX/LWX_20180725_1955_N0R.gif")));
    EXPECT_TRUE(readFile(m_tree.folder() + ".remote/sent")
                    .contains("moment ridge/RadarImg/N0R/LWX/LWX_20180725_2000_N0R.gif ")
    ) << "it was not final when it was copied";
    putBetween("cp", "echo 'cp: no' >&2\nexit 1\n");
    EXPECT_TRUE(bring(kFails).isEmpty());
}

TEST_F(RemoteTest, WhatCannotBeComparedIsNotTakenForSent) {
    if (rclone().isEmpty()) {
        GTEST_SKIP() << "rclone is not installed";
    }
    start();
    for (const char* program : {"comm", "sed", "split", "cut"}) {
        putBetween(program, "exit 1\n");
        EXPECT_TRUE(bring(kFails).isEmpty()) << program;
        QFile::remove(m_folder.filePath("bin/") + program);
    }
    bring();
    expectSameFiles();
}

TEST_F(RemoteTest, AnEndOfTheFirstRunLosesNothingThatWasSent) {
    if (rclone().isEmpty()) {
        GTEST_SKIP() << "rclone is not installed";
    }
    start();
    constexpr int kPages = 501; // two pieces
    for (int i = 0; i < kPages; ++i) {
        writeFile(m_tree.file("page") + QString::number(i), "page");
    }
    EXPECT_EQ(bring(6).size(), 6);
    EXPECT_EQ(bring().size(), 1) << "the last piece";
    expectSameFiles();
}

TEST_F(RemoteTest, WhatCameAcrossBeforeAnEndIsDeletedWhenItIsGone) {
    if (rclone().isEmpty()) {
        GTEST_SKIP() << "rclone is not installed";
    }
    start();
    m_killsAfter = true;
    bring(1);
    EXPECT_TRUE(QFile::exists(served("ridge/RadarImg/N0R/LWX/LWX_20180725_1955_N0R.gif")));
    m_clock.advance(5 * kFileTimePerMinute);
    m_tree.frames.times = lastTwo();
    m_tree.publish();
    bring();
    expectSameFiles();
}

} // namespace
} // namespace raincast
