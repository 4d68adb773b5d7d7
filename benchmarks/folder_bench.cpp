// SPDX-License-Identifier: MIT
// What a folder of 50,000 products costs a server that watches it, beside a folder of 50: processor
// time while nothing comes, and how long a new product takes until it is listed. An argument names
// another build of the server to measure instead.
#include "core/clock.h"
#include "process_cost.h"
#include "radar/catalogue/tree_index.h"
#include "support/figure.h"
#include "support/level3_maker.h"
#include "support/loopback.h"
#include "support/ratio.h"
#include "support/raw_client.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QThread>

#include <cstdio>
#include <cstdlib>
#include <string>

namespace {

using namespace raincast;

constexpr int kMany = 50'000;
constexpr int kFew = 50;
constexpr int kNew = 15;
constexpr int kIdleSeconds = 30;
constexpr int kDeadline = 600'000; // milliseconds
constexpr double kAimShare = 0.2;  // percent
constexpr double kAimMilliseconds = 20;

[[noreturn]] void fail(const char* what) {
    std::fprintf(stderr, "%s\n", what);
    std::exit(1);
}

QByteArray product(FileTime time) {
    Level3ToMake wanted;
    wanted.takenAt(time);
    return QByteArray::fromStdString(makeLevel3(wanted));
}

void write(const QString& path, const QByteArray& bytes) {
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size()) {
        fail("A product cannot be written.");
    }
}

/// A server of a folder in which so many products lie that are too old to be shown, and one that is
/// not.
class Server {
public:
    Server(const QString& program, int products) {
        QDir().mkpath(m_feed);
        const QByteArray old = product(fromCalendar({2013, 5, 20, 20, 16}));
        for (int i = 0; i < products; ++i) {
            write(m_feed + QStringLiteral("/KOUN_SDUS54_N0RTLX_%1").arg(i), old);
        }
        put(m_newest);
        m_process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        process_cost::endWithUs(m_process);
        m_process.start(
            program, {"--level3", m_feed, "--quiet", "--listen", "127.0.0.1:0", "--cache",
                      m_folder.filePath(QStringLiteral("cache"))}
        );
        while (!m_process.canReadLine() && m_process.waitForReadyRead(kDeadline)) {
        }
        const QByteArray line = m_process.readLine();
        m_port = line.mid(line.lastIndexOf(':') + 1).chopped(2).toInt();
        // The newest is rendered first, and all are looked at when another one comes.
        waitFor(m_newest);
        addOne();
    }
    ~Server() {
        m_process.terminate();
        m_process.waitForFinished(kDeadline);
    }
    Server(const Server&) = delete;
    Server& operator=(const Server&) = delete;

    /// Puts a newer product there and waits until it is listed.
    void addOne() {
        m_newest += kFileTimePerMinute;
        put(m_newest);
        waitFor(m_newest);
    }

    [[nodiscard]] double spent() const {
        return process_cost::processorMilliseconds(m_process.processId());
    }

private:
    /// It appears whole, as rsync has it.
    void put(FileTime time) const {
        const QString name = QString::number(time);
        write(m_feed + QStringLiteral("/.") + name, product(time));
        QFile::rename(m_feed + QStringLiteral("/.") + name, m_feed + u'/' + name);
    }

    void waitFor(FileTime time) const {
        const std::string name = frameName({"TLX", Product::baseReflectivity}, time);
        QElapsedTimer timer;
        timer.start();
        while (listing().find(name) == std::string::npos) {
            if (timer.elapsed() > kDeadline) {
                fail("A product is not shown.");
            }
            QThread::msleep(1);
        }
    }

    [[nodiscard]] std::string listing() const {
        const RawClient client(m_port);
        client.send("GET /ridge/RadarImg/N0R/TLX/ HTTP/1.1\r\nConnection: close\r\n\r\n");
        return client.readAll();
    }

    QTemporaryDir m_folder;
    QString m_feed = m_folder.filePath(QStringLiteral("feed"));
    FileTime m_newest = SystemClock().now() - (kNew + 20) * kFileTimePerMinute;
    QProcess m_process;
    int m_port = 0;
};

} // namespace

int main(int argc, char** argv) {
    keepLoopbackFromProxies();
    const QString program =
        argc > 1 ? QString::fromLocal8Bit(argv[1]) : QStringLiteral(RAINCAST_SERVER_PROGRAM);
    Server many(program, kMany);
    Server few(program, kFew);
    const double manyBefore = many.spent();
    const double fewBefore = few.spent();
    QThread::sleep(kIdleSeconds);
    const double manySpent = many.spent() - manyBefore;
    const double fewSpent = few.spent() - fewBefore;
    print(Figure::of(
              manySpent / kIdleSeconds / 10, fewSpent / kIdleSeconds / 10, "%",
              "A server of 50,000 products, idle: of a core", "of 50"
    )
              .withAim(AimOf::own, kAimShare));
    const Ratio ratio = ratioOf(
        kNew, [&] { many.addOne(); }, [&] { few.addOne(); }
    );
    print(Figure::of(ratio, "A new product among 50,000 until it is listed", "among 50")
              .withAim(AimOf::own, kAimMilliseconds));
    return 0;
}
