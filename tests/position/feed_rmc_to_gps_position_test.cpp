// SPDX-License-Identifier: MIT
#include "position/feed_rmc_to_gps_position.h"
#include "position/nmea/nmea_reader.h"
#include "position/position_receiver.h"
#include "support/fake_source.h"
#include "support/manual_phase.h"
#include "support/manual_timers.h"
#include "support/record_listeners.h"
#include "support/test_clock.h"

#include <gtest/gtest.h>

namespace raincast {
namespace {

constexpr char kRmc[] = "$GPRMC,123519,A,4807.038,N,01131.000,E,022.4,084.4,230307,003.1,W\n";
constexpr char kRmcVoid[] = "$GPRMC,123520,V,4807.038,N,01131.000,E,022.4,084.4,230307,,,N\n";
constexpr char kGga[] = "$GPGGA,093802,5213.1439,N,02100.6511,E,2,10,0.9,137.2,M,36.2,M,,\n";
constexpr char kGgaNone[] = "$GPGGA,093803,5213.1439,N,02100.6511,E,0,00,,,M,,M,,\n";
constexpr char kVtg[] = "$GPVTG,113.02,T,,M,0.142,N,0.263,K,A\n";

class FeedRmcTest : public testing::Test {
protected:
    std::size_t published() const { return positions.records.size(); }
    const CDataGPSPosition& last() const { return positions.records.back(); }
    void second(int times = 1) {
        for (int i = 0; i < 10 * times; ++i) {
            clock.advance(kFileTimePerSecond / 10);
            heartbeat.Beat();
        }
    }

