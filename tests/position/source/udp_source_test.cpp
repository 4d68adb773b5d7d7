// SPDX-License-Identifier: MIT
#include "core/busy_guard.h"
#include "position/source/test_sink.h"
#include "position/source/udp_source.h"
#include "support/event_loop.h"
#include "support/manual_timers.h"

#include <QUdpSocket>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace raincast {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class UdpSourceTest : public testing::Test {
protected:
    UdpSourceTest() {
        // A port that was free a moment ago.
        QUdpSocket socket;
        EXPECT_TRUE(socket.bind());
        port = socket.localPort();
    }
    void send(const QByteArray& datagram) {
        sender.writeDatagram(datagram, QHostAddress(QHostAddress::LocalHost), port);
    }

    EventLoop loop;
    ManualTimers timers;
    TestSink sink;
    QUdpSocket sender;
    quint16 port = 0;
};

TEST_F(UdpSourceTest, EveryDatagramEndsItsSentence) {
    UdpSource source(timers, port);
    source.open(sink);
    ASSERT_THAT(sink.failures, IsEmpty());
    send("$GPVTG,1\r\n");
    send("");
    send("$GPVTG,2");
    EXPECT_TRUE(loop.until([this] { return sink.all == "$GPVTG,1\r\n\n\n$GPVTG,2\n"; }));

    const QByteArray longest(65'000, 'x');
    send(longest);
    EXPECT_TRUE(loop.until([this] { return sink.all.size() > 65'000; }));
}

TEST_F(UdpSourceTest, ATakenPortIsBroken) {
    QUdpSocket other;
    ASSERT_TRUE(other.bind(port, QUdpSocket::DontShareAddress));
    UdpSource source(timers, port);
    source.open(sink);
    EXPECT_THAT(sink.failures, ElementsAre(HasSubstr("UDP port " + std::to_string(port) + ": ")));
    other.close();
    source.open(sink);
    send("x");
    EXPECT_TRUE(loop.until([this] { return sink.all == "x\n"; }));
}

TEST_F(UdpSourceTest, WhatComesWhileTheProgramIsBusyWaitsAndMoreIsHeard) {
    UdpSource source(timers, port);
    source.open(sink);
    {
        const BusyGuard busy;
        send("1");
        EXPECT_TRUE(loop.until([this] { return !timers.running().empty(); }));
        send("2");
        loop.drain();
        EXPECT_EQ(sink.reads, 0);
    }
    timers.fire();
    EXPECT_TRUE(loop.until([this] { return sink.all == "1\n2\n"; }));
    send("3");
    EXPECT_TRUE(loop.until([this] { return sink.all == "1\n2\n3\n"; }));
}

TEST_F(UdpSourceTest, AClosedSourceIsSilentAndLeavesThePort) {
    UdpSource source(timers, port);
    sink.whenReceived = [&source] { source.close(); };
    source.open(sink);
    send("1");
    send("2");
    EXPECT_TRUE(loop.until([this] { return sink.reads == 1; }));
    loop.drain();
    EXPECT_EQ(sink.reads, 1);
    QUdpSocket other;
    EXPECT_TRUE(other.bind(port, QUdpSocket::DontShareAddress));
}

} // namespace
} // namespace raincast
