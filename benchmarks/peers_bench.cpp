// SPDX-License-Identifier: MIT
// The viewer beside map programs that a user may have instead: how long each takes to its first
// picture on a screen without glass, what it keeps in memory ten seconds later, and what it costs
// while nobody touches it. Each has a home of its own, empty before an uncounted first start. The
// viewer's picture counts when the radar is in it, the others' as soon as their main window is
// painted. Programs that are not installed are left out.
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
#include <memory>
#include <string>
#include <vector>

namespace {

using namespace raincast;

constexpr int kStarts = 5;
constexpr int kIdleSeconds = 20;
constexpr int kSettleSeconds = 10;
constexpr int kDeadline = 60'000; // milliseconds
// The least main window has more than a square of this side, and each picture or question that is
// shown before there is one has less.
constexpr int kMainWindow = 510;

struct Peer {
    const char* name;
    const char* program;
};
constexpr Peer kPeers[] = {
    {"Xastir", "xastir"},       {"foxtrotgps", "foxtrotgps"}, {"Viking", "viking"},
    {"QMapShack", "qmapshack"}, {"Marble", "marble"},
};

/// A program, how it is started and seen, and what it costs.
struct Candidate {
    std::string name;
    QString program;
    QStringList arguments;
    QProcessEnvironment environment;
    Screen::Seen seen;
    std::vector<double> firstPictures{}; ///< milliseconds, a start of each round
    process_cost::Memory memory{};
    double idle = 0; ///< hundred parts of a core
};

double median(std::vector<double> values) {
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

/// All programs in turn, so that a machine whose speed drifts treats them alike. The first round
/// does not count: nothing is in memory then, there are no settings, and one or the other asks
/// something instead of showing itself.
void measureStarts(const Screen& screen, std::vector<Candidate>& all) {
    const Screen::Seen anything = [&screen] { return screen.showsSomething(); };
    for (int round = 0; round <= kStarts; ++round) {
        for (Candidate& one : all) {
            const double milliseconds = screen.millisecondsUntil(
                round > 0 ? one.seen : anything, one.environment, one.program, one.arguments
            );
            if (round > 0) {
                one.firstPictures.push_back(milliseconds);
            }
        }
    }
}

/// Ten seconds after the start, if its picture has come. False for a program that ends by itself.
bool measureRest(const Screen& screen, Candidate& one) {
    QProcess process;
    process_cost::endWithUs(process);
    process.setProcessEnvironment(one.environment);
    process.setStandardOutputFile(QProcess::nullDevice());
    process.setStandardErrorFile(QProcess::nullDevice());
    process.start(one.program, one.arguments);
    if (process.waitForFinished(kSettleSeconds * 1000)) {
        std::printf("%s has ended by itself.\n", one.name.c_str());
        return false;
    }
    screen.waitUntil(one.seen, one.program);
    const qint64 id = process.processId();
    one.memory = process_cost::memoryOf(id);
    const double before = process_cost::processorMilliseconds(id);
    QThread::sleep(kIdleSeconds);
    one.idle = (process_cost::processorMilliseconds(id) - before) / kIdleSeconds / 10;
    process.kill();
    process.waitForFinished(kDeadline);
    screen.waitUntilEmpty(one.program);
    return true;
}

void show(const Candidate& own, const Candidate& peer) {
    Figure first = Figure::of(
        median(own.firstPictures), median(peer.firstPictures), "ms", "First picture", peer.name
    );
    std::vector<double> ratios;
    for (std::size_t i = 0; i < own.firstPictures.size(); ++i) {
        ratios.push_back(own.firstPictures[i] / peer.firstPictures[i]);
    }
    first.ratio = median(ratios);
    print(first);
    print(Figure::of(
        own.memory.resident, peer.memory.resident, "MiB", "Memory after 10 seconds", peer.name
    ));
    print(Figure::of(
        own.memory.anonymous, peer.memory.anonymous, "MiB",
        "Memory after 10 seconds, the program's own", peer.name
    ));
    print(Figure::of(own.idle, peer.idle, "%", "Idle, of a core", peer.name));
}

/// A home for a program that is not ours.
QProcessEnvironment emptyHome(const Screen& screen, const QTemporaryDir& folder) {
    QProcessEnvironment environment = screen.environment(QProcessEnvironment::systemEnvironment());
    // Some have pages of a browser, which refuses to be root's with its sandbox.
    environment.insert(QStringLiteral("QTWEBENGINE_DISABLE_SANDBOX"), QStringLiteral("1"));
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
    const Screen::Seen window = [&screen] { return screen.showsSomething(); };
    const Screen::Seen mainWindow = [&screen] { return screen.showsSomething(kMainWindow); };
    std::vector<Candidate> all{
        {"the viewer", RAINCAST_PROGRAM, home.viewer(), home.environment(),
         [&screen] { return screen.showsEchoes(); }},
        {"an empty window", BARE_WINDOW_PROGRAM, {"--idle"}, home.environment(), window},
    };
    std::vector<std::unique_ptr<QTemporaryDir>> homes;
    for (const Peer& peer : kPeers) {
        const QString program = QStandardPaths::findExecutable(QString::fromLatin1(peer.program));
        if (program.isEmpty()) {
            std::printf("%s is not installed.\n", peer.name);
            continue;
        }
        homes.push_back(std::make_unique<QTemporaryDir>());
        all.push_back({peer.name, program, {}, emptyHome(screen, *homes.back()), mainWindow});
    }
    measureStarts(screen, all);
    for (Candidate& one : all) {
        if (measureRest(screen, one) && &one != &all.front()) {
            show(all.front(), one);
        }
    }
    return 0;
}
