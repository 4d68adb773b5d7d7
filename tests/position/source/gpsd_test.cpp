// SPDX-License-Identifier: MIT
// A gpsd as the peer: once as a server of this test that answers as gpsd does, and once the real
// one, which gets a recorded log by UDP.
#include "position/feed_rmc_to_gps_position.h"
#include "position/position_receiver.h"
#include "support/event_loop.h"
#include "support/manual_timers.h"
#include "support/record_listeners.h"

#include <QFile>
#include <QProcess>
#include <QStandardPaths>
#include <QTcpServer>
#include <QTcpSocket>
#include <QUdpSocket>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <memory>

namespace raincast {
namespace {

constexpr char kVersion[] = "{\"class\":\"VERSION\",\"release\":\"3.22\",\"rev\":\"3.22\","
                            "\"proto_major\":3,\"proto_minor\":14}\r\n";
constexpr char kWatching[] =
    "{\"class\":\"DEVICES\",\"devices\":[{\"class\":\"DEVICE\",\"path\":\"udp://127.0.0.1:1\","
    "\"driver\":\"NMEA0183\"}]}\r\n{\"class\":\"WATCH\",\"enable\":true,\"json\":false,"
    "\"nmea\":true,\"raw\":0}\r\n";

PositionSourceAddress gpsdAt(quint16 port) {
    return *PositionSourceAddress::parse(QStringLiteral("gpsd:127.0.0.1:%1").arg(port));
}

TEST(GpsdTest, IsAskedForItsSentences) {
    EventLoop loop;
    ManualTimers timers;
    QTcpServer server;
    ASSERT_TRUE(server.listen(QHostAddress(QHostAddress::LocalHost)));
    const RecordListener<CNMEA_GPS::RMC> rmc;
    PositionReceiver receiver(timers);
    receiver.use(gpsdAt(server.serverPort()));

    ASSERT_TRUE(loop.until([&] { return server.hasPendingConnections(); }));
    const std::unique_ptr<QTcpSocket> peer(server.nextPendingConnection());
    peer->write(kVersion);
    ASSERT_TRUE(loop.until([&] { return peer->canReadLine(); }));
    EXPECT_EQ(peer->readLine(), "?WATCH={\"enable\":true,\"nmea\":true};\n");
    peer->write(kWatching);
    peer->write("$GPRMC,093803,A,5213.1439,N,02100.6511,E,000.0,226.0,160305,004.2,E,D*14\r\n");
    ASSERT_TRUE(loop.until([&] { return rmc.records.size() == 1; }));
    EXPECT_NEAR(rmc.records[0].latitude, 52.219065, 1e-12);
    EXPECT_EQ(receiver.counters().jsonLines, 3U);
    EXPECT_EQ(receiver.counters().junkBytes, 0U) << "gpsd tells no junk";
    EXPECT_TRUE(receiver.statusText().endsWith(QStringLiteral(": 1 taken, 3 lines of JSON")))
        << qPrintable(receiver.statusText());
}

/// A gpsd of this test's own, which is ended with it.
class Gpsd {
public:
    Gpsd() : m_tcp(freeTcpPort()), m_udp(freeUdpPort()) {
        m_process.setProcessChannelMode(QProcess::MergedChannels);
        m_process.start(
            program(), {QStringLiteral("-N"), QStringLiteral("-n"), QStringLiteral("-S"),
                        QString::number(m_tcp), QStringLiteral("udp://127.0.0.1:%1").arg(m_udp)}
        );
    }
    ~Gpsd() {
        m_process.kill();
        m_process.waitForFinished();
    }
    Gpsd(const Gpsd&) = delete;
    Gpsd& operator=(const Gpsd&) = delete;

    static QString program() {
        return QStandardPaths::findExecutable(
            QStringLiteral("gpsd"), {QStringLiteral("/usr/sbin"), QStringLiteral("/usr/local/sbin"),
                                     QStringLiteral("/usr/bin")}
        );
    }
    quint16 port() const { return m_tcp; }
    bool running() const { return m_process.state() != QProcess::NotRunning; }
    void receiverSends(const QByteArray& line) {
        m_socket.writeDatagram(line, QHostAddress(QHostAddress::LocalHost), m_udp);
    }

private:
    // Ports that were free a moment ago.
    static quint16 freeTcpPort() {
        QTcpServer server;
        server.listen(QHostAddress(QHostAddress::LocalHost));
        return server.serverPort();
    }
    static quint16 freeUdpPort() {
        QUdpSocket socket;
        socket.bind(QHostAddress(QHostAddress::LocalHost));
        return socket.localPort();
    }

    QProcess m_process;
    QUdpSocket m_socket;
    quint16 m_tcp;
    quint16 m_udp;
};

// The last position that the log holds, by way of a real gpsd.
TEST(RealDataGpsdTest, ARecordedLogComesThroughGpsd) {
    if (Gpsd::program().isEmpty()) {
        GTEST_SKIP() << "gpsd is not installed";
    }
    const char* data = std::getenv("RAINCAST_TEST_DATA");
    QFile log(QString::fromLocal8Bit(data != nullptr ? data : "") + "/nmea/haicom-305N.log");
    if (!log.open(QIODevice::ReadOnly)) {
        GTEST_SKIP() << "no file " << qPrintable(log.fileName());
    }
    const QList<QByteArray> lines = log.readAll().split('\n');

    EventLoop loop;
    QtTimers timers;
    Gpsd gpsd;
    PublishedPosition position;
    const CFeedRMC_to_GPSPosition feed(position);
    const RecordListener<CDataGPSPosition> positions;
    PositionReceiver receiver(timers);
    receiver.use(gpsdAt(gpsd.port())); // before it listens: found at the second or third try
    const auto watched = [&] {
        return receiver.state() == PositionReceiver::State::open &&
               receiver.counters().jsonLines >= 3;
    };
    ASSERT_TRUE(loop.until([&] { return watched() || !gpsd.running(); }));
    ASSERT_TRUE(watched()) << "gpsd ended";

    // A line goes out when nothing has come back for a moment: datagrams would be lost otherwise.
    // The end of the log is sent until it arrives.
    constexpr qsizetype kEnd = 8;
    qsizetype sent = 0;
    const auto tick = timers.make([&] {
        gpsd.receiverSends(lines[sent] + '\n');
        sent = sent + 1 < lines.size() ? sent + 1 : lines.size() - kEnd;
    });
    const auto replayed = [&] {
        tick->start(std::chrono::milliseconds{1});
        return !positions.records.empty() &&
               positions.records.back().time == fromCalendar({2007, 4, 8, 9, 54, 15});
    };
    ASSERT_TRUE(loop.until(replayed)) << qPrintable(receiver.statusText());
    const CDataGPSPosition& last = positions.records.back();
    EXPECT_NEAR(last.latitude, -27.210673333333332, 1e-12);
    EXPECT_NEAR(last.longitude, 153.052, 1e-12);
    EXPECT_EQ(last.speed, 2.11F);
    EXPECT_EQ(last.course, 96.86F);
    EXPECT_GT(positions.records.size(), 60U) << "of the log's 74, the first of which it may lose";
    EXPECT_EQ(receiver.counters().wrongChecksum, 0U);
    EXPECT_EQ(receiver.counters().junkBytes, 0U);
}

} // namespace
} // namespace raincast
