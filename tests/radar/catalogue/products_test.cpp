// SPDX-License-Identifier: MIT
#include "radar/catalogue/products.h"

#include <QString>

#include <gtest/gtest.h>

#include <limits>
#include <string>

namespace raincast {
namespace {

TEST(ProductsTest, TheTable) {
    struct Row {
        QString name;
        QString code;
        QString range;
    };
    const Row rows[] = {
        {"Base Reflectivity", "N0R", "Short"},       {"Composite Reflectivity", "NCR", "Short"},
        {"Long Range Reflectivity", "N0Z", "Long"},  {"1 Hour Precipitation", "N1P", "Short"},
        {"Total Precipitation", "NTP", "Short"},     {"Velocity", "N0V", "Short"},
        {"Storm Relative Velocity", "N0S", "Short"},
    };
    ASSERT_EQ(radarProducts().size(), std::size(rows));
    for (int index = 0; index < 7; ++index) {
        const Row& row = rows[index];
        EXPECT_EQ(radarProducts()[static_cast<std::size_t>(index)].nameText(), row.name);
        EXPECT_EQ(ProductCode(index), row.code);
        EXPECT_EQ(ProductRange(index), row.range) << qPrintable(row.code);
        EXPECT_EQ(findRadarProduct(row.code), index) << qPrintable(row.code);
    }
}

TEST(ProductsTest, AnIndexOfNoProductStandsForTheDefaultOne) {
    for (const int index :
         {-1, 7, std::numeric_limits<int>::min(), std::numeric_limits<int>::max()}) {
        EXPECT_EQ(ProductCode(index), u"N0R") << index;
        EXPECT_EQ(ProductRange(index), u"Short") << index;
    }
}

TEST(ProductsTest, ACodeIsFoundOnlyAsItIs) {
    for (const QStringView code : {u"", u"n0r", u"N0", u"N0RR", u"NOR", u"Velocity"}) {
        EXPECT_EQ(findRadarProduct(code), std::nullopt) << code.toString().toStdString();
    }
}

TEST(ProductsTest, SuggestsTheNearestCodes) {
    const auto codes = [](QStringView typed) {
        std::string text;
        for (const RadarProduct* product : suggestRadarProducts(typed)) {
            text += product->codeText().toString().toStdString() + ' ';
        }
        return text;
    };
    EXPECT_EQ(codes(u"n0r"), "N0R ");
    EXPECT_EQ(codes(u"0NZ"), "N0Z ");
    EXPECT_EQ(codes(u"NOR"), "N0R NCR ");
    EXPECT_EQ(codes(u"N1R"), "N0R NCR N1P ");
    EXPECT_EQ(suggestRadarProducts(u"").size(), 7U);
}

} // namespace
} // namespace raincast
