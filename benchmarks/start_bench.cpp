// SPDX-License-Identifier: MIT
// How long the viewer takes to its first picture, seen from outside on a screen without glass: one
// radar picture and loops of them from the cache, against an empty window. And, by pictures that
// both save of themselves, the first start of all, and what a start takes of a processor, also with
// marks in view.
#include "cached_home.h"
#include "screen.h"
#include "support/figure.h"

#include <QCoreApplication>
#include <QProcess>
#include <QTemporaryDir>

#include <sys/resource.h>

#include <cstdio>
#include <cstdlib>

namespace {

using namespace raincast;

constexpr int kPairs = 15;
constexpr int kFewPairs = 5;
constexpr double kAimOfFirstStart = 1.5;
constexpr double kAimOverEmptyWindow = 30; // milliseconds
constexpr double kAimOverOneFrame = 10;
constexpr double kAimOfMarks = 50;
constexpr int kDeadline = 60'000; // milliseconds
constexpr int kLoops[] = {2, 6, 12};
constexpr int kManyMarks = 50'000; // from here on two starts are enough
constexpr int kMarks[] = {1'000, 6'000, 20'000, 100'000};

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
    const Ratio ratio = ratioOf(
        kPairs,
        [&home] {
            home.run(RAINCAST_PROGRAM, {QStringLiteral("--screenshot"), home.picture()});
        },
        [&home] { home.run(BARE_WINDOW_PROGRAM, {home.picture()}); }
    );
    print(Figure::of(ratio, "The very first start, to its picture", "an empty window")
              .withAim(AimOf::ratio, kAimOfFirstStart));
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

/// What a start takes of a processor until everything is loaded and painted once more.
double workOf(const CachedHome& home, const char* program, const QStringList& arguments) {
    const double before = processorTime();
    home.run(program, arguments);
    return processorTime() - before;
}

double workOfViewer(const CachedHome& home) {
    return workOf(
        home, RAINCAST_PROGRAM,
        home.viewer() + QStringList{QStringLiteral("--screenshot"), home.picture()}
    );
}

void measureWork() {
    const CachedHome home;
    const Ratio ratio = toldRatioOf(
        kPairs, [&] { return workOfViewer(home); },
        [&] { return workOf(home, BARE_WINDOW_PROGRAM, {home.picture()}); }
    );
    print(Figure::of(
        ratio, "A start with 25 frames, all of them loaded: processor time", "an empty window"
    ));
}

void measureMarks() {
    CachedHome with(1);
    const CachedHome without(1);
    for (const int marks : kMarks) {
        with.setMarks(marks);
        const Ratio ratio = toldRatioOf(
            marks > kManyMarks ? 1 : kFewPairs, [&] { return workOfViewer(with); },
            [&] { return workOfViewer(without); }
        );
        print(CurvePoint{
            "A start with named marks: processor time", "marks in view", double(marks), "ms",
            ratio.firstMilliseconds, "no marks", ratio.secondMilliseconds});
        if (marks >= 6'000) {
            print(Figure::of(
                      ratio,
                      "A start with " + std::to_string(marks) +
                          " named marks in view: processor time",
                      "no marks"
            )
                      .withAim(AimOf::difference, kAimOfMarks));
        }
    }
}

/// The viewer in a home of its own on a screen.
class Viewer {
public:
    Viewer(const Screen& screen, int frames) : m_screen(screen), m_home(frames) {
        m_home.use(screen.environment(m_home.environment()));
    }
    [[nodiscard]] CachedHome& home() { return m_home; }
    /// Milliseconds until the first echo is seen.
    [[nodiscard]] double toFirstPicture() const {
        return m_screen.millisecondsUntil(
            [this] { return m_screen.showsEchoes(); }, m_home.environment(),
            QStringLiteral(RAINCAST_PROGRAM), m_home.viewer()
        );
    }
    [[nodiscard]] double toEmptyWindow() const {
        return m_screen.millisecondsUntil(
            [this] { return m_screen.showsSomething(); }, m_home.environment(),
            QStringLiteral(BARE_WINDOW_PROGRAM), {QStringLiteral("--idle")}
        );
    }

private:
    const Screen& m_screen;
    CachedHome m_home;
};

void measureFrames(const Screen& screen) {
    const Viewer one(screen, 1);
    const auto oneFrame = [&one] { return one.toFirstPicture(); };
    const auto empty = [&one] { return one.toEmptyWindow(); };
    const auto draw = [](int frames, const Ratio& ratio) {
        print(CurvePoint{
            "First picture by frames of the loop", "frames", double(frames), "ms",
            ratio.firstMilliseconds, "an empty window", ratio.secondMilliseconds});
    };
    const Ratio first = toldRatioOf(kPairs, oneFrame, empty);
    print(Figure::of(first, "First picture, one frame", "an empty window")
              .withAim(AimOf::difference, kAimOverEmptyWindow));
    draw(1, first);
    for (const int frames : kLoops) {
        const Viewer loop(screen, frames);
        draw(
            frames, toldRatioOf(
                        kFewPairs, [&loop] { return loop.toFirstPicture(); }, empty
                    )
        );
    }
    Viewer most(screen, CachedHome::kMostFrames);
    const auto loop = [&most] { return most.toFirstPicture(); };
    print(Figure::of(toldRatioOf(kPairs, loop, oneFrame), "First picture, 25 frames", "one frame")
              .withAim(AimOf::difference, kAimOverOneFrame));
    draw(CachedHome::kMostFrames, toldRatioOf(kFewPairs, loop, empty));
    most.home().addNewerFrame();
    print(Figure::of(
              toldRatioOf(kPairs, loop, oneFrame), "First picture, 25 frames, one of them new",
              "one frame"
    )
              .withAim(AimOf::difference, kAimOverOneFrame));
}

} // namespace

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QCoreApplication application(argc, argv);
    const Screen screen;
    measureFrames(screen);
    measureMarks();
    measureFirstStart();
    measureWork();
    return 0;
}
