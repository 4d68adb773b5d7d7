// SPDX-License-Identifier: MIT
#include "stations/recent_stations.h"
#include "stations/station_filter.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

namespace raincast {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

std::vector<std::string> found(const char* typed, const QStringList& recent = {}) {
    std::vector<std::string> ids;
    for (const RadarSite* site : findStations(QString::fromUtf8(typed), recent)) {
        ids.push_back(site->idText().toString().toStdString());
    }
    return ids;
}

TEST(StationFilterTest, AnIdIsFoundFirst) {
    EXPECT_THAT(found("mux"), ElementsAre("MUX"));
    EXPECT_EQ(found("okx").front(), "OKX");
    EXPECT_EQ(found("MOB").front(), "MOB") << "it is in the name of others";
}

TEST(StationFilterTest, WordsBeginWordsOfTheName) {
    EXPECT_THAT(found("san fr"), ElementsAre("MUX"));
    EXPECT_THAT(found("  FR   san "), ElementsAre("MUX"));
    EXPECT_THAT(found("ft. smith"), ElementsAre("SRX"));
    EXPECT_THAT(found("eattl"), ElementsAre("ATX")) << "any part will do";
}

TEST(StationFilterTest, AStateComesBeforeNames) {
    const auto sites = found("CA");
    ASSERT_GT(sites.size(), 10U);
    for (std::size_t i = 0; i < 10; ++i) {
        const RadarSite* site = findRadarSite(QString::fromStdString(sites[i]));
        const bool isId = site->idText() == QStringLiteral("CA");
        EXPECT_TRUE(isId || site->nameText().startsWith(QStringLiteral("CA:"))) << sites[i];
    }
    EXPECT_FALSE(found("carib").empty());
    EXPECT_THAT(found("ca eur"), ElementsAre("BHX"));
}

TEST(StationFilterTest, RecentOnesComeFirst) {
    const auto sites = found("ca", {"CBW", "SOX", "OKX"});
    EXPECT_EQ(sites[0], "CBW") << "Caribou";
    EXPECT_EQ(sites[1], "SOX");
    EXPECT_EQ(std::count(sites.begin(), sites.end(), "OKX"), 0) << "it does not fit";
}

TEST(StationFilterTest, NothingIsFoundByNothingOrNonsense) {
    EXPECT_THAT(found(""), IsEmpty());
    EXPECT_THAT(found("   "), IsEmpty());
    EXPECT_THAT(found("qqqq"), IsEmpty());
    EXPECT_THAT(found("mux zzz"), IsEmpty());
}

TEST(RecentStationsTest, TheLatestStandsFirstAndFiveAreKept) {
    RecentStations::forget();
    for (const char* id : {"MUX", "SOX", "OKX", "MUX", "TLX", "ATX", "BOX"}) {
        RecentStations::note(QString::fromLatin1(id));
    }
    EXPECT_EQ(RecentStations::ids().join(u' ').toStdString(), "BOX ATX TLX MUX OKX");
    RecentStations::note(QStringLiteral("no such site"));
    EXPECT_EQ(RecentStations::ids().join(u' ').toStdString(), "BOX ATX TLX MUX");
    RecentStations::forget();
    EXPECT_TRUE(RecentStations::ids().isEmpty());
}

} // namespace
} // namespace raincast
