// SPDX-License-Identifier: MIT
#include "basemap/basemaps.h"
#include "basemap/radar_view.h"
#include "core/clock.h"
#include "geo/geo_reference.h"
#include "radar/cache.h"
#include "radar/catalogue/closed_sites.h"
#include "radar/catalogue/image_geometry.h"
#include "support/fault_server.h"
#include "support/files.h"
#include "support/full_disk.h"
#include "support/gif_maker.h"
#include "support/http_server.h"
#include "support/loopback.h"
#include "support/radar_tree.h"
#include "support/scoped_http.h"
#include "support/transfers.h"

#include <QImage>
#include <QTemporaryDir>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cerrno>
#include <limits>

namespace raincast {
namespace {

using ::testing::ElementsAre;

const QString kLoading = QStringLiteral("Loading basemap...\n");
const QString kNoInternet =
    QStringLiteral("Failed to access\nthe internet. Please\ncheck your connection\nsettings.");

const QString kFrames = QStringLiteral("/ridge/RadarImg/N0R/MUX/");

/// A file of the tree, and whether a load ends without it.
struct TreeFile {
    const char* path;
    bool required;
};
constexpr TreeFile kFiles[] = {
    {"/ridge/Overlays/Cities/Short/MUX_City_Short.gfw", true},
    {"/ridge/Overlays/Topo/Short/MUX_Topo_Short.jpg", true},
    {"/ridge/Overlays/Rivers/Short/MUX_Rivers_Short.gif", true},
    {"/ridge/Overlays/Highways/Short/MUX_Highways_Short.gif", false},
    {"/weather_radar/basemaps/MUX_County_Short.gif", false},
    {"/weather_radar/basemaps/MUX_City_Short.gif", false},
};

constexpr QRgb kRed = 0xFFFF0000;

class RecordingView : public RadarView {
public:
    explicit RecordingView(const RadarState& state) : m_state(state) {}

    void statusChanged(const QString& status) override { statuses.push_back(status); }
    void repaint() override {
        ++repaints;
        EXPECT_EQ(m_state.status, statuses.back());
    }
    void progress(int done, int wanted) override { steps.emplace_back(done, wanted); }
    [[nodiscard]] ImagePixel centrePixel() const override { return pixel; }
    [[nodiscard]] GeoPosition centrePosition() const override {
        return m_geoReference.valid() ? position : GeoPosition{};
    }
    [[nodiscard]] GeoReference& geoReference() override { return m_geoReference; }
    void geoReferenceChanged(GeoPosition centre) override { centres.push_back(centre); }
    void showWaiting(bool waiting) override { waits += waiting ? "wait " : "go on "; }
    void contentChanged() override { ++changes; }

