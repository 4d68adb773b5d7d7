// SPDX-License-Identifier: MIT
// From the start of the viewer to the end of its first paint, beside a program with an empty
// window: both save a picture of the window then and end. Once with the settings and pages of a
// first start, once with a radar picture, of which everything is cached. (What it takes to save
// the richer picture is part of the second.)
#include "cached_home.h"
#include "support/ratio.h"

#include <QCoreApplication>
#include <QProcess>
#include <QTemporaryDir>

#include <sys/resource.h>

#include <cstdio>
#include <cstdlib>

namespace {

constexpr int kPairs = 25;
constexpr double kAim = 1.5;
constexpr double kAimToRadar = 300; // milliseconds on top of the empty window
constexpr int kDeadline = 60'000;   // milliseconds

class Home {
public:
    Home() : m_environment(QProcessEnvironment::systemEnvironment()) {
        for (const char* name :
             {"XDG_CONFIG_HOME", "XDG_CONFIG_DIRS", "XDG_DATA_HOME", "XDG_RUNTIME_DIR"}) {
            m_environment.insert(name, m_folder.path());
        }
        m_environment.insert("QT_QPA_PLATFORM", "offscreen");
    }

    void run(const char* program, const QStringList& arguments) const {
        QProcess process;
        process.setProcessEnvironment(m_environment);
        process.setStandardErrorFile(QProcess::nullDevice());
        process.start(QString::fromLocal8Bit(program), arguments);
        if (!process.waitForFinished(kDeadline) || process.exitCode() != 0) {
            std::fprintf(stderr, "%s failed.\n", program);
            std::exit(1);
        }
    }
    [[nodiscard]] QString picture() const {
        return m_folder.filePath(QStringLiteral("picture.png"));
    }

private:
    QTemporaryDir m_folder;
    QProcessEnvironment m_environment;
};

void measureFirstStart() {
    const Home home;
    const raincast::Ratio ratio = raincast::ratioOf(
        kPairs,
        [&home] {
            home.run(RAINCAST_PROGRAM, {QStringLiteral("--screenshot"), home.picture()});
        },
        [&home] { home.run(BARE_WINDOW_PROGRAM, {home.picture()}); }
    );
    raincast::printRatio("start to first paint, the viewer / an empty window", ratio, kAim);
}

/// What the programs that have ended so far spent on a processor, in milliseconds.
double processorTime() {
    rusage usage{};
    getrusage(RUSAGE_CHILDREN, &usage);
    const auto milliseconds = [](const timeval& time) {
        return static_cast<double>(time.tv_sec) * 1000 + static_cast<double>(time.tv_usec) / 1000;
    };
    return milliseconds(usage.ru_utime) + milliseconds(usage.ru_stime);
}

/// The mean processor time of a few runs.
template<typename Run>
double meanProcessorTime(Run run) {
    const double before = processorTime();
    for (int i = 0; i < kPairs; ++i) {
        run();
    }
    return (processorTime() - before) / kPairs;
}

void measureCachedStart() {
    const CachedHome home;
    const QStringList arguments = {
        QStringLiteral("--page-file"), home.pageFile(), QStringLiteral("--screenshot"),
        home.picture()};
    const auto viewer = [&] { home.run(RAINCAST_PROGRAM, arguments); };
    const auto bare = [&] { home.run(BARE_WINDOW_PROGRAM, {home.picture()}); };
    const raincast::Ratio ratio = raincast::ratioOf(kPairs, viewer, bare);
    std::printf(
        "start to first radar pixel, 25 frames cached: %.1f ms - %.1f ms of an empty window = "
        "%.1f ms (aim: at most %.1f ms)\n",
        ratio.firstMilliseconds, ratio.secondMilliseconds,
        ratio.firstMilliseconds - ratio.secondMilliseconds, kAimToRadar
    );
    const double viewers = meanProcessorTime(viewer);
    const double bares = meanProcessorTime(bare);
    std::printf(
        "    on a processor: %.1f ms - %.1f ms = %.1f ms\n", viewers, bares, viewers - bares
    );
}

} // namespace

int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    measureFirstStart();
    measureCachedStart();
    return 0;
}
