// SPDX-License-Identifier: MIT
#include "position/nmea/nmea_gga.h"

#include <gtest/gtest.h>

namespace raincast {
namespace {

using CNMEA_GPS::GGA;

GGA parse(std::string_view text) {
    GGA gga(*CNMEASentenceType::find("GGA"));
    EXPECT_TRUE(gga.Parse(text)) << text;
    return gga;
}

TEST(NmeaGgaTest, ReadsEveryField) {
    const GGA gga = parse("GPGGA,093802,5213.1439,N,02100.6511,E,2,10,0.9,137.2,M,36.2,M,,");
    EXPECT_EQ(gga.latitude, 52 + 13.1439 * 0.016666666666666666);
    EXPECT_EQ(gga.longitude, 21 + 0.6511 * 0.016666666666666666);
    EXPECT_EQ(gga.quality, 2);
    EXPECT_EQ(gga.satellites, 10);
    EXPECT_EQ(gga.dilution, 0.9F);
    EXPECT_EQ(gga.altitude, 137.2F);
}

TEST(NmeaGgaTest, WhatIsMissingOrMakesNoSenseIsZero) {
    for (const char* text :
         {"", "GPGGA", "GPGGA,,,,,,,,,,,,,,", "GPGGA,,x,S,y,W,q,s,d,a,M,,M,,",
          "GPGGA,,,,,,99999999999,-99999999999,1e99,-1e99,,,,,"}) {
        const GGA gga = parse(text);
        EXPECT_EQ(gga.latitude, 0) << text;
        EXPECT_EQ(gga.longitude, 0) << text;
        EXPECT_EQ(gga.quality, 0) << text;
        EXPECT_EQ(gga.satellites, 0) << text;
        EXPECT_EQ(gga.dilution, 0) << text;
        EXPECT_EQ(gga.altitude, 0) << text;
    }
}

TEST(NmeaGgaTest, TheTimeAndTheUnitAreNotLookedAt) {
    EXPECT_EQ(parse("GPGGA,later,,,,,1,,,-30.40,F").altitude, -30.4F);
}

} // namespace
} // namespace raincast
