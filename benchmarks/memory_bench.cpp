// SPDX-License-Identifier: MIT
// What the viewer keeps in memory with all map layers and an animation of 25 frames, each of which
// has been shown, over a program with an empty window of the same size.
#include "cached_home.h"

#include <QCoreApplication>
#include <QFile>

#include <cstdio>

namespace {

constexpr double kAimMegabytes = 25;
constexpr double kSharpAimMegabytes = 60;
// 25 frames at two a second, and the pause at their end.
constexpr int kOnceAroundMilliseconds = 16'000;

struct Memory {
    double resident = 0;  ///< megabytes, files that are mapped included
    double anonymous = 0; ///< of these, the program's own
};

/// A line of /proc/PID/status such as "VmRSS:    12345 kB".
double megabytesIn(const QByteArray& status, const QByteArray& name) {
    const qsizetype place = status.indexOf(name);
    return place < 0 ? 0 : status.mid(place).simplified().split(' ').value(1).toDouble() / 1024;
}

Memory memoryOf(qint64 process) {
    QFile file(QStringLiteral("/proc/%1/status").arg(process));
    if (!file.open(QIODevice::ReadOnly)) {
        return {};
    }
    const QByteArray status = file.readAll();
    return {megabytesIn(status, "VmRSS:"), megabytesIn(status, "RssAnon:")};
}

Memory measure(const CachedHome& home, const char* program, const QStringList& arguments) {
    QProcess process;
    home.start(process, program, arguments);
    process.waitForFinished(kOnceAroundMilliseconds);
    const Memory memory = memoryOf(process.processId());
    process.kill();
    process.waitForFinished();
    return memory;
}

/// A large window, zoomed in by one step, without a server.
Memory measureLarge(const CachedHome& home) {
    return measure(
        home, RAINCAST_PROGRAM,
        {"--page-file", home.pageFile(), "--geometry", "1920x1080", "--radar-server", "127.0.0.1:9",
         "--basemap-server", "127.0.0.1:9"}
    );
}

void measureSharp() {
    const CachedHome home({"--geometry", "1920x1080"});
    const Memory described = measureLarge(home);
    home.addSharp();
    const Memory sharp = measureLarge(home);
    home.removeSharp();
    std::printf(
        "1920x1080, zoom -1: %.1f MB with sharp pictures - %.1f MB without = %.1f MB (aim: at most "
        "%.1f MB)\n",
        sharp.resident, described.resident, sharp.resident - described.resident, kSharpAimMegabytes
    );
}

} // namespace

int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    const CachedHome home;
    const Memory viewer = measure(
        home, RAINCAST_PROGRAM,
        {QStringLiteral("--page-file"), home.pageFile(), QStringLiteral("--geometry"),
         QStringLiteral("640x640")}
    );
    const Memory bare = measure(home, BARE_WINDOW_PROGRAM, {QStringLiteral("--idle")});
    std::printf(
        "25 frames and all layers: %.1f MB resident - %.1f MB of an empty window = %.1f MB (aim: "
        "at most %.1f MB)\n",
        viewer.resident, bare.resident, viewer.resident - bare.resident, kAimMegabytes
    );
    std::printf(
        "    of which the program's own: %.1f MB - %.1f MB = %.1f MB\n", viewer.anonymous,
        bare.anonymous, viewer.anonymous - bare.anonymous
    );
    measureSharp();
    return 0;
}