    TestClock clock;
    ManualPhase phase{9}; // the tenth beat
    CHeartbeat heartbeat;
    RecordListener<CDataGPSPosition> positions;
    PublishedPosition position;
    CFeedRMC_to_GPSPosition feed{position};
    NmeaReader reader;
};

TEST_F(FeedRmcTest, EveryRmcIsAPosition) {
    reader.feed(kRmc);
    ASSERT_EQ(published(), 1U);
    EXPECT_NEAR(last().latitude, 48.1173, 1e-12);
    EXPECT_NEAR(last().longitude, 11.51666666666, 1e-11);
    EXPECT_EQ(last().time, fromCalendar({2007, 3, 23, 12, 35, 19}));
    EXPECT_EQ(last().speed, 22.4F);
    EXPECT_EQ(last().course, 84.4F);
    EXPECT_EQ(last().fixType, kFixGps);
    EXPECT_EQ(last().extra1, 400.0F);

    reader.feed(kRmcVoid);
    ASSERT_EQ(published(), 2U);
    EXPECT_EQ(last().fixType, kFixNone);
}

TEST_F(FeedRmcTest, ABetterFixTypeOfGgaIsKept) {
    reader.feed(kRmc);
    reader.feed(kGga);
    EXPECT_EQ(published(), 1U) << "GGA publishes nothing once RMC has come";
    reader.feed(kRmc);
    ASSERT_EQ(published(), 2U);
    EXPECT_EQ(last().fixType, kFixDifferential);
    EXPECT_EQ(last().altitude, 137.2F);
    EXPECT_EQ(last().dilution, 0.9F);
    EXPECT_EQ(last().satellites, 10);
    EXPECT_NEAR(last().latitude, 48.1173, 1e-12);
    EXPECT_NEAR(last().longitude, 11.5166666667, 1e-9);

    reader.feed(kRmcVoid);
    reader.feed(kRmc);
    EXPECT_EQ(last().fixType, kFixGps);
}

TEST_F(FeedRmcTest, AFixThatGgaDeniesIsNoBetterOne) {
    reader.feed(kRmc);
    reader.feed(kGga);
    reader.feed(kGgaNone);
    EXPECT_EQ(position.fixType, kFixNone);
    EXPECT_EQ(published(), 1U);
    reader.feed(kRmc);
    EXPECT_EQ(last().fixType, kFixGps) << "RMC leads, and knows of nothing better any more";
}

TEST_F(FeedRmcTest, RemembersWhatHasCome) {
    EXPECT_FALSE(feed.rmcSeen());
    EXPECT_FALSE(feed.ggaSeen());
    reader.feed(kRmc);
    EXPECT_TRUE(feed.rmcSeen());
    EXPECT_FALSE(feed.ggaSeen());
    reader.feed(kGga);
    EXPECT_TRUE(feed.ggaSeen()) << "also behind an RMC";
}

TEST_F(FeedRmcTest, WithoutRmcGgaIsThePosition) {
    reader.feed(kVtg);
    EXPECT_EQ(published(), 0U);
    reader.feed(kGga);
    ASSERT_EQ(published(), 1U);
    EXPECT_NEAR(last().latitude, 52.219065, 1e-9);
    EXPECT_NEAR(last().longitude, 21.0108516667, 1e-9);
    EXPECT_EQ(last().time, clock.now()) << "its own time is not read";
    EXPECT_EQ(last().speed, 0.142F);
    EXPECT_EQ(last().course, 113.02F);
    EXPECT_FALSE(feed.rmcSeen());
    EXPECT_TRUE(feed.ggaSeen());
}

// Whoever asked first in the notification set its time.
TEST_F(FeedRmcTest, TheTimeOfAGgaIsThatOfItsNotification) {
    class Early : private Listener<CNMEA_GPS::GGA> {
    public:
        explicit Early(TestClock& clock) : Listener<CNMEA_GPS::GGA>(1), m_clock(clock) {}
        FileTime time = 0;

    private:
        void onPublished(CNMEA_GPS::GGA& /*gga*/) override {
            time = notificationTime();
            m_clock.advance(kFileTimePerSecond);
        }
        TestClock& m_clock;
    } early(clock);
    reader.feed(kGga);
    ASSERT_EQ(published(), 1U);
    EXPECT_EQ(last().time, early.time);
    EXPECT_EQ(clock.now(), early.time + kFileTimePerSecond);
}

TEST_F(FeedRmcTest, OnceRmcHasComeVtgGivesNoMotion) {
    reader.feed(kRmc);
    reader.feed(kVtg);
    reader.feed(kRmcVoid);
    second(20);
    reader.feed(kVtg);
    reader.feed(kGga);
    EXPECT_EQ(position.speed, 22.4F);
    EXPECT_EQ(position.course, 84.4F);
    EXPECT_NEAR(position.latitude, 48.1173, 1e-12);
    EXPECT_EQ(published(), 2U);
}

TEST_F(FeedRmcTest, QualitiesOfGga) {
    reader.feed("$GPGGA,,,,,,3,,,,,,,\n");
    EXPECT_EQ(position.fixType, kFixPrecise);
    reader.feed("$GPGGA,,,,,,9,,,,,,,\n");
    EXPECT_EQ(position.fixType, kFixPrecise);
    reader.feed("$GPGGA,,,,,,0,,,,,,,\n");
    EXPECT_EQ(position.fixType, kFixNone);
}

TEST_F(FeedRmcTest, ASilentReceiverIsAnnouncedOnceAfterNineSeconds) {
    reader.feed(kRmc);
    second(8);
    EXPECT_EQ(published(), 1U);
    EXPECT_TRUE(position.valid());
    second();
    ASSERT_EQ(published(), 2U);
    EXPECT_EQ(last().fixType, kFixNone);
    EXPECT_NEAR(last().latitude, 48.1173, 1e-12) << "the last known place";
    second(30);
    EXPECT_EQ(published(), 2U);
}

TEST_F(FeedRmcTest, EveryPublicationStartsTheCountAnew) {
    reader.feed(kGga);
    second(8);
    reader.feed(kGga);
    second(8);
    reader.feed(kRmc);
    second(8);
    reader.feed(kGga);
    EXPECT_EQ(published(), 3U);
    second();
    ASSERT_EQ(published(), 4U) << "a GGA that is not published does not count";
    EXPECT_EQ(last().fixType, kFixNone);
}

// A receiver whose RMC sentences end: its GGA goes on and tells of a fix, at no place of their own.
TEST_F(FeedRmcTest, AfterALossGgaAloneShowsNoFixAtTheFrozenPlace) {
    reader.feed(kRmc);
    second(9);
    ASSERT_EQ(published(), 2U);
    for (int i = 0; i < 30; ++i) {
        reader.feed(kGga);
        second();
        EXPECT_FALSE(position.published().valid()) << i;
    }
    EXPECT_EQ(published(), 2U) << "lost once";
    reader.feed(kRmc);
    EXPECT_EQ(last().fixType, kFixDifferential);
    EXPECT_TRUE(position.published().valid());
}

TEST_F(FeedRmcTest, AFixThatGgaDeniedIsLostInSilenceAsWell) {
    reader.feed(kRmc);
    reader.feed(kGgaNone);
    second(8);
    EXPECT_EQ(published(), 1U);
    EXPECT_TRUE(position.published().valid());
    second();
    ASSERT_EQ(published(), 2U);
    EXPECT_EQ(last().fixType, kFixNone);
    EXPECT_FALSE(position.published().valid());
    second(30);
    EXPECT_EQ(published(), 2U);
}

TEST_F(FeedRmcTest, AFixThatOnlyGgaToldOfIsLostInSilenceToo) {
    reader.feed(kRmcVoid);
    reader.feed(kGga);
    second(8);
    EXPECT_EQ(feed.position().fixType, kFixDifferential);
    EXPECT_EQ(published(), 1U);
    second();
    EXPECT_EQ(feed.position().fixType, kFixNone);
    ASSERT_EQ(published(), 2U);
    EXPECT_EQ(last().fixType, kFixNone);
    reader.feed(kRmc);
    EXPECT_EQ(last().fixType, kFixGps) << "what GGA said is over";
}

TEST_F(FeedRmcTest, AFixOfGgaAloneIsNoNewsOnceTheTimeIsOver) {
    reader.feed(kRmcVoid);
    second(12);
    reader.feed(kGga);
    second(12);
    EXPECT_EQ(published(), 1U);
}

TEST_F(FeedRmcTest, WithoutAFixSilenceIsNoNews) {
    reader.feed(kRmcVoid);
    second(20);
    EXPECT_EQ(published(), 1U);
}

/// The feed of a program whose user changes the source.
class SourceChangeTest : public FeedRmcTest {
protected:
    SourceChangeTest() { FakeSource::reset(); }
    void use(const char* address) {
        receiver.use(*PositionSourceAddress::parse(QString::fromLatin1(address)));
    }

