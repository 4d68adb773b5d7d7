// SPDX-License-Identifier: MIT
#include "persist/persistant_data.h"
#include "persist/registry_store.h"
#include "units/position_format_type.h"
#include "units/scoped_units.h"
#include "units/units.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <limits>

namespace raincast {
namespace {

using Branch = RegistryStore::Branch;
using test::ScopedUnits;

std::string formatName(const CUnits& units) {
    return units.positionFormat->name().toStdString();
}

TEST(UnitsTest, TheDefaultsAreMilesAndDegreesWithMinutes) {
    const CUnits& units = CUnits::global();
    EXPECT_EQ(units.units, CUnits::kMiles);
    EXPECT_EQ(units.speed, CUnits::kMilesPerHour);
    EXPECT_EQ(formatName(units), "Deg,Min");
    EXPECT_EQ(units.data, (std::array<std::uint8_t, 8>{}));
}

TEST(UnitsTest, AnotherOneIsACopyOfTheGlobalOne) {
    const ScopedUnits keep;
    CUnits mine;
    mine.positionFormat = &CUnits::PositionFormatType::named("Degrees");
    mine.units = CUnits::kYards;
    mine.speed = CUnits::kKnots;
    mine.data = {1, 2, 3, 4, 5, 6, 7, 8};
    EXPECT_EQ(CUnits::global().units, CUnits::kMiles);
    CUnits::setGlobal(mine);
    EXPECT_EQ(CUnits::global(), mine);
    const CUnits other;
    EXPECT_EQ(other, mine);
}

TEST(UnitsTest, EveryDistanceUnit) {
    const struct {
        std::uint32_t unit;
        const char* name;
        float perMetre;
        CUnits::SpeedUnit speed;
    } rows[] = {
        {0, "Mi", 0.000621371204F, CUnits::kMilesPerHour},
        {1, "NM", 0.000539956789F, CUnits::kKnots},
        {2, "km", 0.001F, CUnits::kKilometresPerHour},
        {3, "m", 1.0F, CUnits::kMetresPerSecond},
        {4, "ft", 3.281F, CUnits::kMilesPerHour},
        {5, "yds", 1.0936F, CUnits::kMilesPerHour},
        {6, "Mi", 0.000621371204F, CUnits::kMilesPerHour},
        {0xFFFFFFFF, "Mi", 0.000621371204F, CUnits::kMilesPerHour},
    };
    CUnits units;
    for (const auto& row : rows) {
        units.units = row.unit;
        EXPECT_EQ(units.distanceUnit().toStdString(), row.name);
        EXPECT_EQ(units.distanceOf(1), static_cast<double>(row.perMetre));
        EXPECT_EQ(units.distanceOf(-2e6), -2e6 * row.perMetre);
        EXPECT_EQ(CUnits::speedUnitFor(row.unit), row.speed);
    }
    EXPECT_NEAR(1852 * 0.000539956789F, 1, 1e-6);
}

TEST(UnitsTest, EverySpeedUnit) {
    const struct {
        std::uint32_t unit;
        const char* name;
        float perKnot;
    } rows[] = {
        {0, "mph", 1.1507795F},  {1, "kts", 1.0F},       {2, "km/h", 1.852F},
        {3, "m/s", 0.51444447F}, {4, "mph", 1.1507795F}, {0xFFFFFFFF, "mph", 1.1507795F},
    };
    CUnits units;
    for (const auto& row : rows) {
        units.speed = row.unit;
        EXPECT_EQ(units.speedUnit().toStdString(), row.name);
        EXPECT_EQ(units.speedOf(1), static_cast<double>(row.perKnot));
        EXPECT_EQ(units.speedOf(20.5), 20.5 * row.perKnot);
    }
}

TEST(UnitsTest, DistancesForPeople) {
    constexpr double kInfinity = std::numeric_limits<double>::infinity();
    const struct {
        std::uint32_t unit;
        double metres;
        const char* text;
    } rows[] = {
        {CUnits::kKilometres, 0, "0.00 km"},
        {CUnits::kKilometres, 254, "0.25 km"},
        {CUnits::kKilometres, 994, "0.99 km"},
        {CUnits::kKilometres, 994.9999527400382, "1.0 km"}, // 0.995 in the factor's precision
        {CUnits::kKilometres, 996, "1.0 km"},
        {CUnits::kKilometres, 9'949, "9.9 km"},
        {CUnits::kKilometres, 12'340, "12.3 km"},
        {CUnits::kKilometres, 99'940, "99.9 km"},
        {CUnits::kKilometres, 99'960, "100 km"},
        {CUnits::kKilometres, 480'400, "480 km"},
        {CUnits::kKilometres, 20'003'931, "20004 km"},
        {CUnits::kKilometres, -3'210, "-3.2 km"},
        {CUnits::kKilometres, -1, "0.00 km"},
        {CUnits::kMiles, 805, "0.50 Mi"},
        {CUnits::kMiles, 5'150, "3.2 Mi"},
        {CUnits::kNauticalMiles, 463, "0.25 NM"},
        {CUnits::kNauticalMiles, 1'852'000, "1000 NM"},
        {CUnits::kMetres, 0.4, "0 m"},
        {CUnits::kMetres, -0.4, "0 m"},
        {CUnits::kMetres, 7.6, "8 m"},
        {CUnits::kMetres, 1'234.5, "1235 m"},
        {CUnits::kFeet, 10, "33 ft"},
        {CUnits::kFeet, 20'003'931, "65632896 ft"},
        {CUnits::kYards, 1.2, "1 yds"},
        {CUnits::kMetres, 999'999'999, "999999999 m"},
        {CUnits::kMetres, 1e9, "1e+09 m"},
        {CUnits::kMetres, -1.23456e9, "-1.23e+09 m"},
        {CUnits::kMetres, 1e300, "1e+300 m"},
        {CUnits::kMetres, kInfinity, "-- m"},
        {CUnits::kMetres, -kInfinity, "-- m"},
        {CUnits::kMiles, std::numeric_limits<double>::quiet_NaN(), "-- Mi"},
    };
    CUnits units;
    for (const auto& row : rows) {
        units.units = row.unit;
        EXPECT_EQ(units.distanceText(row.metres).toStdString(), row.text) << row.metres;
    }
}

TEST(UnitsTest, SpeedsForPeople) {
    const struct {
        std::uint32_t unit;
        double knots;
        const char* text;
    } rows[] = {
        {CUnits::kKnots, 0, "0.0 kts"},
        {CUnits::kKnots, 0.26, "0.3 kts"},
        {CUnits::kKnots, 6.42, "6.4 kts"},
        {CUnits::kKnots, 99.94, "99.9 kts"},
        {CUnits::kKnots, 99.95, "100 kts"},
        {CUnits::kKnots, 99.96, "100 kts"},
        {CUnits::kMilesPerHour, 0.3, "0.3 mph"},
        {CUnits::kMilesPerHour, 50, "57.5 mph"},
        {CUnits::kKilometresPerHour, 0.3, "0.6 km/h"},
        {CUnits::kKilometresPerHour, 10, "18.5 km/h"},
        {CUnits::kKilometresPerHour, 480, "889 km/h"},
        {CUnits::kMetresPerSecond, 0.3, "0.2 m/s"},
        {CUnits::kMetresPerSecond, 10, "5.1 m/s"},
        {CUnits::kKnots, 3.4e38, "3.4e+38 kts"},
    };
    CUnits units;
    for (const auto& row : rows) {
        units.speed = row.unit;
        EXPECT_EQ(units.speedText(row.knots).toStdString(), row.text);
    }
}

TEST(UnitsTest, PositionsAreWrittenInTheChosenFormatAndReadInAny) {
    CUnits units;
    units.positionFormat = &CUnits::PositionFormatType::named("Deg,Min,Sec");
    EXPECT_EQ(
        units.formatPosition({41.5, -105.25}), QStringLiteral("41°30'00.0\"N, 105°15'00.0\"W")
    );
    GeoPosition position;
    EXPECT_TRUE(CUnits::parsePosition(u"12.5S,0.25W", position));
    EXPECT_EQ(position, (GeoPosition{-12.5, -0.25}));
}

class UnitsSettingsTest : public testing::Test {
protected:
    void load(const QString& application = QStringLiteral("Raincast_1")) {
        PersistantData::loadAll(store, application);
    }
    static QString name(const char* value) { return QString::fromLatin1(value); }
    void put(const char* value, std::uint32_t number, Branch branch = Branch::user) {
        store.setDword(branch, key, name(value), number);
    }
    void put(const char* value, const QString& text) {
        store.setString(Branch::user, key, name(value), text);
    }

    const QString key = QStringLiteral("Software/Quorvane/Raincast_1/CDefaultUnits");
    QTemporaryDir folder;
    RegistryStore store{
        folder.filePath(QStringLiteral("machine.json")),
        folder.filePath(QStringLiteral("user.json"))};
    const ScopedUnits keep;
};

TEST_F(UnitsSettingsTest, AreSavedAndLoaded) {
    CUnits chosen;
    chosen.units = CUnits::kFeet;
    chosen.speed = CUnits::kMetresPerSecond;
    chosen.data = {1, 2, 3, 4, 5, 6, 7, 255};
    chosen.positionFormat = &CUnits::PositionFormatType::named("Degrees");
    CUnits::setGlobal(chosen);
    ASSERT_TRUE(PersistantData::saveAll(store, QStringLiteral("Raincast_1")));
    EXPECT_EQ(store.dword(Branch::user, key, name("units")), 4U);
    EXPECT_EQ(store.dword(Branch::user, key, name("speed")), 3U);
    EXPECT_EQ(
        store.binary(Branch::user, key, name("data")), QByteArray::fromHex("01020304050607ff")
    );
    EXPECT_EQ(store.string(Branch::user, key, name("posnfmt")), QStringLiteral("Degrees"));

    CUnits::setGlobal(keep.before());
    load();
    EXPECT_EQ(CUnits::global(), chosen);
}

TEST_F(UnitsSettingsTest, WithoutAnyTheDefaultsHold) {
    load();
    EXPECT_EQ(CUnits::global(), keep.before());
    EXPECT_EQ(formatName(CUnits::global()), "Deg,Min");
}

TEST_F(UnitsSettingsTest, AnIndexThatNoUnitHasGivesTheDefault) {
    for (const std::uint32_t index : {6U, 17U, 0xFFFFFFFFU}) {
        CUnits chosen;
        chosen.units = CUnits::kYards;
        chosen.speed = CUnits::kKnots;
        CUnits::setGlobal(chosen);
        put("units", index);
        put("speed", index);
        load();
        EXPECT_EQ(CUnits::global().units, CUnits::kMiles) << index;
        EXPECT_EQ(CUnits::global().speed, CUnits::kMilesPerHour) << index;
    }
    put("units", 5);
    put("speed", 4);
    load();
    EXPECT_EQ(CUnits::global().units, CUnits::kYards);
    EXPECT_EQ(CUnits::global().speed, CUnits::kMilesPerHour) << "the first that is none";
}

TEST_F(UnitsSettingsTest, AnUnknownOrMissingFormatGivesTheUsualOne) {
    for (const char* const format : {"", "degrees", "Degrees ", "UTM"}) {
        CUnits chosen;
        chosen.positionFormat = &CUnits::PositionFormatType::named("Degrees");
        CUnits::setGlobal(chosen);
        put("posnfmt", QString::fromLatin1(format));
        load();
        EXPECT_EQ(formatName(CUnits::global()), "Deg,Min") << format;
    }
    put("posnfmt", QStringLiteral("Deg,Min,Sec"));
    load();
    EXPECT_EQ(formatName(CUnits::global()), "Deg,Min,Sec");
    load(QStringLiteral("Raincast_2")); // holds nothing
    EXPECT_EQ(formatName(CUnits::global()), "Deg,Min");
}

TEST_F(UnitsSettingsTest, TheInstallationsDefaultsGiveWayToTheUser) {
    put("units", 2, Branch::machine);
    put("speed", 2, Branch::machine);
    put("speed", 1);
    load();
    EXPECT_EQ(CUnits::global().units, CUnits::kKilometres);
    EXPECT_EQ(CUnits::global().speed, CUnits::kKnots);
}

TEST_F(UnitsSettingsTest, OfDataThatIsTooLongTheFirstBytesAreTaken) {
    store.setBinary(
        Branch::user, key, name("data"), QByteArray::fromHex("010203040506070809101112")
    );
    load();
    EXPECT_EQ(CUnits::global().data, (std::array<std::uint8_t, 8>{1, 2, 3, 4, 5, 6, 7, 8}));
}

} // namespace
} // namespace raincast
