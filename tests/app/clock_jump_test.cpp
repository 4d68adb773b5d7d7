// SPDX-License-Identifier: MIT
// The viewer itself, with a wall clock that jumps, and with one that began in 1970.
#include "app/updating_viewer.h"

#include <QTcpServer>
#include <QTcpSocket>

#include <numeric>

namespace raincast {
namespace {

class ClockJumpTest : public test::UpdatingViewer {
protected:
    /// A sentence of a receiver that knows the time.
    static QByteArray sentenceAt(const QDateTime& time) {
        const QByteArray body = "GPRMC," + time.toString(QStringLiteral("HHmmss")).toLatin1() +
                                ",A,3730.000,N,12212.000,W,0,0," +
                                time.toString(QStringLiteral("ddMMyy")).toLatin1() + ",,";
        const auto sum = std::accumulate(body.begin(), body.end(), 0, [](int all, char byte) {
            return all ^ byte;
        });
        return '$' + body + '*' + QByteArray::number(sum, 16).rightJustified(2, '0').toUpper() +
               "\r\n";
    }
};

TEST_F(ClockJumpTest, UpdatesGoOnWhicheverWayItJumps) {
    start();
    expectNoUpdate();
    const int before = updates();
    clock.jumpTo(6 * kMinute);
    awaitUpdates(before + 1);
    QTest::qWait(kWhile);

    clock.jumpTo(-12 * 60 * kMinute);
    expectNoUpdate();
    const int back = updates();
    clock.advance(6 * kMinute);
    awaitUpdates(back + 1);
    clock.jumpTo(0);
    publish();
    clock.jumpTo(10 * kMinute);
    EXPECT_TRUE(awaitNewest());
}

// A device without a battery for its clock.
TEST_F(ClockJumpTest, In1970PicturesComeAndAreRenewed) {
    clock.jumpTo1970();
    start();
    expectNoUpdate();
    publish();
    clock.advance(6 * kMinute);
    EXPECT_TRUE(awaitNewest());
}

TEST_F(ClockJumpTest, AReceiverTellsADeviceOf1970TheTime) {
    QTcpServer receiver;
    ASSERT_TRUE(receiver.listen(QHostAddress::LocalHost));
    clock.jumpTo1970();
    start({"--nmea", QStringLiteral("tcp:127.0.0.1:%1").arg(receiver.serverPort())});
    ASSERT_TRUE(QTest::qWaitFor([&] { return receiver.hasPendingConnections(); }, kDeadline));
    expectNoUpdate();
    // By its time the newest frame is ten minutes old: another one is due.
    publish();
    receiver.nextPendingConnection()->write(
        sentenceAt(utcDateTime(SystemClock().now()).addSecs(6 * kMinute))
    );
    EXPECT_TRUE(awaitNewest());
}

} // namespace
} // namespace raincast
