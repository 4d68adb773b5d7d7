// SPDX-License-Identifier: MIT
#include "along/taking_along.h"
#include "core/clock.h"
#include "image/cached_frames.h"
#include "net/downloads.h"
#include "radar/catalogue/products.h"
#include "support/full_disk.h"
#include "support/http_server.h"
#include "support/loopback.h"
#include "support/qt_app.h"
#include "support/radar_tree.h"
#include "support/scoped_http.h"

#include <QDir>
#include <QTemporaryDir>
#include <QTest>

#include <gmock/gmock.h>

#include <optional>

namespace raincast {
namespace {

using testing::AllOf;
using testing::Each;
using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

/// The answers to requests for warnings, of which there are none.
constexpr qint64 kAbsent = 200;

class TakingAlongTest : public test::GuiTest {
protected:
    TakingAlongTest() {
        Clock::use(&m_clock);
        plan.siteIds = {"MUX", "DAX"};
        plan.like.animate = true;
        plan.like.frameCount = 2;
        plan.like.cacheFolder = folder.filePath("cache");
        plan.servers = {server->host(), server->host()};
        for (const char* site : {"MUX", "DAX"}) {
            publish(site);
        }
    }
    ~TakingAlongTest() override { Clock::use(nullptr); }

    void publish(const QString& site) {
        for (const char* range : {"Short", "Long"}) {
            test::publishLayers(*server, site, range);
        }
        for (const RadarProduct& product : radarProducts()) {
            test::publishFrames(
                *server, {"20190519_0534", "20190519_0544", "20190519_0554"}, site,
                product.codeText().toString()
            );
        }
    }
    AlongResult take() {
        std::optional<AlongResult> result;
        TakingAlong taking(
            plan, downloads,
            [this](const TakingAlong::Progress& progress) { steps.push_back(progress); },
            [&](const AlongResult& ended) { result = ended; }
        );
        EXPECT_TRUE(QTest::qWaitFor([&] { return result.has_value(); }, 60'000));
        return result.value_or(AlongResult());
    }
    [[nodiscard]] std::vector<std::string> missing(const AlongResult& result) const {
        std::vector<std::string> lines;
        for (QString line : result.missing) {
            lines.push_back(line.replace(plan.servers.radar, "radar.example").toStdString());
        }
        return lines;
    }
    /// The frames that an item shows without a network.
    [[nodiscard]] std::size_t framesInCache(const QString& site, int product) const {
        RadarState state = plan.like;
        state.siteId = site;
        state.product = product;
        return loadCachedRadar(state, Clock::current().now()).frames.size();
    }
    [[nodiscard]] QStringList files(const QString& site) const {
        return QDir(plan.like.cacheFolder + "/" + site).entryList(QDir::Files);
    }

    const ScopedHttp m_shortWaits;
    const ManualClock m_clock{fromCalendar({2019, 5, 19, 6, 0})};
    QTemporaryDir folder;
    std::unique_ptr<HttpServer> server = std::make_unique<HttpServer>();
    AlongPlan plan;
    std::vector<TakingAlong::Progress> steps;
    Downloads downloads;
};

TEST_F(TakingAlongTest, AllProductsAndLayersOfEachSiteAreInTheCache) {
    const AlongResult result = take();
    EXPECT_THAT(missing(result), IsEmpty());
    EXPECT_EQ(result.stopped, QString());
    EXPECT_EQ(result.sites, 2);
    EXPECT_EQ(result.wanted, 2);
    qint64 bytes = 0;
    for (const char* site : {"MUX", "DAX"}) {
        for (int product = 0; product < static_cast<int>(kRadarProductCount); ++product) {
            EXPECT_EQ(framesInCache(site, product), 2U) << site << product;
        }
        // 7 times 2 frames; and of each range 5 layers and the world file
        EXPECT_THAT(files(site), SizeIs(7 * 2 + 2 * 6));
        for (const QString& file : files(site)) {
            bytes += QFileInfo(plan.like.cacheFolder + "/" + site + "/" + file).size();
        }
    }
    EXPECT_GE(result.bytes, bytes) << "as many as the files have";
    EXPECT_LT(result.bytes, bytes + kAbsent);
}

TEST_F(TakingAlongTest, TheWayIsReported) {
    const AlongResult result = take();
    ASSERT_FALSE(steps.empty());
    EXPECT_EQ(steps.front().thing, QStringLiteral("MUX Base Reflectivity"));
    EXPECT_EQ(steps.back().thing, QStringLiteral("DAX long range maps"));
    EXPECT_EQ(steps.back().wanted, 2 * 9);
    EXPECT_EQ(steps.back().done, 2 * 9 - 1);
    for (std::size_t i = 1; i < steps.size(); ++i) {
        EXPECT_LE(steps[i - 1].done, steps[i].done);
        EXPECT_LE(steps[i - 1].bytes, steps[i].bytes);
    }
    EXPECT_LE(steps.back().bytes, result.bytes);
}

TEST_F(TakingAlongTest, WhatIsThereIsNotFetchedAgain) {
    static_cast<void>(take());
    const AlongResult again = take();
    EXPECT_EQ(again.sites, 2);
    EXPECT_LT(again.bytes, kAbsent);
}

TEST_F(TakingAlongTest, WhatTheServerLacksIsNamedAndTheRestComes) {
    server->serve(test::framesPath("MUX", "N0V"), "none", 404);
    server->serve("/ridge/Overlays/Topo/Short/MUX_Topo_Short.jpg", "none", 404);
    server->serve("/weather_radar/basemaps/DAX_City_Long.gif", "none", 404);
    const AlongResult result = take();
    EXPECT_EQ(result.stopped, QString());
    EXPECT_EQ(result.sites, 0);
    EXPECT_THAT(
        missing(result), ElementsAre(
                             "MUX Velocity: No radar images found on server. "
                             "radar.example answers with error 404.",
                             "MUX maps: 1 file is missing. radar.example answers with error 404.",
                             "DAX long range maps: 1 file is missing. "
                             "radar.example answers with error 404."
                         )
    );
    EXPECT_TRUE(files("MUX").contains("MUX_City_Short.gif")) << "what comes after the missing one";
    EXPECT_EQ(framesInCache("MUX", 6), 2U);
}

TEST_F(TakingAlongTest, AServerThatIsAwayEndsItSoon) {
    server.reset();
    const AlongResult result = take();
    EXPECT_EQ(result.stopped, plan.servers.radar + " does not answer.");
    EXPECT_EQ(result.sites, 0);
    EXPECT_EQ(result.bytes, 0);
    EXPECT_THAT(missing(result), SizeIs(2));
    EXPECT_THAT(
        missing(result).front(), EndsWith("Could not access server. radar.example does not answer.")
    );
}

TEST_F(TakingAlongTest, ABasemapServerThatIsAwayCostsItsLayersAlone) {
    const RefusingPort refusing;
    plan.servers.basemap = refusing.host();
    const AlongResult result = take();
    EXPECT_EQ(result.stopped, QString());
    EXPECT_EQ(result.sites, 0);
    ASSERT_THAT(missing(result), SizeIs(4));
    EXPECT_THAT(missing(result), Each(HasSubstr("2 files are missing.")));
    for (const char* site : {"MUX", "DAX"}) {
        EXPECT_THAT(files(site), SizeIs(7 * 2 + 2 * 4));
    }
}

TEST_F(TakingAlongTest, AFullDiskEndsIt) {
    const FullDisk full(2000); // a GIF of one column fits in, a topo map does not
    const AlongResult result = take();
    EXPECT_THAT(
        result.stopped.toStdString(),
        AllOf(HasSubstr("Could not write to the cache folder"), HasSubstr("File too large"))
    );
    EXPECT_EQ(result.sites, 0);
}

TEST_F(TakingAlongTest, ACacheThatCannotBeMadeEndsIt) {
    plan.like.cacheFolder = "/proc/no/such/folder";
    EXPECT_THAT(take().stopped.toStdString(), HasSubstr("Could not write to the cache folder"));
    plan.like.cacheFolder.clear();
    EXPECT_EQ(take().stopped, QStringLiteral("There is no folder for the image cache."));
}

TEST_F(TakingAlongTest, ItsEndCancelsIt) {
    bool ended = false;
    {
        const TakingAlong taking(
            plan, downloads, [](const auto&) {}, [&](const AlongResult&) { ended = true; }
        );
        EXPECT_TRUE(QTest::qWaitFor([&] { return server->count() >= 3; }));
    }
    const int asked = server->count();
    for (int i = 0; i < 10; ++i) {
        QCoreApplication::processEvents();
    }
    EXPECT_FALSE(ended);
    EXPECT_LE(server->count(), asked + Downloads::kMostConnections) << "what was under way";
}

} // namespace
} // namespace raincast