    ImagePixel pixel{300, 275};
    GeoPosition position{37.5, -121.5};
    std::vector<QString> statuses;
    std::vector<std::pair<int, int>> steps;
    std::vector<GeoPosition> centres;
    std::string waits;
    int repaints = 0;
    int changes = 0;

private:
    const RadarState& m_state;
    GeoReference m_geoReference;
};

class BasemapsTest : public ::testing::Test {
protected:
    BasemapsTest() : m_view(m_state) {
        m_state.cacheFolder = m_folder.filePath("cache");
        publish();
    }
    void publish() {
        m_radar.serve(
            "/ridge/Overlays/Cities/Short/MUX_City_Short.gfw", "0.009\n0\n0\n-0.009\n-124.6\n39.6\n"
        );
        m_radar.serve("/ridge/Overlays/Topo/Short/MUX_Topo_Short.jpg", test::topoJpeg());
        m_radar.serve("/ridge/Overlays/Rivers/Short/MUX_Rivers_Short.gif", test::columnGif(10));
        m_radar.serve("/ridge/Overlays/Highways/Short/MUX_Highways_Short.gif", test::columnGif(20));
        m_basemap.serve("/weather_radar/basemaps/MUX_County_Short.gif", test::columnGif(30));
        m_basemap.serve("/weather_radar/basemaps/MUX_City_Short.gif", test::columnGif(40));
    }
    bool load(bool updateRadar = false) {
        return loadFrom(m_radar.host(), m_basemap.host(), "MUX", updateRadar);
    }
    bool
    loadFrom(const QString& radar, const QString& basemap, const QString& site, bool updateRadar) {
        return finish([&](const RadarAction::Done& done) {
            return LoadBasemaps(from(radar, basemap), site, updateRadar, done);
        });
    }
    bool request() { return requestFrom(m_radar.host(), m_basemap.host()); }
    bool requestFrom(const QString& radar, const QString& basemap) {
        return finish([&](const RadarAction::Done& done) {
            return RequestUpdate(from(radar, basemap), done);
        });
    }
    /// Waits for an action's end and ends it there.
    template<typename Begin>
    bool finish(const Begin& begin) {
        std::unique_ptr<RadarAction> action;
        return m_transfers.loop().resultOf<bool>([&](const RadarAction::Done& done) {
            action = begin([&action, done](bool result) {
                action.reset();
                done(result);
            });
        });
    }
    /// What is shown, with pictures from these servers.
    RadarScene from(const QString& radar, const QString& basemap) {
        return {m_state, m_shown, m_basemaps, m_view, {radar, basemap}, m_transfers.downloads()};
    }
    void publishFrame() {
        m_radar.serve(kFrames, "\"MUX_20190519_0554_N0R.gif\"");
        m_radar.serve(kFrames + "MUX_20190519_0554_N0R.gif", test::columnGif(60));
    }
    /// The server that has a file of the tree.
    [[nodiscard]] HttpServer& serverOf(const QString& path) {
        return path.startsWith("/ridge/") ? m_radar : m_basemap;
    }
    [[nodiscard]] QString cached(const QString& path) const {
        return m_state.cacheFolder + "/MUX/" + path.section(u'/', -1);
    }
    void clearCache() { QDir(m_state.cacheFolder).removeRecursively(); }
    void expectAllLayers(const char* what) {
        EXPECT_EQ(m_basemaps.missing, 0) << what;
        ASSERT_TRUE(m_basemaps.topo && m_basemaps.overlay) << what;
        EXPECT_EQ(topoAt(10), kRed) << what;
        EXPECT_EQ(qGreen(topoAt(11)), 120) << what;
        for (const int column : {20, 30, 40}) {
            EXPECT_EQ(overlayAt(column), kRed) << what << ' ' << column;
        }
    }
    [[nodiscard]] QRgb topoAt(int column) const { return m_basemaps.topo->pixel(column, 100); }
    [[nodiscard]] QRgb overlayAt(int column) const {
        return m_basemaps.overlay->pixel(column, 100);
    }

