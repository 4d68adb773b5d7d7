// SPDX-License-Identifier: MIT
#include "position/nmea/nmea_pace.h"

#include <gtest/gtest.h>

namespace raincast {
namespace {

struct Row {
    const char* line;
    int wait; ///< milliseconds
};

template<std::size_t Count>
void expectWaits(double rate, const Row (&rows)[Count]) {
    NmeaPace pace(rate);
    for (const Row& row : rows) {
        EXPECT_EQ(pace.waitBefore(row.line).count(), row.wait) << row.line;
    }
}

TEST(NmeaPaceTest, WaitsFromOneTimeToTheNext) {
    expectWaits(
        1, {{"# header\n", 0},
            {"$GPGGA,093802,5213.1439,N\n", 0},
            {"$GPRMC,093802,A,5213.1439,N\n", 0},
            {"$GPVTG,120000\n", 0},
            {"$GPZDA,175503.00,11,12,2006,00,00*64\n", 0},
            {"$GNGGA,093803\r\n", 1000},
            {"$GPRMC,093803\r\n", 0},
            {"junk$GPRMC,093805.25\r\n", 2250}}
    );
}

TEST(NmeaPaceTest, TheRateDividesTheWaits) {
    expectWaits(2.5, {{"$GPRMC,000000", 0}, {"$GPRMC,000001", 400}, {"$GPRMC,000001.1", 40}});
    expectWaits(0.5, {{"$GPRMC,000000", 0}, {"$GPRMC,000001", 2000}, {"$GPRMC,010000", 20000}});
    expectWaits(0, {{"$GPRMC,000000", 0}, {"$GPRMC,000001", 0}});
}

TEST(NmeaPaceTest, MidnightIsNoGap) {
    expectWaits(
        1, {{"$GPRMC,235959.50", 0},
            {"$GPRMC,000000.50", 1000},
            {"$GPRMC,235959", 0},
            {"$GPRMC,000001.50", 1000}}
    );
}

TEST(NmeaPaceTest, GapsAreWaitedForForTenSecondsAtMost) {
    expectWaits(1, {{"$GPRMC,100000", 0}, {"$GPRMC,110000", 10000}, {"$GPRMC,110001", 1000}});
}

TEST(NmeaPaceTest, ASlowerSentenceIsNotWaitedForTwice) {
    expectWaits(
        1, {{"$GPGGA,100001.0", 0},
            {"$GPRMC,100000.2", 0},
            {"$GPGGA,100002.0", 1000},
            {"$GPRMC,100001.2", 0},
            {"$GPGGA,100003.0", 1000}}
    );
}

TEST(NmeaPaceTest, ATimeThatGoesFarBackStartsAnew) {
    expectWaits(1, {{"$GPRMC,194124", 0}, {"$GPRMC,194111", 0}, {"$GPRMC,194112", 1000}});
    // Far is more than two seconds.
    expectWaits(1, {{"$GPRMC,194124", 0}, {"$GPRMC,194122", 0}, {"$GPRMC,194125", 1000}});
    expectWaits(1, {{"$GPRMC,194124", 0}, {"$GPRMC,194121.999", 0}, {"$GPRMC,194125", 3001}});
}

TEST(NmeaPaceTest, DamagedTimesDoNotCount) {
    expectWaits(
        1, {{"$GPRMC,100000", 0},
            {"$GPRMC,100009*00", 0},
            {"$GPRMC,", 0},
            {"$GPRMC,1000", 0},
            {"$GPRMC,990000", 0},
            {"$GPRMC,-10000", 0},
            {"$GPRMC,10001e300", 0},
            {"$GPRMCX,100009", 0},
            {"$RMC", 0},
            {"$", 0},
            {"", 0},
            {"$GPRMC,100001", 1000}}
    );
}

} // namespace
} // namespace raincast
