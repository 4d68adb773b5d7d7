// SPDX-License-Identifier: MIT
#include "nexrad/polar_scan.h"
#include "palette/nws_colours.h"
#include "radar/bitmap.h"

#include <QFile>

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace raincast {
namespace {

constexpr std::array kQuantities = {
    Quantity::reflectivity, Quantity::velocity, Quantity::precipitation};

TEST(NwsColoursTest, OnlyNoEchoIsWhite) {
    for (const Quantity quantity : kQuantities) {
        const auto& colours = nwsColours(quantity);
        EXPECT_EQ(colours[0], kTransparentWhite);
        for (std::size_t level = 1; level < colours.size(); ++level) {
            EXPECT_NE(colours[level], kTransparentWhite) << level;
            EXPECT_EQ(qAlpha(colours[level]), 255) << level;
        }
    }
}

TEST(NwsColoursTest, TheStrongestEchoIsAlmostWhite) {
    EXPECT_EQ(nwsColours(Quantity::reflectivity)[15], 0xFFFDFDFDU);
    EXPECT_EQ(nwsColours(Quantity::precipitation)[15], 0xFFFDFDFDU);
}

struct Expected {
    Product product;
    float value;
    int level;
};

constexpr Product kN0r = Product::baseReflectivity;
constexpr Product kN0v = Product::velocity;
constexpr Product kN1p = Product::oneHourPrecipitation;
constexpr Product kNtp = Product::totalPrecipitation;

// The velocities are half metres a second, as 256-level products hold them, beside the level that
// the 16-level product of the same scan gives them.
constexpr Expected kLevels[] = {
    {kN0r, -32.F, 0},   {kN0r, 4.5F, 0},    {kN0r, 5.F, 1},     {kN0r, 9.5F, 1},
    {kN0r, 10.F, 2},    {kN0r, 74.5F, 14},  {kN0r, 75.F, 15},   {kN0r, 94.5F, 15},
    {kN0v, 0.F, 8},     {kN0v, -.97F, 7},   {kN0v, 9.72F, 8},   {kN0v, 10.69F, 9},
    {kN0v, -9.72F, 7},  {kN0v, -10.69F, 6}, {kN0v, 35.96F, 12}, {kN0v, -35.96F, 3},
    {kN0v, 49.57F, 12}, {kN0v, -49.57F, 3}, {kN0v, 50.54F, 13}, {kN0v, -63.17F, 2},
    {kN0v, -64.15F, 1}, {kN0v, 64.15F, 14}, {kN0v, 250.F, 14},  {kN1p, 0.F, 0},
    {kN1p, -.001F, 0},  {kN1p, .001F, 1},   {kN1p, .1F, 2},     {kN1p, 7.99F, 14},
    {kN1p, 8.F, 15},    {kNtp, .29F, 1},    {kNtp, .3F, 2},     {kNtp, 14.9F, 14},
    {kNtp, 15.F, 15},
};

TEST(NwsColoursTest, ValuesFallIntoTheirLevels) {
    for (const Expected& row : kLevels) {
        EXPECT_EQ(nwsLevel(row.product, row.value), row.level)
            << codeOf(row.product) << ' ' << row.value;
    }
}

TEST(NwsColoursTest, NoEchoHasNoColourAndFoldedVelocityItsOwn) {
    for (const Product product : kAllProducts) {
        EXPECT_EQ(nwsLevel(product, noEcho()), 0) << codeOf(product);
        const int folded = quantityOf(product) == Quantity::velocity ? 15 : 0;
        EXPECT_EQ(nwsLevel(product, rangeFolded()), folded) << codeOf(product);
    }
}

TEST(NwsColoursTest, LevelsAreNamedByWhereTheyBegin) {
    const struct {
        Product product;
        std::size_t level;
        const char* name;
    } rows[] = {
        {Product::baseReflectivity, 1, "5"},
        {Product::longRangeReflectivity, 15, "75"},
        {Product::oneHourPrecipitation, 1, "0"},
        {Product::oneHourPrecipitation, 7, "1.25"},
        {Product::totalPrecipitation, 2, "0.3"},
        {Product::totalPrecipitation, 15, "15"},
        {Product::velocity, 1, "-64"},
        {Product::velocity, 6, "-10"},
        {Product::velocity, 7, "-1"},
        {Product::stormRelativeVelocity, 8, "0"},
        {Product::stormRelativeVelocity, 9, "10"},
        {Product::velocity, 14, "64"},
        {Product::velocity, 15, "RF"},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(nwsLevelName(row.product, row.level), row.name) << row.level;
        if (row.level < 15) {
            const float value = nwsLevelName(row.product, row.level).toFloat();
            EXPECT_EQ(nwsLevel(row.product, value > 0 || value < 0 ? value : .05F), row.level);
        }
    }
    EXPECT_STREQ(nwsUnit(Quantity::reflectivity), "dBZ");
}

TEST(NwsColoursTest, AColourTellsItsLevel) {
    for (const Quantity quantity : kQuantities) {
        for (std::size_t level = 0; level < 16; ++level) {
            EXPECT_EQ(nwsLevelOf(quantity, nwsColours(quantity)[level]), level);
        }
        EXPECT_EQ(nwsLevelOf(quantity, 0xFF303030), std::nullopt) << "the sample mark's ink";
    }
    EXPECT_EQ(nwsLevelOf(Quantity::reflectivity, 0x00FDF802), 7U) << "without its opacity";
}

TEST(NwsColoursTest, ARangeHoldsWhatFallsIntoItsLevel) {
    constexpr double kNoEnd = std::numeric_limits<double>::infinity();
    EXPECT_EQ(nwsRange(kN0r, 0), (NwsRange{-kNoEnd, 5}));
    EXPECT_EQ(nwsRange(kN0r, 9), (NwsRange{45, 50}));
    EXPECT_EQ(nwsRange(kN0r, 15), (NwsRange{75, kNoEnd}));
    EXPECT_EQ(nwsRange(kN0v, 0), std::nullopt);
    EXPECT_EQ(nwsRange(kN0v, 1), (NwsRange{-kNoEnd, -64}));
    EXPECT_EQ(nwsRange(kN0v, 7), (NwsRange{-10, -1}));
    EXPECT_EQ(nwsRange(kN0v, 8), (NwsRange{0, 10}));
    EXPECT_EQ(nwsRange(kN0v, 14), (NwsRange{64, kNoEnd}));
    EXPECT_EQ(nwsRange(kN0v, 15), std::nullopt);
    EXPECT_EQ(nwsRange(kN1p, 0), (NwsRange{0, 0}));
    EXPECT_EQ(nwsRange(kNtp, 2), (NwsRange{double{.3F}, double{.6F}}));
    for (const Product product : kAllProducts) {
        for (std::size_t level = 1; level < 16; ++level) {
            const auto range = nwsRange(product, level);
            if (range && std::isfinite(range->from) && std::isfinite(range->below)) {
                const auto middle = static_cast<float>((range->from + range->below) / 2);
                EXPECT_EQ(nwsLevel(product, middle), level) << codeOf(product);
            }
        }
    }
}

TEST(RealDataNwsColoursTest, TheTablesAreTheMeasuredOnes) {
    QFile table(qEnvironmentVariable("RAINCAST_TEST_DATA") + "/nws-colours.tsv");
    if (!table.open(QIODevice::ReadOnly)) {
        GTEST_SKIP() << "RAINCAST_TEST_DATA names no folder with nws-colours.tsv";
    }
    const std::array<const char*, 3> names = {"reflectivity", "velocity", "precipitation"};
    table.readLine();
    int rows = 0;
    for (; !table.atEnd(); ++rows) {
        const QList<QByteArray> fields = table.readLine().split('\t');
        const auto* name = std::find(names.begin(), names.end(), fields.at(0));
        ASSERT_NE(name, names.end());
        const auto& colours =
            nwsColours(kQuantities[static_cast<std::size_t>(name - names.begin())]);
        EXPECT_EQ(
            colours[fields.at(1).toUInt()],
            qRgb(fields.at(3).toInt(), fields.at(4).toInt(), fields.at(5).toInt())
        ) << fields.at(0).toStdString()
          << fields.at(1).toStdString();
    }
    EXPECT_EQ(rows, 45);
}

} // namespace
} // namespace raincast
