// SPDX-License-Identifier: MIT
#include "core/busy_guard.h"
#include "position/position_receiver.h"
#include "support/fake_source.h"
#include "support/files.h"
#include "support/manual_timers.h"
#include "support/record_listeners.h"

#include <QTemporaryDir>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <optional>

namespace raincast {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using State = PositionReceiver::State;

class PositionReceiverTest : public testing::Test {
protected:
    PositionReceiverTest() { FakeSource::reset(); }
    static PositionSourceAddress address(const char* text = "gpsd:") {
        return *PositionSourceAddress::parse(QString::fromLatin1(text));
    }
    void use() { receiver.use(address()); }
    std::string status() const { return receiver.statusText().toStdString(); }

    ManualTimers timers;
    RecordListener<CNMEA_GPS::VTG> vtg;
    PositionReceiver receiver{timers, FakeSource::make};
};

TEST_F(PositionReceiverTest, PublishesWhatComes) {
    EXPECT_EQ(receiver.state(), State::off);
    EXPECT_FALSE(receiver.address());
    EXPECT_EQ(status(), "No position source");
    use();
    EXPECT_EQ(receiver.address(), address());
    EXPECT_EQ(receiver.state(), State::open);
    FakeSource::send("$GPVTG,1\r\n$GPV");
    FakeSource::send("TG,2\r\n");
    ASSERT_EQ(vtg.records.size(), 2U);
    EXPECT_EQ(vtg.records[1].course, 2.0F);
    EXPECT_EQ(status(), "Open; read 20 bytes: 2 taken");
    EXPECT_THAT(timers.running(), IsEmpty());
}

TEST_F(PositionReceiverTest, OpensABrokenSourceAgainForever) {
    FakeSource::breaksWhenOpened = true;
    use();
    EXPECT_EQ(receiver.state(), State::waiting);
    EXPECT_EQ(status(), "no such device; opening it again after 1 s; read 0 bytes");
    std::vector<int> delays;
    for (int i = 0; i < 8; ++i) {
        delays.push_back(timers.fire());
    }
    EXPECT_THAT(delays, ElementsAre(1000, 2000, 4000, 8000, 16000, 30000, 30000, 30000));
    EXPECT_EQ(FakeSource::opens, 9);

    FakeSource::breaksWhenOpened = false;
    EXPECT_EQ(timers.fire(), 30000);
    EXPECT_EQ(receiver.state(), State::open);
    EXPECT_EQ(receiver.problem(), QStringLiteral("no such device")) << "until a sentence comes";
    EXPECT_EQ(status(), "no such device; trying again; read 0 bytes");
    FakeSource::send("$GPVTG,1\r\n");
    EXPECT_TRUE(receiver.problem().isEmpty());
    EXPECT_EQ(vtg.records.size(), 1U);
}

TEST_F(PositionReceiverTest, OnlyASentenceStartsTheDelaysAnew) {
    use();
    FakeSource::breakDown();
    EXPECT_EQ(timers.fire(), 1000);
    FakeSource::send("{\"class\":\"VERSION\"}\r\n");
    FakeSource::breakDown();
    EXPECT_EQ(timers.fire(), 2000);
    FakeSource::send("$GPGSV,1\r\n");
    FakeSource::breakDown();
    EXPECT_EQ(timers.fire(), 1000);
}

TEST_F(PositionReceiverTest, ASentenceCutByABreakIsDropped) {
    use();
    FakeSource::send("$GPVTG,1");
    FakeSource::breakDown();
    timers.fire();
    FakeSource::send("2\r\n$GPVTG,3\r\n");
    ASSERT_EQ(vtg.records.size(), 1U);
    EXPECT_EQ(vtg.records[0].course, 3.0F);
    EXPECT_EQ(receiver.counters().garbled, 1U);
}

TEST_F(PositionReceiverTest, AnotherSourceReplacesTheOneInUse) {
    use();
    FakeSource::send("$GPVTG,1\r\n$GPV");
    FakeSource::breakDown();
    use();
    EXPECT_EQ(FakeSource::ended, 1);
    EXPECT_THAT(timers.running(), IsEmpty());
    EXPECT_EQ(status(), "Open; read 0 bytes");
    receiver.use(std::nullopt);
    EXPECT_EQ(FakeSource::ended, 2);
    EXPECT_EQ(receiver.state(), State::off);
}

TEST_F(PositionReceiverTest, NothingIsOpenedWhileTheProgramIsBusy) {
    std::optional<BusyGuard> busy(std::in_place);
    use();
    EXPECT_EQ(FakeSource::opens, 0);
    busy.reset();
    timers.fire();
    EXPECT_EQ(FakeSource::opens, 1);

    FakeSource::breakDown();
    busy.emplace();
    EXPECT_EQ(timers.fire(), 1000);
    EXPECT_EQ(timers.fire(), 100);
    EXPECT_EQ(FakeSource::opens, 1);
    busy.reset();
    timers.fire();
    EXPECT_EQ(FakeSource::opens, 2);
    EXPECT_TRUE(FakeSource::isOpen());
}

TEST_F(PositionReceiverTest, ARecordedFileIsPlayedOnceAFileThatAppearsLaterIsFound) {
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("log.nmea"));
    PositionReceiver player(timers);
    player.use(*PositionSourceAddress::parse(QStringLiteral("file:%1?rate=0").arg(path)));
    EXPECT_EQ(player.state(), State::waiting);
    writeFile(path, "$GPVTG,1\r\n$GPVTG,2\r\n");
    EXPECT_EQ(timers.fire(), 1000);
    EXPECT_EQ(player.state(), State::open);
    timers.fire();
    EXPECT_EQ(vtg.records.size(), 2U);
    timers.fire();
    EXPECT_EQ(player.state(), State::finished);
    EXPECT_EQ(player.statusText().toStdString(), "Finished; read 20 bytes: 2 taken");
    EXPECT_EQ(timers.fire(), -1);
}

} // namespace
} // namespace raincast
