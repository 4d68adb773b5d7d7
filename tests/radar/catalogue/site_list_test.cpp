// SPDX-License-Identifier: MIT
#include "radar/catalogue/site_list.h"

#include <QString>

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <set>

namespace raincast {
namespace {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

void expectAllSites(const SiteList& list) {
    EXPECT_FALSE(list.nearby);
    ASSERT_EQ(list.rows.size(), radarSites().size());
    for (std::size_t i = 0; i < list.rows.size(); ++i) {
        EXPECT_EQ(list.rows[i].site, &radarSites()[i]);
    }
}

TEST(SiteListTest, ListsWhatIsNearNearestFirst) {
    const double latitude = 37.77;
    const double longitude = -122.42;
    const SiteList list = listSites(latitude, longitude, u"DAX");
    EXPECT_TRUE(list.nearby);
    ASSERT_GE(list.rows.size(), 3U);
    EXPECT_EQ(list.rows[0].site->idText(), u"MUX");
    EXPECT_EQ(list.rows[1].site->idText(), u"DAX");
    EXPECT_EQ(list.selected, 1U);

    const LocalFrame frame({latitude, longitude});
    std::set<const RadarSite*> listed;
    for (std::size_t i = 0; i < list.rows.size(); ++i) {
        const SiteList::Row& row = list.rows[i];
        EXPECT_EQ(row.distanceMetres, siteDistanceMetres(frame, *row.site));
        if (i > 0) {
            EXPECT_LT(list.rows[i - 1].distanceMetres, row.distanceMetres);
        }
        listed.insert(row.site);
    }
    for (const RadarSite& site : radarSites()) {
        EXPECT_EQ(listed.count(&site) == 1, siteDistanceMetres(frame, site) < 500'000)
            << site.idText().toString().toStdString();
    }
}

TEST(SiteListTest, WithoutAPositionAllSitesAreListed) {
    for (const double latitude : {0.0, -0.0, kNaN}) {
        const SiteList list = listSites(latitude, -95, u"RIW");
        expectAllSites(list);
        EXPECT_EQ(list.selected, 154U);
        EXPECT_FALSE(list.rows[0].distanceMetres.has_value());
    }
    expectAllSites(listSites(40, kNaN, u"RIW"));
}

TEST(SiteListTest, ALongitudeOfZeroIsAPosition) {
    const SiteList list = listSites(40, 0, u"MUX");
    expectAllSites(list);
    EXPECT_TRUE(list.rows[0].distanceMetres.has_value());
    EXPECT_TRUE(listSites(1e-300, -65.5, u"").rows[0].distanceMetres.has_value());
}

TEST(SiteListTest, WhereNoSiteIsNearAllAreListed) {
    const SiteList list = listSites(30, -150, u"ABC");
    expectAllSites(list);
    EXPECT_EQ(list.selected, 0U);
    EXPECT_GE(*list.rows[0].distanceMetres, 500'000);
}

TEST(SiteListTest, ASiteAtTheVeryLimitIsLeftOut) {
    // Straight north of Guam, the only site for thousands of kilometres.
    const RadarSite& guam = *findRadarSite(u"GUA");
    const auto distance = [&](double latitude) {
        return siteDistanceMetres(LocalFrame({latitude, guam.longitude}), guam);
    };
    double inside = guam.latitude + 4.0;
    double outside = guam.latitude + 5.0;
    // Close in on the first latitude from which the distance is exactly 500 km.
    for (int step = 0; step < 60; ++step) {
        const double middle = (inside + outside) / 2;
        (distance(middle) < 500'000 ? inside : outside) = middle;
    }
    ASSERT_EQ(distance(outside), 500'000);
    expectAllSites(listSites(outside, guam.longitude, u"GUA"));
    const SiteList list = listSites(inside, guam.longitude, u"GUA");
    ASSERT_EQ(list.rows.size(), 1U);
    EXPECT_LT(list.rows[0].distanceMetres, 500'000);
    EXPECT_EQ(list.selected, 0U);
}

TEST(SiteListTest, OnlyTheFirstOfTwoAtTheSameDistanceIsListed) {
    // Closes in on a place between two neighbours where both distances are the same number.
    const RadarSite& first = *findRadarSite(u"DDC");
    const RadarSite& second = *findRadarSite(u"ICT");
    ASSERT_LT(&first, &second);
    double near = first.longitude;
    double far = second.longitude;
    double latitude = (static_cast<double>(first.latitude) + second.latitude) / 2;
    double longitude = 0;
    for (int step = 0; step < 60; ++step) {
        longitude = (near + far) / 2;
        const LocalFrame frame({latitude, longitude});
        (siteDistanceMetres(frame, first) < siteDistanceMetres(frame, second) ? near : far) =
            longitude;
    }
    const LocalFrame frame({latitude, far});
    ASSERT_EQ(siteDistanceMetres(frame, first), siteDistanceMetres(frame, second));

    EXPECT_EQ(NearestSite(latitude, far), u"DDC");
    const SiteList list = listSites(latitude, far, u"ICT");
    EXPECT_EQ(list.rows[0].site, &first);
    for (const SiteList::Row& row : list.rows) {
        EXPECT_NE(row.site, &second);
    }
    EXPECT_FALSE(list.selected.has_value()) << "the current site is not listed";
}

TEST(SiteListTest, AnUnknownCurrentSiteSelectsNothing) {
    for (const QStringView id : {u"", u"ZZZ", u"mux", u"MUXX"}) {
        EXPECT_FALSE(listSites(37, -122, id).selected.has_value());
        EXPECT_FALSE(listSites(0, 0, id).selected.has_value());
    }
}

} // namespace
} // namespace raincast
