// SPDX-License-Identifier: MIT
#include "core/busy_guard.h"
#include "position/position_receiver.h"
#include "position/source/serial_source.h"
#include "position/source/test_sink.h"
#include "support/event_loop.h"
#include "support/files.h"
#include "support/manual_timers.h"
#include "support/record_listeners.h"

#include <QTemporaryDir>

#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <termios.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <string>

namespace raincast {
namespace {

using testing::ElementsAre;
using testing::EndsWith;
using testing::IsEmpty;

/// A serial line of which the test holds the receiver's end.
class SerialLine {
public:
    SerialLine() : m_end(::posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC)) {
        EXPECT_TRUE(m_end.isOpen());
        EXPECT_EQ(::grantpt(m_end.get()), 0);
        EXPECT_EQ(::unlockpt(m_end.get()), 0);
    }
    QString device() const { return QString::fromLocal8Bit(::ptsname(m_end.get())); }
    void send(std::string_view bytes) const {
        EXPECT_EQ(
            ::write(m_end.get(), bytes.data(), bytes.size()), static_cast<ssize_t>(bytes.size())
        );
    }
    termios settings() const {
        termios result{};
        EXPECT_EQ(::tcgetattr(m_end.get(), &result), 0);
        return result;
    }
    void unplug() { m_end.reset(); }

private:
    FileDescriptor m_end;
};

class SerialSourceTest : public testing::Test {
protected:
    bool receives(const std::string& bytes) {
        return loop.until([&] { return sink.all == bytes; });
    }

    EventLoop loop;
    ManualTimers timers;
    TestSink sink;
    SerialLine line;
};

TEST_F(SerialSourceTest, GivesOutRawBytes) {
    SerialSource source(timers, line.device(), 4800);
    source.open(sink);
    ASSERT_THAT(sink.failures, IsEmpty());
    line.send("$GPVTG,1\r\n");
    EXPECT_TRUE(receives("$GPVTG,1\r\n"));
    // Bytes that a terminal would act on.
    const std::string controls("\x03\x04\x11\x13\x1a\x00\xff\r\n", 9);
    line.send(controls);
    EXPECT_TRUE(receives("$GPVTG,1\r\n" + controls));
}

TEST_F(SerialSourceTest, SetsTheSpeedAndEightBits) {
    const struct {
        int baud;
        speed_t code;
    } rows[] = {{4800, B4800}, {9600, B9600}, {115200, B115200}};
    for (const auto& row : rows) {
        SerialSource source(timers, line.device(), row.baud);
        source.open(sink);
        const termios settings = line.settings();
        EXPECT_EQ(::cfgetispeed(&settings), row.code);
        EXPECT_EQ(settings.c_cflag & static_cast<tcflag_t>(CSIZE), static_cast<tcflag_t>(CS8));
        EXPECT_EQ(settings.c_cflag & static_cast<tcflag_t>(PARENB | CSTOPB | CRTSCTS), 0U);
        EXPECT_EQ(settings.c_lflag & static_cast<tcflag_t>(ICANON | ECHO | ISIG), 0U);
    }
}

TEST_F(SerialSourceTest, WhatIsNoSerialDeviceIsBroken) {
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("file"));
    SerialSource missing(timers, path, 4800);
    missing.open(sink);
    writeFile(path);
    SerialSource file(timers, path, 4800);
    file.open(sink);
    SerialSource speed(timers, line.device(), 4801);
    speed.open(sink);
    EXPECT_THAT(
        sink.failures, ElementsAre(
                           EndsWith("file: " + std::string(std::strerror(ENOENT))),
                           EndsWith("file: Not a serial device"), EndsWith(": 4801 is not a speed")
                       )
    );
}

TEST_F(SerialSourceTest, AnUnpluggedDeviceIsBroken) {
    SerialSource source(timers, line.device(), 4800);
    source.open(sink);
    line.unplug();
    EXPECT_TRUE(loop.until([this] { return !sink.failures.empty(); }));
    loop.drain();
    EXPECT_EQ(sink.failures.size(), 1U);
}

TEST_F(SerialSourceTest, WhatComesWhileTheProgramIsBusyWaits) {
    SerialSource source(timers, line.device(), 4800);
    source.open(sink);
    {
        const BusyGuard busy;
        line.send("$GPVTG,1\r\n");
        EXPECT_TRUE(loop.until([this] { return !timers.running().empty(); }));
        loop.drain();
        EXPECT_THAT(timers.running(), ElementsAre(100)) << "it does not fire on and on";
        EXPECT_EQ(sink.reads, 0);
    }
    timers.fire();
    EXPECT_EQ(sink.all, "$GPVTG,1\r\n");
    line.send("2");
    EXPECT_TRUE(receives("$GPVTG,1\r\n2"));
}

TEST_F(SerialSourceTest, AClosedSourceIsSilent) {
    SerialSource source(timers, line.device(), 4800);
    source.open(sink);
    sink.whenReceived = [&source] { source.close(); };
    line.send("1");
    EXPECT_TRUE(receives("1"));
    sink.whenReceived = nullptr;
    source.open(sink);
    line.send("2");
    EXPECT_TRUE(receives("12"));
}

TEST_F(SerialSourceTest, ADeviceThatAppearsLaterOrIsPluggedInAgainIsFound) {
    const QTemporaryDir folder;
    const QString name = folder.filePath(QStringLiteral("gps"));
    const RecordListener<CNMEA_GPS::VTG> vtg;
    PositionReceiver receiver(timers);
    receiver.use(*PositionSourceAddress::parse(QStringLiteral("serial:%1@9600").arg(name)));
    EXPECT_EQ(receiver.state(), PositionReceiver::State::waiting);
    EXPECT_EQ(timers.fire(), 1000);

    ASSERT_TRUE(QFile::link(line.device(), name));
    EXPECT_EQ(timers.fire(), 2000);
    line.send("$GPVTG,1\r\n");
    EXPECT_TRUE(loop.until([&] { return vtg.records.size() == 1; }));

    line.unplug();
    EXPECT_TRUE(loop.until([&] { return receiver.state() == PositionReceiver::State::waiting; }));
    const SerialLine other;
    ASSERT_TRUE(QFile::remove(name));
    ASSERT_TRUE(QFile::link(other.device(), name));
    EXPECT_EQ(timers.fire(), 1000);
    other.send("$GPVTG,2\r\n");
    EXPECT_TRUE(loop.until([&] { return vtg.records.size() == 2; }));
}

TEST(SerialSpeedTest, KnowsTheSpeedsOfReceivers) {
    for (const int baud :
         {1200, 2400, 4800, 9600, 19200, 38400, 57600, 115200, 230400, 460800, 921600}) {
        EXPECT_TRUE(SerialSource::isSpeed(baud)) << baud;
    }
    for (const int baud : {0, -1, 1, 300, 4801, 1000000}) {
        EXPECT_FALSE(SerialSource::isSpeed(baud)) << baud;
    }
}

} // namespace
} // namespace raincast
