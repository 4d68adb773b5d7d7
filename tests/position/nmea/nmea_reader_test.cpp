// SPDX-License-Identifier: MIT
#include "position/nmea/nmea_reader.h"
#include "support/record_listeners.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

namespace raincast {
namespace {

class NmeaReaderTest : public testing::Test {
protected:
    void feed(std::string_view bytes) { reader.feed(bytes); }
    const NmeaCounters& counters() const { return reader.counters(); }

    NmeaReader reader;
    RecordListener<CNMEA_GPS::RMC> rmc;
    RecordListener<CNMEA_GPS::GGA> gga;
    RecordListener<CNMEA_GPS::VTG> vtg;
};

TEST_F(NmeaReaderTest, PublishesEveryKindToItsListeners) {
    feed("$GPRMC,093802,A,5213.1439,N,02100.6511,E,000.0,226.0,160305,004.2,E,D*15\r\n"
         "$GPGGA,093802,5213.1439,N,02100.6511,E,2,10,0.9,137.2,M,36.2,M,,*43\r\n"
         "$GPVTG,113.02,T,,M,0.142,N,0.263,K,A*3C\r\n");
    ASSERT_EQ(rmc.records.size(), 1U);
    EXPECT_EQ(rmc.records[0].time, fromCalendar({2005, 3, 16, 9, 38, 2}));
    ASSERT_EQ(gga.records.size(), 1U);
    EXPECT_EQ(gga.records[0].satellites, 10);
    ASSERT_EQ(vtg.records.size(), 1U);
    EXPECT_EQ(vtg.records[0].course, 113.02F);
    EXPECT_EQ(counters().taken, 3U);
}

TEST_F(NmeaReaderTest, WithoutListenersSentencesAreStillCounted) {
    NmeaReader other;
    other.feed("$GPRMC,\n");
    EXPECT_EQ(other.counters().taken, 1U);
}

struct Row {
    const char* line;
    std::uint64_t NmeaCounters::*count;
};

TEST_F(NmeaReaderTest, EverySentenceIsCountedOnceAndForWhatItIs) {
    const Row rows[] = {
        // Good.
        {"$GPVTG,1*4F", &NmeaCounters::taken},
        {"$GPVTG,1", &NmeaCounters::taken},
        {"$GPVTG,", &NmeaCounters::taken},
        {"$GNVTG,1*51", &NmeaCounters::taken},
        {"$GLVTG,1*53", &NmeaCounters::taken},
        {"$GAVTG,1", &NmeaCounters::taken},
        {"$BDVTG,1", &NmeaCounters::taken},
        {"$INVTG,1", &NmeaCounters::taken},
        {"$U0VTG,1", &NmeaCounters::taken},
        // Unusual.
        {"$GPVTG,1*4F trailing", &NmeaCounters::taken},
        {"$GPVTG,1*4f", &NmeaCounters::taken},
        {"$GPGSV,3,3,12,24,58,220,,26,17,053,,29,20,063,,30,60,311,44*7F",
         &NmeaCounters::otherKinds},
        {"$GPVTX,1", &NmeaCounters::otherKinds},
        {"$GPvtg,1", &NmeaCounters::otherKinds},
        {"$PGRME,0.00,M,0.00,M,29.40,M*21", &NmeaCounters::proprietary},
        {"$PUBX,00", &NmeaCounters::proprietary},
        {"$PRRMC,1", &NmeaCounters::proprietary},
        {"!AIVDM,1,1,,A,14eG;o@034o8sd<L9i:a;WF>062D,0*7D", &NmeaCounters::encapsulated},
        {"!GPVTG,1", &NmeaCounters::encapsulated},
        // Bad.
        {"$GPVTG,1*00", &NmeaCounters::wrongChecksum},
        {"$GPVTG,2*4F", &NmeaCounters::wrongChecksum},
        {"$GPVTG,1*", &NmeaCounters::wrongChecksum},
        {"$GPVTG,1*4", &NmeaCounters::wrongChecksum},
        {"$GPVTG,1*4 F", &NmeaCounters::wrongChecksum},
        {"$GPVTG,1* 4F", &NmeaCounters::wrongChecksum},
        {"$GPVTG,1*-F", &NmeaCounters::wrongChecksum},
        {"$GPVTG,1*xx", &NmeaCounters::wrongChecksum},
        {"$GPVTG,1*0x4F", &NmeaCounters::wrongChecksum},
        {"$GPVTG*25,1*4F", &NmeaCounters::wrongChecksum},
        {"$PGRME*FF", &NmeaCounters::wrongChecksum},
        {"$", &NmeaCounters::malformed},
        {"$*00", &NmeaCounters::malformed},
        {"$G", &NmeaCounters::malformed},
        {"$GPVTG", &NmeaCounters::malformed},
        {"$GPVTG.", &NmeaCounters::malformed},
        {"$GPVTGX,1", &NmeaCounters::malformed},
        {"$VTG,1", &NmeaCounters::malformed},
        {"$gpVTG,1", &NmeaCounters::malformed},
        {"$,,VTG,1", &NmeaCounters::malformed},
        {"$  VTG,1", &NmeaCounters::malformed},
        {"$GPVTG,\x01", &NmeaCounters::garbled},
    };
    for (const Row& row : rows) {
        const NmeaCounters before = counters();
        feed(std::string(row.line) + "\r\n");
        EXPECT_EQ(counters().*row.count, before.*row.count + 1) << row.line;
        EXPECT_EQ(counters().sentences(), before.sentences() + 1) << row.line;
    }
    EXPECT_EQ(vtg.records.size(), counters().taken);
}

TEST_F(NmeaReaderTest, HowTheBytesAreCutIntoReadsDoesNotMatter) {
    const std::string stream =
        "junk$GPRMC,123519,A,4807.038,N,01131.000,E,022.4,084.4,230307,003.1,W*60\r\n"
        "\xb5\x62$GPGGA,123519,4807.038,N,01131.000,E,1,08,0.9,545.4,M,46.9,M,,*47\r\n"
        "$GPGGA,123519,4807.038,N,01131.000,E,1,08,0.9,545.4,M,46.9,M,,*48\r\n$GPVTG,1*4F\n";
    for (std::size_t piece = 1; piece <= stream.size(); ++piece) {
        NmeaReader other;
        rmc.records.clear();
        for (std::size_t at = 0; at < stream.size(); at += piece) {
            other.feed(std::string_view(stream).substr(at, piece));
        }
        ASSERT_EQ(rmc.records.size(), 1U) << piece;
        ASSERT_NEAR(rmc.records[0].latitude, 48.1173, 1e-12) << piece;
        ASSERT_EQ(
            other.counters().text(), "read " + std::to_string(stream.size()) +
                                         " bytes: 3 taken, 1 with a wrong checksum, "
                                         "6 bytes of junk"
        ) << piece;
    }
}

TEST_F(NmeaReaderTest, ResetForgetsTheBeginningOfASentence) {
    feed("$GPVTG,1");
    reader.reset();
    feed("$GPVTG,2\r\n");
    ASSERT_EQ(vtg.records.size(), 1U);
    EXPECT_EQ(vtg.records[0].course, 2.0F);
    EXPECT_EQ(counters().garbled, 1U);
}

} // namespace
} // namespace raincast
