// SPDX-License-Identifier: MIT
#include "core/busy_guard.h"
#include "position/source/tcp_source.h"
#include "position/source/test_sink.h"
#include "support/event_loop.h"
#include "support/manual_timers.h"

#include <QTcpServer>
#include <QTcpSocket>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <optional>

namespace raincast {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

const QString kHost = QStringLiteral("127.0.0.1");

class TcpSourceTest : public testing::Test {
protected:
    TcpSourceTest() { EXPECT_TRUE(server.listen(QHostAddress(kHost))); }

    void open(const QByteArray& greeting = {}) {
        source.emplace(timers, kHost, server.serverPort(), greeting);
        source->open(sink);
        accept();
    }
    void accept() {
        ASSERT_TRUE(loop.until([this] { return server.hasPendingConnections(); }));
        peer.reset(server.nextPendingConnection());
    }
    bool receives(const std::string& bytes) {
        return loop.until([&] { return sink.all == bytes; });
    }

    EventLoop loop;
    ManualTimers timers;
    TestSink sink;
    QTcpServer server;
    std::unique_ptr<QTcpSocket> peer;
    std::optional<TcpSource> source;
};

TEST_F(TcpSourceTest, GivesOutWhatTheServerSends) {
    open();
    peer->write("$GPVTG,");
    EXPECT_TRUE(receives("$GPVTG,"));
    peer->write("1\r\n");
    EXPECT_TRUE(receives("$GPVTG,1\r\n"));
    EXPECT_THAT(sink.failures, IsEmpty());
}

TEST_F(TcpSourceTest, GreetsTheServer) {
    open("hello\n");
    EXPECT_TRUE(loop.until([this] { return peer->peek(100) == "hello\n"; }));
}

TEST_F(TcpSourceTest, WhatWasSentBeforeTheEndIsReadAndThenItIsBroken) {
    open();
    const QByteArray much(300'000, 'x');
    peer->write(much);
    peer->disconnectFromHost();
    EXPECT_TRUE(loop.until([this] { return !sink.failures.empty(); }));
    EXPECT_EQ(sink.all.size(), 300'000U);
    EXPECT_THAT(sink.failures, ElementsAre(HasSubstr("127.0.0.1:")));

    source->open(sink);
    accept();
    peer->write("again");
    EXPECT_TRUE(loop.until([this] { return sink.all.size() == 300'005U; }));
}

TEST_F(TcpSourceTest, ARefusedConnectionIsBroken) {
    const quint16 port = server.serverPort();
    server.close();
    TcpSource refused(timers, kHost, port);
    refused.open(sink);
    EXPECT_TRUE(loop.until([this] { return !sink.failures.empty(); }));
    EXPECT_THAT(sink.failures, ElementsAre(HasSubstr("refused")));
}

TEST_F(TcpSourceTest, AClosedSourceIsSilent) {
    open();
    source->close();
    EXPECT_TRUE(loop.until([this] { return peer->state() == QTcpSocket::UnconnectedState; }));
    EXPECT_THAT(sink.failures, IsEmpty());

    source->open(sink);
    accept();
    sink.whenReceived = [this] { source->close(); };
    peer->write(QByteArray(100'000, 'x'));
    EXPECT_TRUE(loop.until([this] { return peer->state() == QTcpSocket::UnconnectedState; }));
    EXPECT_EQ(sink.reads, 1);
    EXPECT_THAT(sink.failures, IsEmpty());
}

TEST_F(TcpSourceTest, WhatComesWhileTheProgramIsBusyWaits) {
    open();
    {
        const BusyGuard busy;
        peer->write("$GPVTG,1\r\n");
        peer->disconnectFromHost();
        EXPECT_TRUE(loop.until([this] { return !timers.running().empty(); }));
        EXPECT_EQ(timers.fire(), 100);
        EXPECT_EQ(sink.reads, 0);
    }
    EXPECT_EQ(timers.fire(), 100);
    EXPECT_EQ(sink.all, "$GPVTG,1\r\n");
    EXPECT_TRUE(loop.until([this] { return !sink.failures.empty(); }));
}

// More than the buffer holds: reading must start again although nothing new is announced.
TEST_F(TcpSourceTest, AFullBufferIsReadOnAfterwards) {
    open();
    const std::string much(500'000, 'x');
    {
        const BusyGuard busy;
        peer->write(much.data(), static_cast<qint64>(much.size()));
        EXPECT_TRUE(loop.until([this] { return !timers.running().empty(); }));
        loop.drain();
        loop.drain();
    }
    timers.fire();
    EXPECT_TRUE(receives(much));
}

} // namespace
} // namespace raincast
