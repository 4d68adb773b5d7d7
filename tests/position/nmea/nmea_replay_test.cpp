// SPDX-License-Identifier: MIT
// Whole logs of receivers, from their bytes to the positions that are published.
#include "position/feed_rmc_to_gps_position.h"
#include "position/nmea/nmea_reader.h"
#include "support/record_listeners.h"
#include "support/recorded_logs.h"
#include "support/test_clock.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

namespace raincast {
namespace {

struct Expected {
    const char* name;
    std::size_t rmc;
    std::size_t gga;
    std::size_t vtg;
    std::uint64_t wrongChecksums;
    std::size_t positions;
    std::size_t withFix;
    // The last position. No time: GGA alone, which takes the time of day from the clock.
    double latitude;
    double longitude;
    CalendarTime time;
    float speed;
    float course;
    std::int32_t fixType;
    float altitude;
    float dilution;
    std::int32_t satellites;
};

void expectReplay(const Expected& expected, std::string_view log) {
    SCOPED_TRACE(expected.name);
    const TestClock clock;
    const RecordListener<CNMEA_GPS::RMC> rmc;
    const RecordListener<CNMEA_GPS::GGA> gga;
    const RecordListener<CNMEA_GPS::VTG> vtg;
    const RecordListener<CDataGPSPosition> positions;
    PublishedPosition shown;
    const CFeedRMC_to_GPSPosition feed(shown);
    NmeaReader reader;
    constexpr std::size_t kReadSize = 37;
    for (std::size_t at = 0; at < log.size(); at += kReadSize) {
        reader.feed(log.substr(at, kReadSize));
    }

    EXPECT_EQ(reader.counters().bytes, log.size());
    EXPECT_EQ(rmc.records.size(), expected.rmc);
    EXPECT_EQ(gga.records.size(), expected.gga);
    EXPECT_EQ(vtg.records.size(), expected.vtg);
    EXPECT_EQ(reader.counters().wrongChecksum, expected.wrongChecksums);
    EXPECT_EQ(positions.records.size(), expected.positions);
    const auto withFix = std::count_if(
        positions.records.begin(), positions.records.end(),
        [](const CDataGPSPosition& position) { return position.valid(); }
    );
    EXPECT_EQ(static_cast<std::size_t>(withFix), expected.withFix);

    ASSERT_FALSE(positions.records.empty());
    const CDataGPSPosition& last = positions.records.back();
    const FileTime time = expected.time.year != 0 ? fromCalendar(expected.time) : clock.now();
    EXPECT_NEAR(last.latitude, expected.latitude, 1e-12);
    EXPECT_NEAR(last.longitude, expected.longitude, 1e-12);
    EXPECT_EQ(last.time, time);
    EXPECT_EQ(last.speed, expected.speed);
    EXPECT_EQ(last.course, expected.course);
    EXPECT_EQ(last.fixType, expected.fixType);
    EXPECT_EQ(last.altitude, expected.altitude);
    EXPECT_EQ(last.dilution, expected.dilution);
    EXPECT_EQ(last.satellites, expected.satellites);
}

TEST(NmeaReplayTest, ALogOfEverythingAtOnce) {
    // A header, sentences before the first RMC, every other sort of line, and a last position.
    const std::string log =
        "# Name: none, emits $GPGGA and $GPRMC.\r\n"
        "$GPVTG,113.02,T,,M,0.142,N,0.263,K,A\r\n"
        "$GPGGA,093801,5213.1439,N,02100.6511,E,1,09,1.0,137.0,M,36.2,M,,\r\n"
        "$GPGGA,093801,5213.1439,N,02100.6511,E,1,09,1.0,137.0,M,36.2,M,,*00\r\n"
        "$GPGSA,A,3,03,06,15,16,18,19,21,22,,27,29,,1.6,0.9,1.3*34\r\n"
        "\xb5\x62\x01\x02$GNRMC,093802.50,A,5213.1439,S,02100.6511,W,7.25,226.0,160305,,,D\r\n"
        "$GPGGA,093802,5213.1439,N,0210$GPGGA,,,,,,4,10,0.9,137.2,M,36.2,M,,\r\n"
        "$GPVTG,1,T,,M,2,N,3,K,A\r\n"
        "!AIVDM,1,1,,A,14eG;o@034o8sd<L9i:a;WF>062D,0*7D\r\n"
        "$PGRME,0.00,M,0.00,M,29.40,M*21\r\n"
        "$GNRMC,093803.50,V,5213.1440,S,02100.6512,W,7.50,227.0,160305,,,N\r\n"
        "$GNRMC,093804.50,A,5213.1440,S,02100.6512,W,7.75,227.5,160305,,,A\r\n"
        "$GNRMC,093805.50,A";
    const Expected expected{
        "synthetic",
        3,
        2,
        2,
        1,
        4,
        3,
        -52.219066666666667,
        -21.010853333333333,
        {2005, 3, 16, 9, 38, 4},
        7.75F,
        227.5F,
        kFixGps,
        137.2F,
        0.9F,
        10};
    expectReplay(expected, log);
}

// Figures found by a script that shares nothing with this program.
const Expected kRecorded[] = {
    {"ch-4711.log",
     14,
     14,
     0,
     0,
     15,
     8,
     55.71719,
     37.41202333333333,
     {2009, 12, 5, 13, 57, 4},
     0.79F,
     159.0F,
     0,
     165.6F,
     0.0F,
     0},
    {"garmin17n.log",
     2,
     2,
     2,
     0,
     2,
     2,
     52.219065,
     21.010851666666667,
     {2005, 3, 16, 9, 38, 3},
     0.0F,
     226.0F,
     2,
     137.2F,
     0.9F,
     10},
    {"gp-320fw-2019-04-07-coldboot.log",
     16,
     10,
     11,
     33,
     17,
     2,
     0.0,
     0.0,
     {2099, 8, 22, 0, 4, 35},
     0.0F,
     0.0F,
     0,
     0.0F,
     0.0F,
     0},
    {"haicom-305N.log",
     74,
     73,
     73,
     0,
     74,
     74,
     -27.210673333333332,
     153.052,
     {2007, 4, 8, 9, 54, 15},
     2.11F,
     96.86F,
     1,
     3.5F,
     1.8F,
     6},
    {"hemi.log",
     0,
     215,
     215,
     0,
     215,
     21,
     42.36372587,
     -71.03239667833333,
     {},
     0.02F,
     183.7F,
     1,
     6.914F,
     1.4F,
     4},
    {"humminbird-M37.log",
     17,
     8,
     8,
     0,
     17,
     17,
     44.435365,
     -71.67494166666667,
     {2006, 9, 16, 19, 41, 19},
     5.1F,
     85.4F,
     2,
     268.5F,
     0.9F,
     10},
    {"nmea-fuzzy-cases.log",
     14,
     14,
     0,
     0,
     15,
     15,
     41.5750300485,
     -93.75059780966667,
     {2020, 3, 18, 13, 39, 0},
     0.006F,
     0.0F,
     5,
     280.833F,
     0.7F,
     19},
    {"quectel.log",
     42,
     42,
     42,
     0,
     43,
     35,
     -36.7459914,
     174.7345484,
     {2020, 10, 7, 2, 21, 2},
     0.0F,
     301.9F,
     1,
     56.1F,
     1.0F,
     8},
    {"tcp-torture.log",
     1,
     1,
     0,
     0,
     2,
     2,
     20.628798333333332,
     -87.06808,
     {2007, 12, 23, 19, 32, 21},
     0.1F,
     201.8F,
     1,
     -30.4F,
     1.7F,
     4},
    {"telit-he910.log",
     224,
     224,
     224,
     0,
     225,
     187,
     50.84021,
     4.3470466666666665,
     {2019, 3, 12, 10, 54, 59},
     0.0F,
     0.0F,
     1,
     102.0F,
     1.75F,
     5},
    {"tomtom-mkII.log",
     28,
     4,
     0,
     0,
     29,
     5,
     51.43116166666667,
     5.403813333333333,
     {2010, 6, 20, 17, 58, 4},
     0.0F,
     0.0F,
     0,
     59.61F,
     2.2F,
     3},
    {"ublox-lea-4s.log",
     3,
     3,
     3,
     0,
     3,
     3,
     38.42682816666667,
     27.142299,
     {2006, 12, 11, 17, 55, 6},
     0.074F,
     112.93F,
     1,
     58.1F,
     1.24F,
     7},
};

TEST(RealDataNmeaTest, RecordedLogsGiveTheirPositions) {
    if (!std::filesystem::is_directory(test::recordedLogs())) {
        GTEST_SKIP() << "no folder " << test::recordedLogs();
    }
    for (const Expected& expected : kRecorded) {
        expectReplay(expected, test::logIn(test::recordedLogs() / expected.name));
    }
}

} // namespace
} // namespace raincast
