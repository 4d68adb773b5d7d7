// SPDX-License-Identifier: MIT
// The viewer beside map programs that a user may have instead: how long each takes to its first
// picture on a screen without glass, what it keeps in memory ten seconds later, and what it costs
// while nobody touches it. Each has an empty home. The viewer's picture counts when the radar is in
// it, the others' as soon as a window is painted. Programs that are not installed are left out.
#include "cached_home.h"
#include "process_cost.h"
#include "screen.h"
#include "support/figure.h"

#include <QCoreApplication>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QThread>

#include <algorithm>
#include <cstdio>
#include <vector>

namespace {

using namespace raincast;

constexpr int kStarts = 5;
constexpr int kIdleSeconds = 20;
constexpr int kSettleSeconds = 10;
constexpr int kDeadline = 60'000; // milliseconds

struct Peer {
    const char* name;
    const char* program;
};
constexpr Peer kPeers[] = {
    {"Xastir", "xastir"},       {"foxtrotgps", "foxtrotgps"}, {"Viking", "viking"},
    {"QMapShack", "qmapshack"}, {"Marble", "marble"},
};

/// A program, and how it is started and seen.
struct Candidate {
    QString name;
    QString program;
    QStringList arguments;
    QProcessEnvironment environment;
    Screen::Seen seen;
};

struct Costs {
    double firstPicture = 0; ///< milliseconds
    double memory = 0;       ///< megabytes
    double idle = 0;         ///< hundred parts of a core
};

double firstPictureOf(const Screen& screen, const Candidate& one) {
    std::vector<double> times;
    for (int i = 0; i <= kStarts; ++i) {
        times.push_back(
            screen.millisecondsUntil(one.seen, one.environment, one.program, one.arguments)
        );
    }
    times.erase(times.begin()); // it found nothing in memory and no settings
    std::sort(times.begin(), times.end());
    return times[times.size() / 2];
}

Costs measure(const Screen& screen, const Candidate& one) {
    Costs costs;
    costs.firstPicture = firstPictureOf(screen, one);
    QProcess process;
    process_cost::endWithUs(process);
    process.setProcessEnvironment(one.environment);
    process.setStandardOutputFile(QProcess::nullDevice());
    process.setStandardErrorFile(QProcess::nullDevice());
    process.start(one.program, one.arguments);
    process.waitForStarted(kDeadline);
    QThread::sleep(kSettleSeconds);
    const qint64 id = process.processId();
    costs.memory = process_cost::memoryOf(id).proportional;
    const double before = process_cost::processorMilliseconds(id);
    QThread::sleep(kIdleSeconds);
    costs.idle = (process_cost::processorMilliseconds(id) - before) / kIdleSeconds / 10;
    process.kill();
    process.waitForFinished(kDeadline);
    return costs;
}

void show(const Costs& own, const Costs& peer, const QString& peerName) {
    const std::string name = peerName.toStdString();
    print(Figure::of(own.firstPicture, peer.firstPicture, "ms", "First picture", name));
    print(Figure::of(own.memory, peer.memory, "MB", "Memory after 10 seconds", name));
    print(Figure::of(own.idle, peer.idle, "%", "Idle, of a core", name));
}

/// A home for a program that is not ours.
QProcessEnvironment emptyHome(const Screen& screen, const QTemporaryDir& folder) {
    QProcessEnvironment environment = screen.environment(QProcessEnvironment::systemEnvironment());
    for (const char* name :
         {"HOME", "XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_CACHE_HOME", "XDG_RUNTIME_DIR"}) {
        environment.insert(QString::fromLatin1(name), folder.path());
    }
    return environment;
}

} // namespace

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QCoreApplication application(argc, argv);
    const Screen screen;
    CachedHome home(1);
    home.use(screen.environment(home.environment()));
    const Screen::Seen something = [&screen] { return screen.showsSomething(); };
    const Costs own = measure(
        screen, {"Raincast", RAINCAST_PROGRAM, home.viewer(), home.environment(),
                 [&screen] { return screen.showsEchoes(); }}
    );
    show(
        own,
        measure(
            screen,
            {"an empty window", BARE_WINDOW_PROGRAM, {"--idle"}, home.environment(), something}
        ),
        QStringLiteral("an empty window")
    );
    for (const Peer& peer : kPeers) {
        const QString program = QStandardPaths::findExecutable(QString::fromLatin1(peer.program));
        if (program.isEmpty()) {
            std::printf("%s is not installed.\n", peer.name);
            continue;
        }
        const QTemporaryDir folder;
        const QString name = QString::fromLatin1(peer.name);
        show(own, measure(screen, {name, program, {}, emptyHome(screen, folder), something}), name);
    }
    return 0;
}
