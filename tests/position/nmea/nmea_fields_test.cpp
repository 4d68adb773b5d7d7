// SPDX-License-Identifier: MIT
#include "position/nmea/nmea_fields.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <string>
#include <vector>

namespace raincast {
namespace {

using namespace std::string_view_literals;
using testing::ElementsAre;

template<std::size_t Count>
std::vector<std::string> split(std::string_view text) {
    std::array<std::string_view, Count> fields;
    splitNmeaFields(text, fields);
    return {fields.begin(), fields.end()};
}

TEST(NmeaFieldsTest, CutsAtCommas) {
    EXPECT_THAT(split<3>("GPVTG,1.5,T"), ElementsAre("GPVTG", "1.5", "T"));
    EXPECT_THAT(split<3>("GPVTG,,T"), ElementsAre("GPVTG", "", "T"));
    EXPECT_THAT(split<3>("a,b,c,d"), ElementsAre("a", "b", "c"));
    EXPECT_THAT(split<2>(",,"), ElementsAre("", ""));
}

TEST(NmeaFieldsTest, FieldsBeyondTheEndAreEmpty) {
    EXPECT_THAT(split<4>("a,b"), ElementsAre("a", "b", "", ""));
    EXPECT_THAT(split<4>("a,b,"), ElementsAre("a", "b", "", ""));
    EXPECT_THAT(split<2>(""), ElementsAre("", ""));
}

TEST(NmeaFieldsTest, TheChecksumAndNulEndTheText) {
    EXPECT_THAT(split<4>("a,b*5C,d"), ElementsAre("a", "b", "", ""));
    EXPECT_THAT(split<3>("*a,b,c"), ElementsAre("", "", ""));
    EXPECT_THAT(split<3>("a,b\0c,d"sv), ElementsAre("a", "b", ""));
}

TEST(NmeaFieldsTest, Latitudes) {
    const struct {
        const char* field;
        const char* hemisphere;
        double value;
    } rows[] = {
        {"4807.038", "N", 48 + 7.038 * 0.016666666666666666},
        {"4807.038", "S", -(48 + 7.038 * 0.016666666666666666)},
        {"4807.038", "South", -(48 + 7.038 * 0.016666666666666666)},
        {"4807.038", "", 48 + 7.038 * 0.016666666666666666},
        {"4807.", "N", 48 + 7 * 0.016666666666666666},
        {"0000.0000", "N", 0},
        {"807.038", "N", 0},
        {"04807.038", "N", 0},
        {"4807", "N", 0},
        {"48", "N", 0},
        {"", "N", 0},
        {"ab07.5", "N", 7.5 * 0.016666666666666666},
        {"48ab.5", "N", 48},
        {"4807.0e400", "N", 48},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(nmeaLatitude(row.field, row.hemisphere), row.value) << row.field;
    }
    EXPECT_NEAR(nmeaLatitude("4807.038", "N"), 48.1173, 1e-12);
}

TEST(NmeaFieldsTest, Longitudes) {
    const struct {
        const char* field;
        const char* hemisphere;
        double value;
    } rows[] = {
        {"01131.000", "E", 11 + 31.0 * 0.016666666666666666},
        {"01131.000", "W", -(11 + 31.0 * 0.016666666666666666)},
        {"01131.000", "w", 11 + 31.0 * 0.016666666666666666},
        {"17959.9999", "E", 179 + 59.9999 * 0.016666666666666666},
        {"1131.000", "E", 0},
        {"01131", "E", 0},
        {"", "E", 0},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(nmeaLongitude(row.field, row.hemisphere), row.value) << row.field;
    }
}

TEST(NmeaFieldsTest, TimesOfDay) {
    constexpr FileTime s = kFileTimePerSecond;
    const struct {
        const char* field;
        FileTime value;
    } rows[] = {
        {"", 0},
        {"123519", (12 * 3600 + 35 * 60 + 19) * s},
        {"123519.99", (12 * 3600 + 35 * 60 + 19) * s},
        {"000000.00", 0},
        {"235960", 86400 * s},
        {"1235", (12 * 3600 + 35 * 60) * s},
        {"123", (12 * 3600 + 3 * 60) * s},
        {"1", 3600 * s},
        {"abcdef", 0},
        {"99999999999", (99 * 3600 + 99 * 60 + 9999999) * s},
        {"00001e9", 0},
        {"00001e300", 0},
        {"0000-1e300", 0},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(nmeaTime(row.field), row.value) << row.field;
    }
}

int conversions = 0;

FileTime countingConvert(int year, int month, int day) {
    ++conversions;
    return dateToTime(year, month, day);
}

TEST(NmeaFieldsTest, ARepeatedDateIsConvertedOnce) {
    NmeaDates dates(countingConvert);
    conversions = 0;
    const FileTime expected = fromCalendar({2007, 3, 23});
    EXPECT_EQ(dates.toTime("230307"), expected);
    EXPECT_EQ(dates.toTime("230307"), expected);
    EXPECT_EQ(conversions, 1);
    EXPECT_EQ(dates.toTime("240307"), fromCalendar({2007, 3, 24}));
    EXPECT_EQ(dates.toTime("230307"), expected);
    EXPECT_EQ(conversions, 3);
}

TEST(NmeaFieldsTest, Dates) {
    NmeaDates dates;
    EXPECT_EQ(dates.toTime(""), 0);
    EXPECT_EQ(dates.toTime("000000"), 0);
    EXPECT_EQ(dates.toTime("010194"), fromCalendar({2094, 1, 1}));
    EXPECT_EQ(dates.toTime("290200"), fromCalendar({2000, 2, 29}));
    EXPECT_EQ(dates.toTime("290201"), 0);
    EXPECT_EQ(dates.toTime("311299"), fromCalendar({2099, 12, 31}));
    EXPECT_EQ(dates.toTime("0101107"), fromCalendar({2007, 1, 1})) << "years from 100 to 199";
    EXPECT_EQ(dates.toTime("garbage"), 0);
    EXPECT_EQ(dates.toTime("99999999999999"), 0);
}

// A garbled date whose number is that of a good one must not be taken for it afterwards: without a
// checksum one damaged sentence would set the date wrong until midnight.
TEST(NmeaFieldsTest, AGarbledDateIsNotRemembered) {
    NmeaDates dates;
    EXPECT_EQ(dates.toTime("10107"), fromCalendar({2007, 10, 10}));
    EXPECT_EQ(dates.toTime("010107"), fromCalendar({2007, 1, 1}));
    EXPECT_EQ(dates.toTime("230307"), fromCalendar({2007, 3, 23}));
    EXPECT_EQ(dates.toTime("230307x"), fromCalendar({2007, 3, 23}));
    EXPECT_EQ(dates.toTime("23030799999999999"), fromCalendar({2000, 3, 23}));
    EXPECT_EQ(dates.toTime(""), 0);
}

} // namespace
} // namespace raincast
