// SPDX-License-Identifier: MIT
#include "city_maker.h"
#include "maps/city_file.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>

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
    const auto cities = readCities(protobufVarint(record.size()) + record);
    ASSERT_THAT(cities, SizeIs(1));
    EXPECT_EQ(cities[0].name, "Town");
}

bool isTown(const City& city) {
    return city.name == "Town" && city.population == 9 && city.position.latitude == 1e-5 &&
           city.position.longitude == 1e-5;
}

TEST(CityFileTest, DamagedBytesEndTheReading) {
    const QByteArray town = makeCity("Town", "PPL", 9, 1, 1);
    const QByteArray good = town + makeCity("City", "PPL", 9, 1, 1);
    ASSERT_THAT(readCities(good), SizeIs(2));
    // What comes before the damage is as it was.
    for (qsizetype length = 0; length < good.size(); ++length) {
        const auto cities = readCities(good.left(length));
        ASSERT_THAT(cities, SizeIs(length < town.size() ? 0 : 1)) << length;
        EXPECT_TRUE(cities.empty() || isTown(cities[0])) << length;
    }
    for (qsizetype i = 0; i < good.size(); ++i) {
        QByteArray bad = good;
        bad[i] = static_cast<char>(bad[i] ^ 0x55);
        const auto cities = readCities(bad);
        ASSERT_LE(cities.size(), 2U) << i;
        EXPECT_TRUE(i < town.size() || (!cities.empty() && isTown(cities[0]))) << i;
        for (const City& city : cities) {
            EXPECT_FALSE(city.name.isEmpty()) << i;
            EXPECT_LE(std::abs(city.position.latitude), 90) << i;
            EXPECT_LE(std::abs(city.position.longitude), 180) << i;
        }
    }
    EXPECT_THAT(readCities(QByteArray(1000, '\xFF')), IsEmpty());
    EXPECT_THAT(readCities(QByteArray(1000, '\0')), IsEmpty());
}

} // namespace
} // namespace raincast
