// SPDX-License-Identifier: MIT
#include "position/nmea/nmea_number.h"

#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <limits>
#include <string>

namespace raincast {
namespace {

TEST(NmeaNumberTest, ReadsDoublesInTheCLocale) {
    const struct {
        const char* text;
        double value;
    } rows[] = {
        {"", 0},
        {"22.4", 22.4},
        {"022.4", 22.4},
        {"22,4", 22},
        {"-1.5", -1.5},
        {"+1.5", 1.5},
        {" \t1.5", 1.5},
        {" + 1.5", 0},
        {"+-1.5", 0},
        {"-+1.5", 0},
        {"--1", 0},
        {".5", 0.5},
        {"5.", 5},
        {".", 0},
        {"-", 0},
        {"1.5abc", 1.5},
        {"1.5.7", 1.5},
        {"abc", 0},
        {"1e3", 1000},
        {"1E-2x", 0.01},
        {"1e", 1},
        {"1e+", 1},
        {"000000000000000000000000000000001", 1},
        {"0.1", 0.1},
        {"38.09696123456789012345678901234567890", 38.0969612345678901234567},
        // What some C libraries read and no receiver sends.
        {"0x1A", 0},
        {"inf", 0},
        {"-infinity", 0},
        {"nan", 0},
        {"nan(1)", 0},
        {"1e999", 0},
        {"-1e999", 0},
        {"1e-999", 0},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(nmeaDouble(row.text), row.value) << '"' << row.text << '"';
    }
    EXPECT_EQ(nmeaDouble(std::string(400, '9')), 0);
}

TEST(NmeaNumberTest, NarrowsWhatFitsIntoAFloat) {
    const float greatest = std::numeric_limits<float>::max();
    EXPECT_EQ(nmeaFloat("22.4"), 22.4F);
    EXPECT_EQ(nmeaFloat("3.4028234663852886e38"), greatest);
    EXPECT_EQ(nmeaFloat("3.41e38"), 0.0F);
    EXPECT_EQ(nmeaFloat("-1e300"), 0.0F);
    EXPECT_EQ(nmeaFloat("1e-300"), 0.0F);
}

TEST(NmeaNumberTest, ReadsIntegers) {
    const struct {
        const char* text;
        std::int32_t value;
    } rows[] = {
        {"", 0},
        {"7", 7},
        {"007", 7},
        {"-7", -7},
        {"+7", 7},
        {"  7 ", 7},
        {"7.9", 7},
        {"7x", 7},
        {"x7", 0},
        {"+-7", 0},
        {"0x10", 0},
        {"2147483647", INT_MAX},
        {"-2147483648", INT_MIN},
        {"2147483648", 0},
        {"-2147483649", 0},
        {"99999999999999999999999999", 0},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(nmeaInt(row.text), row.value) << '"' << row.text << '"';
    }
}

} // namespace
} // namespace raincast
