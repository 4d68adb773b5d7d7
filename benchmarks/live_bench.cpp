// SPDX-License-Identifier: MIT
// How long a live server that knows nothing takes to its first frame, with providers that answer 80
// ms later, and what each frame shown costs it in bytes fetched and in processor time.
#include "core/clock.h"
#include "live_sim/live_sim.h"
#include "process_cost.h"
#include "provider/live_object.h"
#include "support/figure.h"
#include "support/level3_maker.h"
#include "support/loopback.h"

#include <QElapsedTimer>
#include <QProcess>
#include <QRegularExpression>
#include <QTcpSocket>
#include <QTemporaryDir>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <vector>

namespace {

using namespace raincast;

constexpr int kDeadline = 60'000; // milliseconds
constexpr std::chrono::milliseconds kRoundTrip{80};
constexpr int kFrames = 12;
constexpr int kRuns = 3;
constexpr double kAimOfWork = 60; // milliseconds

[[noreturn]] void fail(const char* what) {
    std::fprintf(stderr, "%s\n", what);
    std::exit(1);
}

/// A product as large as a real one: a full circle of 0.5° radials.
QByteArray product(FileTime time) {
    Level3ToMake wanted;
    wanted.code = 153;
    wanted.awipsId = "N0BTLX";
    const std::uint64_t seconds = toUnixSeconds(time);
    wanted.day = static_cast<int>(seconds / 86'400) + 1;
    wanted.second = static_cast<int>(seconds % 86'400);
    wanted.picture = Level3ToMake::Picture::digital;
    wanted.thresholds = digitalThresholds(-320, 5);
    wanted.packed = true;
    wanted.rows.clear();
    std::uint32_t noise = 7;
    for (int radial = 0; radial < 720; ++radial) {
        std::vector<std::uint8_t> cells(1832);
        for (std::uint8_t& cell : cells) {
            noise = noise * 1'664'525 + 1'013'904'223;
            cell = static_cast<std::uint8_t>(noise >> 28 == 0 ? noise >> 20 : 0);
        }
        wanted.rows.push_back({radial * 5, 5, cells});
    }
    return QByteArray::fromStdString(makeLevel3(wanted));
}

/// The program with an empty cache, whose providers are stand-ins.
class Server {
public:
    explicit Server(const LiveSim& sim) {
        process_cost::endWithUs(m_process);
        m_process.setProgram(QStringLiteral(RAINCAST_SERVER_PROGRAM));
        m_process.setArguments(
            {"--live", "--quiet", "--listen", "127.0.0.1:0", "--cache", m_folder.path(),
             "--live-frames", sim.bucket.url(), "--live-fallback", sim.ring.url(),
             "--live-warnings", sim.alerts.url()}
        );
        m_process.start();
        while (!m_process.canReadLine() && m_process.waitForReadyRead(kDeadline)) {
        }
        const QByteArray line = m_process.readLine();
        m_port = line.mid(line.lastIndexOf(':') + 1).chopped(2).toUShort();
    }
    ~Server() {
        m_process.terminate();
        m_process.waitForFinished(kDeadline);
    }
    Server(const Server&) = delete;
    Server& operator=(const Server&) = delete;

    [[nodiscard]] QByteArray get(const QByteArray& path) const {
        QTcpSocket socket;
        socket.connectToHost(QStringLiteral("127.0.0.1"), m_port);
        if (!socket.waitForConnected(kDeadline)) {
            fail("Cannot connect.");
        }
        socket.write("GET " + path + " HTTP/1.1\r\nConnection: close\r\n\r\n");
        QByteArray all;
        while (socket.waitForReadyRead(kDeadline)) {
            all += socket.readAll();
        }
        return all;
    }
    [[nodiscard]] std::vector<QByteArray> frames() const {
        static const QRegularExpression name(QStringLiteral("\"(TLX_[0-9_]+_N0R.gif)\""));
        std::vector<QByteArray> result;
        for (const auto& match : name.globalMatch(QString::fromLatin1(get(kFolder)))) {
            result.push_back(kFolder + match.captured(1).toLatin1());
        }
        return result;
    }
    /// Of the processor so far.
    [[nodiscard]] double milliseconds() const {
        return process_cost::processorMilliseconds(m_process.processId());
    }

    static constexpr char kFolder[] = "/ridge/RadarImg/N0R/TLX/";

private:
    QTemporaryDir m_folder;
    QProcess m_process;
    quint16 m_port = 0;
};

double median(std::vector<double> values) {
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

} // namespace

int main() {
    keepLoopbackFromProxies();
    LiveSim sim;
    const FileTime now = SystemClock().now();
    qsizetype bytes = 0;
    for (int i = 0; i < kFrames; ++i) {
        const FileTime time = now - (3 + 5 * i) * kFileTimePerMinute;
        const QByteArray made = product(time);
        bytes += made.size();
        sim.bucket.put(keyOf({"TLX", "N0B"}, time), made, time + kFileTimePerMinute);
    }
    sim.bucket.delay(kRoundTrip);
    std::vector<double> waits;
    std::vector<double> works;
    for (int run = 0; run < kRuns; ++run) {
        const Server server(sim);
        const double before = server.milliseconds();
        QElapsedTimer timer;
        timer.start();
        const auto frames = server.frames();
        if (frames.empty() || !server.get(frames.back()).contains("GIF89a")) {
            fail("No frame came.");
        }
        waits.push_back(static_cast<double>(timer.nsecsElapsed()) / 1e6);
        works.push_back(server.milliseconds() - before);
    }
    const double wait = median(waits);
    const auto roundTrips = static_cast<double>(2 * kRoundTrip.count());
    print(Figure::of(
        wait, roundTrips, "ms", "Live radar, the first frame of a cold start",
        "the delay of two answers"
    ));
    Figure work{
        .what = "Live radar, the first frame of a cold start: processor time",
        .unit = "ms",
        .own = median(works)};
    print(work.withAim(AimOf::own, kAimOfWork));

    sim.bucket.delay(std::chrono::milliseconds(0));
    const Server server(sim);
    const auto frames = server.frames();
    const double before = server.milliseconds();
    for (const QByteArray& frame : frames) {
        static_cast<void>(server.get(frame));
    }
    const double spent = server.milliseconds() - before;
    std::printf(
        "Each of %zu frames: %.0f kB fetched\n", frames.size(),
        static_cast<double>(bytes) / 1000 / kFrames
    );
    print(Figure{
        .what = "Live radar, each frame shown: processor time",
        .unit = "ms",
        .own = spent / static_cast<double>(frames.size())});
    return 0;
}
