// SPDX-License-Identifier: MIT
#include "geo/geo_reference.h"
#include "radar/basemaps.h"
#include "radar/radar_view.h"
#include "support/files.h"
#include "support/gif_maker.h"
#include "support/http_server.h"
#include "support/loopback.h"
#include "support/radar_tree.h"
#include "support/scoped_http.h"

#include <QTemporaryDir>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace raincast {
namespace {

using ::testing::ElementsAre;

const QString kLoading = QStringLiteral("Loading basemap...\n");
const QString kNoInternet =
    QStringLiteral("Failed to access\nthe internet. Please\ncheck your connection\nsettings.");

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
    [[nodiscard]] ImagePixel centrePixel() const override { return {}; }
    [[nodiscard]] GeoPosition centrePosition() const override {
        return m_geoReference.valid() ? GeoPosition{37.5, -121.5} : GeoPosition{};
    }
    [[nodiscard]] GeoReference& geoReference() override { return m_geoReference; }
    void geoReferenceChanged(GeoPosition centre) override { centres.push_back(centre); }
    bool changeSite(const QString& /*siteId*/) override { return false; }
    void showWaiting(bool waiting) override { waits += waiting ? "wait " : "go on "; }
    void contentChanged() override { ++changes; }

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
        return LoadBasemaps(
            m_state, m_shown, m_basemaps, m_view, {m_radar.host(), m_basemap.host()}, "MUX",
            updateRadar
        );
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
    ASSERT_TRUE(load());
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

/// What is missing, and what comes of it.
struct Missing {
    const char* path;
    bool onRadarServer;
    bool required;
};

TEST_F(BasemapsTest, WorldFileTopoAndRiversAreRequiredAndOthersAreNot) {
    const Missing rows[] = {
        {"/ridge/Overlays/Cities/Short/MUX_City_Short.gfw", true, true},
        {"/ridge/Overlays/Topo/Short/MUX_Topo_Short.jpg", true, true},
        {"/ridge/Overlays/Rivers/Short/MUX_Rivers_Short.gif", true, true},
        {"/ridge/Overlays/Highways/Short/MUX_Highways_Short.gif", true, false},
        {"/weather_radar/basemaps/MUX_County_Short.gif", false, false},
        {"/weather_radar/basemaps/MUX_City_Short.gif", false, false},
    };
    for (const Missing& row : rows) {
        QDir(m_state.cacheFolder).removeRecursively();
        publish();
        (row.onRadarServer ? m_radar : m_basemap).serve(row.path, "gone", 404);
        EXPECT_EQ(load(), !row.required) << row.path;
        EXPECT_EQ(m_state.status, row.required ? kNoInternet : QString()) << row.path;
    }
}

TEST_F(BasemapsTest, AFailedLoadKeepsWhatWasLoadedAndUpdatesNoRadar) {
    m_radar.serve("/ridge/Overlays/Rivers/Short/MUX_Rivers_Short.gif", "gone", 404);
    EXPECT_FALSE(load(true));
    EXPECT_TRUE(m_basemaps.topo);
    EXPECT_FALSE(m_basemaps.overlay);
    EXPECT_EQ(m_basemap.count(), 0);
    EXPECT_EQ(m_radar.count("/ridge/RadarImg/N0R/MUX/"), 0);
    EXPECT_EQ(m_view.waits, "wait go on ");
    EXPECT_EQ(m_view.changes, 0);
}

TEST_F(BasemapsTest, AServerThatIsAwayTakesThePlacementAway) {
    ASSERT_TRUE(load());
    QDir(m_state.cacheFolder).removeRecursively();
    const RefusingPort refusing;
    EXPECT_FALSE(LoadBasemaps(
        m_state, m_shown, m_basemaps, m_view, {refusing.host(), refusing.host()}, "LWX", true
    ));
    EXPECT_EQ(m_state.siteId, QStringLiteral("LWX"));
    EXPECT_FALSE(m_view.geoReference().valid());
    EXPECT_FALSE(m_basemaps.topo || m_basemaps.overlay);
    EXPECT_EQ(m_state.status, kNoInternet);
}

TEST_F(BasemapsTest, ADefectiveCachedLayerStaysAwayAndIsNotFetchedAgain) {
    writeFile(m_folder.filePath("cache/MUX/MUX_Topo_Short.jpg"), "no picture");
    writeFile(m_folder.filePath("cache/MUX/MUX_County_Short.gif"), "");
    ASSERT_TRUE(load());
    EXPECT_FALSE(m_basemaps.topo);
    EXPECT_EQ(overlayAt(10), kRed); // without a topo the rivers are in the overlay
    EXPECT_EQ(overlayAt(30), kTransparentWhite);
    EXPECT_EQ(m_radar.count("/ridge/Overlays/Topo/Short/MUX_Topo_Short.jpg"), 0);
    EXPECT_EQ(m_basemap.count("/weather_radar/basemaps/MUX_County_Short.gif"), 0);
}

TEST_F(BasemapsTest, WithoutACacheFolderNothingIsAskedFor) {
    m_state.cacheFolder.clear();
    EXPECT_FALSE(load(true));
    EXPECT_EQ(m_state.status, kNoInternet);
    EXPECT_EQ(m_radar.count() + m_basemap.count(), 0);
    EXPECT_FALSE(m_view.geoReference().valid());
}

TEST_F(BasemapsTest, ALayerThatClaimsTooMuchStaysAway) {
    const QByteArray huge = gifThatClaims({8000, 8000});
    m_radar.serve("/ridge/Overlays/Topo/Short/MUX_Topo_Short.jpg", huge);
    m_radar.serve("/ridge/Overlays/Rivers/Short/MUX_Rivers_Short.gif", huge);
    ASSERT_TRUE(load());
    EXPECT_FALSE(m_basemaps.topo);
    EXPECT_EQ(m_basemaps.overlay->size(), QSize(600, 550));
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

} // namespace
} // namespace raincast
