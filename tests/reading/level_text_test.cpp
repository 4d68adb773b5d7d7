// SPDX-License-Identifier: MIT
#include "palette/nws_colours.h"
#include "reading/level_text.h"
#include "reading_state.h"

namespace raincast {
namespace {

class LevelTextTest : public test::ReadingState {
protected:
    static std::string text(Product product, std::size_t level) {
        return levelText(product, level).toStdString();
    }
    static std::string label(Product product, std::size_t level) {
        return levelLabel(product, level).toStdString();
    }
};

TEST_F(LevelTextTest, ReflectivityIsInWholeDbz) {
    constexpr Product kN0r = Product::baseReflectivity;
    EXPECT_EQ(text(kN0r, 0), "below 5 dBZ");
    EXPECT_EQ(text(kN0r, 1), "5 to 9 dBZ");
    EXPECT_EQ(text(kN0r, 9), "45 to 49 dBZ");
    EXPECT_EQ(text(kN0r, 15), "75 dBZ or more");
    EXPECT_EQ(label(kN0r, 9), "45");
}

TEST_F(LevelTextTest, VelocityIsInTheUsersUnitOfSpeed) {
    constexpr Product kN0v = Product::velocity;
    use(CUnits::kNauticalMiles);
    EXPECT_EQ(text(kN0v, 0), "no echo");
    EXPECT_EQ(text(kN0v, 1), "64 kts or more towards radar");
    EXPECT_EQ(text(kN0v, 4), "26 to 36 kts towards radar");
    EXPECT_EQ(text(kN0v, 7), "1 to 10 kts towards radar");
    EXPECT_EQ(text(kN0v, 8), "up to 10 kts away");
    EXPECT_EQ(text(kN0v, 11), "26 to 36 kts away");
    EXPECT_EQ(text(kN0v, 14), "64 kts or more away");
    EXPECT_EQ(text(kN0v, 15), "range folded");
    EXPECT_EQ(label(kN0v, 1), "-64");
    EXPECT_EQ(label(kN0v, 8), "0");
    EXPECT_EQ(label(kN0v, 15), "RF");
    use(CUnits::kKilometres);
    EXPECT_EQ(text(kN0v, 11), "48 to 67 km/h away");
    EXPECT_EQ(label(kN0v, 11), "48");
    use(CUnits::kMetres);
    EXPECT_EQ(text(kN0v, 4), "13 to 19 m/s towards radar");
}

TEST_F(LevelTextTest, RainIsInMillimetresWhereDistancesAreMetric) {
    constexpr Product kN1p = Product::oneHourPrecipitation;
    constexpr Product kNtp = Product::totalPrecipitation;
    for (const auto unit :
         {CUnits::kMiles, CUnits::kNauticalMiles, CUnits::kFeet, CUnits::kYards}) {
        use(unit);
        EXPECT_EQ(text(kN1p, 0), "no rain");
        EXPECT_EQ(text(kN1p, 1), "up to 0.1 in");
        EXPECT_EQ(text(kN1p, 3), "0.25 to 0.5 in");
        EXPECT_EQ(text(kNtp, 15), "15 in or more");
    }
    for (const auto unit : {CUnits::kKilometres, CUnits::kMetres}) {
        use(unit);
        EXPECT_EQ(text(kN1p, 1), "up to 2.5 mm");
        EXPECT_EQ(text(kN1p, 3), "6.4 to 13 mm");
        EXPECT_EQ(text(kNtp, 15), "381 mm or more");
        EXPECT_EQ(label(kNtp, 2), "7.6");
    }
}

TEST_F(LevelTextTest, NoTwoLevelsOfAScaleAreWrittenAlike) {
    for (const auto unit : {CUnits::kMiles, CUnits::kNauticalMiles, CUnits::kKilometres}) {
        use(unit);
        for (const Product product : kAllProducts) {
            for (std::size_t level = 2; level < 16; ++level) {
                EXPECT_NE(label(product, level), label(product, level - 1)) << level;
            }
        }
    }
}

} // namespace
} // namespace raincast