    ManualTimers timers;
    PositionReceiver receiver{timers, FakeSource::make};
};

TEST_F(SourceChangeTest, ASourceOfGgaAndVtgGivesPositionsAfterOneOfRmc) {
    use("tcp:one:1");
    FakeSource::send(kRmc);
    FakeSource::send(kGga);
    use("tcp:other:1");
    EXPECT_FALSE(feed.rmcSeen());
    EXPECT_FALSE(feed.ggaSeen());
    const std::size_t before = published();
    FakeSource::send(kVtg);
    FakeSource::send(kGga);
    ASSERT_EQ(published(), before + 1);
    EXPECT_NEAR(last().latitude, 52.219065, 1e-9);
    EXPECT_EQ(last().speed, 0.142F);
    EXPECT_EQ(last().fixType, kFixDifferential);
    EXPECT_TRUE(position.published().valid());
}

TEST_F(SourceChangeTest, NothingOfTheOldSourceIsTakenForTheNewOnes) {
    use("tcp:one:1");
    FakeSource::send(kRmc);
    FakeSource::send(kGga);
    use("tcp:other:1");
    FakeSource::send("$GPGGA,093802,5213.1439,N,02100.6511,E,1,,,,M,,M,,\n");
    EXPECT_EQ(last().speed, 0) << "not the old one's";
    EXPECT_EQ(last().course, 0);
    use("tcp:one:1");
    FakeSource::send(kGga);
    use("tcp:third:1");
    FakeSource::send(kRmc);
    EXPECT_EQ(last().fixType, kFixGps);
    EXPECT_EQ(last().altitude, 0);
    EXPECT_EQ(last().satellites, 0);
    EXPECT_EQ(last().extra1, 400);
}

TEST_F(SourceChangeTest, WhatTheOldSourceShowedIsLostAtOnceWhereItWas) {
    use("tcp:one:1");
    FakeSource::send(kRmc);
    ASSERT_EQ(published(), 1U);
    receiver.use(std::nullopt);
    ASSERT_EQ(published(), 2U);
    EXPECT_EQ(last().fixType, kFixNone);
    EXPECT_NEAR(last().latitude, 48.1173, 1e-12);
    EXPECT_FALSE(position.published().valid());
    second(30);
    use("tcp:other:1");
    EXPECT_EQ(published(), 2U) << "it is lost already";
}

TEST_F(SourceChangeTest, ASourceThatBreaksIsStillTheSame) {
    use("tcp:one:1");
    FakeSource::send(kRmc);
    FakeSource::breakDown();
    timers.fire();
    FakeSource::send(kGga);
    EXPECT_TRUE(feed.rmcSeen());
    EXPECT_EQ(published(), 1U);
}

TEST_F(SourceChangeTest, TheReceiversEndIsNoNews) {
    {
        PositionReceiver other(timers, FakeSource::make);
        other.use(*PositionSourceAddress::parse(QStringLiteral("gpsd:")));
        FakeSource::send(kRmc);
    }
    EXPECT_EQ(published(), 1U);
}

} // namespace
} // namespace raincast
