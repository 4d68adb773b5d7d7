// SPDX-License-Identifier: MIT
#include "core/clock.h"
#include "maps/map_data.h"
#include "server/status_page.h"
#include "tree/fake_frames.h"

#include <QJsonDocument>
#include <QJsonObject>

#include <gtest/gtest.h>

namespace raincast {
namespace {

TEST(StatusPageTest, TellsWhatTheOperatorWantsToKnow) {
    const ManualClock clock(fromCalendar({2018, 7, 25, 20, 0}));
    Clock::use(&clock);
    FakeFrames frames;
    frames.times = {clock.now() - 6 * kFileTimePerMinute, clock.now() + kFileTimePerMinute};
    MapDataFiles files;
    files.roads = "roads.json";
    const ServerStatus status{
        SourceKind::sample, clock.now(), TreeServer::Counts{{7, 1, 3}, 2}, 42, {}};
    const QByteArray page = statusPage(status, frames, MapData(files));
    Clock::use(nullptr);

    const QJsonObject object = QJsonDocument::fromJson(page).object();
    EXPECT_EQ(object["source"], "sample");
    EXPECT_EQ(object["started"], "2018-07-25T20:00:00Z");
    EXPECT_EQ(object["requests"], 7);
    EXPECT_EQ(object["notFound"], 2);
    EXPECT_EQ(object["refusedConnections"], 1);
    EXPECT_EQ(object["displacedConnections"], 3);
    EXPECT_EQ(object["bytesInMemory"], 42);
    EXPECT_EQ(object["mapData"]["highways"], true);
    EXPECT_EQ(object["mapData"]["relief"], false);
    EXPECT_EQ(object["newest"]["LWX"]["N0R"], "2018-07-25T19:54:00Z");
    EXPECT_EQ(object["newest"].toObject().size(), 155);
}

TEST(StatusPageTest, SitesWithoutFramesAreLeftOut) {
    const FakeFrames frames;
    const QByteArray page = statusPage({}, frames, MapData(MapDataFiles()));
    const QJsonObject object = QJsonDocument::fromJson(page).object();
    EXPECT_TRUE(object["newest"].toObject().isEmpty());
    EXPECT_FALSE(object.contains("requests"));
}

} // namespace
} // namespace raincast
