// SPDX-License-Identifier: MIT
#include "city_maker.h"
#include "server/city_file.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace raincast {
namespace {

using ::testing::IsEmpty;
using ::testing::SizeIs;

TEST(CityFileTest, PositionsAreDifferences) {
    const auto cities = readCities(
        makeCity("Washington", "PPLC", 600000, -7703637, 3889511) +
        makeCity("L\xC4\x81\xCA\xBBie", "PPL", 6000, -8089200, -1724400)
    );
    ASSERT_THAT(cities, SizeIs(2));
    EXPECT_EQ(cities[0].name, "Washington");
    EXPECT_EQ(cities[0].population, 600000U);
    EXPECT_NEAR(cities[0].position.latitude, 38.89511, 1e-9);
    EXPECT_NEAR(cities[0].position.longitude, -77.03637, 1e-9);
    EXPECT_EQ(cities[1].name, QString::fromUtf8("L\xC4\x81\xCA\xBBie"));
    EXPECT_NEAR(cities[1].position.latitude, 21.65111, 1e-9);
    EXPECT_NEAR(cities[1].position.longitude, -157.92837, 1e-9);
}

TEST(CityFileTest, LeavesOutPartsOfCitiesButCountsTheirSteps) {
    const auto cities = readCities(
        makeCity("Part", "PPLX", 9, 100000, 0) + makeCity("Town", "PPLA2", 9, 100000, 0)
    );
    ASSERT_THAT(cities, SizeIs(1));
    EXPECT_EQ(cities[0].name, "Town");
    EXPECT_NEAR(cities[0].position.longitude, 2, 1e-9);
}

TEST(CityFileTest, LeavesOutWhatLiesOnNoEarth) {
    EXPECT_THAT(readCities(makeCity("Far", "PPL", 1, 0, 9'100'000)), IsEmpty());
    EXPECT_THAT(readCities(makeCity("Far", "PPL", 1, 18'100'000, 0)), IsEmpty());
}

TEST(CityFileTest, UnknownFieldsAreSkipped) {
    const QByteArray record =
        protobufText(2, "Town") + protobufText(7, "PPL") + protobufVarint(20 << 3 | 1) +
        QByteArray(8, 'x') + protobufVarint(21 << 3 | 5) + QByteArray(4, 'x') +
        protobufText(22, "more") + protobufVarint(23 << 3) + protobufVarint(300);
    EXPECT_THAT(readCities(protobufVarint(record.size()) + record), SizeIs(1));
}

TEST(CityFileTest, DamagedBytesEndTheReading) {
    const QByteArray good = makeCity("Town", "PPL", 9, 1, 1) + makeCity("City", "PPL", 9, 1, 1);
    for (qsizetype length = 0; length < good.size(); ++length) {
        EXPECT_LE(readCities(good.left(length)).size(), 2U);
    }
    EXPECT_THAT(readCities(QByteArray(1000, '\xFF')), IsEmpty());
    EXPECT_THAT(readCities(QByteArray(1000, '\0')), IsEmpty());
    for (qsizetype i = 0; i < good.size(); ++i) {
        QByteArray bad = good;
        bad[i] = static_cast<char>(bad[i] ^ 0x55);
        EXPECT_LE(readCities(bad).size(), 2U);
    }
}

} // namespace
} // namespace raincast
