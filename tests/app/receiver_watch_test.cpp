// SPDX-License-Identifier: MIT
#include "app/receiver_watch.h"
#include "position/position_receiver.h"
#include "support/fake_source.h"
#include "support/manual_timers.h"
#include "units/position_format_type.h"
#include "units/scoped_units.h"

#include <gtest/gtest.h>

namespace raincast {
namespace {

constexpr char kValid[] = "$GPRMC,183000,A,4130.000,N,10515.000,W,0,0,150607,,\r\n";
constexpr char kVoid[] = "$GPRMC,183000,V,4130.000,N,10515.000,W,0,0,150607,,\r\n";
constexpr char kGgaFix[] = "$GPGGA,183000,4230.000,N,10515.000,W,1,8,1.0,10,M,,,,\r\n";
constexpr char kGgaNone[] = "$GPGGA,183000,4230.000,N,10515.000,W,0,0,,,M,,,,\r\n";
constexpr char kOther[] = "$GPGSV,1\r\n";

class ReceiverWatchTest : public testing::Test {
protected:
    ReceiverWatchTest() {
        FakeSource::reset();
        use();
        watch.look(now);
    }
    void use() { receiver.use(*PositionSourceAddress::parse(QStringLiteral("gpsd:"))); }
    void look(double afterSeconds = 1) {
        now += static_cast<FileTime>(afterSeconds * kFileTimePerSecond);
        watch.look(now);
    }
    static void send(const char* sentence, int times = 1) {
        for (int i = 0; i < times; ++i) {
            FakeSource::send(sentence);
        }
    }
    std::string text() const { return watch.text().toStdString(); }

    FileTime now = kUnixEpoch;
    ManualTimers timers;
    PositionReceiver receiver{timers, FakeSource::make};
    ReceiverWatch watch{receiver};
};

TEST_F(ReceiverWatchTest, SaysWhatTheReceiverDoesUntilThereIsARate) {
    EXPECT_FALSE(watch.sentencesPerSecond());
    EXPECT_EQ(text(), "Open; read 0 bytes");
    look();
    EXPECT_EQ(watch.sentencesPerSecond(), 0);
    EXPECT_EQ(text(), "No sentences, no fix\nOpen; read 0 bytes");
    receiver.use(std::nullopt);
    EXPECT_EQ(text(), "No position source");
}

TEST_F(ReceiverWatchTest, CountsTheSentencesOfTheLastFiveSeconds) {
    send(kOther, 10);
    look();
    EXPECT_EQ(watch.sentencesPerSecond(), 10);
    look();
    EXPECT_EQ(watch.sentencesPerSecond(), 5);
    for (int i = 0; i < 5; ++i) {
        send(kOther, 3);
        look();
    }
    EXPECT_EQ(watch.sentencesPerSecond(), 3);
    EXPECT_TRUE(watch.text().startsWith(QStringLiteral("3.0 sentences per second, no fix\n")));
    send(kOther, 100);
    look(0.5);
    EXPECT_GT(*watch.sentencesPerSecond(), 10);
    EXPECT_TRUE(
        watch.text().contains(QStringLiteral("24 sentences per second")) ||
        watch.text().contains(QStringLiteral("25 sentences per second"))
    ) << text();
}

TEST_F(ReceiverWatchTest, AnotherClockOrSourceStartsTheCountAnew) {
    send(kOther, 10);
    look();
    look(-3600);
    EXPECT_FALSE(watch.sentencesPerSecond());
    look(0);
    EXPECT_FALSE(watch.sentencesPerSecond()) << "no time has passed";
    look();
    EXPECT_EQ(watch.sentencesPerSecond(), 0);
    look(20.5);
    EXPECT_FALSE(watch.sentencesPerSecond()) << "the computer slept";
    use();
    look();
    EXPECT_FALSE(watch.sentencesPerSecond()) << "the receiver's counters are at 0 again";
}

TEST_F(ReceiverWatchTest, AFixHoldsForNineSeconds) {
    send(kValid);
    EXPECT_EQ(watch.fix(), (GeoPosition{41.5, -105.25}));
    for (int second = 0; second < 9; ++second) {
        look();
        EXPECT_TRUE(watch.fix()) << second;
    }
    look();
    EXPECT_FALSE(watch.fix());
    send(kValid);
    look();
    EXPECT_EQ(
        text().substr(0, text().rfind('\n')),
        "0.2 sentences per second, fix\n41°30.000'N, 105°15.000'W"
    );
    send(kVoid);
    EXPECT_FALSE(watch.fix());
}

TEST_F(ReceiverWatchTest, GgaTellsOfAFixWhereNoRmcComes) {
    send(kGgaFix);
    EXPECT_EQ(watch.fix(), (GeoPosition{42.5, -105.25}));
    send(kGgaNone);
    EXPECT_FALSE(watch.fix());
    send(kVoid);
    send(kGgaFix);
    EXPECT_FALSE(watch.fix());
    use();
    send(kGgaFix);
    EXPECT_TRUE(watch.fix());
    use();
    EXPECT_FALSE(watch.fix());
}

// The map shows no fix then, either.
TEST_F(ReceiverWatchTest, GgaTellsOfNoFixWhenAnRmcCameBeforeTheWatch) {
    send(kValid);
    ReceiverWatch late(receiver);
    send(kGgaFix);
    EXPECT_FALSE(late.fix());
    use();
    send(kGgaFix);
    EXPECT_TRUE(late.fix());
}

TEST_F(ReceiverWatchTest, ThePositionIsInTheUsersFormat) {
    const test::ScopedUnits keep;
    CUnits units;
    units.positionFormat = &CUnits::PositionFormatType::named(QStringLiteral("Degrees"));
    CUnits::setGlobal(units);
    send(kValid);
    EXPECT_TRUE(watch.text().startsWith(QStringLiteral("41.50000°N, 105.25000°W\n"))) << text();
}

TEST_F(ReceiverWatchTest, SaysWhatIsWrong) {
    FakeSource::breakDown();
    look();
    EXPECT_EQ(text(), "No sentences, no fix\nunplugged; opening it again after 1 s; read 0 bytes");
}

} // namespace
} // namespace raincast
