// SPDX-License-Identifier: MIT
#include "radar/catalogue/antenna_positions.h"
#include "radar/catalogue/sites.h"

#include <QFile>

#include <gtest/gtest.h>

#include <cmath>

namespace raincast {
namespace {

TEST(AntennaPositionsTest, EverySiteOfTheViewerHasOneNearIt) {
    for (const RadarSite& site : radarSites()) {
        const AntennaPosition* antenna = findAntenna(site.idText().toString().toStdString());
        ASSERT_NE(antenna, nullptr) << site.idText().toString().toStdString();
        // The viewer's reference points are up to some hundred kilometres off in Alaska.
        EXPECT_NEAR(antenna->latitude, site.latitude, 2.5) << antenna->id;
        EXPECT_NEAR(antenna->longitude, site.longitude, 4) << antenna->id;
    }
}

TEST(AntennaPositionsTest, AnUnknownIdHasNone) {
    EXPECT_EQ(findAntenna("XXX"), nullptr);
    EXPECT_EQ(findAntenna(""), nullptr);
    EXPECT_EQ(findAntenna("tlx"), nullptr);
    EXPECT_EQ(findAntenna("ZZZZ"), nullptr);
}

TEST(AntennaPositionsTest, AKnownOneIsWhereItStands) {
    const AntennaPosition* antenna = findAntenna("TLX");
    ASSERT_NE(antenna, nullptr);
    EXPECT_DOUBLE_EQ(antenna->latitude, 35.32);
    EXPECT_DOUBLE_EQ(antenna->longitude, -97.27);
}

TEST(RealDataAntennaPositionsTest, TheTableIsTheSurveyed) {
    QFile table(qEnvironmentVariable("RAINCAST_TEST_DATA") + "/radar-positions.tsv");
    if (!table.open(QIODevice::ReadOnly)) {
        GTEST_SKIP() << "RAINCAST_TEST_DATA names no folder with radar-positions.tsv";
    }
    table.readLine();
    std::size_t rows = 0;
    for (; !table.atEnd(); ++rows) {
        const QList<QByteArray> fields = table.readLine().split('\t');
        const AntennaPosition* antenna = findAntenna(fields.at(0).toStdString());
        ASSERT_NE(antenna, nullptr) << fields.at(0).toStdString();
        EXPECT_DOUBLE_EQ(antenna->latitude, fields.at(1).toDouble());
        EXPECT_DOUBLE_EQ(antenna->longitude, fields.at(2).toDouble());
    }
    EXPECT_EQ(rows, kAntennaCount);
}

} // namespace
} // namespace raincast
