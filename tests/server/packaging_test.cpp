// SPDX-License-Identifier: MIT
// The settings that are installed with the server, in the programs that they are for.
#include "core/clock.h"
#include "support/files.h"
#include "support/peer_servers.h"
#include "tree/fake_frames.h"
#include "tree/layer_store.h"
#include "tree/publisher.h"

#include <QTemporaryDir>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <httplib.h>

namespace raincast {
namespace {

using ::testing::HasSubstr;

QString packaged(const char* name) {
    return QString::fromUtf8(
        readFile(QStringLiteral(RAINCAST_SOURCE_DIR "/packaging/") + QLatin1String(name))
    );
}

/// A published tree of one site with one frame, behind nginx with the installed settings.
class NginxSettingsTest : public ::testing::Test {
protected:
    NginxSettingsTest() : m_clock(fromCalendar({2018, 7, 25, 20, 0})) {
        Clock::use(&m_clock);
        FakeFrames frames;
        frames.times = {m_clock.now()};
        const MapData maps{MapDataFiles()};
        const LayerStore layers(maps, QString());
        ImageTree tree(frames, layers);
        tree.addPage("/", "text/html", [] { return QByteArray("home"); });
        tree.addPage("/status", "application/json", [] { return QByteArray("{}"); });
        EXPECT_TRUE(Publisher(tree, m_folder.path(), {"LWX"}, "data", [](const QString&) {
                    }).publish());
        writeFile(m_folder.filePath("ridge/RadarImg/N0R/LWX/LWX_20180725_2005_N0R.gif.part"), "GI");
    }
    ~NginxSettingsTest() override { Clock::use(nullptr); }

    void start() {
        QString settings = packaged("nginx-raincast.conf");
        settings.replace("listen 80;", "listen LISTEN;").remove("listen [::]:80;");
        settings.replace("/var/lib/raincast/www", "\"ROOT\"");
        m_nginx = std::make_unique<NginxServer>(m_folder.path(), settings);
        m_client = std::make_unique<httplib::Client>("http://" + m_nginx->host().toStdString());
    }
    [[nodiscard]] httplib::Result get(const char* path) const { return m_client->Get(path); }
    [[nodiscard]] int statusOf(const char* path) const {
        const auto answer = get(path);
        return answer ? answer->status : 0;
    }

    ManualClock m_clock;
    QTemporaryDir m_folder;
    std::unique_ptr<NginxServer> m_nginx;
    std::unique_ptr<httplib::Client> m_client;
};

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
        {"/ridge/RadarImg/N0R/LWX/", "text/html; charset=utf-8", "no-cache",
         "\"LWX_20180725_2000_N0R.gif\""},
        {"/ridge/RadarImg/N0R/LWX/LWX_20180725_2000_N0R.gif", "image/gif", "max-age=86400",
         "LWXN0R"},
        {"/ridge/Warnings/Short/LWX_Warnings_0.gif", "image/gif", "no-cache", "GIF89a"},
        {"/ridge/Warnings/Short/LWX_Warnings_0.json", "application/json", "no-cache", "polygons"},
        {"/ridge/Overlays/Topo/Long/LWX_Topo_Long.jpg", "image/jpeg", "max-age=86400", "JFIF"},
        {"/ridge/Overlays/Cities/Short/LWX_City_Short.gfw", "text/plain; charset=utf-8",
         "max-age=86400", "0.0"},
        {"/ridge/Overlays/Rivers/Short/", "text/html", "no-cache", "LWX_Rivers_Short.gif"},
    };
    for (const auto& row : rows) {
        const auto answer = get(row.path);
        ASSERT_TRUE(answer) << row.path;
        EXPECT_EQ(answer->status, 200) << row.path;
        EXPECT_THAT(answer->get_header_value("Content-Type"), HasSubstr(row.type)) << row.path;
        EXPECT_EQ(answer->get_header_value("Cache-Control"), row.caching) << row.path;
        EXPECT_THAT(answer->body, HasSubstr(row.text)) << row.path;
    }
    EXPECT_EQ(statusOf("/.layers"), 403);
    EXPECT_EQ(statusOf("/ridge/RadarImg/N0R/LWX/LWX_20180725_2005_N0R.gif.part"), 403);
    EXPECT_EQ(statusOf("/ridge/RadarImg/N0R/LWX/LWX_20180725_2010_N0R.gif"), 404);
}

} // namespace
} // namespace raincast
