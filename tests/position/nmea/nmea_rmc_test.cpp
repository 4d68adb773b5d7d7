// SPDX-License-Identifier: MIT
#include "position/nmea/nmea_rmc.h"

#include <gtest/gtest.h>

#include <string>

namespace raincast {
namespace {

using CNMEA_GPS::RMC;

RMC parse(std::string_view text) {
    RMC rmc(*CNMEASentenceType::find("RMC"));
    EXPECT_TRUE(rmc.Parse(text)) << text;
    return rmc;
}

constexpr double kDegreesPerMinute = 0.016666666666666666;

TEST(NmeaRmcTest, ReadsEveryField) {
    const RMC rmc = parse("GPRMC,123519,A,4807.038,N,01131.000,E,022.4,084.4,230307,003.1,W");
    EXPECT_TRUE(rmc.valid);
    EXPECT_NEAR(rmc.latitude, 48.1173, 1e-12);
    EXPECT_NEAR(rmc.longitude, 11.51666666666, 1e-11);
    EXPECT_EQ(rmc.speed, 22.4F);
    EXPECT_EQ(rmc.course, 84.4F);
    EXPECT_EQ(rmc.time, fromCalendar({2007, 3, 23, 12, 35, 19}));
    EXPECT_EQ(rmc.magneticVariation, 3.1F);
}

TEST(NmeaRmcTest, SouthWestAndEasterlyVariationAreNegative) {
    const RMC rmc = parse("GNRMC,000001.99,A,3751.65,S,14507.36,W,0,0,130998,011.3,E,A,V");
    EXPECT_EQ(rmc.latitude, -(37 + 51.65 * kDegreesPerMinute));
    EXPECT_EQ(rmc.longitude, -(145 + 7.36 * kDegreesPerMinute));
    EXPECT_EQ(rmc.magneticVariation, -11.3F);
    EXPECT_EQ(rmc.time, fromCalendar({2098, 9, 13, 0, 0, 1}));
}

TEST(NmeaRmcTest, ValidityFollowsStatusThenMode) {
    const struct {
        const char* status;
        const char* mode;
        bool valid;
    } rows[] = {
        {"A", "", true},  {"A", "N", true}, {"V", "", false}, {"V", "N", false},
        {"V", "A", true}, {"V", "D", true}, {"V", "E", true}, {"V", "Null", false},
        {"", "", false},  {"", "A", true},  {"a", "", false}, {"Active", "N", true},
    };
    for (const auto& row : rows) {
        const std::string text = std::string("GPRMC,123519,") + row.status +
                                 ",4807.038,N,01131.000,E,,,230307,,," + row.mode;
        EXPECT_EQ(parse(text).valid, row.valid) << text;
        EXPECT_EQ(parse(text + ",V").valid, row.valid) << text << " with a navigation status";
        EXPECT_EQ(parse(text + "*00").valid, row.valid) << text << " with a checksum";
    }
}

TEST(NmeaRmcTest, WhatIsMissingIsZero) {
    const RMC cut = parse("GPRMC,123519,A,4807.038,N,01131.000");
    EXPECT_TRUE(cut.valid);
    EXPECT_NEAR(cut.latitude, 48.1173, 1e-12);
    EXPECT_NEAR(cut.longitude, 11.51666666666, 1e-11) << "no hemisphere is not the west";
    EXPECT_EQ(cut.speed, 0);
    EXPECT_EQ(cut.course, 0);
    EXPECT_EQ(cut.time, FileTime{12 * 3600 + 35 * 60 + 19} * kFileTimePerSecond);
    EXPECT_EQ(cut.magneticVariation, 0);

    for (const char* text : {"", "GPRMC", "GPRMC,", "GPRMC,,,,,,,,,,,,", "*", ",,,,,,,,,,,,,,,"}) {
        const RMC empty = parse(text);
        EXPECT_FALSE(empty.valid) << text;
        EXPECT_EQ(empty.latitude, 0) << text;
        EXPECT_EQ(empty.longitude, 0) << text;
        EXPECT_EQ(empty.time, 0) << text;
        EXPECT_EQ(empty.speed, 0) << text;
    }
}

TEST(NmeaRmcTest, MisplacedDecimalPointsAreNoPlaces) {
    const RMC rmc = parse("GPRMC,123519,A,807.038,N,1131.000,E,022.4,084.4,230307,,");
    EXPECT_EQ(rmc.latitude, 0);
    EXPECT_EQ(rmc.longitude, 0);
    EXPECT_EQ(rmc.speed, 22.4F);
}

TEST(NmeaRmcTest, NonsenseIsZero) {
    const RMC rmc = parse("GPRMC,nonsense,A,abcd.efg,N,abcde.fgh,E,fast,north,today,much,E,?");
    EXPECT_TRUE(rmc.valid);
    EXPECT_EQ(rmc.latitude, 0);
    EXPECT_EQ(rmc.longitude, 0);
    EXPECT_EQ(rmc.speed, 0);
    EXPECT_EQ(rmc.course, 0);
    EXPECT_EQ(rmc.time, 0);
    EXPECT_EQ(rmc.magneticVariation, 0);
    EXPECT_EQ(parse("GPRMC,,A,,,,,1e300,-1e300,,1e300,E").speed, 0);
}

TEST(NmeaRmcTest, ARecordThatIsParsedAgainKeepsNothing) {
    RMC rmc(*CNMEASentenceType::find("RMC"));
    rmc.Parse("GPRMC,123519,A,4807.038,N,01131.000,E,022.4,084.4,230307,003.1,E");
    rmc.Parse("GPRMC,");
    EXPECT_FALSE(rmc.valid);
    EXPECT_EQ(rmc.latitude, 0);
    EXPECT_EQ(rmc.magneticVariation, 0);
}

} // namespace
} // namespace raincast
