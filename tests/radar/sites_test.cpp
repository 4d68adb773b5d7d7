// SPDX-License-Identifier: MIT
#include "radar/sites.h"

#include <QFile>
#include <QString>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <string>

namespace raincast {
namespace {

std::string ids(const std::vector<const RadarSite*>& sites) {
    std::string text;
    for (const RadarSite* site : sites) {
        text += (text.empty() ? "" : " ") + site->idText().toString().toStdString();
    }
    return text;
}

TEST(SitesTest, TheTableIsInTheOrderOfItsNames) {
    const RadarSiteTable& sites = radarSites();
    ASSERT_EQ(sites.size(), 155U);
    EXPECT_EQ(sites.front().idText(), u"ABC");
    EXPECT_EQ(sites.front().nameText(), u"AK:Bethel");
    EXPECT_EQ(sites.back().idText(), u"RIW");
    EXPECT_EQ(sites.back().nameText(), u"WY:Riverton");
    const bool sorted =
        std::is_sorted(sites.begin(), sites.end(), [](const RadarSite& a, const RadarSite& b) {
            return a.nameText() < b.nameText();
        });
    EXPECT_TRUE(sorted);
}

TEST(SitesTest, EveryRowIsWhole) {
    for (const RadarSite& site : radarSites()) {
        const std::string id = site.idText().toString().toStdString();
        EXPECT_EQ(findRadarSite(site.idText()), &site) << id << " is there twice";
        EXPECT_EQ(site.id[3], u'\0') << id;
        for (const QChar letter : site.idText()) {
            EXPECT_TRUE(letter >= u'A' && letter <= u'Z') << id;
        }
        EXPECT_EQ(site.nameText().indexOf(u':'), 2) << id;
        EXPECT_GT(site.nameText().size(), 4) << id;
        EXPECT_TRUE(site.latitude > 12 && site.latitude < 68) << id;
        EXPECT_TRUE((site.longitude > -170 && site.longitude < -65) || site.idText() == u"GUA")
            << id;
    }
}

TEST(SitesTest, OldSpellingsStay) {
    ASSERT_NE(findRadarSite(u"BIS"), nullptr);
    EXPECT_EQ(findRadarSite(u"BIS")->nameText(), u"ND:Bismark");
    ASSERT_NE(findRadarSite(u"FSD"), nullptr);
    EXPECT_EQ(findRadarSite(u"FSD")->nameText(), u"SD:Sioux falls");
    ASSERT_NE(findRadarSite(u"MUX"), nullptr);
    EXPECT_EQ(findRadarSite(u"MUX")->latitude, 37.0875F);
    EXPECT_EQ(findRadarSite(u"MUX")->longitude, -121.8302F);
}

TEST(SitesTest, AnIdIsFoundOnlyAsItIs) {
    for (const QStringView id :
         {u"", u"mux", u"MU", u"MUXX", u"ZZZ", u"CA:San Francisco Bay Area"}) {
        EXPECT_EQ(findRadarSite(id), nullptr) << id.toString().toStdString();
    }
}

TEST(SitesTest, TheNearestSiteToEachReferencePointIsItself) {
    for (const RadarSite& site : radarSites()) {
        EXPECT_EQ(NearestSite(site.latitude, site.longitude), site.idText())
            << site.idText().toString().toStdString();
    }
}

struct Nearest {
    const char* where;
    double latitude;
    double longitude;
    QString id;
};

TEST(SitesTest, SomeSiteIsAlwaysNearest) {
    const Nearest rows[] = {
        {"San Francisco", 37.77, -122.42, "MUX"},
        {"Oklahoma City", 35.47, -97.52, "TLX"},
        {"Guam", 13.45, 144.79, "GUA"},
        {"the Gulf of Guinea, without a position", 0, 0, "JUA"},
        {"Tokyo", 35.68, 139.69, "GUA"},
        {"the south pole", -90, 0, "GUA"},
        {"the north pole: all longitudes are one", 90, 0, "APD"},
        {"east of the date line: no wrap", 52, 179.9, "GUA"},
    };
    for (const Nearest& row : rows) {
        EXPECT_EQ(NearestSite(row.latitude, row.longitude).toString(), row.id) << row.where;
    }
}

TEST(SitesTest, APositionThatIsNoneHasNoNearestSite) {
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const double infinity = std::numeric_limits<double>::infinity();
    EXPECT_TRUE(NearestSite(nan, -100).isEmpty());
    EXPECT_TRUE(NearestSite(40, nan).isEmpty());
    EXPECT_TRUE(NearestSite(infinity, -100).isEmpty());
    EXPECT_TRUE(NearestSite(40, -infinity).isEmpty());
    EXPECT_TRUE(NearestSite(40, 1e6).isEmpty());
}

TEST(SitesTest, SuggestsWhatWasMeant) {
    struct Row {
        const char* why;
        QString typed;
        std::size_t most;
        std::string ids;
    };
    const Row rows[] = {
        {"small letters", "mux", 5, "MUX"},
        {"neighbours swapped", "MXU", 5, "MXX MUX"},
        {"a letter too many", "MUXX", 5, "MXX MUX"},
        {"the call sign of the station", "KMUX", 5, "MUX"},
        {"a wrong letter", "TLY", 5, "TLH TLX"},
        {"part of a name", "denver", 5, "FTG"},
        {"part of several names", "Springfield", 5, "SGF"},
        {"several names, cut", "northern", 1, "HTX"},
        {"none wanted", "mux", 0, ""},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(ids(suggestRadarSites(row.typed, row.most)), row.ids) << row.why;
    }
    EXPECT_EQ(suggestRadarSites(u"", 5).size(), 5U);
    EXPECT_EQ(suggestRadarSites(u"123", 200).size(), 155U) << "all are as far away";
}

TEST(RealDataSitesTest, ReferencePointsLieNearTheAntennas) {
    QFile table(qEnvironmentVariable("RAINCAST_TEST_DATA") + "/radar-positions.tsv");
    if (!table.open(QIODevice::ReadOnly)) {
        GTEST_SKIP() << "RAINCAST_TEST_DATA names no folder with radar-positions.tsv";
    }
    int rows = 0;
    table.readLine();
    while (!table.atEnd()) {
        const QList<QByteArray> fields = table.readLine().split('\t');
        ASSERT_GE(fields.size(), 3);
        const RadarSite* const site = findRadarSite(QString::fromLatin1(fields[0]));
        ASSERT_NE(site, nullptr) << fields[0].toStdString();
        const GeoPosition antenna{fields[1].toDouble(), fields[2].toDouble()};
        const float most = site->nameText().startsWith(u"AK:") ? 270'000 : 90'000;
        EXPECT_LT(siteDistanceMetres(LocalFrame(antenna), *site), most) << fields[0].toStdString();
        ++rows;
    }
    EXPECT_EQ(rows, 155);
}

} // namespace
} // namespace raincast