    QTemporaryDir m_folder;
    HttpServer m_radar;
    HttpServer m_basemap;
    RadarState m_state;
    BasemapLayers m_shown;
    Basemaps m_basemaps;
    RecordingView m_view;
    Transfers m_transfers;
};

TEST_F(BasemapsTest, LoadsEveryLayerOntoItsGround) {
    ASSERT_TRUE(load());
    ASSERT_TRUE(m_basemaps.topo && m_basemaps.overlay);
    EXPECT_EQ(topoAt(10), kRed); // the rivers are burnt into the topo
    EXPECT_EQ(qGreen(topoAt(11)), 120);
    EXPECT_EQ(overlayAt(10), kTransparentWhite);
    EXPECT_EQ(overlayAt(20), kRed);
    EXPECT_EQ(overlayAt(30), kRed);
    EXPECT_EQ(overlayAt(40), kRed);
    EXPECT_EQ(overlayAt(41), kTransparentWhite);
    EXPECT_EQ(m_state.siteId, QStringLiteral("MUX"));
    EXPECT_EQ(m_state.imageWidth, 600);
    EXPECT_EQ(m_state.imageHeight, 550);
    EXPECT_TRUE(m_view.geoReference().valid());
    EXPECT_THAT(m_view.statuses, ElementsAre(kLoading, QString()));
    EXPECT_EQ(m_view.waits, "wait go on ");
    EXPECT_EQ(m_view.changes, 1);
    EXPECT_EQ(m_view.steps.back(), std::pair(5, 6));
    EXPECT_EQ(
        namesIn(m_folder.filePath("cache/MUX")),
        "MUX_City_Short.gfw MUX_City_Short.gif MUX_County_Short.gif MUX_Highways_Short.gif "
        "MUX_Rivers_Short.gif MUX_Topo_Short.jpg"
    );
}

TEST_F(BasemapsTest, WithoutTopoTheRiversAreInTheOverlay) {
    m_shown.topo = false;
    ASSERT_TRUE(load());
    EXPECT_FALSE(m_basemaps.topo);
    EXPECT_EQ(overlayAt(10), kRed);
}

TEST_F(BasemapsTest, WithAllLayersOffOnlyTheWorldFileIsFetched) {
    m_shown = {false, false, false, false, false};
    ASSERT_TRUE(load());
    EXPECT_EQ(m_radar.count(), 1);
    EXPECT_EQ(m_basemap.count(), 0);
    EXPECT_FALSE(m_basemaps.topo || m_basemaps.overlay);
    EXPECT_TRUE(m_view.geoReference().valid());
}

TEST_F(BasemapsTest, ASecondLoadOfTheSiteAsksNobody) {
    ASSERT_TRUE(load());
    const int before = m_radar.count() + m_basemap.count();
    CountingConnectionManager connections;
    Transfers transfers(connections);
    const auto action = LoadBasemaps(
        {m_state,
         m_shown,
         m_basemaps,
         m_view,
         {m_radar.host(), m_basemap.host()},
         transfers.downloads()},
        "MUX", false, [](bool) {}
    );
    EXPECT_TRUE(transfers.loop().until([this] { return m_view.changes == 2; }));
    EXPECT_EQ(m_radar.count() + m_basemap.count(), before);
    EXPECT_EQ(connections.established, 0);
    EXPECT_TRUE(m_basemaps.topo && m_basemaps.overlay);
}

TEST_F(BasemapsTest, TheViewIsToldWhereItsCentreWas) {
    ASSERT_TRUE(load());
    ASSERT_TRUE(load());
    EXPECT_THAT(m_view.centres, ElementsAre(GeoPosition{}, GeoPosition{37.5, -121.5}));
}

TEST_F(BasemapsTest, LongRangeProductsHaveLayersOfTheirOwn) {
    m_state.product = 2;
    EXPECT_FALSE(load());
    EXPECT_EQ(m_radar.count("/ridge/Overlays/Cities/Long/MUX_City_Long.gfw"), 1);
}

TEST_F(BasemapsTest, WorldFileTopoAndRiversAreRequiredAndOthersAreNot) {
    for (const TreeFile& file : kFiles) {
        clearCache();
        publish();
        serverOf(file.path).serve(file.path, "gone", 404);
        EXPECT_EQ(load(), !file.required) << file.path;
        EXPECT_EQ(m_state.status, file.required ? kNoInternet : QString()) << file.path;
    }
}

TEST_F(BasemapsTest, ABodyThatIsNotWhatItShouldBeIsADownloadThatFailed) {
    const QByteArray bodies[] = {
        "<html>Please log in</html>", "", QByteArray::fromHex("1F8B08") + test::columnGif(10)};
    for (const TreeFile& file : kFiles) {
        for (const QByteArray& body : bodies) {
            SCOPED_TRACE(file.path + (" " + body.left(6).toStdString()));
            clearCache();
            publish();
            serverOf(file.path).serve(file.path, body);
            EXPECT_EQ(load(), !file.required);
            EXPECT_EQ(m_state.status, file.required ? kNoInternet : QString());
            EXPECT_FALSE(QFile::exists(cached(file.path)));
            publish();
            ASSERT_TRUE(load());
            expectAllLayers(file.path);
        }
    }
}

TEST_F(BasemapsTest, APictureOfAnotherKindIsNotKept) {
    m_radar.serve(kFiles[1].path, test::columnGif(10)); // a GIF for a JPEG
    EXPECT_FALSE(load());
    EXPECT_EQ(m_state.status, kNoInternet);
    publish();
    m_radar.serve(kFiles[2].path, test::topoJpeg());
    EXPECT_FALSE(load());
    EXPECT_EQ(namesIn(m_state.cacheFolder + "/MUX"), "MUX_City_Short.gfw MUX_Topo_Short.jpg");
}

TEST_F(BasemapsTest, ANetworkThatWantsALogInLeavesNothingBehind) {
    for (const auto& answer :
         {answers::respond(200, "<html><a href=\"/login\">Please log in</a>"),
          answers::redirect(302, "http://login.example/")}) {
        const FaultServer portal(answer);
        EXPECT_FALSE(loadFrom(portal.host(), portal.host(), "MUX", true));
        EXPECT_EQ(m_state.status, kNoInternet);
        EXPECT_EQ(namesIn(m_state.cacheFolder + "/MUX"), "");
        ASSERT_TRUE(load());
        expectAllLayers("on the next network");
        clearCache();
    }
}

TEST_F(BasemapsTest, ACachedFileThatIsNoneIsFetchedAgain) {
    const QByteArray defects[] = {
        "", "<html>Please log in</html>", "GIF89a", test::topoJpeg().first(1000),
        "0.009\n0\n0\n-0.009\n-124.6\n"};
    for (const TreeFile& file : kFiles) {
        for (const QByteArray& defect : defects) {
            SCOPED_TRACE(file.path + (" " + defect.left(6).toStdString()));
            writeFile(cached(file.path), defect);
            const int before = serverOf(file.path).count(file.path);
            ASSERT_TRUE(load());
            expectAllLayers(file.path);
            EXPECT_EQ(serverOf(file.path).count(file.path), before + 1);
        }
    }
}

TEST_F(BasemapsTest, ACachedFileThatIsNoneAndCannotBeHadIsMissing) {
    for (const TreeFile& file : kFiles) {
        publish();
        ASSERT_TRUE(load());
        writeFile(cached(file.path), "<html>");
        serverOf(file.path).serve(file.path, "", 503);
        EXPECT_EQ(load(), !file.required) << file.path;
        clearCache();
    }
}

TEST_F(BasemapsTest, ALayerThatWasCutShortIsMissingUntilTheNextLoad) {
    const QByteArray whole = test::columnGif(10);
    m_radar.serve(kFiles[2].path, whole.first(whole.size() / 2));
    ASSERT_TRUE(load()) << "it came, and nobody knows why it is defective";
    EXPECT_EQ(m_basemaps.missing, 1);
    EXPECT_EQ(qGreen(topoAt(10)), 120);
    publish();
    ASSERT_TRUE(load());
    expectAllLayers("whole");
}

// A number that was cut would place the image elsewhere.
TEST_F(BasemapsTest, AWorldFileThatBreaksOffIsNotKept) {
    FaultServer server(answers::cut("0.009\n0\n0\n-0.009\n-124.6\n39.6\n", 28));
    EXPECT_FALSE(loadFrom(server.host(), m_basemap.host(), "MUX", false));
    EXPECT_EQ(m_state.status, kNoInternet);
    EXPECT_FALSE(m_view.geoReference().valid());
    EXPECT_EQ(namesIn(m_state.cacheFolder + "/MUX"), "");
}

TEST_F(BasemapsTest, AnyOfTheFilesMayBeCachedWithoutTheOthers) {
    for (const TreeFile& gone : kFiles) {
        ASSERT_TRUE(load());
        ASSERT_TRUE(QFile::remove(cached(gone.path)));
        ASSERT_TRUE(load());
        expectAllLayers(gone.path);
        EXPECT_EQ(serverOf(gone.path).count(gone.path), 2) << gone.path;
    }
    for (const TreeFile& kept : kFiles) {
        const QByteArray bytes = readFile(cached(kept.path));
        clearCache();
        writeFile(cached(kept.path), bytes);
        const int before = serverOf(kept.path).count(kept.path);
        ASSERT_TRUE(load());
        expectAllLayers(kept.path);
        EXPECT_EQ(serverOf(kept.path).count(kept.path), before) << kept.path;
    }
}

TEST_F(BasemapsTest, AFailedLoadKeepsWhatWasLoadedAndUpdatesNoRadar) {
    m_state.frames = {RadarFrame{nullptr, "1:05", "/old"}};
    m_state.current = m_state.frames[0];
    m_radar.serve("/ridge/Overlays/Rivers/Short/MUX_Rivers_Short.gif", "gone", 404);
    EXPECT_FALSE(load(true));
    EXPECT_TRUE(m_basemaps.topo);
    EXPECT_FALSE(m_basemaps.overlay);
    EXPECT_TRUE(m_state.frames.empty()) << "they are another site's";
    EXPECT_EQ(m_state.current.path, QString());
    EXPECT_EQ(m_basemap.count(), 0);
    EXPECT_EQ(m_radar.count("/ridge/RadarImg/N0R/MUX/"), 0);
    EXPECT_EQ(m_view.waits, "wait go on ");
    EXPECT_EQ(m_view.changes, 0);
}

TEST_F(BasemapsTest, AServerThatIsAwayTakesThePlacementAway) {
    ASSERT_TRUE(load());
    QDir(m_state.cacheFolder).removeRecursively();
    const RefusingPort refusing;
    EXPECT_FALSE(loadFrom(refusing.host(), refusing.host(), "LWX", true));
    EXPECT_EQ(m_state.siteId, QStringLiteral("LWX"));
    EXPECT_FALSE(m_view.geoReference().valid());
    EXPECT_FALSE(m_basemaps.topo || m_basemaps.overlay);
    EXPECT_EQ(m_state.status, kNoInternet);
}

TEST_F(BasemapsTest, WithoutACacheFolderNothingIsAskedFor) {
    m_state.cacheFolder.clear();
    EXPECT_FALSE(load(true));
    EXPECT_EQ(m_state.status, QStringLiteral("There is no folder\nfor the image cache.\n"));
    EXPECT_EQ(m_radar.count() + m_basemap.count(), 0);
    EXPECT_FALSE(m_view.geoReference().valid());
}

TEST_F(BasemapsTest, ACacheFolderThatCannotBeMadeIsTheCause) {
    writeFile(m_state.cacheFolder, "a file where the folder should be");
    EXPECT_FALSE(load(true));
    EXPECT_EQ(m_state.status, cacheFailureText(m_state.cacheFolder, qt_error_string(ENOTDIR)));
    EXPECT_EQ(m_radar.count() + m_basemap.count(), 0);
}

TEST_F(BasemapsTest, ASiteFolderThatCannotBeMadeIsTheCause) {
    ASSERT_TRUE(QDir().mkpath(m_state.cacheFolder));
    writeFile(m_state.cacheFolder + "/MUX", "a file where the folder should be");
    EXPECT_FALSE(load(true));
    EXPECT_EQ(m_state.status, cacheFailureText(m_state.cacheFolder, qt_error_string(ENOTDIR)));
    EXPECT_EQ(m_radar.count() + m_basemap.count(), 0);
    EXPECT_EQ(m_view.steps.size(), 0U);
}

TEST_F(BasemapsTest, ACacheFolderThatCannotBeWrittenIsTheCause) {
    publishFrame();
    for (const TreeFile& file : kFiles) {
        for (const bool updateRadar : {false, true}) {
            clearCache();
            // Only a file is replaced.
            ASSERT_TRUE(QDir().mkpath(cached(file.path)));
            EXPECT_EQ(load(updateRadar), !file.required) << file.path;
            EXPECT_EQ(
                m_state.status, cacheFailureText(m_state.cacheFolder, qt_error_string(EISDIR))
            ) << file.path;
        }
    }
}

TEST_F(BasemapsTest, AFullDiskIsTheCause) {
    {
        const FullDisk disk(100);
        EXPECT_FALSE(load());
    }
    EXPECT_EQ(m_state.status, cacheFailureText(m_state.cacheFolder, qt_error_string(EFBIG)));
    EXPECT_EQ(namesIn(m_state.cacheFolder + "/MUX"), "MUX_City_Short.gfw");
    ASSERT_TRUE(load());
    expectAllLayers("with room");
}

TEST_F(BasemapsTest, ALayerThatClaimsTooMuchStaysAway) {
    m_radar.serve(kFiles[2].path, gifThatClaims({8000, 8000}));
    ASSERT_TRUE(load());
    EXPECT_EQ(m_basemaps.missing, 1);
    EXPECT_EQ(m_basemaps.topo->size(), QSize(600, 550));
    EXPECT_EQ(m_basemaps.overlay->size(), QSize(600, 550));
}

TEST_F(BasemapsTest, AllFilesOfALoadShareWhatItMayBring) {
    const ScopedHttp http;
    httpLimits().actionBytes = 60'000;
    const QByteArray large = test::columnGif(30) + QByteArray(50'000, '\0');
    m_basemap.serve(kFiles[4].path, large);
    m_basemap.serve(kFiles[5].path, large);
    m_shown = {false, false, true, true, true};
    ASSERT_TRUE(load());
    EXPECT_EQ(m_basemaps.missing, 1);
    EXPECT_EQ(
        namesIn(m_state.cacheFolder + "/MUX"),
        "MUX_City_Short.gfw MUX_County_Short.gif MUX_Highways_Short.gif"
    );
}

TEST_F(BasemapsTest, WithTheRadarTheFramesAreDroppedAndFetchedAnew) {
    m_state.frames = {RadarFrame{nullptr, "1:05", "/old"}};
    m_state.current = m_state.frames[0];
    m_radar.serve("/ridge/RadarImg/N0R/MUX/", "\"MUX_20190519_0554_N0R.gif\"");
    m_radar.serve("/ridge/RadarImg/N0R/MUX/MUX_20190519_0554_N0R.gif", test::columnGif(60));
    ASSERT_TRUE(load(true));
    ASSERT_EQ(m_state.frames.size(), 1U);
    EXPECT_TRUE(m_state.current.bitmap);
    EXPECT_THAT(m_view.statuses, ElementsAre(kLoading, "Updating radar image...\n", QString()));

    // Layers alone leave the frames as they are.
    const Bitmap before = m_state.current.bitmap;
    ASSERT_TRUE(load(false));
    EXPECT_EQ(m_state.current.bitmap, before);
}

TEST_F(BasemapsTest, AFailedUpdateIsTheLoadsResult) {
    EXPECT_FALSE(load(true));
    EXPECT_EQ(m_state.status, QStringLiteral("No radar images found on server.\n"));
    EXPECT_TRUE(m_basemaps.topo && m_basemaps.overlay);
    EXPECT_EQ(m_view.changes, 1);
}

// Requests

TEST_F(BasemapsTest, ARequestInsideTheImageUpdatesTheSiteShown) {
    publishFrame();
    ASSERT_TRUE(load());
    const int before = m_basemap.count();
    m_view.waits.clear();
    m_view.repaints = 0;
    for (const ImagePixel inside : {ImagePixel{0, 0}, ImagePixel{599, 549}}) {
        m_view.pixel = inside;
        EXPECT_TRUE(request());
        EXPECT_EQ(m_state.siteId, QStringLiteral("MUX"));
        EXPECT_EQ(m_state.frames.size(), 1U);
    }
    EXPECT_EQ(m_view.waits, "wait go on wait go on ");
    EXPECT_EQ(m_view.repaints, 2 * 4);
    EXPECT_EQ(m_basemap.count(), before) << "the layers are there";
}

TEST_F(BasemapsTest, ARequestOutsideTheImageChangesToTheNearestSite) {
    test::publishLayers(m_radar, "LWX");
    test::publishFrames(m_radar, {"20190519_0554"}, "LWX");
    m_view.position = {38.9, -77.4};
    for (const ImagePixel outside :
         {ImagePixel{-1, 0}, ImagePixel{0, -1}, ImagePixel{600, 0}, ImagePixel{0, 550}}) {
        m_view.pixel = {300, 275};
        ASSERT_TRUE(load());
        m_view.pixel = outside;
        EXPECT_TRUE(request());
        EXPECT_EQ(m_state.siteId, QStringLiteral("LWX"));
        EXPECT_EQ(m_state.frames.size(), 1U);
    }
    EXPECT_EQ(m_radar.count(kFrames), 0);
}

TEST_F(BasemapsTest, WithNoImageLoadedNoPointIsInside) {
    m_view.pixel = {0, 0};
    EXPECT_FALSE(request());
    EXPECT_EQ(m_state.siteId, QStringLiteral("JUA")) << "the nearest to nowhere";
}

TEST_F(BasemapsTest, ACentreThatIsNowhereKeepsTheSite) {
    publishFrame();
    ASSERT_TRUE(load());
    m_view.pixel = {-1, -1};
    m_view.position = {std::numeric_limits<double>::quiet_NaN(), 0};
    EXPECT_TRUE(request());
    EXPECT_EQ(m_state.siteId, QStringLiteral("MUX"));
    EXPECT_EQ(m_state.frames.size(), 1U);
}

TEST_F(BasemapsTest, ALayerThatCouldNotBeHadIsTriedAgainByTheNextUpdate) {
    publishFrame();
    for (const TreeFile& file : kFiles) {
        if (file.path == kFiles[0].path) {
            continue; // without it nothing is placed, and everything is loaded again
        }
        SCOPED_TRACE(file.path);
        clearCache();
        publish();
        serverOf(file.path).serve(file.path, "gone", 404);
        EXPECT_EQ(load(), !file.required);
        EXPECT_GE(m_basemaps.missing, 1);
        publish();
        m_view.changes = 0;
        EXPECT_TRUE(request());
        expectAllLayers(file.path);
        EXPECT_EQ(m_view.changes, 1);
        EXPECT_EQ(m_state.status, QString());
        EXPECT_EQ(m_state.frames.size(), 1U);

        const int before = m_radar.count() + m_basemap.count();
        EXPECT_TRUE(request());
        EXPECT_EQ(m_radar.count() + m_basemap.count(), before + 2) << "listing and warnings";
        EXPECT_EQ(m_view.changes, 1);
    }
}

TEST_F(BasemapsTest, AnUpdateAsksForTheLayersBehindOneThatIsMissing) {
    publishFrame();
    m_radar.serve(kFiles[1].path, "gone", 404); // topo
    m_radar.serve(kFiles[2].path, "gone", 404); // rivers
    EXPECT_FALSE(load(true));
    EXPECT_EQ(m_basemap.count(), 0);
    EXPECT_EQ(m_basemaps.missing, 5);
    EXPECT_TRUE(request());
    EXPECT_EQ(m_state.frames.size(), 1U) << "the radar does not wait for maps";
    EXPECT_EQ(m_basemaps.missing, 2);
    EXPECT_FALSE(m_basemaps.topo);
    for (const int column : {20, 30, 40}) {
        EXPECT_EQ(overlayAt(column), kRed) << column;
    }
    EXPECT_EQ(m_state.status, QString());

    // What is there stays while the rest is still missing.
    const Bitmap overlay = m_basemaps.overlay;
    EXPECT_TRUE(request());
    EXPECT_EQ(m_basemaps.overlay, overlay);
    EXPECT_EQ(m_radar.count(kFiles[2].path), 2);
    publish();
    EXPECT_TRUE(request());
    expectAllLayers("at last");
}

TEST_F(BasemapsTest, AnUpdateFetchesTheRadarBeforeTheMissingLayers) {
    publishFrame();
    m_state.showWarnings = false;
    m_radar.serve(kFiles[3].path, "gone", 404);
    ASSERT_TRUE(load());
    const std::size_t before = m_radar.requests().size();
    EXPECT_TRUE(request());
    std::vector<QString> paths;
    for (const auto& asked : m_radar.requests()) {
        paths.push_back(asked.path);
    }
    paths.erase(paths.begin(), paths.begin() + static_cast<std::ptrdiff_t>(before));
    EXPECT_THAT(paths, ElementsAre(kFrames, kFrames + "MUX_20190519_0554_N0R.gif", kFiles[3].path));
}

TEST_F(BasemapsTest, WithoutAServerNoLayerIsTried) {
    m_basemap.serve(kFiles[4].path, "gone", 404);
    ASSERT_TRUE(load());
    const Basemaps shown = m_basemaps;
    const int before = m_basemap.count();
    const RefusingPort refusing;
    EXPECT_FALSE(requestFrom(refusing.host(), m_basemap.host()));
    EXPECT_EQ(m_state.status, QStringLiteral("Could not access server.\n"));
    EXPECT_EQ(m_basemap.count(), before);
    EXPECT_EQ(m_basemaps.topo, shown.topo);
    EXPECT_EQ(m_basemaps.overlay, shown.overlay);
}

/// A site that was closed: layers and world file in the cache lie round its old antenna.
class MovedSiteTest : public BasemapsTest {
protected:
    MovedSiteTest() {
        const AntennaPosition& old = *findAntenna("LIX");
        for (const QString& range : {QString("Short"), QString("Long")}) {
            for (const char* name :
                 {"Topo_%1.jpg", "Rivers_%1.gif", "Highways_%1.gif", "County_%1.gif",
                  "City_%1.gif"}) {
                keep(
                    QString(name).arg(range),
                    QString(name).startsWith("Topo") ? test::topoJpeg() : test::columnGif(99)
                );
            }
            keep(QStringLiteral("City_%1.gfw").arg(range), worldFile(old));
        }
        keep("Warnings_0.gif", test::columnGif(99));
        for (const QString word : {"Rivers", "Highways"}) {
            m_radar.serve(
                "/ridge/Overlays/" + word + "/Short/LIX_" + word + "_Short.gif", test::columnGif(10)
            );
        }
        m_radar.serve("/ridge/Overlays/Topo/Short/LIX_Topo_Short.jpg", test::topoJpeg());
        for (const QString word : {"County", "City"}) {
            m_basemap.serve(
                "/weather_radar/basemaps/LIX_" + word + "_Short.gif", test::columnGif(10)
            );
        }
        m_radar.serve(kWorld, worldFile(findClosedSite("LIX", Clock::current().now())->follower));
    }
    static QByteArray worldFile(const AntennaPosition& antenna) {
        return QByteArray::fromStdString(
            ImageGeometry(antenna.latitude, antenna.longitude, Range::shortRange).worldFile()
        );
    }
    [[nodiscard]] QString file(const QString& name) const {
        return m_state.cacheFolder + "/LIX/LIX_" + name;
    }
    void keep(const QString& name, const QByteArray& bytes) { writeFile(file(name), bytes); }
    bool loadSite() { return loadFrom(m_radar.host(), m_basemap.host(), "LIX", false); }
    [[nodiscard]] GeoPosition middle() {
        return m_view.geoReference().pixelToGeo({kAntennaColumn, kAntennaRow});
    }
    [[nodiscard]] int requests() const { return m_radar.count() + m_basemap.count(); }

    const QString kWorld = "/ridge/Overlays/Cities/Short/LIX_City_Short.gfw";
};

TEST_F(MovedSiteTest, LayersOfBeforeAreFetchedAgainOnce) {
    EXPECT_TRUE(loadSite());
    EXPECT_EQ(requests(), 6);
    EXPECT_NEAR(middle().latitude, 30.519, 1e-6);
    EXPECT_NEAR(middle().longitude, -90.407, 1e-6);
    EXPECT_EQ(readFile(file("Rivers_Short.gif")), test::columnGif(10));
    EXPECT_FALSE(QFile::exists(file("Rivers_Long.gif"))) << "round the old antenna";
    EXPECT_FALSE(QFile::exists(file("City_Long.gfw")));
    EXPECT_FALSE(QFile::exists(file("Warnings_0.gif")));
    EXPECT_FALSE(QFile::exists(file("City_Short.gfw.new")));
    EXPECT_TRUE(loadSite());
    EXPECT_EQ(requests(), 6);
}

TEST_F(MovedSiteTest, LayersStayWhereTheServerHasTheSamePlaceOrNone) {
    m_radar.serve(kWorld, worldFile(*findAntenna("LIX")));
    EXPECT_TRUE(loadSite());
    EXPECT_EQ(requests(), 1);
    m_radar.serve(kWorld, "<html>log in</html>");
    EXPECT_TRUE(loadSite());
    const RefusingPort refusing;
    EXPECT_TRUE(loadFrom(refusing.host(), refusing.host(), "LIX", false));
    EXPECT_NEAR(middle().latitude, findAntenna("LIX")->latitude, 1e-6);
    EXPECT_EQ(readFile(file("Rivers_Short.gif")), test::columnGif(99));
    EXPECT_TRUE(QFile::exists(file("City_Long.gfw")));
    EXPECT_FALSE(QFile::exists(file("City_Short.gfw.new")));
}

TEST_F(MovedSiteTest, SampleWeatherKeepsToTheOldPlace) {
    QDir().rename(m_state.cacheFolder, m_state.cacheFolder + "2");
    QDir().mkpath(m_state.cacheFolder);
    QDir().rename(m_state.cacheFolder + "2", m_state.cacheFolder + "/.sample");
    m_state.cacheBranch = ".sample";
    EXPECT_TRUE(loadSite());
    EXPECT_EQ(requests(), 0);
}

} // namespace
} // namespace raincast
