// SPDX-License-Identifier: MIT
// What a viewer costs that nobody touches: with a radar picture, with a loop that plays, with a
// receiver that tells a position ten times a second and a map that follows it, and with marks in
// view. Beside them an empty window whose timer fires every 100 ms, as the viewer's does. They all
// run at once, on a screen without glass, for as many seconds as the first argument says (30 unless
// told otherwise).
#include "cached_home.h"
#include "process_cost.h"
#include "screen.h"
#include "support/figure.h"

#include <QCoreApplication>
#include <QEventLoop>
#include <QProcess>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTimer>

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <vector>

namespace {

using namespace raincast;

constexpr int kSeconds = 30;
// Until all have painted what there is, and each frame of a loop has been shown once.
constexpr int kStartSeconds = 16;
constexpr int kDeadline = 60'000; // milliseconds
constexpr double kAimIdle = 0.1;  // of a hundred parts of a core, here and below
constexpr double kAimLoop = 0.25;
constexpr double kAimPositions = 0.5;
constexpr double kAimMarks = 2;
constexpr int kFrames = 6; // of the loop that marks lie on
constexpr int kMarks[] = {1'000, 6'000, 20'000, 100'000};

/// Lets events happen.
void waitSeconds(int seconds) {
    QEventLoop loop;
    QTimer::singleShot(seconds * 1000, &loop, &QEventLoop::quit);
    loop.exec();
}

/// A receiver that drives north-east at 30 m/s and says so ten times a second, by TCP.
class Receiver {
public:
    Receiver() {
        m_server.listen(QHostAddress::LocalHost);
        QObject::connect(&m_server, &QTcpServer::newConnection, [this] {
            m_viewers.push_back(m_server.nextPendingConnection());
        });
        QObject::connect(&m_timer, &QTimer::timeout, [this] { tell(); });
        m_timer.start(100);
    }
    [[nodiscard]] QString source() const {
        return QStringLiteral("tcp:127.0.0.1:%1").arg(m_server.serverPort());
    }

private:
    void tell() {
        const int tenths = m_told++;
        const double minutes = tenths * 3.0 / 1852 / std::sqrt(2);
        char words[128];
        std::snprintf(
            words, sizeof words,
            "GPRMC,%02d%02d%02d.%d00,A,37%07.4f,N,122%07.4f,W,58.3,45.0,190519,,,A",
            tenths / 36'000 % 24, tenths / 600 % 60, tenths / 10 % 60, tenths % 10, 6 + minutes,
            30 - minutes
        );
        unsigned sum = 0;
        for (const char* letter = words; *letter != '\0'; ++letter) {
            sum ^= static_cast<unsigned char>(*letter);
        }
        char sentence[140];
        std::snprintf(sentence, sizeof sentence, "$%s*%02X\r\n", words, sum);
        for (QTcpSocket* viewer : m_viewers) {
            viewer->write(sentence);
        }
    }

    QTcpServer m_server;
    QTimer m_timer;
    std::vector<QTcpSocket*> m_viewers;
    int m_told = 0;
};

/// A program that runs in a home, ended when this goes.
class Running {
public:
    Running(const CachedHome& home, const char* program, const QStringList& arguments) {
        home.start(m_process, program, arguments);
    }
    ~Running() {
        m_process.terminate();
        m_process.waitForFinished(kDeadline);
    }
    Running(const Running&) = delete;
    Running& operator=(const Running&) = delete;

    void begin() {
        m_spent = process_cost::processorMilliseconds(m_process.processId());
        m_woken = process_cost::wakeUps(m_process.processId());
    }
    void end(int seconds) {
        const qint64 process = m_process.processId();
        m_spent = (process_cost::processorMilliseconds(process) - m_spent) / seconds / 10;
        m_woken = (process_cost::wakeUps(process) - m_woken) / seconds;
    }
    /// Hundred parts of a core, between begin() and end().
    [[nodiscard]] double share() const { return m_spent; }
    [[nodiscard]] double wakeUpsASecond() const { return m_woken; }

private:
    QProcess m_process;
    double m_spent = 0;
    double m_woken = 0;
};

void measureTogether(const std::vector<Running*>& all, int seconds) {
    waitSeconds(kStartSeconds);
    for (Running* one : all) {
        one->begin();
    }
    waitSeconds(seconds);
    for (Running* one : all) {
        one->end(seconds);
    }
}

void show(const char* what, const Running& viewer, const Running& bare, double aim) {
    print(Figure::of(
              viewer.share(), bare.share(), "%", std::string(what) + ": of a core",
              "an empty window"
    )
              .withAim(AimOf::own, aim));
    print(Figure::of(
        viewer.wakeUpsASecond(), bare.wakeUpsASecond(), "wake-ups",
        std::string(what) + ": wake-ups", "an empty window"
    ));
}

class Home : public CachedHome {
public:
    Home(const Screen& screen, int frames) : CachedHome(frames) {
        use(screen.environment(environment()));
    }
};

void measureViewers(const Screen& screen, int seconds) {
    const Receiver receiver;
    const Home still(screen, 1);
    Home following(screen, 1);
    following.follow();
    const Home loop(screen, CachedHome::kMostFrames);
    Running bare(still, BARE_WINDOW_PROGRAM, {QStringLiteral("--idle")});
    Running resting(still, RAINCAST_PROGRAM, still.viewer());
    Running driving(
        following, RAINCAST_PROGRAM,
        following.viewer() + QStringList{QStringLiteral("--nmea"), receiver.source()}
    );
    Running playing(loop, RAINCAST_PROGRAM, loop.viewer());
    measureTogether({&bare, &resting, &driving, &playing}, seconds);
    show("A still picture", resting, bare, kAimIdle);
    show("A loop on a still map", playing, bare, kAimLoop);
    show("Ten positions a second, followed", driving, bare, kAimPositions);
}

void measureMarks(const Screen& screen, int seconds) {
    const Home home(screen, kFrames);
    Running without(home, RAINCAST_PROGRAM, home.viewer());
    std::vector<std::unique_ptr<Home>> homes;
    std::vector<std::unique_ptr<Running>> viewers;
    std::vector<Running*> all{&without};
    for (const int marks : kMarks) {
        homes.push_back(std::make_unique<Home>(screen, kFrames));
        homes.back()->setMarks(marks);
        viewers.push_back(
            std::make_unique<Running>(*homes.back(), RAINCAST_PROGRAM, homes.back()->viewer())
        );
        all.push_back(viewers.back().get());
    }
    measureTogether(all, seconds);
    for (std::size_t i = 0; i < viewers.size(); ++i) {
        const Running& with = *viewers[i];
        print(CurvePoint{
            "A loop under named marks", "marks in view", double(kMarks[i]), "% of a core",
            with.share(), "no marks", without.share()});
        if (kMarks[i] >= 6'000) {
            const std::string what = "A loop under " + std::to_string(kMarks[i]) + " named marks";
            print(Figure::of(with.share(), without.share(), "%", what + ": of a core", "no marks")
                      .withAim(AimOf::own, kAimMarks));
        }
    }
}

} // namespace

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QCoreApplication application(argc, argv);
    const int seconds = argc > 1 ? std::atoi(argv[1]) : kSeconds;
    if (seconds <= 0) {
        std::fprintf(stderr, "usage: idle_bench [SECONDS]\n");
        return 2;
    }
    const Screen screen;
    measureViewers(screen, seconds);
    measureMarks(screen, (seconds + 1) / 2);
    return 0;
}
