// SPDX-License-Identifier: MIT
// The server itself, with a wall clock that jumps while it runs.
#include "live_sim/live_sim.h"
#include "provider/live_object.h"
#include "support/jumping_clock.h"
#include "support/level3_maker.h"
#include "support/loopback.h"
#include "support/raw_client.h"

#include <QDeadlineTimer>
#include <QProcess>
#include <QRegularExpression>

#include <gmock/gmock.h>

#include <thread>

namespace raincast {
namespace {

constexpr int kDeadline = 120'000; // milliseconds
constexpr std::int64_t kHour = 3600;

class ServerClockJumpTest : public ::testing::Test {
protected:
    ~ServerClockJumpTest() override {
        m_process.terminate();
        EXPECT_TRUE(m_process.waitForFinished(kDeadline));
        EXPECT_EQ(m_process.exitCode(), 0);
    }

    void start(const QStringList& arguments) {
        keepLoopbackFromProxies();
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert("XDG_CACHE_HOME", m_folder.path());
        clock.addTo(environment, QStringLiteral(SHIFTED_CLOCK_LIBRARY));
        m_process.setProcessEnvironment(environment);
        m_process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        m_process.start(
            QStringLiteral(RAINCAST_SERVER_PROGRAM),
            QStringList{"--listen", "127.0.0.1:0", "--quiet"} + arguments
        );
        while (!m_process.canReadLine() && m_process.waitForReadyRead(kDeadline)) {
        }
        const QByteArray ready = m_process.readLine();
        m_port = ready.mid(ready.lastIndexOf(':') + 1).chopped(2).toInt();
    }
    [[nodiscard]] std::string get(const std::string& path) const {
        const RawClient client(m_port);
        client.send("GET " + path + " HTTP/1.1\r\nConnection: close\r\n\r\n");
        return client.readAll();
    }
    /// The newest frame that is listed, by its name.
    [[nodiscard]] QString newest() const {
        static const QRegularExpression name(QStringLiteral("\"(TLX_\\d{8}_\\d{4}_N0R.gif)\""));
        QString last;
        for (const auto& match : name.globalMatch(QString::fromStdString(get(kFolder)))) {
            last = match.captured(1);
        }
        return last;
    }
    static QString frameOf(FileTime time) {
        const CalendarTime at = toCalendar(time);
        return QString::asprintf(
            "TLX_%04d%02d%02d_%02d%02d_N0R.gif", at.year, at.month, at.day, at.hour, at.minute
        );
    }

    static constexpr char kFolder[] = "/ridge/RadarImg/N0R/TLX/";
    QTemporaryDir m_folder;
    test::JumpingClock clock;
    LiveSim m_sim;
    QProcess m_process;
    int m_port = 0;
};

TEST_F(ServerClockJumpTest, SampleWeatherIsThatOfTheClock) {
    start({});
    const FileTime now = SystemClock().now();
    for (const std::int64_t hours : {0, 30, -30, 24 * 366, 0}) {
        clock.jumpTo(hours * kHour);
        const FileTime shown = now + hours * 60 * kFileTimePerMinute;
        // Names sort by time.
        EXPECT_GT(newest(), frameOf(shown - 10 * kFileTimePerMinute)) << hours;
        EXPECT_LT(newest(), frameOf(shown + 10 * kFileTimePerMinute)) << hours;
        EXPECT_THAT(get(kFolder + newest().toStdString()), ::testing::HasSubstr("GIF89a"));
    }
}

TEST_F(ServerClockJumpTest, LiveWeatherGoesOnAfterIt) {
    const auto put = [this](FileTime time) {
        time -= time % kFileTimePerSecond;
        const std::string product = makeLevel3(digitalReflectivity("TLX", time));
        m_sim.bucket.put(keyOf({"TLX", "N0B"}, time), QByteArray::fromStdString(product), time);
        return frameOf(time);
    };
    const FileTime now = SystemClock().now();
    const QString first = put(now - 4 * kFileTimePerMinute);
    start(
        {"--live", "--live-frames", m_sim.bucket.url(), "--live-fallback", "none",
         "--live-warnings", m_sim.alerts.url()}
    );
    const auto awaitNewest = [this](const QString& name) {
        QDeadlineTimer deadline(kDeadline);
        while (newest() != name && !deadline.hasExpired()) {
            std::this_thread::yield();
        }
        EXPECT_EQ(newest(), name);
        EXPECT_THAT(get(kFolder + name.toStdString()), ::testing::HasSubstr("GIF89a"));
    };
    awaitNewest(first);
    // Ahead: what is there by then is listed.
    const QString second = put(now + 26 * 60 * kFileTimePerMinute);
    clock.jumpTo(26 * kHour + 300);
    awaitNewest(second);
    // Back: nothing of the future is shown, and what comes next is.
    clock.jumpTo(0);
    m_sim.bucket.remove(keyOf({"TLX", "N0B"}, now + 26 * 60 * kFileTimePerMinute));
    const QString third = put(now - kFileTimePerMinute);
    clock.jumpTo(600);
    awaitNewest(third);
}

} // namespace
} // namespace raincast
