// SPDX-License-Identifier: MIT
// What the viewer keeps in memory with all map layers and an animation of 25 frames, each of which
// has been shown, over a program with an empty window of the same size.
#include "cached_home.h"
#include "process_cost.h"
#include "support/figure.h"

#include <QCoreApplication>

namespace {

using namespace raincast;
using process_cost::Memory;

constexpr double kAimMegabytes = 25;
constexpr double kSharpAimMegabytes = 60;
// 25 frames at two a second, and the pause at their end.
constexpr int kOnceAroundMilliseconds = 16'000;

Memory measure(const CachedHome& home, const char* program, const QStringList& arguments) {
    QProcess process;
    home.start(process, program, arguments);
    process.waitForFinished(kOnceAroundMilliseconds);
    const Memory memory = process_cost::memoryOf(process.processId());
    process.kill();
    process.waitForFinished();
    return memory;
}

/// A large window, zoomed in by one step.
Memory measureLarge(const CachedHome& home) {
    return measure(
        home, RAINCAST_PROGRAM,
        home.viewer() + QStringList{QStringLiteral("--geometry"), QStringLiteral("1920x1080")}
    );
}

void measureSharp() {
    const CachedHome home(CachedHome::kMostFrames, {"--geometry", "1920x1080"});
    const Memory described = measureLarge(home);
    home.addSharp();
    const Memory sharp = measureLarge(home);
    home.removeSharp();
    print(Figure::of(
              sharp.resident, described.resident, "MiB",
              "Memory with sharp pictures, 1920x1080 and zoom -1", "described pictures"
    )
              .withAim(AimOf::difference, kSharpAimMegabytes));
}

} // namespace

int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    const CachedHome home;
    const Memory viewer = measure(home, RAINCAST_PROGRAM, home.viewer());
    const Memory bare = measure(home, BARE_WINDOW_PROGRAM, {QStringLiteral("--idle")});
    print(Figure::of(
              viewer.resident, bare.resident, "MiB", "Memory with 25 frames and all layers",
              "an empty window"
    )
              .withAim(AimOf::difference, kAimMegabytes));
    print(Figure::of(
        viewer.anonymous, bare.anonymous, "MiB",
        "Memory with 25 frames and all layers, the program's own", "an empty window"
    ));
    measureSharp();
    return 0;
}
